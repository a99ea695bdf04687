#include "ui/rules/StartPoint.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr std::int64_t Milliseconds(const StartTime& time) {
    return ((std::int64_t{time.hours} * 60 + time.minutes) * 60 + time.seconds) * 1000 + time.milliSeconds;
}

double FramesPerMillisecond(double framesPerSecond) {
    const double rate = framesPerSecond / 1000.0;
    return rate > 0.0001 ? rate : 0.033;
}

// From 0 to `last`, whatever came out of the division.
std::int64_t Within(double value, std::int64_t last) {
    if (!(value > 0)) {
        return 0;
    }
    return value < static_cast<double>(last) ? static_cast<std::int64_t>(value) : last;
}

} // namespace

StartTime ClampStartTime(const StartTime& time) {
    return {std::min(time.hours, kLastStartTime.hours), std::min(time.minutes, kLastStartTime.minutes),
            std::min(time.seconds, kLastStartTime.seconds), std::min(time.milliSeconds, kLastStartTime.milliSeconds)};
}

// Kept: the largest number, which every overlong text becomes, and negative numbers pass; the transform refuses them
// and the segment then starts at frame 0. Test: StartPointsAreClamped.
std::int64_t ClampStartFrame(std::int64_t frame) {
    if (frame == std::numeric_limits<std::int64_t>::max()) {
        return frame;
    }
    return std::min(frame, kLastPageFrame);
}

StartTime TimeOfStartFrame(std::int64_t frame, double framesPerSecond) {
    const double exact = static_cast<double>(frame) / FramesPerMillisecond(framesPerSecond);
    const std::int64_t total = Within(exact, Milliseconds(kLastStartTime));
    return {static_cast<std::uint32_t>(total / 3'600'000), static_cast<std::uint32_t>(total / 60'000 % 60),
            static_cast<std::uint32_t>(total / 1000 % 60), static_cast<std::uint32_t>(total % 1000)};
}

std::int64_t FrameOfStartTime(const StartTime& time, double framesPerSecond) {
    const double exact = static_cast<double>(Milliseconds(time)) * FramesPerMillisecond(framesPerSecond);
    return Within(std::round(exact), kLastPageFrame);
}
