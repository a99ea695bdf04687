#include "host/picture/PixelFormat.h"

#include "engine/pixels/FrameShape.h"

#include <cstring>

namespace host {

namespace {

// In the order of the enumeration.
constexpr PixelTraits kTraits[] = {
    {Pixels::Rgb24, "rgb24", 0, 24, false, true},
    {Pixels::Yuy2, "yuy2", FourCc('Y', 'U', 'Y', '2'), 16, true, false},
    {Pixels::Uyvy, "uyvy", FourCc('U', 'Y', 'V', 'Y'), 16, true, false},
    {Pixels::Iyu2, "iyu2", FourCc('I', 'Y', 'U', '2'), 24, false, false},
};

} // namespace

const PixelTraits& TraitsOf(Pixels pixels) {
    return kTraits[static_cast<std::size_t>(pixels)];
}

std::optional<Pixels> PixelsByName(std::string_view name) {
    for (const PixelTraits& traits : kTraits) {
        if (name == traits.name) {
            return traits.pixels;
        }
    }
    return std::nullopt;
}

std::size_t FrameStride(Pixels pixels, int width) {
    return static_cast<std::size_t>(StrideBytes(TraitsOf(pixels).bits, width));
}

std::size_t FrameSize(Pixels pixels, int width, int height) {
    return FrameStride(pixels, width) * static_cast<std::size_t>(height);
}

bool PicturesDiffer(Pixels pixels, int width, int height, const std::uint8_t* a, const std::uint8_t* b) {
    const std::size_t stride = FrameStride(pixels, width);
    const std::size_t row = static_cast<std::size_t>(width) * static_cast<std::size_t>(TraitsOf(pixels).bits) / 8;
    for (std::size_t at = 0; at < stride * static_cast<std::size_t>(height); at += stride) {
        if (std::memcmp(a + at, b + at, row) != 0) {
            return true;
        }
    }
    return false;
}

} // namespace host
