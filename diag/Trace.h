// Diagnostic trace lines.
#pragma once

#include <cstdint>

// What a trace call does, in bits; read on every call, never changed by the program. With bit 0x08 clear, as shipped,
// a call costs one test.
extern std::uint32_t TraceFlags;

inline constexpr std::uint32_t kTraceMaster = 0x08;   // nothing is formatted or written while clear
inline constexpr std::uint32_t kTraceDebugger = 0x40; // lines go to the debugger output

// Formats and writes one text; Trace's other half, not to be called on its own.
void WriteTrace(const char* format, ...);

// Traces a printf-style text of 8-bit characters. A text that begins with "\n" starts a new line. Never fails, from any
// thread.
template <typename... Arguments>
inline void Trace(const char* format, Arguments... arguments) {
    if (TraceFlags & kTraceMaster) {
        WriteTrace(format, arguments...);
    }
}
