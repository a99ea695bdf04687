#include "diag/TraceSection.h"

#include "diag/Trace.h"
#include "diag/TracePaths.h"

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

} // namespace

HANDLE OpenTraceSection(const wchar_t* path) {
    wchar_t name[kTracePathSize + 32];
    if (!MakeSectionName(GetCurrentProcessId(), path, name, sizeof(name) / sizeof(name[0]))) {
        return nullptr;
    }
    return CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(TraceSection), name);
}

TraceSectionLock::TraceSectionLock(TraceSection& section, DWORD limit)
    : m_section(section)
    , m_held(TakeSpin(section.spin, limit)) {}

TraceSectionLock::~TraceSectionLock() {
    if (m_held) {
        --m_section.spin;
    }
}
