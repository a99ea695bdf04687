#include "diag/TraceWriterRef.h"

#include "diag/Trace.h"
#include "diag/TraceSection.h"
#include "diag/TraceWriter.h"

#include <mutex>

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
    const HANDLE section = OpenTraceSection(TracePath);
    TraceWriter* writer = nullptr;
    if (const TraceSectionView view(section); view) {
        writer = WriterOf(*view);
    }
    if (writer) {
        m_section = section;
        m_writer = writer;
    } else if (section) {
        CloseHandle(section);
    }
    return writer;
}

void TraceWriterRef::Close() {
    m_closed = true;
    TraceWriter* const writer = m_writer;
    if (!writer) {
        return;
    }
    if (const TraceSectionView view(m_section); view) {
        const TraceSectionLock hold(*view, kCloseLimit);
        if (writer->Release() == 0) {
            // Kept: the address of the writer that is gone is written back, not cleared. Each module that holds the
            // section holds a reference too, so this was the last one, and the section goes with its handle below; only
            // a handle that somebody else opened can show the address. Test: TraceLog.SharedSection.
            view->writer = writer;
        }
    } else {
        writer->Release();
    }
    m_writer = nullptr;
    CloseHandle(m_section);
    m_section = nullptr;
}
