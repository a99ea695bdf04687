#pragma once

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
};
std::string SummaryText(const RunSummary& summary);

} // namespace host
