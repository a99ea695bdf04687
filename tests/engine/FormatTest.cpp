// Sizes of frames in memory, and colour tables.
#include "engine/pixels/FrameShape.h"
#include "engine/pixels/GrayPalette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <vector>

namespace {

TEST(FrameShape, StridesAndBytes) {
    constexpr struct {
        std::int32_t bits, width, height, stride, bytes;
        bool processable;
    } kCases[] = {
        {16, 720, 480, 1440, 691'200, true},
        {24, 721, 480, 2164, 1'038'720, true},
        {24, 720, 576, 2160, 1'244'160, true},
        {8, 5, 3, 8, 24, true},
        {1, 33, 2, 8, 16, true},
        {32, 1, 1, 4, 4, true},
        {16, 3, 1, 8, 8, true},
        {24, 1600, -1600, 4800, -7'680'000, false},
        {0, 720, 480, 0, 0, false},
        {16, 0, 480, 0, 0, false},
        {16, -720, 480, 536'869'472, 0, false},
        {32, 23170, 23170, 92680, 2'147'395'600, true},
        {32, 23171, 23171, 92684, -2'147'386'332, false},
        {32, 65536, 16384, 262'144, 0, false},
        {32, 1 << 27, 1, 0, 0, false}, // 2 to the power of 32 bits in a row
        {16, 0x07FFFFFF, 1, 0x10000000, 0x10000000, true},
        {16, 0x07FFFFFF, 7, 0x10000000, 0x70000000, true},
        {16, 0x07FFFFFF, 8, 0x10000000, INT_MIN, false},
        {24, 89'478'485, 1, 0x10000000, 0x10000000, true},
        {24, 89'478'486, 1, 0x10000004, 0x10000004, false}, // 2 to the power of 31 bits in a row, and more
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.width << "x" << c.height << " of " << c.bits << " bits");
        EXPECT_EQ(c.stride, StrideBytes(c.bits, c.width));
        const FrameShape shape{c.width, c.height, c.bits, c.stride, false};
        EXPECT_EQ(c.processable, shape.IsProcessable());
        if (c.processable) {
            EXPECT_EQ(c.bytes, shape.Bytes());
        }
        const FrameShape otherStride{c.width, c.height, c.bits, c.stride + 4, false};
        EXPECT_FALSE(otherStride.IsProcessable());
    }
    const FrameShape rowBeyond32Bits{1 << 27, 1, 32, 1 << 29, false};
    EXPECT_FALSE(rowBeyond32Bits.IsProcessable());
}

TEST(FrameShape, RowBytesRoundTowardZero) {
    EXPECT_EQ(2163, RowBytes(721, 24));
    EXPECT_EQ(0, RowBytes(7, 1));
    EXPECT_EQ(-1, RowBytes(-15, 1));
    EXPECT_EQ(0, RowBytes(1 << 30, 32));
}

using Palette = std::vector<ColorEntry>;

Palette Ramp(std::uint32_t length) {
    Palette palette(length);
    for (std::uint32_t i = 0; i < length; ++i) {
        const auto level = static_cast<std::uint8_t>(length > 1 ? i * 255 / (length - 1) : 0);
        palette[i] = {level, level, level, static_cast<std::uint8_t>(i)};
    }
    return palette;
}

bool IsGray(const Palette& palette) {
    return IsGrayPalette(palette.data(), static_cast<std::uint32_t>(palette.size()));
}

TEST(GrayPalette, LinearRampsWithinTwoLevels) {
    for (const std::uint32_t length : {2u, 3u, 16u, 256u}) {
        EXPECT_TRUE(IsGray(Ramp(length))) << length;
        for (const std::uint32_t entry : {0u, 1u, length - 1}) {
            for (const int off : {-3, -2, 2, 3}) {
                Palette palette = Ramp(length);
                const int level = palette[entry].blue + off;
                if (level < 0 || level > 255) {
                    continue;
                }
                const auto gray = static_cast<std::uint8_t>(level);
                palette[entry] = {gray, gray, gray, 0};
                EXPECT_EQ(std::abs(off) == 2, IsGray(palette)) << length << " entry " << entry << " off by " << off;
            }
            for (std::uint8_t ColorEntry::*component : {&ColorEntry::blue, &ColorEntry::green, &ColorEntry::red}) {
                Palette palette = Ramp(length);
                palette[entry].*component ^= 1;
                EXPECT_FALSE(IsGray(palette)) << length << " entry " << entry << " coloured";
            }
        }
    }
}

TEST(GrayPalette, ShortAndMissingTables) {
    const Palette gray{{77, 77, 77, 0}};
    const Palette blue{{78, 77, 77, 0}};
    EXPECT_TRUE(IsGray(gray));
    EXPECT_FALSE(IsGray(blue));
    EXPECT_FALSE(IsGrayPalette(nullptr, 256));
    EXPECT_FALSE(IsGrayPalette(gray.data(), 0));
    Palette backwards = Ramp(256);
    std::ranges::reverse(backwards);
    EXPECT_FALSE(IsGray(backwards));
}

TEST(GrayPalette, Length) {
    constexpr struct {
        std::uint32_t bits, used, length;
    } kCases[] = {{8, 0, 256},  {8, 16, 16}, {4, 0, 16},
                  {1, 0, 2},    {1, 2, 2},   {16, 0, 0},
                  {24, 256, 0}, {9, 7, 0},   {8, UINT_MAX, UINT_MAX}};
    for (const auto& c : kCases) {
        EXPECT_EQ(c.length, PaletteLength(c.bits, c.used)) << c.bits << " bits, " << c.used << " used";
    }
}

} // namespace
