#include "diag/Trace.h"

#include "diag/text/TraceDecoration.h"
#include "diag/TraceWriter.h"
#include "diag/TraceWriterRef.h"

#include <cstdarg>
#include <cstdio>

#include <windows.h>

namespace {

// Destroyed in the opposite order: the writer is let go first.
TraceStopwatch g_sinceFirstLine;
TraceWriterRef g_writer;

TraceTime LocalTime() {
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    return {now.wHour, now.wMinute, now.wSecond, now.wMilliseconds};
}

std::int32_t HandleCount() {
    DWORD count = 0;
    return GetProcessHandleCount(GetCurrentProcess(), &count) ? static_cast<std::int32_t>(count) : -1;
}

constinit TraceDecorator g_decorator({&LocalTime, [] { g_sinceFirstLine.Restart(); },
                                      [] { return g_sinceFirstLine.Elapsed(); }, &HandleCount,
                                      []() -> std::uint32_t { return GetCurrentThreadId(); }});

void Emit(std::uint32_t flags, const char* line) {
    if (flags & kTraceDebugger) {
        OutputDebugStringA(line);
    }
    if (flags & kTraceFile) {
        if (TraceWriter* const writer = g_writer.Acquire()) {
            writer->Append(line);
        }
    } else if (flags & kTraceDebugger) {
        Sleep(0); // lets the debugger read
    }
}

} // namespace

void WriteTrace(const char* format, ...) {
    const std::uint32_t flags = TraceFlags;
    if (!format) {
        return;
    }
    char text[2048];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    if (length < 0) {
        return;
    }
    char line[2048];
    g_decorator.Decorate(flags, text, line, sizeof(line));
    Emit(flags, line);
}
