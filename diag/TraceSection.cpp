#include "diag/TraceSection.h"

#include "diag/Trace.h"
#include "diag/text/TracePaths.h"

#include <iterator>

namespace {

constexpr DWORD kPause = 10;

bool TakeSpin(std::atomic<std::int32_t>& spin, DWORD limit) {
    for (DWORD waited = 0; ++spin > 1; waited += kPause) {
        --spin;
        if (waited >= limit) {
            return false;
        }
        Sleep(kPause);
    }
    return true;
}

// Calls `open` with the section's name; empty when the path is too long for one.
template <typename Function>
CHandle WithName(const wchar_t* path, Function open) {
    wchar_t name[kTracePathSize + 32];
    return CHandle(MakeSectionName(GetCurrentProcessId(), path, name, std::size(name)) ? open(name) : nullptr);
}

} // namespace

CHandle OpenTraceSection(const wchar_t* path) {
    return WithName(path, [](const wchar_t* name) {
        return CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(TraceSection), name);
    });
}

bool IsInTraceSection(const wchar_t* path, const TraceWriter* writer) {
    CHandle section =
        WithName(path, [](const wchar_t* name) { return OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, name); });
    if (!section) {
        return false;
    }
    const TraceSectionView view = ViewOf(section);
    section.Reset();
    return !view || view.Get()->writer == writer; // one that cannot be mapped may have it
}

TraceSectionView ViewOf(const CHandle& section) {
    void* const view =
        section ? MapViewOfFile(section.Get(), FILE_MAP_ALL_ACCESS, 0, 0, sizeof(TraceSection)) : nullptr;
    return TraceSectionView(static_cast<TraceSection*>(view));
}

TraceSectionLock::TraceSectionLock(TraceSection& section, DWORD limit)
    : m_section(section)
    , m_held(TakeSpin(section.spin, limit)) {}

TraceSectionLock::~TraceSectionLock() {
    if (m_held) {
        --m_section.spin;
    }
}
