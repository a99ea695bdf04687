// Result codes as texts for trace lines and messages. Free of the platform's headers.
#pragma once

#include "diag/Trace.h"

#include <cstdint>

// The name of a known code, with a short explanation for the module family's own codes and for Winsock errors; a
// numeric form for every other code. Never null. A known code's text lives forever, a numeric form until the next one
// is made: numeric forms share two static buffers without a lock, so only trace lines should rely on them from several
// threads.
const char* ResultCodeLookup(std::uint32_t code);

// The same while tracing is on, else an empty text without any lookup.
inline const char* ResultCodeName(std::uint32_t code) {
    return TraceFlags & kTraceMaster ? ResultCodeLookup(code) : "";
}
