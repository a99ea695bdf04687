#include "host/parts/Frame.h"

namespace host {

namespace {

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

std::size_t PlanarBytes(Layout layout, int width, int height) {
    const ChromaSize chroma = ChromaSizeOf(layout, width, height);
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) +
           2 * static_cast<std::size_t>(chroma.width) * static_cast<std::size_t>(chroma.height);
}

FrameView PlanarFrame(Layout layout, int width, int height, const std::uint8_t* bytes) {
    return Planes(layout, width, height, bytes);
}

FrameTarget PlanarFrame(Layout layout, int width, int height, std::uint8_t* bytes) {
    return Planes(layout, width, height, bytes);
}

} // namespace host
