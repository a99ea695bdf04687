#include "host/picture/ChromaRows.h"

#include <algorithm>
#include <cstring>

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

void MixRows(std::uint8_t* out, const std::uint8_t* a, const std::uint8_t* b, int shareA, int count) {
    if (a == b) {
        std::memcpy(out, a, static_cast<std::size_t>(count));
        return;
    }
    const auto shareOfA = static_cast<std::uint16_t>(shareA);
    const auto shareOfB = static_cast<std::uint16_t>(8 - shareA);
    for (int i = 0; i < count; ++i) {
        out[i] = static_cast<std::uint8_t>((a[i] * shareOfA + b[i] * shareOfB + 4) >> 3);
    }
}

void WidenRow(std::uint8_t* out, const std::uint8_t* in, int width) {
    const int pairs = width / 2;
    const int last = (width + 1) / 2 - 1;
    for (int i = 0; i < pairs; ++i) {
        out[2 * i] = in[i];
        out[2 * i + 1] = static_cast<std::uint8_t>((in[i] + in[std::min(i + 1, last)] + 1) >> 1);
    }
    if (width & 1) {
        out[width - 1] = in[last];
    }
}

void NarrowRow(std::uint8_t* out, const std::uint8_t* in, int width) {
    for (int x = 0; x < width; x += 2) {
        const int left = in[std::max(x - 1, 0)];
        const int right = in[std::min(x + 1, width - 1)];
        out[x / 2] = static_cast<std::uint8_t>((left + 2 * in[x] + right + 2) >> 2);
    }
}

} // namespace host
