// Names made from the trace file's path.
#pragma once

#include <cstddef>
#include <cstdint>

// Part of the shared section's name. Modules whose TraceWriter has another layout use another number.
inline constexpr int kTraceLayoutVersion = 642;

// The name under which the modules of one process find their writer: process id, layout version and path, with slashes
// for backslashes. False when it doesn't fit.
bool MakeSectionName(std::uint32_t processId, const wchar_t* path, wchar_t* name, std::size_t size);

// Turns "folder\name.ext" in `path` into "folder\name.ext\name.ext". False, and nothing changed, when there is no name
// or no room. Another thread that reads the path meanwhile sees the old one or the new one.
bool MovePathInside(wchar_t* path, std::size_t size);
