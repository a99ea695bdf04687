// The rows of the one table that all benchmark programs print.
#pragma once

#include "bench/Frames.h"
#include "bench/Turns.h"

// | where | what | frame | flow | GB/s of frame | times memcpy | wanted |. `wanted` is the ratio asked for, 0 when none
// is.
void PrintRow(const char* where, const std::string& what, const std::string& frame, const char* flow,
              double gigabytesPerSecond, const Spread& ratio, double wanted);

// The same for a result of TakeTurns on `frames`.
void PrintResult(const char* where, const FrameSet& frames, Flow flow, const Result& result, double wanted);

// A row of what has no memcpy beside it.
void PrintRate(const char* where, const std::string& what, const std::string& frame, const char* flow,
               const Spread& gigabytesPerSecond);
