// Where a segment starts, as clock fields and as a frame number: the limits of both and the way between them.
#pragma once

#include <cstdint>

struct StartTime {
    std::uint32_t hours = 0;
    std::uint32_t minutes = 0;
    std::uint32_t seconds = 0;
    std::uint32_t milliSeconds = 0;
};

// The largest value of each field.
inline constexpr StartTime kLastStartTime{999, 59, 59, 999};

// The last frame of kLastStartTime at 30 frames per second; the transform takes no later one.
inline constexpr std::int64_t kLastPageFrame = 107'999'999;

// Each field cut to its largest value.
StartTime ClampStartTime(const StartTime& time);

// Cut to kLastPageFrame. The largest number there is and negative ones stay as they are.
std::int64_t ClampStartFrame(std::int64_t frame);

// When a frame begins; from 0 to kLastStartTime. Rates that the transform doesn't convert by count as 33, as there.
StartTime TimeOfStartFrame(std::int64_t frame, double framesPerSecond);

// The frame nearest to a time, so that a frame that became a time becomes the same frame again (below 500 frames per
// second); from 0 to kLastPageFrame.
std::int64_t FrameOfStartTime(const StartTime& time, double framesPerSecond);
