// The size of a frame in memory and the one place that says whether it may be touched.
#pragma once

#include <cstdint>

// Bytes per row: ((bits x width + 31) >> 3) with the two low bits cleared, in 32-bit arithmetic with an unsigned
// shift. Numbers that overflow wrap; IsProcessable tells them from real ones.
constexpr std::int32_t StrideBytes(std::int32_t bits, std::int32_t width) {
    const std::uint32_t rowBits = static_cast<std::uint32_t>(bits) * static_cast<std::uint32_t>(width) + 31u;
    return static_cast<std::int32_t>((rowBits >> 3) & ~3u);
}

// Bytes of a whole frame, in 32-bit arithmetic that wraps.
constexpr std::int32_t FrameBytes(std::int32_t stride, std::int32_t height) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(stride) * static_cast<std::uint32_t>(height));
}

// Bytes that `width` pixels cover, rounded toward zero, in 32-bit arithmetic that wraps.
constexpr std::int32_t RowBytes(std::int32_t width, std::int32_t bits) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(width) * static_cast<std::uint32_t>(bits)) / 8;
}

// A frame as the engine sees it: rows of `stride` bytes, bottom row first unless `topDown`.
struct FrameShape {
    std::int32_t width = 0;  // pixels
    std::int32_t height = 0; // rows
    std::int32_t bits = 0;   // per pixel
    std::int32_t stride = 0; // bytes from one row to the next
    bool topDown = false;

    std::int32_t Bytes() const { return FrameBytes(stride, height); }

    // True when width, height and depth are positive, and the bits of a row and the bytes of the frame are both fewer
    // than 2 to the power of 31. Every other frame must not be touched.
    bool IsProcessable() const {
        if (width <= 0 || height <= 0 || bits <= 0) {
            return false;
        }
        if (std::int64_t{bits} * width > INT32_MAX || StrideBytes(bits, width) != stride) {
            return false;
        }
        return static_cast<std::int64_t>(stride) * height <= INT32_MAX;
    }
};
