#include "diag/Trace.h"

#include <cstdarg>
#include <cstdio>

#include <windows.h>

// Kept: bit 0x10 is set and read by nothing; it is part of the shipped value.
std::uint32_t TraceFlags = 0x00000010;

void WriteTrace(const char* format, ...) {
    if (!format) {
        return;
    }
    char text[2048];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    if (length >= 0 && (TraceFlags & kTraceDebugger)) {
        OutputDebugStringA(text);
    }
}
