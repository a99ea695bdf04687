#include "ui/rules/EdgeCheck.h"

#include <algorithm>

namespace {

constexpr std::int32_t kUnknownSize = -1;
constexpr EdgeLimits kUnknownLimits{640, 480};
constexpr EdgeLimits kNoAreaLimits{1600, 1600};
constexpr std::int32_t kLargestSpin = 0x7FFF;

// 64 bits, since the neighbours may be any 32-bit numbers.
struct Range {
    std::int64_t minimum;
    std::int64_t maximum;
};

Range RangeOf(const PageRectangle& rectangle, Edge edge, const EdgeLimits& limits) {
    switch (edge) {
    case Edge::kLeft:
        return {0, std::int64_t{rectangle.right} - 1};
    case Edge::kTop:
        return {0, std::int64_t{rectangle.bottom} - 1};
    case Edge::kRight:
        return {std::int64_t{rectangle.left} + 1, limits.width};
    default:
        return {std::int64_t{rectangle.top} + 1, limits.height};
    }
}

} // namespace

// Kept: a size without area counts as itself here and as 1600 in SpinLimits. Test: Limits.
EdgeLimits EditLimits(std::int32_t inputWidth, std::int32_t inputHeight) {
    return {inputWidth == kUnknownSize ? kUnknownLimits.width : inputWidth,
            inputHeight == kUnknownSize ? kUnknownLimits.height : inputHeight};
}

EdgeLimits SpinLimits(std::int32_t inputWidth, std::int32_t inputHeight) {
    if (inputWidth == 0 || inputHeight == 0) {
        return kNoAreaLimits;
    }
    const EdgeLimits limits = EditLimits(inputWidth, inputHeight);
    return {std::min(limits.width, kLargestSpin), std::min(limits.height, kLargestSpin)};
}

std::int32_t& EdgeOf(PageRectangle& rectangle, Edge edge) {
    switch (edge) {
    case Edge::kLeft:
        return rectangle.left;
    case Edge::kTop:
        return rectangle.top;
    case Edge::kRight:
        return rectangle.right;
    default:
        return rectangle.bottom;
    }
}

bool CheckEdge(const PageRectangle& rectangle, Edge edge, const EdgeLimits& limits, std::int32_t value,
               std::int64_t* corrected) {
    const Range range = RangeOf(rectangle, edge, limits);
    if (value <= range.minimum) {
        *corrected = range.minimum; // also the same number again
        return false;
    }
    if (value > range.maximum) {
        *corrected = range.maximum;
        return false;
    }
    *corrected = 0;
    return value != 0;
}
