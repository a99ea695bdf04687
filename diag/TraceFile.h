// Writing to the trace file.
#pragma once

#include <atomic>
#include <cstdint>

// Adds bytes at the end of the file at TracePath, which is made when it isn't there; a new or empty one first gets the
// UTF-8 byte-order mark. Failures drop the bytes.
//
// While `folderFallback` is 1, a file that another program has open is tried for a second, and a path that refuses a
// file becomes a folder with the file inside: TracePath is rewritten and `folderFallback` cleared.
void AppendToTraceFile(std::atomic<std::uint32_t>& folderFallback, const char* bytes, std::int32_t count);
