// What a deinterlaced frame must hold: the rules again, byte by byte and as plainly as possible, sharing nothing with
// the engine.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

struct OracleFrame {
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::int64_t bits = 0;
    bool topDown = false;

    std::int64_t Stride() const { return (bits * width + 31) / 32 * 4; }
    std::int64_t Bytes() const { return Stride() * height; }
};

struct OracleOptions {
    bool even = false;      // keep the even rows
    bool merge = false;     // blend the fields
    bool averaging = true;  // bytes may be combined
    bool useRegion = false; // and the region, in picture coordinates:
    std::int64_t left = 0, top = 0, right = 0, bottom = 0;
};

struct OracleArea {
    std::int64_t firstRow = 0, rows = 0;         // in memory
    std::int64_t firstPixel = 0, endOfPixel = 0; // columns, the end exclusive
};

inline OracleArea OracleAreaOf(const OracleFrame& frame, const OracleOptions& options) {
    if (!options.useRegion) {
        return {0, frame.height, 0, frame.width};
    }
    std::int64_t left = options.left;
    std::int64_t right = options.right;
    if (frame.bits == 16) { // whole pixel pairs; edges within one pair are that pair
        left -= (left % 2 + 2) % 2;
        right -= (right % 2 + 2) % 2;
        right += right == left ? 2 : 0;
    }
    left = std::max<std::int64_t>(left, 0);
    right = std::min(right, frame.width);
    const std::int64_t top = std::max<std::int64_t>(options.top, 0);
    const std::int64_t bottom = std::min(options.bottom, frame.height);
    if (left >= right || top >= bottom) {
        return {};
    }
    return {frame.topDown ? top : frame.height - bottom, bottom - top, left, right};
}

// Writes `out` from `in` row after row; both frames may be the same.
inline void OracleDeinterlace(const OracleFrame& frame, const OracleOptions& options, const std::uint8_t* in,
                              std::uint8_t* out) {
    if (options.useRegion) {
        std::memmove(out, in, static_cast<std::size_t>(frame.Bytes()));
    }
    const OracleArea area = OracleAreaOf(frame, options);
    const std::int64_t stride = frame.Stride();
    for (std::int64_t y = 0; y < area.rows; ++y) {
        const bool border = y == 0 || y == area.rows - 1;
        const bool ownField = (y % 2 == 0) == options.even;
        const bool copied = !options.averaging || border || (!options.merge && ownField);
        const std::int64_t row = (area.firstRow + y) * stride;
        const std::int64_t begin = area.firstPixel * frame.bits / 8;
        const std::int64_t end = copied || options.useRegion ? area.endOfPixel * frame.bits / 8 : stride;
        for (std::int64_t at = row + begin; at < row + end; ++at) {
            if (copied) {
                out[at] = in[at];
            } else if (options.merge) {
                out[at] = static_cast<std::uint8_t>((in[at - stride] + 2 * in[at] + in[at + stride]) / 4);
            } else {
                out[at] = static_cast<std::uint8_t>((in[at - stride] + in[at + stride]) / 2);
            }
        }
    }
}
