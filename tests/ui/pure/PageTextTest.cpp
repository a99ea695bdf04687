// Texts, limits and conversions of the property pages.
#include "ui/rules/EdgeCheck.h"
#include "ui/rules/SegmentText.h"
#include "ui/rules/SensitivityText.h"

#include <gtest/gtest.h>

#include <limits>
#include <locale.h>
#include <string>

namespace {

constexpr std::int64_t kMaxFrame = std::numeric_limits<std::int64_t>::max();

TEST(PageText, ListEntries) {
    constexpr struct {
        std::int64_t frame;
        std::int32_t operation;
        const char *asTime, *asFrame;
    } kCases[] = {
        {77, 2, " 1 : 2 : 3 . 4 ( P<5:6:-1>)", " 77 ( P<5:6:-1>)"},
        {-1, 1, " 1 : 2 : 3 . 4 ( D )", " -1  ( D )"},
        {kMaxFrame, 0, " 1 : 2 : 3 . 4 ( N )", " 9223372036854775807  ( N )"},
        {0, 3, " 1 : 2 : 3 . 4 ( N )", " 0  ( N )"},
    };
    for (const auto& c : kCases) {
        PageSegment segment;
        segment.startTime = {1, 2, 3, 4};
        segment.startFrame = c.frame;
        segment.operation = c.operation;
        segment.pattern = {true, 5, 6, 4294967295};
        char text[kSegmentTextSize];
        FormatSegment(segment, true, text);
        EXPECT_STREQ(c.asTime, text);
        FormatSegment(segment, false, text);
        EXPECT_STREQ(c.asFrame, text);
    }
}

TEST(PageText, Sensitivities) {
    const std::pair<const char*, double> kAccepted[] = {{"8", 8},  {"0.001", 0.001}, {".5", 0.5},
                                                        {"3.", 3}, {"1.2.9", 1.2},   {"00000000000000000002", 2}};
    for (const auto& [text, expected] : kAccepted) {
        double value = 0;
        EXPECT_TRUE(ParseSensitivity(text, &value)) << text;
        EXPECT_DOUBLE_EQ(expected, value);
    }
    const std::string tooLong(5000, '9'); // beyond every double
    double value = 7;
    for (const char* const text : {"8.0001", "0.0009999", "", ".", "1e-3", "-1", " 1", "1,5", tooLong.c_str()}) {
        EXPECT_FALSE(ParseSensitivity(text, &value)) << text;
    }
    EXPECT_EQ(7, value);

    SensitivityText text;
    for (const char* const name : {"C", "German", "de_DE.UTF-8"}) {
        setlocale(LC_NUMERIC, name);
        FormatSensitivity(8.0, text);
        EXPECT_STREQ("8.000", text);
        EXPECT_TRUE(ParseSensitivity("0.5", &value) && value == 0.5);
    }
    setlocale(LC_NUMERIC, "C");
    FormatSensitivity(-1e300, text);
    EXPECT_EQ(std::size_t{kSensitivityTextLength}, std::string(text).size());
}

std::string Clock(const SegmentTime& time) {
    char text[64];
    std::snprintf(text, sizeof(text), "%u:%u:%u.%u", time.hours, time.minutes, time.seconds, time.milliSeconds);
    return text;
}

TEST(PageText, FramesAndTimesAgree) {
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    constexpr struct {
        std::int64_t frame;
        double rate;
        const char* time;
        std::int64_t back; // the frame of that time
    } kCases[] = {
        {2, 60, "0:0:0.33", 2},
        {33, std::numeric_limits<double>::quiet_NaN(), "0:0:1.0", 33},
        {107'999'999, 30, "999:59:59.966", 107'999'999},
        {-1, kInfinite, "0:0:0.0", 0},
        {kMaxFrame, 30, "999:59:59.999", 107'999'999},
        {kMaxFrame, 1e-9, "999:59:59.999", 107'999'999},
    };
    for (const auto& c : kCases) {
        const SegmentTime time = TimeOfStartFrame(c.frame, c.rate);
        EXPECT_EQ(c.time, Clock(time)) << c.frame << " at " << c.rate;
        EXPECT_EQ(c.back, FrameOfStartTime(time, c.rate)) << c.frame << " at " << c.rate;
    }
    EXPECT_EQ(kLastStartFrame, FrameOfStartTime(kLastStartTime, kInfinite));
}

TEST(PageText, Limits) {
    constexpr std::int32_t kCases[][6] = {
        // input size, spin limits, edit limits
        {720, 576, 720, 576, 720, 576}, {-1, -1, 640, 480, 640, 480}, {-1, 576, 640, 576, 640, 576},
        {0, 576, 1600, 1600, 0, 576},   {720, 0, 1600, 1600, 720, 0}, {40000, 70000, 32767, 32767, 40000, 70000},
    };
    for (const auto& c : kCases) {
        const EdgeLimits spin = SpinLimits(c[0], c[1]);
        const EdgeLimits edit = EditLimits(c[0], c[1]);
        EXPECT_EQ(std::tie(c[2], c[3], c[4], c[5]), std::tie(spin.width, spin.height, edit.width, edit.height));
    }
}

TEST(PageText, Edges) {
    constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
    constexpr PageRectangle kPlain{10, 20, 100, 200};
    constexpr struct {
        PageRectangle rectangle;
        Edge edge;
        std::int32_t typed;
        bool stands;
        std::int64_t corrected;
    } kCases[] = {
        {kPlain, Edge::kLeft, 99, true, 0},
        {kPlain, Edge::kLeft, 100, false, 99},
        {kPlain, Edge::kLeft, 0, false, 0},
        {kPlain, Edge::kLeft, -1, false, 0}, // 4294967295 as typed
        {kPlain, Edge::kTop, 199, true, 0},
        {kPlain, Edge::kTop, 200, false, 199},
        {kPlain, Edge::kRight, 0, false, 11},
        {kPlain, Edge::kRight, 11, false, 11}, // rewritten all the same
        {kPlain, Edge::kRight, 640, true, 0},
        {kPlain, Edge::kRight, 641, false, 640},
        {kPlain, Edge::kBottom, 21, false, 21},
        {kPlain, Edge::kBottom, 22, true, 0},
        {kPlain, Edge::kBottom, 5000, false, 480},
        {{-5, 0, 9, 9}, Edge::kRight, 0, false, 0}, // a negative minimum
        {{-5, 0, 9, 9}, Edge::kRight, 1, true, 0},
        {{0, 0, 0, 0}, Edge::kLeft, 5, false, -1},
        {{kHighest, 0, kLowest, 0}, Edge::kLeft, 1, false, -2147483649},
        {{kHighest, 0, kLowest, 0}, Edge::kRight, 1, false, 2147483648},
    };
    for (const auto& c : kCases) {
        std::int64_t corrected = 0;
        EXPECT_EQ(c.stands, CheckEdge(c.rectangle, c.edge, {640, 480}, c.typed, &corrected)) << &c - kCases;
        EXPECT_TRUE(c.stands || c.corrected == corrected) << &c - kCases << " gave " << corrected;
    }
}

} // namespace
