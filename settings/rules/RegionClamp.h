// How the edges of the region of interest and of the protected area are limited before they are stored. Each rule
// compares as its property always has; the differences between them are part of the contract.
#pragma once

#include <algorithm>
#include <cstdint>

constexpr std::int32_t EdgeBefore(std::uint32_t edge) {
    return static_cast<std::int32_t>(edge - 1u);
}
constexpr std::int32_t EdgeAfter(std::uint32_t edge) {
    return static_cast<std::int32_t>(edge + 1u);
}

constexpr std::int32_t ClampRoiLeft(std::int32_t value, std::uint32_t storedRight) {
    if (value < 0) {
        return 0;
    }
    return static_cast<std::uint32_t>(value) >= storedRight ? EdgeBefore(storedRight) : value;
}

// Kept: the old top, not the new value, is compared with the bottom. Test: RegionEdges.
constexpr std::int32_t ClampRoiTop(std::int32_t value, std::uint32_t storedTop, std::uint32_t storedBottom) {
    if (value < 0) {
        return 0;
    }
    return storedTop >= storedBottom ? EdgeBefore(storedBottom) : value;
}

constexpr std::int32_t ClampRoiRight(std::int32_t value, std::uint32_t storedLeft, std::int32_t width) {
    return static_cast<std::uint32_t>(value) > storedLeft ? std::min(value, width) : EdgeAfter(storedLeft);
}

// Kept: the old bottom, not the new value, is compared with the height. Test: RegionEdges.
constexpr std::int32_t ClampRoiBottom(std::int32_t value, std::uint32_t storedTop, std::uint32_t storedBottom,
                                      std::int32_t height) {
    if (static_cast<std::uint32_t>(value) <= storedTop) {
        return EdgeAfter(storedTop);
    }
    return storedBottom > static_cast<std::uint32_t>(height) ? height : value;
}

// One direction of the protected area: the near edge (left, top) and the far edge (right, bottom).
struct ProtectedEdges {
    std::int32_t nearEdge;
    std::int32_t farEdge;
};

constexpr ProtectedEdges ClampProtectedEdges(std::int32_t nearEdge, std::int32_t farEdge, std::int32_t frameSize) {
    const std::int32_t limited = std::min(farEdge, frameSize);
    const std::int32_t wanted = std::max(nearEdge, 0);
    return {wanted < limited ? wanted : EdgeBefore(static_cast<std::uint32_t>(limited)), limited};
}
