// Segments and the global pattern through the control interface.
#include "tests/support/Transform.h"

#include <tuple>

namespace {

class Segments : public TransformTest {
protected:
    void ExpectTime(LONG index, LONG hours, LONG minutes, LONG seconds, LONG milliSeconds) {
        LONG h = -1, m = -1, s = -1, ms = -1;
        EXPECT_HR(S_OK, Control()->GetSegmentStartTime(index, &h, &m, &s, &ms));
        EXPECT_EQ(std::tie(hours, minutes, seconds, milliSeconds), std::tie(h, m, s, ms));
    }

    // What a getter reports of one segment.
    template <typename Value>
    Value Of(LONG index, HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*getter)(LONG, Value*)) {
        Value value{};
        EXPECT_HR(S_OK, (Control()->*getter)(index, &value));
        return value;
    }

    void ExpectPattern(LONG index, LONG preamble, LONG ignore, LONG deinterlace, VARIANT_BOOL deintPreamble) {
        LONG p = -1, i = -1, d = -1;
        VARIANT_BOOL b = 99;
        EXPECT_HR(S_OK, Control()->GetSegmentPattern(index, &p, &i, &d, &b));
        EXPECT_EQ(std::tie(preamble, ignore, deinterlace, deintPreamble), std::tie(p, i, d, b));
    }
};

TEST_F(Segments, NewSegmentTakesGlobalCounts) {
    EXPECT_HR(S_OK, Control()->SetGlobalPattern(3, -4, 5, VARIANT_FALSE));
    EXPECT_HR(S_OK, Control()->AddSegment(7));
    ExpectPattern(0, 3, -4, 5, VARIANT_TRUE);
    EXPECT_EQ(MODE_NO_DEINTERLACE, Of(0, &INMFVDeinterlace::GetSegmentOperationMode));
    EXPECT_EQ(0, Of(0, &INMFVDeinterlace::GetSegmentStartFrame));
    EXPECT_EQ(0, Of(0, &INMFVDeinterlace::GetSegmentData));
    ExpectTime(0, 0, 0, 0, 0);
}

TEST_F(Segments, KeepWhatTheyAreGiven) {
    for (LONG i = 0; i < 3; ++i) {
        Control()->AddSegment(i);
        EXPECT_HR(S_OK, Control()->SetSegmentData(i, 100 + i));
    }
    EXPECT_HR(S_OK, Control()->AddSegment(1));
    EXPECT_EQ(4, Get(&INMFVDeinterlace::get_SegmentsCount));
    for (const auto& [index, data] : {std::pair{0, 100}, {1, 0}, {2, 101}, {3, 102}}) {
        EXPECT_EQ(data, Of(index, &INMFVDeinterlace::GetSegmentData)) << index;
    }
    EXPECT_HR(S_OK, Control()->SetSegmentPattern(2, 1, -2, 3, 42));
    EXPECT_HR(S_OK, Control()->SetSegmentOperationMode(2, static_cast<SEGMENT_OPERATION_MODE>(99)));
    ExpectPattern(2, 1, -2, 3, VARIANT_TRUE);
    EXPECT_EQ(99, static_cast<int>(Of(2, &INMFVDeinterlace::GetSegmentOperationMode)));
}

TEST_F(Segments, StartPointsAreIndependent) {
    Control()->AddSegment(0);
    Control()->put_FrameRate(25.0);
    EXPECT_HR(S_OK, Control()->SetSegmentStartFrame(0, 90000));
    ExpectTime(0, 1, 0, 0, 0);
    EXPECT_HR(S_OK, Control()->SetSegmentStartTime(0, 999, 59, 59, 999));
    ExpectTime(0, 999, 59, 59, 999);
    EXPECT_EQ(90000, Of(0, &INMFVDeinterlace::GetSegmentStartFrame));
}

TEST_F(Segments, RangesComeBeforeTheLookUp) {
    constexpr LONG kRefused[][4] = {{1000, 0, 0, 0}, {0, 60, 0, 0}, {0, 0, 60, 0}, {0, 0, 0, 1000},
                                    {-1, 0, 0, 0},   {0, -1, 0, 0}, {0, 0, -1, 0}, {0, 0, 0, -1}};
    Control()->AddSegment(0);
    Control()->SetSegmentStartTime(0, 1, 2, 3, 4);
    for (const auto& row : kRefused) {
        EXPECT_HR(E_INVALIDARG, Control()->SetSegmentStartTime(0, row[0], row[1], row[2], row[3]));
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
    EXPECT_EQ(0, Get(&INMFVDeinterlace::get_SegmentsCount));
}

TEST_F(Segments, TimeFormatIsFrameOrTime) {
    EXPECT_EQ(SEGMENT_TIME_FORMAT_TIME, Get(&INMFVDeinterlace::get_SegmentsTimeFormat));
    EXPECT_HR(S_OK, Control()->put_SegmentsTimeFormat(SEGMENT_TIME_FORMAT_FRAME));
    EXPECT_HR(E_INVALIDARG, Control()->put_SegmentsTimeFormat(static_cast<SEGMENT_TIME_FORMAT>(2)));
    EXPECT_HR(E_INVALIDARG, Control()->put_SegmentsTimeFormat(static_cast<SEGMENT_TIME_FORMAT>(-1)));
    EXPECT_EQ(SEGMENT_TIME_FORMAT_FRAME, Get(&INMFVDeinterlace::get_SegmentsTimeFormat));
}

} // namespace
