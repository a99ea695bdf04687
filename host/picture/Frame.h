// A picture in memory, whatever its layout, addressed from its top row.
#pragma once

#include <cstddef>
#include <cstdint>

namespace host {

enum class Layout {
    Planar420, // three planes, chroma halved both ways
    Planar422, // three planes, chroma halved across
    Planar444, // three planes
    Gray,      // one plane
    Nv12,      // a luma plane and one of U V pairs, chroma halved both ways
    Yuy2,      // Y U Y V
    Uyvy,      // U Y V Y
    Iyu2,      // U Y V
    Rgb24,     // B G R
    Rgb32,     // B G R and one unused byte
};

// Plane p's row y, counted from the picture's top, starts at plane[p] + y * stride[p]; a picture that is stored
// bottom row first therefore has a negative stride. Nothing is owned.
template <class Byte>
struct BasicFrame {
    Layout layout = Layout::Yuy2;
    int width = 0;
    int height = 0;
    Byte* plane[3] = {};
    std::ptrdiff_t stride[3] = {};

    Byte* Row(int index, int y) const { return plane[index] + y * stride[index]; }
};

using FrameView = BasicFrame<const std::uint8_t>;
using FrameTarget = BasicFrame<std::uint8_t>;

inline FrameView AsView(const FrameTarget& target) {
    FrameView view;
    view.layout = target.layout;
    view.width = target.width;
    view.height = target.height;
    for (int i = 0; i < 3; ++i) {
        view.plane[i] = target.plane[i];
        view.stride[i] = target.stride[i];
    }
    return view;
}

// Chroma samples per row and chroma rows of a planar layout, rounded up.
struct ChromaSize {
    int width;
    int height;
};
ChromaSize ChromaSizeOf(Layout layout, int width, int height);

// Bytes of a frame whose planes follow each other without padding (planar layouts only).
std::size_t PlanarBytes(Layout layout, int width, int height);

// Bytes of one frame as decoders leave it, rows `stride` bytes apart, and the frame over `bytes` from its first row in
// memory. Of Nv12 and Planar420 sizes are rounded up: an even number of rows, and then chroma for half of them.
// `stride` is at least LeastStride; the other planar layouts are not among those that decoders leave.
int LeastStride(Layout layout, int width);
std::size_t DecodedBytes(Layout layout, int height, int stride);
FrameView DecodedFrame(Layout layout, int width, int height, int stride, const std::uint8_t* bytes);
FrameTarget DecodedFrame(Layout layout, int width, int height, int stride, std::uint8_t* bytes);

// The frame over `bytes`, planes following each other without padding.
FrameView PlanarFrame(Layout layout, int width, int height, const std::uint8_t* bytes);
FrameTarget PlanarFrame(Layout layout, int width, int height, std::uint8_t* bytes);

} // namespace host
