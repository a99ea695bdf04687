#include "ui/rules/StartPoint.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// From 0 to `last`, whatever came out of the division.
std::int64_t Within(double value, std::int64_t last) {
    if (!(value > 0)) {
        return 0;
    }
    return value < static_cast<double>(last) ? static_cast<std::int64_t>(value) : last;
}

} // namespace

SegmentTime ClampStartTime(const SegmentTime& time) {
    return {std::min(time.hours, kLastStartTime.hours), std::min(time.minutes, kLastStartTime.minutes),
            std::min(time.seconds, kLastStartTime.seconds), std::min(time.milliSeconds, kLastStartTime.milliSeconds)};
}

// Kept: the largest number, which every overlong text becomes, and negative numbers pass; the transform refuses them
// and the segment then starts at frame 0. Test: StartPointsAreClamped.
std::int64_t ClampStartFrame(std::int64_t frame) {
    if (frame == std::numeric_limits<std::int64_t>::max()) {
        return frame;
    }
    return std::min(frame, kLastStartFrame);
}

SegmentTime TimeOfStartFrame(std::int64_t frame, double framesPerSecond) {
    const double exact = static_cast<double>(frame) / FramesPerMillisecond(framesPerSecond);
    return TimeOfMilliseconds(Within(exact, MillisecondsOf(kLastStartTime)));
}

std::int64_t FrameOfStartTime(const SegmentTime& time, double framesPerSecond) {
    const double exact = static_cast<double>(MillisecondsOf(time)) * FramesPerMillisecond(framesPerSecond);
    return Within(std::round(exact), kLastStartFrame);
}
