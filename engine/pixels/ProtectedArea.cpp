#include "engine/pixels/ProtectedArea.h"

#include <algorithm>
#include <cstring>

namespace {

// Rows to copy: where the first begins, how long each is, how many there are. Positions may lie outside the frame.
struct RowWalk {
    std::int64_t start = 0; // bytes
    std::int64_t length = 0;
    std::int64_t rows = 0;
};

RowWalk WalkPacked422(const FrameShape& shape, const Region& r) {
    const std::int64_t rows = std::int64_t{r.bottom} - r.top;
    const std::int64_t half = rows / 2;
    return {(std::int64_t{r.top} * shape.stride + r.left) * 2, (std::int64_t{r.right} - r.left) * 2, rows - half};
}

RowWalk WalkOtherDepths(const FrameShape& shape, const Region& r, std::int32_t protectedTop) {
    const std::int64_t firstRow = shape.topDown ? protectedTop : std::int64_t{shape.height} - r.bottom;
    const std::int64_t leftBytes = (std::int64_t{r.left} * shape.bits) >> 3;
    const std::int64_t width = std::int64_t{r.right} - r.left;
    return {leftBytes + firstRow * shape.stride, (width * shape.bits) >> 3, r.bottom - firstRow};
}

// Leaves out the rows that begin after the frame, and those before it that the next row covers as well as far as the
// frame is concerned; so the walk is at most one row longer than the frame is high.
void CutToFrame(const FrameShape& shape, RowWalk& walk) {
    if (walk.start < 0) {
        const std::int64_t covered = std::min(walk.rows - 1, -walk.start / shape.stride);
        walk.start += covered * shape.stride;
        walk.rows -= covered;
    }
    const std::int64_t reach = (shape.Bytes() - walk.start + shape.stride - 1) / shape.stride;
    walk.rows = std::min(walk.rows, reach);
    if (walk.length >= shape.stride && walk.rows > 0) { // rows that touch or overlap are one block
        walk.length += (walk.rows - 1) * shape.stride;
        walk.rows = 1;
    }
}

void CopyRow(std::uint8_t* output, const std::uint8_t* saved, std::int64_t frameBytes, std::int64_t start,
             std::int64_t length) {
    const std::int64_t from = std::max<std::int64_t>(start, 0);
    const std::int64_t to = std::min(start + length, frameBytes);
    if (from < to) {
        std::memcpy(output + from, saved + from, static_cast<std::size_t>(to - from));
    }
}

} // namespace

void RestoreProtectedArea(std::uint8_t* output, const std::uint8_t* saved, const FrameShape& shape, bool packed422,
                          std::int32_t protectedTop, Region& r) {
    if (!output || !saved || !shape.IsProcessable() || r.left > r.right || r.top > r.bottom) {
        return;
    }
    r.right = std::min(r.right, shape.width);
    r.bottom = std::min(r.bottom, shape.height);

    RowWalk walk = packed422 ? WalkPacked422(shape, r) : WalkOtherDepths(shape, r, protectedTop);
    if (walk.length <= 0 || walk.rows <= 0) {
        return;
    }
    CutToFrame(shape, walk);
    for (std::int64_t i = 0; i < walk.rows; ++i, walk.start += shape.stride) {
        CopyRow(output, saved, shape.Bytes(), walk.start, walk.length);
    }
}
