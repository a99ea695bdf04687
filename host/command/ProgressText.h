#pragma once

#include "host/formats/FrameSink.h"

#include <cstdint>
#include <optional>
#include <string>

namespace host {

// "120 of 500 frames, 85.3 fps, 4 s left"; without the total "120 frames, 85.3 fps".
std::string ProgressText(std::uint64_t frames, std::optional<std::uint64_t> total, double seconds);

// What a run did, for its closing lines.
struct RunSummary {
    std::uint64_t frames = 0;
    double seconds = 0;                            // of the whole run
    double transformSeconds = 0;                   // of these, within the transform
    std::uint64_t changed = 0;                     // frames whose picture came out different, byte for byte
    std::optional<std::uint64_t> calledInterlaced; // by the detector itself, in auto mode
    std::optional<std::uint64_t> deinterlaced;     // these and the frames that the five-second hold added
    std::uint64_t unexpected = 0;                  // frames that were changed although they were to pass
    OutputKind output = OutputKind::None;
    bool seekable = true;         // the output's header could be corrected
    Scan input = Scan::Unknown;   // what the input said of its lines
    Scan written = Scan::Unknown; // what the output says
    Scan truth = Scan::Unknown;   // what is true of it
    bool irregular = false;       // the input's frame rate varied
    std::string leftOut;          // LeftOut
};
std::string SummaryText(const RunSummary& summary);
// The same as one JSON object in one line.
std::string SummaryJson(const RunSummary& summary, const std::string& input, const std::string& output);

} // namespace host
