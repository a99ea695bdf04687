#include "host/formats/BobWatch.h"

#include <algorithm>

namespace host {

namespace {

constexpr int kEnough = 3;

// Luma of a row: the first sample and the distance to the next; none for colours.
struct LumaStep {
    int first;
    int step;
};

LumaStep LumaOf(Layout layout) {
    switch (layout) {
    case Layout::Yuy2:
        return {0, 2};
    case Layout::Uyvy:
        return {1, 2};
    case Layout::Rgb24:
    case Layout::Rgb32:
    case Layout::Iyu2:
        return {0, 0};
    default:
        return {0, 1};
    }
}

bool IsMean(const FrameView& frame, LumaStep luma, int y) {
    const std::uint8_t* const above = frame.Row(0, y - 1) + luma.first;
    const std::uint8_t* const row = frame.Row(0, y) + luma.first;
    const std::uint8_t* const below = frame.Row(0, y + 1) + luma.first;
    for (int x = 0; x < frame.width * luma.step; x += luma.step) {
        if (row[x] != (above[x] + below[x] + 1) / 2) {
            return false;
        }
    }
    return true;
}

} // namespace

CBobWatch::Field CBobWatch::MeanRows(const FrameView& frame) {
    const LumaStep luma = LumaOf(frame.layout);
    bool mean[2] = {luma.step != 0, luma.step != 0};
    for (int y = 1; y + 1 < frame.height && (mean[0] || mean[1]); ++y) {
        mean[y % 2] = mean[y % 2] && IsMean(frame, luma, y);
    }
    return mean[0] ? mean[1] ? Field::Both : Field::Even : mean[1] ? Field::Odd : Field::Neither;
}

bool CBobWatch::Look(const FrameView& frame) {
    if (m_ended) {
        return false;
    }
    const Field field = MeanRows(frame);
    const bool flat = field == Field::Both || m_before == Field::Both; // says nothing
    m_ended = field == Field::Neither || (!flat && field == m_before);
    m_pairs += !m_ended && !flat ? 1 : 0;
    m_before = field;
    return m_pairs >= kEnough && !m_ended;
}

} // namespace host
