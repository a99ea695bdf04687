#include "diag/TraceWriterRef.h"

#include "diag/TraceSection.h"
#include "diag/TraceWriter.h"

#include <cwchar>
#include <mutex>
#include <optional>
#include <utility>

namespace {

constexpr DWORD kCloseLimit = 1000;

TraceWriter* WriterOf(TraceSection& section) {
    const TraceSectionLock hold(section, INFINITE);
    TraceWriter* writer = section.writer;
    if (!writer) {
        writer = TraceWriter::Create();
        section.writer = writer;
    }
    if (writer) {
        writer->AddReference();
    }
    return writer;
}

} // namespace

TraceWriter* TraceWriterRef::Acquire() {
    if (TraceWriter* const writer = m_writer) {
        return writer;
    }
    if (m_closed) {
        return nullptr;
    }
    const std::lock_guard hold(m_lock);
    return m_writer ? m_writer.load() : FindOrCreate();
}

TraceWriter* TraceWriterRef::FindOrCreate() {
    std::wcsncpy(m_path, TracePath, kTracePathSize - 1);
    CHandle section = OpenTraceSection(m_path);
    TraceWriter* writer = nullptr;
    if (const TraceSectionView view = ViewOf(section); view) {
        writer = WriterOf(*view.Get());
    }
    if (writer) {
        m_section = std::move(section);
        m_writer = writer;
    }
    return writer;
}

void TraceWriterRef::Close() {
    m_closed = true;
    TraceWriter* const writer = m_writer;
    if (!writer) {
        return;
    }
    const TraceSectionView view = ViewOf(m_section);
    std::optional<TraceSectionLock> hold;
    if (view) {
        hold.emplace(*view.Get(), kCloseLimit);
    }
    const bool last = writer->Release() == 0;
    if (last && view) {
        // Kept: the address is written back, not cleared. Test: TraceLog.SharedSection.
        view.Get()->writer = writer;
    }
    m_section.Reset();
    // The section's name lives until its last handle is closed. Until then another module may be waiting for the lock
    // and take the writer whose address it finds, so the writer stays and that module frees it. Versions of this code
    // that free it at once leave such a module with a dangling address that it cannot recognise.
    if (last && !IsInTraceSection(m_path, writer)) {
        writer->Destroy();
    }
    m_writer = nullptr;
}
