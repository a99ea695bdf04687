// Start points of segments as clock fields, milliseconds and frames.
#pragma once

#include <cstdint>

struct SegmentTime {
    std::uint32_t hours = 0;
    std::uint32_t minutes = 0;
    std::uint32_t seconds = 0;
    std::uint32_t milliSeconds = 0;
};

// The last frame of 999:59:59.999 at 30 frames per second.
inline constexpr std::int64_t kLastStartFrame = 107'999'999;

// Hours up to 999, minutes and seconds up to 59, milliseconds up to 999.
bool IsStartTime(const SegmentTime& time);

// The time as milliseconds.
std::int64_t MillisecondsOf(const SegmentTime& time);

// When a frame begins at a frame rate; rates of 0.1 frames per second and below count as 33. Hours are not limited.
SegmentTime TimeOfFrame(std::int64_t frame, double framesPerSecond);
