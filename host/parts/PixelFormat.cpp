#include "host/parts/PixelFormat.h"

#include "engine/FrameShape.h"

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

} // namespace host
