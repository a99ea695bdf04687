#include "host/picture/Still.h"

#include <algorithm>

namespace host {

namespace {

constexpr int kGlyphWidth = 5;
constexpr int kGlyphHeight = 7;

// Rows from the top, the highest of the five bits on the left. Drawn here because a platform without installed fonts
// would draw nothing; only what labels need is there.
struct Glyph {
    char letter;
    std::uint8_t rows[kGlyphHeight];
};

constexpr Glyph kGlyphs[] = {
    {'0', {14, 17, 19, 21, 25, 17, 14}}, {'1', {4, 12, 4, 4, 4, 4, 14}},      {'2', {14, 17, 1, 6, 8, 16, 31}},
    {'3', {14, 17, 1, 6, 1, 17, 14}},    {'4', {2, 6, 10, 18, 31, 2, 2}},     {'5', {31, 16, 30, 1, 1, 17, 14}},
    {'6', {6, 8, 16, 30, 17, 17, 14}},   {'7', {31, 1, 2, 4, 8, 8, 8}},       {'8', {14, 17, 17, 14, 17, 17, 14}},
    {'9', {14, 17, 17, 15, 1, 2, 12}},   {'A', {14, 17, 17, 31, 17, 17, 17}}, {'B', {30, 17, 17, 30, 17, 17, 30}},
    {'D', {30, 17, 17, 17, 17, 17, 30}}, {'E', {31, 16, 16, 30, 16, 16, 31}}, {'F', {31, 16, 16, 30, 16, 16, 16}},
    {'G', {14, 17, 16, 23, 17, 17, 15}}, {'L', {16, 16, 16, 16, 16, 16, 31}}, {'M', {17, 27, 21, 21, 17, 17, 17}},
    {'N', {17, 25, 21, 19, 17, 17, 17}}, {'O', {14, 17, 17, 17, 17, 17, 14}}, {'R', {30, 17, 17, 30, 20, 18, 17}},
    {'T', {31, 4, 4, 4, 4, 4, 4}},       {'X', {17, 17, 10, 4, 10, 17, 17}},  {',', {0, 0, 0, 0, 4, 4, 8}},
};

void FillBlock(Image& image, int x, int y, int side) {
    for (int row = std::max(y, 0); row < std::min(y + side, image.height); ++row) {
        for (int column = std::max(x, 0); column < std::min(x + side, image.width); ++column) {
            std::fill_n(image.At(column, row), 3, std::uint8_t{255});
        }
    }
}

void DrawGlyph(Image& image, int x, int y, int scale, const Glyph& glyph) {
    for (int row = 0; row < kGlyphHeight; ++row) {
        for (int column = 0; column < kGlyphWidth; ++column) {
            if (glyph.rows[row] >> (kGlyphWidth - 1 - column) & 1) {
                FillBlock(image, x + column * scale, y + row * scale, scale);
            }
        }
    }
}

} // namespace

void DrawLabel(Image& image, int x, int y, int scale, std::string_view text) {
    for (const char letter : text) {
        for (const Glyph& glyph : kGlyphs) {
            if (glyph.letter == letter) {
                DrawGlyph(image, x, y, scale, glyph);
            }
        }
        x += (kGlyphWidth + 1) * scale;
    }
}

} // namespace host
