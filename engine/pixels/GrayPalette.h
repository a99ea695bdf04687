// Colour tables of frames with at most 8 bits per pixel.
#pragma once

#include <cstdint>

struct ColorEntry {
    std::uint8_t blue;
    std::uint8_t green;
    std::uint8_t red;
    std::uint8_t reserved;
};

// Entries of a table: the header's used-colour count, or 2 to the power of the bit count when that is 0; none above
// 8 bits per pixel.
std::uint32_t PaletteLength(std::uint32_t bitCount, std::uint32_t colorsUsed);

// True for a linear grey ramp, whose pixel values may be averaged: every entry i has equal blue, green and red within 2
// of i x 255 / (length - 1); a single entry only needs equal bytes. A null or empty table is not grey.
bool IsGrayPalette(const ColorEntry* palette, std::uint32_t length);
