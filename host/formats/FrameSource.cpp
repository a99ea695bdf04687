#include "host/formats/FrameSource.h"

namespace host {

namespace {

// In the order of Pixels.
constexpr Layout kPackedLayouts[] = {Layout::Rgb24, Layout::Yuy2, Layout::Uyvy, Layout::Iyu2};

template <class Byte>
BasicFrame<Byte> Packed(Pixels pixels, int width, int height, Byte* bytes) {
    const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(FrameStride(pixels, width));
    BasicFrame<Byte> frame;
    frame.layout = LayoutOf(pixels);
    frame.width = width;
    frame.height = height;
    frame.plane[0] = TraitsOf(pixels).bottomUp ? bytes + stride * (height - 1) : bytes;
    frame.stride[0] = TraitsOf(pixels).bottomUp ? -stride : stride;
    return frame;
}

} // namespace

Layout LayoutOf(Pixels pixels) {
    return kPackedLayouts[static_cast<std::size_t>(pixels)];
}

Pixels NaturalFeed(Layout layout, int width) {
    switch (layout) {
    case Layout::Rgb24:
    case Layout::Rgb32:
        return Pixels::Rgb24;
    case Layout::Iyu2:
    case Layout::Planar444:
        return Pixels::Iyu2;
    case Layout::Uyvy:
        return Pixels::Uyvy;
    default:
        return width % 2 == 0 ? Pixels::Yuy2 : Pixels::Iyu2;
    }
}

FrameView PackedFrame(Pixels pixels, int width, int height, const std::uint8_t* bytes) {
    return Packed(pixels, width, height, bytes);
}

FrameTarget PackedFrame(Pixels pixels, int width, int height, std::uint8_t* bytes) {
    return Packed(pixels, width, height, bytes);
}

} // namespace host
