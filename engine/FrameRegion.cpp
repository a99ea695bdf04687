#include "engine/FrameRegion.h"

#include <algorithm>

namespace {

constexpr std::int32_t kPairBits = 16; // two pixels share their chroma in four bytes

Region CutToFrame(const FrameShape& shape, const Region& region) {
    return {std::max(region.left, 0), std::max(region.top, 0), std::min(region.right, shape.width),
            std::min(region.bottom, shape.height)};
}

bool IsEmpty(const Region& region) {
    return region.left >= region.right || region.top >= region.bottom;
}

} // namespace

ProcessedArea WholeFrame(const FrameShape& shape) {
    return {0, shape.width, shape.height};
}

ProcessedArea PlaceRegion(const FrameShape& shape, const Region& region) {
    Region inside = CutToFrame(shape, region);
    if (IsEmpty(region) || IsEmpty(inside)) {
        return {};
    }
    if (shape.bits == kPairBits) {
        inside.left &= ~1;
    }
    std::int32_t width = inside.right - inside.left;
    if (shape.bits == kPairBits) {
        width = std::max(width & ~1, 2);
    }
    const std::int32_t rows = inside.bottom - inside.top;
    const std::int32_t firstRow = shape.topDown ? inside.top : shape.height - inside.bottom;
    // Bits of one row fit 32 bits unsigned in a processable frame, so the shift takes them unsigned.
    const std::uint32_t leftBytes = static_cast<std::uint32_t>(shape.bits) * static_cast<std::uint32_t>(inside.left);
    return {shape.stride * firstRow + static_cast<std::int32_t>(leftBytes >> 3), width, rows};
}
