// The luma of a frame, whatever its format.
#pragma once

#include "host/picture/Frame.h"

#include <cstdint>
#include <vector>

namespace host {

// One byte per pixel, top row first, rows `width` bytes apart.
struct LumaPlane {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;

    const std::uint8_t* Row(int y) const { return pixels.data() + std::size_t(y) * std::size_t(width); }
};

// Takes the luma of a packed frame (Yuy2, Uyvy, Iyu2, Rgb24); of Rgb24 a weighted mean of the colours. The first
// `plane.width` columns and `plane.height` rows are taken; the plane's memory must be there.
void TakeLuma(const FrameView& frame, LumaPlane& plane);

} // namespace host
