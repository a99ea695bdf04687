#include "diag/TraceSection.h"

#include "diag/Trace.h"
#include "diag/TracePaths.h"

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

// Calls `open` with the section's name; null when the path is too long for one.
template <typename Function>
HANDLE WithName(const wchar_t* path, Function open) {
    wchar_t name[kTracePathSize + 32];
    return MakeSectionName(GetCurrentProcessId(), path, name, std::size(name)) ? open(name) : nullptr;
}

} // namespace

HANDLE OpenTraceSection(const wchar_t* path) {
    return WithName(path, [](const wchar_t* name) {
        return CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(TraceSection), name);
    });
}

bool IsInTraceSection(const wchar_t* path, const TraceWriter* writer) {
    const HANDLE section =
        WithName(path, [](const wchar_t* name) { return OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, name); });
    if (!section) {
        return false;
    }
    const TraceSectionView view(section);
    CloseHandle(section);
    return !view || view->writer == writer; // one that can't be seen may have it
}

TraceSectionLock::TraceSectionLock(TraceSection& section, DWORD limit)
    : m_section(section)
    , m_held(TakeSpin(section.spin, limit)) {}

TraceSectionLock::~TraceSectionLock() {
    if (m_held) {
        --m_section.spin;
    }
}
