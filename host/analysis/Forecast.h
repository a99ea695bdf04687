// What the transform's automatic mode would do with a clip, by its own detector and hold.
#pragma once

#include "host/analysis/FieldOrder.h"
#include "host/analysis/Sensitivity.h"

#include <cstdint>
#include <span>

namespace host {

struct ClipScores {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t holdFrames = 0; // HoldFrames() of the clip's rate
    std::span<const FrameScore> frames;
};

struct Forecast {
    double sensitivity = 1;
    std::uint64_t called = 0;       // frames that the detector calls interlaced
    std::uint64_t deinterlaced = 0; // these and the hold's
    std::uint64_t missed = 0;       // frames with combs that pass unchanged
    std::uint64_t mistaken = 0;     // progressive frames that are called interlaced
};

// What becomes of one frame after the other.
class CAutomatic {
public:
    CAutomatic(const ClipScores& scores, double sensitivity);

    struct Step {
        bool called;
        bool deinterlaced;
    };
    Step Next(std::uint32_t count);

private:
    std::uint32_t m_threshold;
    std::int32_t m_holdFrames;
    std::int32_t m_counter = 0;
};

// `fields` has one item for each frame.
Forecast ForecastAt(const ClipScores& scores, std::span<const Fields> fields, double sensitivity);

// At the sensitivity that leaves the fewest combs and then mistakes the fewest frames: the normal one, where it does
// so with room to either side, else the middle of those that do.
Forecast BestForecast(const ClipScores& scores, std::span<const Fields> fields);

} // namespace host
