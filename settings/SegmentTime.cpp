#include "settings/SegmentTime.h"

bool IsStartTime(const SegmentTime& time) {
    return time.hours <= 999 && time.minutes <= 59 && time.seconds <= 59 && time.milliSeconds <= 999;
}

std::int64_t MillisecondsOf(const SegmentTime& time) {
    const std::uint32_t seconds = (time.hours * 60 + time.minutes) * 60 + time.seconds;
    return std::int64_t{seconds} * 1000 + time.milliSeconds;
}

SegmentTime TimeOfFrame(std::int64_t frame, double framesPerSecond) {
    double framesPerMillisecond = framesPerSecond / 1000.0;
    if (framesPerMillisecond <= 0.0001) {
        framesPerMillisecond = 0.033;
    }
    const auto total = static_cast<std::int64_t>(static_cast<double>(frame) / framesPerMillisecond);
    return {static_cast<std::uint32_t>(total / 3'600'000), static_cast<std::uint32_t>(total / 60'000 % 60),
            static_cast<std::uint32_t>(total / 1000 % 60), static_cast<std::uint32_t>(total % 1000)};
}
