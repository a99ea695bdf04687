// Limits of the transform's settings, and how it turns start frames of segments into times: for clients that check and
// show what they set. Needs no Windows.
#pragma once

#include <cstdint>

// Both are allowed.
inline constexpr double kLowestSensitivity = 0.001;
inline constexpr double kHighestSensitivity = 8.0;

struct SegmentTime {
    std::uint32_t hours = 0;
    std::uint32_t minutes = 0;
    std::uint32_t seconds = 0;
    std::uint32_t milliSeconds = 0;
};

// The largest value of each field.
inline constexpr SegmentTime kLastStartTime{999, 59, 59, 999};

// The last frame of kLastStartTime at 30 frames per second.
inline constexpr std::int64_t kLastStartFrame = 107'999'999;

// No field is above kLastStartTime's.
constexpr bool IsStartTime(const SegmentTime& time) {
    return time.hours <= kLastStartTime.hours && time.minutes <= kLastStartTime.minutes &&
           time.seconds <= kLastStartTime.seconds && time.milliSeconds <= kLastStartTime.milliSeconds;
}

constexpr std::int64_t MillisecondsOf(const SegmentTime& time) {
    return ((std::int64_t{time.hours} * 60 + time.minutes) * 60 + time.seconds) * 1000 + time.milliSeconds;
}

// Hours are not limited.
constexpr SegmentTime TimeOfMilliseconds(std::int64_t total) {
    return {static_cast<std::uint32_t>(total / 3'600'000), static_cast<std::uint32_t>(total / 60'000 % 60),
            static_cast<std::uint32_t>(total / 1000 % 60), static_cast<std::uint32_t>(total % 1000)};
}

// Rates of 0.1 frames per second and below count as 33.
constexpr double FramesPerMillisecond(double framesPerSecond) {
    const double rate = framesPerSecond / 1000.0;
    return rate > 0.0001 ? rate : 0.033;
}

// When a frame from 0 to kLastStartFrame begins; hours are not limited.
constexpr SegmentTime TimeOfFrame(std::int64_t frame, double framesPerSecond) {
    return TimeOfMilliseconds(
        static_cast<std::int64_t>(static_cast<double>(frame) / FramesPerMillisecond(framesPerSecond)));
}
