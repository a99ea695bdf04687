// What to do with a clip: the line to type, and why.
#pragma once

#include "host/analysis/CommandLine.h"
#include "host/analysis/Forecast.h"
#include "host/formats/FrameSource.h"

#include <cstdint>
#include <string>

namespace host {

// All that an analysis found.
struct Analysis {
    ClipScores scores;
    FieldOrder order;
    Scan header = Scan::Unknown;
    Pixels feed = Pixels::Yuy2;
    Forecast given; // at the sensitivity that was asked for, or the normal one
    Forecast best;
};

// Takes the scores' memory as it is; `readings` has one item for each of them.
Analysis Conclude(const ClipScores& scores, std::span<const FieldReading> readings, Scan header, Pixels feed,
                  double sensitivity);

struct Advice {
    std::string reason;  // one or more whole sentences in one line
    std::string command; // one complete command line
};
Advice Advise(const Analysis& analysis, const Command& command);

// What the input's header says of its lines: "interlaced, top field first", "nothing".
std::string_view HeaderWord(Scan header);

// For the end of a run in automatic mode that called none of `frames` frames interlaced though the input's header says
// that it is: "the input says interlaced, 0 of 100 frames were called so; try ..." with the whole command line. Empty
// in any other case, and when the run has `--mode`, as it then does what it was told.
std::string SilentDetectorAdvice(const Command& command, Scan header, std::uint64_t frames, std::uint64_t called);

} // namespace host
