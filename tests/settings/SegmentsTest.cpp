// Segments and the global pattern through the control interface.
#include "tests/support/Transform.h"

namespace {

class Segments : public TransformTest {
protected:
    void ExpectTime(LONG index, LONG hours, LONG minutes, LONG seconds, LONG milliSeconds) {
        LONG h = -1, m = -1, s = -1, ms = -1;
        EXPECT_HR(S_OK, Control()->GetSegmentStartTime(index, &h, &m, &s, &ms));
        EXPECT_EQ(hours, h);
        EXPECT_EQ(minutes, m);
        EXPECT_EQ(seconds, s);
        EXPECT_EQ(milliSeconds, ms);
    }

    LONG Count() {
        LONG count = -1;
        EXPECT_HR(S_OK, Control()->get_SegmentsCount(&count));
        return count;
    }
};

TEST_F(Segments, NewSegmentTakesGlobalCounts) {
    EXPECT_HR(S_OK, Control()->SetGlobalPattern(3, -4, 5, VARIANT_FALSE));
    EXPECT_HR(S_OK, Control()->AddSegment(7));
    LONG preamble = 0, ignore = 0, deinterlace = 0;
    VARIANT_BOOL deintPreamble = 0;
    EXPECT_HR(S_OK, Control()->GetSegmentPattern(0, &preamble, &ignore, &deinterlace, &deintPreamble));
    EXPECT_EQ(3, preamble);
    EXPECT_EQ(-4, ignore);
    EXPECT_EQ(5, deinterlace);
    EXPECT_EQ(VARIANT_TRUE, deintPreamble);
    SEGMENT_OPERATION_MODE mode = MODE_DEINTERLACE_ALL;
    EXPECT_HR(S_OK, Control()->GetSegmentOperationMode(0, &mode));
    EXPECT_EQ(MODE_NO_DEINTERLACE, mode);
    hyper frame = -1;
    EXPECT_HR(S_OK, Control()->GetSegmentStartFrame(0, &frame));
    EXPECT_EQ(0, frame);
    LONG data = -1;
    EXPECT_HR(S_OK, Control()->GetSegmentData(0, &data));
    EXPECT_EQ(0, data);
    ExpectTime(0, 0, 0, 0, 0);
}

TEST_F(Segments, KeepWhatTheyAreGiven) {
    for (LONG i = 0; i < 3; ++i) {
        Control()->AddSegment(i);
        EXPECT_HR(S_OK, Control()->SetSegmentData(i, 100 + i));
    }
    EXPECT_HR(S_OK, Control()->AddSegment(1));
    EXPECT_EQ(4, Count());
    for (const auto& [index, data] : {std::pair{0, 100}, {1, 0}, {2, 101}, {3, 102}}) {
        LONG read = -1;
        EXPECT_HR(S_OK, Control()->GetSegmentData(index, &read));
        EXPECT_EQ(data, read) << index;
    }
    EXPECT_HR(S_OK, Control()->SetSegmentPattern(2, 1, -2, 3, 42));
    EXPECT_HR(S_OK, Control()->SetSegmentOperationMode(2, static_cast<SEGMENT_OPERATION_MODE>(99)));
    LONG counts[3] = {};
    VARIANT_BOOL deintPreamble = 0;
    EXPECT_HR(S_OK, Control()->GetSegmentPattern(2, &counts[0], &counts[1], &counts[2], &deintPreamble));
    EXPECT_EQ(-2, counts[1]);
    EXPECT_EQ(VARIANT_TRUE, deintPreamble);
    SEGMENT_OPERATION_MODE mode{};
    EXPECT_HR(S_OK, Control()->GetSegmentOperationMode(2, &mode));
    EXPECT_EQ(99, static_cast<int>(mode));
}

TEST_F(Segments, StartPointsAreIndependent) {
    Control()->AddSegment(0);
    Control()->put_FrameRate(25.0);
    EXPECT_HR(S_OK, Control()->SetSegmentStartFrame(0, 90000));
    ExpectTime(0, 1, 0, 0, 0);
    EXPECT_HR(S_OK, Control()->SetSegmentStartTime(0, 999, 59, 59, 999));
    ExpectTime(0, 999, 59, 59, 999);
    hyper frame = 0;
    EXPECT_HR(S_OK, Control()->GetSegmentStartFrame(0, &frame));
    EXPECT_EQ(90000, frame);
}

TEST_F(Segments, RangesComeBeforeTheLookUp) {
    constexpr struct {
        LONG hours, minutes, seconds, milliSeconds;
    } kRefused[] = {{1000, 0, 0, 0}, {0, 60, 0, 0}, {0, 0, 60, 0}, {0, 0, 0, 1000}, {-1, 0, 0, 0}, {0, -1, 0, 0}};
    Control()->AddSegment(0);
    Control()->SetSegmentStartTime(0, 1, 2, 3, 4);
    for (const auto& row : kRefused) {
        EXPECT_HR(E_INVALIDARG,
                  Control()->SetSegmentStartTime(0, row.hours, row.minutes, row.seconds, row.milliSeconds));
    }
    for (const INT64 frame : {INT64{108'000'000}, INT64{-1}, INT64_MIN, INT64_MAX}) {
        EXPECT_HR(E_INVALIDARG, Control()->SetSegmentStartFrame(0, frame));
    }
    ExpectTime(0, 1, 2, 3, 4);
    EXPECT_HR(S_OK, Control()->SetSegmentStartFrame(0, 107'999'999));
    ExpectTime(0, 999, 59, 59, 966);
}

TEST_F(Segments, UnknownIndexAndNullPointers) {
    Control()->AddSegment(0);
    LONG value = 0;
    hyper frame = 0;
    SEGMENT_OPERATION_MODE mode{};
    VARIANT_BOOL flag = 0;
    for (const LONG index : {1l, -1l, LONG_MAX, LONG_MIN}) {
        EXPECT_HR(E_INVALIDARG, Control()->RemoveSegment(index));
        EXPECT_HR(E_INVALIDARG, Control()->SetSegmentData(index, 1));
        EXPECT_HR(E_INVALIDARG, Control()->GetSegmentData(index, &value));
        EXPECT_HR(E_INVALIDARG, Control()->GetSegmentStartTime(index, &value, &value, &value, &value));
        EXPECT_HR(E_INVALIDARG, Control()->SetSegmentStartTime(index, 1, 1, 1, 1));
        EXPECT_HR(E_INVALIDARG, Control()->GetSegmentStartFrame(index, &frame));
        EXPECT_HR(E_INVALIDARG, Control()->SetSegmentStartFrame(index, 1));
        EXPECT_HR(E_INVALIDARG, Control()->GetSegmentOperationMode(index, &mode));
        EXPECT_HR(E_INVALIDARG, Control()->SetSegmentOperationMode(index, MODE_DEINTERLACE_ALL));
        EXPECT_HR(E_INVALIDARG, Control()->GetSegmentPattern(index, &value, &value, &value, &flag));
        EXPECT_HR(E_INVALIDARG, Control()->SetSegmentPattern(index, 1, 1, 1, VARIANT_TRUE));
    }
    EXPECT_HR(E_POINTER, Control()->GetSegmentData(0, nullptr));
    EXPECT_HR(E_POINTER, Control()->GetSegmentStartFrame(0, nullptr));
    EXPECT_HR(E_POINTER, Control()->GetSegmentOperationMode(0, nullptr));
    EXPECT_HR(E_POINTER, Control()->GetSegmentStartTime(0, nullptr, nullptr, nullptr, nullptr));
    EXPECT_HR(E_POINTER, Control()->GetSegmentPattern(0, nullptr, nullptr, nullptr, nullptr));
    EXPECT_HR(E_POINTER, Control()->GetGlobalPattern(nullptr, nullptr, nullptr, nullptr));
    EXPECT_HR(E_POINTER, Control()->get_SegmentsCount(nullptr));
    EXPECT_HR(E_POINTER, Control()->get_SegmentsTimeFormat(nullptr));
    EXPECT_HR(S_OK, Control()->GetSegmentStartTime(0, nullptr, &value, nullptr, nullptr));
    EXPECT_HR(S_OK, Control()->RemoveSegment(0));
    EXPECT_EQ(0, Count());
}

TEST_F(Segments, TimeFormatIsFrameOrTime) {
    SEGMENT_TIME_FORMAT format{};
    EXPECT_HR(S_OK, Control()->get_SegmentsTimeFormat(&format));
    EXPECT_EQ(SEGMENT_TIME_FORMAT_TIME, format);
    EXPECT_HR(S_OK, Control()->put_SegmentsTimeFormat(SEGMENT_TIME_FORMAT_FRAME));
    EXPECT_HR(E_INVALIDARG, Control()->put_SegmentsTimeFormat(static_cast<SEGMENT_TIME_FORMAT>(2)));
    EXPECT_HR(E_INVALIDARG, Control()->put_SegmentsTimeFormat(static_cast<SEGMENT_TIME_FORMAT>(-1)));
    Control()->get_SegmentsTimeFormat(&format);
    EXPECT_EQ(SEGMENT_TIME_FORMAT_FRAME, format);
}

} // namespace
