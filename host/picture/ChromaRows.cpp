#include "host/picture/ChromaRows.h"

#include <algorithm>

namespace host {

namespace {

// A row outside the picture gives way to the nearest one inside.
int Inside(int row, int near, int chromaRows) {
    return row < 0 || row >= chromaRows ? near : row;
}

} // namespace

ChromaTap TapFor420(int lumaRow, int chromaRows, bool fieldWise) {
    const bool second = fieldWise ? (lumaRow >> 1 & 1) != 0 : (lumaRow & 1) != 0;
    if (!fieldWise) {
        const int near = std::min(lumaRow / 2, chromaRows - 1);
        return {near, Inside(near + (second ? 1 : -1), near, chromaRows), 6, 2};
    }
    const int field = lumaRow & 1;
    int near = (lumaRow / 4) * 2 + field;
    if (near >= chromaRows) { // an odd number of chroma rows: the bottom field has one less
        near = std::max(near - 2, 0);
        return {near, near, 8, 0};
    }
    const int far = Inside(near + (second ? 2 : -2), near, chromaRows);
    const bool close = second == (field != 0);
    return {near, far, close ? 7 : 5, close ? 1 : 3};
}

ChromaSum SumFor420(int chromaRow, int lumaRows, bool fieldWise, bool undo) {
    enum { kFrame, kTop, kBottom };
    static constexpr int kShares[][2][4] = {
        {{0, 8, 8, 0}, {-4, 12, 12, -4}}, {{0, 12, 4, 0}, {-3, 15, 7, -3}}, {{0, 4, 12, 0}, {-3, 7, 15, -3}}};
    const int field = chromaRow & 1;
    const int kind = !fieldWise ? kFrame : field == 0 ? kTop : kBottom;
    const int step = fieldWise ? 2 : 1;
    const int first = fieldWise ? std::min(field, lumaRows - 1) : 0;
    const int last = lumaRows - 1 - (lumaRows - 1 - first) % step;
    const int middle = fieldWise ? chromaRow / 2 * 4 + field : chromaRow * 2; // the upper one of the nearest two rows
    ChromaSum sum{};
    for (int i = 0; i < 4; ++i) {
        sum.row[i] = std::clamp(middle + (i - 1) * step, first, last);
        sum.share[i] = kShares[kind][undo ? 1 : 0][i];
    }
    return sum;
}

} // namespace host
