// The four formats that the transform takes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

enum class Pixels { Rgb24, Yuy2, Uyvy, Iyu2 };

struct PixelTraits {
    Pixels pixels;
    const char* name; // as options write it
    std::uint32_t fourcc;
    int bits;       // per pixel
    bool evenWidth; // two pixels share their chroma
    bool bottomUp;  // the first row in memory is the picture's lowest
};

const PixelTraits& TraitsOf(Pixels pixels);
std::optional<Pixels> PixelsByName(std::string_view name);

// Bytes of one row (padded to four) and of one frame. Width and height are positive and at most kMaxSide.
std::size_t FrameStride(Pixels pixels, int width);
std::size_t FrameSize(Pixels pixels, int width, int height);

// Whether two frames show different pictures; the padding of rows is no part of them.
bool PicturesDiffer(Pixels pixels, int width, int height, const std::uint8_t* a, const std::uint8_t* b);

// The longest side that the tool takes: a frame of it still fits the transform's 32-bit sizes.
inline constexpr int kMaxSide = 16384;

constexpr std::uint32_t FourCc(char a, char b, char c, char d) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(a)) |
           static_cast<std::uint32_t>(static_cast<unsigned char>(b)) << 8 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(d)) << 24;
}

} // namespace host
