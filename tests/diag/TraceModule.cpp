// A module that traces, for a test to load: built twice, so that one process has two with statics of their own.
#include "diag/Trace.h"

#include <cwchar>

#include <windows.h>

#define NMFV_EXPORT extern "C" __declspec(dllexport)

// To be called before the first line; tests don't write to the root folder.
NMFV_EXPORT void Configure(std::uint32_t flags, const wchar_t* path) {
    TraceFlags = flags;
    std::wcsncpy(TracePath, path, kTracePathSize - 1);
}

NMFV_EXPORT std::uint32_t Flags() {
    return TraceFlags;
}

NMFV_EXPORT const wchar_t* Path() {
    return TracePath;
}

NMFV_EXPORT void Line(const char* text) {
    Trace("\n%s", text);
}

NMFV_EXPORT void TimeASleep(const char* format, std::int32_t threshold, std::uint32_t milliseconds) {
    const TraceStopwatch stopwatch(format, threshold);
    Sleep(milliseconds);
}
