#include "engine/pixels/FrameRegion.h"

#include <algorithm>

namespace {

constexpr std::int32_t kPairBits = 16; // two pixels share their chroma in four bytes

struct Columns {
    std::int64_t left, right;
};

// The columns of a region before it is cut to the frame.
// Kept: the pixel pairs of 16-bit frames are counted here, so edges within one pair, whichever comes first, are that
// pair. Test: RegionsByExample.
Columns ColumnsOf(const FrameShape& shape, const Region& region) {
    if (shape.bits != kPairBits) {
        return {region.left, region.right};
    }
    const std::int64_t left = region.left & ~1;
    const std::int64_t width = (region.right - left) & ~std::int64_t{1};
    return {left, left + (width == 0 ? 2 : width)};
}

} // namespace

ProcessedArea WholeFrame(const FrameShape& shape) {
    return {0, shape.width, shape.height};
}

ProcessedArea PlaceRegion(const FrameShape& shape, const Region& region) {
    const Columns columns = ColumnsOf(shape, region);
    const std::int64_t left = std::max<std::int64_t>(columns.left, 0);
    const std::int64_t right = std::min<std::int64_t>(columns.right, shape.width);
    const std::int32_t top = std::max(region.top, 0);
    const std::int32_t bottom = std::min(region.bottom, shape.height);
    if (left >= right || top >= bottom) {
        return {};
    }
    const std::int64_t firstRow = shape.topDown ? top : shape.height - bottom;
    const std::int64_t offset = shape.stride * firstRow + (shape.bits * left >> 3);
    return {static_cast<std::int32_t>(offset), static_cast<std::int32_t>(right - left), bottom - top};
}
