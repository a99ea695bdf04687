#include "host/picture/Frame.h"

namespace host {

namespace {

bool IsHalvedBothWays(Layout layout) {
    return layout == Layout::Nv12 || layout == Layout::Planar420;
}

template <class Byte>
BasicFrame<Byte> Planes(Layout layout, int width, int height, Byte* bytes) {
    const ChromaSize chroma = ChromaSizeOf(layout, width, height);
    BasicFrame<Byte> frame;
    frame.layout = layout;
    frame.width = width;
    frame.height = height;
    frame.plane[0] = bytes;
    frame.stride[0] = width;
    frame.plane[1] = bytes + std::ptrdiff_t{width} * height;
    frame.plane[2] = frame.plane[1] + std::ptrdiff_t{chroma.width} * chroma.height;
    frame.stride[1] = frame.stride[2] = chroma.width;
    return frame;
}

template <class Byte>
BasicFrame<Byte> Decoded(Layout layout, int width, int height, int stride, Byte* bytes) {
    BasicFrame<Byte> frame;
    frame.layout = layout;
    frame.width = width;
    frame.height = height;
    frame.plane[0] = bytes;
    frame.stride[0] = stride;
    if (IsHalvedBothWays(layout)) {
        const int chromaRows = (height + 1) / 2;
        frame.stride[1] = frame.stride[2] = layout == Layout::Nv12 ? stride : stride / 2;
        frame.plane[1] = bytes + std::ptrdiff_t{2} * chromaRows * stride;
        frame.plane[2] = frame.plane[1] + chromaRows * frame.stride[2];
    }
    return frame;
}

} // namespace

ChromaSize ChromaSizeOf(Layout layout, int width, int height) {
    switch (layout) {
    case Layout::Planar420:
        return {(width + 1) / 2, (height + 1) / 2};
    case Layout::Planar422:
        return {(width + 1) / 2, height};
    case Layout::Planar444:
        return {width, height};
    default:
        return {0, 0};
    }
}

int LeastStride(Layout layout, int width) {
    switch (layout) {
    case Layout::Nv12:
    case Layout::Planar420:
        return (width + 1) / 2 * 2;
    case Layout::Rgb24:
        return (width * 3 + 3) / 4 * 4;
    case Layout::Rgb32:
        return width * 4;
    default:
        return (width + 1) / 2 * 4;
    }
}

std::size_t DecodedBytes(Layout layout, int height, int stride) {
    const int rows = IsHalvedBothWays(layout) ? (height + 1) / 2 * 3 : height;
    return static_cast<std::size_t>(stride) * static_cast<std::size_t>(rows);
}

std::size_t PlanarBytes(Layout layout, int width, int height) {
    const ChromaSize chroma = ChromaSizeOf(layout, width, height);
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) +
           2 * static_cast<std::size_t>(chroma.width) * static_cast<std::size_t>(chroma.height);
}

FrameView PlanarFrame(Layout layout, int width, int height, const std::uint8_t* bytes) {
    return Planes(layout, width, height, bytes);
}

FrameView DecodedFrame(Layout layout, int width, int height, int stride, const std::uint8_t* bytes) {
    return Decoded(layout, width, height, stride, bytes);
}

FrameTarget DecodedFrame(Layout layout, int width, int height, int stride, std::uint8_t* bytes) {
    return Decoded(layout, width, height, stride, bytes);
}

FrameTarget PlanarFrame(Layout layout, int width, int height, std::uint8_t* bytes) {
    return Planes(layout, width, height, bytes);
}

} // namespace host
