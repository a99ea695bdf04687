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

} // namespace host
