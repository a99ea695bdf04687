// Writing to the trace file.
#pragma once

#include <atomic>
#include <cstdint>

// Appends bytes to the file at TracePath, which is created when missing; a new or empty one first gets the UTF-8
// byte-order mark. Failures drop the bytes.
//
// While `folderFallback` is 1, a file that another program has locked is retried for a second, and where no file can be
// created, the path becomes a folder with the file inside: TracePath is rewritten and `folderFallback` cleared.
void AppendToTraceFile(std::atomic<std::uint32_t>& folderFallback, const char* bytes, std::int32_t count);
