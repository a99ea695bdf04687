#include "engine/detector/AutoHold.h"

#include <algorithm>

std::int32_t HoldFrames(std::int64_t averageTimePerFrame) {
    if (averageTimePerFrame == 0) {
        return 150;
    }
    const std::int64_t framesPerSecond = 10'000'000 / averageTimePerFrame;
    return static_cast<std::int32_t>(std::max<std::int64_t>(5 * framesPerSecond, 1));
}

bool AdvanceHold(bool interlaced, std::int32_t holdFrames, std::int32_t& counter) {
    if (interlaced) {
        counter = holdFrames;
    } else if (counter < 0) {
        return false;
    } else {
        --counter;
    }
    return counter > 0;
}
