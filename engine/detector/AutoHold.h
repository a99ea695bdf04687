// The hold that keeps deinterlacing on for about five seconds after a frame was called interlaced.
#pragma once

#include <cstdint>

// Frames that one positive detection lasts, itself included: five seconds' worth, at least 1; 150 when the time per
// frame (100 ns units) is 0.
std::int32_t HoldFrames(std::int64_t averageTimePerFrame);

// Moves the counter on by one frame and says whether that frame is deinterlaced. The counter is the frames still owed;
// it never goes below -1.
bool AdvanceHold(bool interlaced, std::int32_t holdFrames, std::int32_t& counter);

// True when the next frame is deinterlaced whatever the detector will say of it: at least one more frame is owed after
// it. The detector can then only wind the hold up again.
constexpr bool HoldDecides(std::int32_t counter) {
    return counter > 1;
}
