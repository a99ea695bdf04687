// Which sensitivity tells a clip's interlaced frames from its others.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace host {

struct FrameScore {
    std::uint32_t count = 0;     // combed positions
    std::uint32_t threshold = 0; // at sensitivity 1

    // The sensitivity from which on the frame is no longer called interlaced.
    double Ratio() const { return static_cast<double>(count) / (threshold != 0 ? threshold : 1); }
};

struct Separation {
    double sensitivity;  // 0.001 to 8, two digits
    double highestBelow; // ratios on either side of the gap
    double lowestAbove;
    std::uint64_t below; // frames on either side
    std::uint64_t above;
};

// The middle (on a scale of factors) of the widest gap between the frames' ratios; nothing when no gap is at least
// threefold, so that no sensitivity would keep a safe distance to both groups. Ratios below 0.005 are all taken as
// nothing: noise.
std::optional<Separation> FindSeparation(std::span<const FrameScore> scores);

// The closing lines of an analysis. `sensitivity` is the one that `interlaced` was counted with.
std::string DescribeScores(std::span<const FrameScore> scores, double sensitivity, std::uint64_t interlaced);

} // namespace host
