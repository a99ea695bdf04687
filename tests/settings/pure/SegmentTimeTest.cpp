#include "settings/public/NMFVDeinterlaceLimits.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

TEST(SegmentTime, Milliseconds) {
    EXPECT_EQ(3'723'004, MillisecondsOf({1, 2, 3, 4}));
    EXPECT_EQ(3'599'999'999, MillisecondsOf({999, 59, 59, 999})); // beyond 31 bits
}

TEST(SegmentTime, OfFrames) {
    constexpr struct {
        std::int64_t frame;
        double rate;
        SegmentTime time;
    } kCases[] = {
        {0, 25, {0, 0, 0, 0}},
        {90'000, 25, {1, 0, 0, 0}},
        {1, 30, {0, 0, 0, 33}},
        {33, 0.1, {0, 0, 1, 0}}, // too slow a rate: 33 instead
        {1, 0.101, {0, 0, 9, 900}},
        {kLastStartFrame, 30, {999, 59, 59, 966}},
        {kLastStartFrame, 0.125, {239'999, 59, 52, 0}}, // hours have no limit here
        {kLastStartFrame, 1e308, {0, 0, 0, 0}},
        {kLastStartFrame, std::numeric_limits<double>::infinity(), {0, 0, 0, 0}},
        {33, -25, {0, 0, 1, 0}},
        {3600 * 25 - 1, 25, {0, 59, 59, 960}},
    };
    for (const auto& c : kCases) {
        const SegmentTime got = TimeOfFrame(c.frame, c.rate);
        SCOPED_TRACE(testing::Message() << "frame " << c.frame << " at " << c.rate);
        EXPECT_EQ(c.time.hours, got.hours);
        EXPECT_EQ(c.time.minutes, got.minutes);
        EXPECT_EQ(c.time.seconds, got.seconds);
        EXPECT_EQ(c.time.milliSeconds, got.milliSeconds);
    }
}

} // namespace
