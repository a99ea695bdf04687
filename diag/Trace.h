// Diagnostic trace lines. docs/tracing.md tells what is written where.
#pragma once

#include "diag/TraceStopwatch.h"

#include <cstddef>
#include <cstdint>

// What a trace call does, in bits; read on every call, never changed by the program. Its value is chosen when the
// module is built. With bit 0x08 clear, as shipped, a call costs one test.
extern std::uint32_t TraceFlags;

inline constexpr std::uint32_t kTraceFile = 0x01;     // lines go to the trace file
inline constexpr std::uint32_t kTraceTime = 0x02;     // new lines begin with the time of day
inline constexpr std::uint32_t kTraceThread = 0x04;   // new lines begin with the thread id
inline constexpr std::uint32_t kTraceMaster = 0x08;   // nothing is formatted or written while clear
inline constexpr std::uint32_t kTraceReserved = 0x10; // Kept: set as shipped, read by nothing. Test: TraceLog.Switches
inline constexpr std::uint32_t kTraceHandles = 0x20;  // new lines begin with the process's handle count
inline constexpr std::uint32_t kTraceDebugger = 0x40; // lines go to the debugger output

// The trace file. It changes at most once: to a file inside a folder of that name, when the file itself cannot be
// created.
inline constexpr std::size_t kTracePathSize = 260;
extern wchar_t TracePath[kTracePathSize];

// Formats and writes one text; Trace's other half, not to be called on its own.
void WriteTrace(const char* format, ...);

// Traces a printf-style text of 8-bit characters, cut at 2047. A text that begins with "\n" starts a new line with a
// prefix; others continue the line. Never fails, from any thread.
template <typename... Arguments>
inline void Trace(const char* format, Arguments... arguments) {
    if (TraceFlags & kTraceMaster) [[unlikely]] {
        WriteTrace(format, arguments...);
    }
}
