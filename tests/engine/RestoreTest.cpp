// Putting the protected area back: an odd walk over the frame's rows, kept as it is, that never leaves the frame.
#include "engine/pixels/ProtectedArea.h"
#include "tests/support/GuardedBlocks.h"
#include "tests/support/RandomBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <ostream>
#include <string>
#include <vector>

namespace {

struct RestoreCase {
    FrameShape shape;
    bool packed422 = false;
    std::int32_t protectedTop = 0;
    Region rectangle;
};

std::ostream& operator<<(std::ostream& out, const RestoreCase& c) {
    const Region& r = c.rectangle;
    return out << c.shape.width << "x" << c.shape.height << " of " << c.shape.bits << " bits"
               << (c.shape.topDown ? " top-down" : " bottom-up") << (c.packed422 ? " packed" : "") << " top "
               << c.protectedTop << " rectangle " << r.left << "," << r.top << "," << r.right << "," << r.bottom
               << " seed=" << TestSeed();
}

// The literal rule in 64 bits, asked for one byte: is it in one of the rows that are copied?
struct Walk {
    std::int64_t start = 0, length = 0, rows = 0, stride = 0;

    bool Covers(std::int64_t byte) const {
        if (length <= 0 || rows <= 0 || byte < start) {
            return false;
        }
        const std::int64_t row = std::min((byte - start) / stride, rows - 1); // the last that starts before it
        return byte < start + row * stride + length;
    }
};

Walk WalkOf(const RestoreCase& c) {
    const Region& r = c.rectangle;
    if (r.left > r.right || r.top > r.bottom) {
        return {};
    }
    const std::int64_t left = r.left;
    const std::int64_t top = r.top;
    const std::int64_t right = std::min(r.right, c.shape.width);
    const std::int64_t bottom = std::min(r.bottom, c.shape.height);
    const std::int64_t stride = c.shape.stride;
    if (c.packed422) {
        const std::int64_t end = bottom - (bottom - top) / 2;
        return {(top * stride + left) * 2, (right - left) * 2, end - top, stride};
    }
    const std::int64_t first = c.shape.topDown ? c.protectedTop : c.shape.height - bottom;
    return {((left * c.shape.bits) >> 3) + stride * first, (c.shape.bits * (right - left)) >> 3, bottom - first,
            stride};
}

// Output and saved frame, each between closed pages.
class RestorePair {
public:
    explicit RestorePair(std::size_t mostBytes)
        : m_blocks(2, mostBytes) {}

    testing::AssertionResult Matches(RestoreCase c, bool atEnd) {
        const auto bytes = static_cast<std::size_t>(c.shape.Bytes());
        std::uint8_t* output = atEnd ? m_blocks.AtEnd(0, bytes) : m_blocks.AtStart(0);
        std::uint8_t* saved = atEnd ? m_blocks.AtEnd(1, bytes) : m_blocks.AtStart(1);
        for (std::size_t i = 0; i < bytes; ++i) {
            output[i] = 0xEE;
            saved[i] = static_cast<std::uint8_t>(i % 0xED);
        }
        Region rectangle = c.rectangle;
        RestoreProtectedArea(output, saved, c.shape, c.packed422, c.protectedTop, rectangle);

        const Walk walk = WalkOf(c);
        for (std::size_t i = 0; i < bytes; ++i) {
            if (output[i] != (walk.Covers(static_cast<std::int64_t>(i)) ? saved[i] : 0xEE)) {
                return testing::AssertionFailure() << c << ": byte " << i << " differs";
            }
        }
        return IsCut(c, rectangle) ? testing::AssertionSuccess() : testing::AssertionFailure() << c << ": not cut";
    }

private:
    static bool IsCut(const RestoreCase& c, const Region& after) {
        const Region& r = c.rectangle;
        const bool inverted = r.left > r.right || r.top > r.bottom;
        return after.left == r.left && after.top == r.top &&
               after.right == (inverted ? r.right : std::min(r.right, c.shape.width)) &&
               after.bottom == (inverted ? r.bottom : std::min(r.bottom, c.shape.height));
    }

    GuardedBlocks m_blocks;
};

FrameShape ShapeOf(std::int32_t width, std::int32_t height, std::int32_t bits, bool topDown) {
    return {width, height, bits, StrideBytes(bits, width), topDown};
}

constexpr struct {
    std::int32_t bits;
    bool packed422;
} kFormats[] = {{16, true}, {16, false}, {8, false}, {24, false}, {32, false}};

TEST(ProtectedArea, RestoreFollowsItsOwnWalk) {
    constexpr std::int32_t kWidth = 5;
    constexpr std::int32_t kHeight = 4;
    RestorePair frames(4096);
    for (const auto& format : kFormats) {
        for (const bool topDown : {false, true}) {
            RestoreCase c{ShapeOf(kWidth, kHeight, format.bits, topDown), format.packed422, 0, {}};
            Region& r = c.rectangle;
            for (r.left = -2; r.left <= kWidth + 2; ++r.left) {
                for (r.right = -2; r.right <= kWidth + 2; ++r.right) {
                    for (r.top = -2; r.top <= kHeight + 2; ++r.top) {
                        for (r.bottom = -2; r.bottom <= kHeight + 2; ++r.bottom) {
                            c.protectedTop = (r.left + r.right) % 3 ? r.top : r.right - 1;
                            ASSERT_TRUE(frames.Matches(c, topDown));
                        }
                    }
                }
            }
        }
    }
}

// The walk by example, in a frame of 8 rows: which are put back.
TEST(ProtectedArea, RowsByExample) {
    constexpr struct {
        bool packed422, topDown;
        std::int32_t top, bottom;
        const char* rows;
    } kCases[] = {
        {false, true, 2, 5, "..###..."},  // as stored
        {false, false, 5, 7, ".######."}, // mirrored a second time, and down to the bottom edge
        {false, false, 2, 3, "........"}, // its first row lies behind its last
        {true, false, 1, 4, "..##...."},  // from twice the top, half the rows, the odd one counted
        {true, true, 0, 8, "####...."},   {true, false, 4, 8, "........"},
    };
    for (const auto& c : kCases) {
        const FrameShape shape = ShapeOf(4, 8, 16, c.topDown);
        std::vector<std::uint8_t> output(64, 0);
        const std::vector<std::uint8_t> saved(64, 1);
        Region rectangle{0, c.top, 4, c.bottom};
        RestoreProtectedArea(output.data(), saved.data(), shape, c.packed422, c.top, rectangle);
        std::string rows;
        for (std::size_t y = 0; y < 8; ++y) {
            rows += output[y * 8] ? '#' : '.';
        }
        EXPECT_EQ(c.rows, rows) << "top " << c.top << " bottom " << c.bottom;
    }
}

TEST(ProtectedArea, MissingBuffersAndImpossibleFramesAreLeftAlone) {
    const FrameShape impossible[] = {
        ShapeOf(40'000, 40'000, 32, true), // its bytes wrap to some two thousand million
        ShapeOf(0, 4, 24, true),
        {4, 4, 24, 0, true},
    };
    std::uint8_t output = 9;
    const std::uint8_t saved = 1;
    for (const bool packed422 : {false, true}) {
        Region all{0, -4, INT_MAX, INT_MAX};
        RestoreProtectedArea(nullptr, &saved, ShapeOf(4, 4, 24, false), packed422, 0, all);
        RestoreProtectedArea(&output, nullptr, ShapeOf(4, 4, 24, false), packed422, 0, all);
        for (const FrameShape& shape : impossible) {
            RestoreProtectedArea(&output, &saved, shape, packed422, -4, all);
        }
        EXPECT_EQ(INT_MAX, all.right);
    }
    EXPECT_EQ(9, output);
}

// Neither thousands of millions of rows nor rows as long as half the frame cost more than the frame is worth.
TEST(ProtectedArea, NoCallTakesLong) {
    const FrameShape shape = ShapeOf(3840, 2160, 24, true);
    std::vector<std::uint8_t> output(static_cast<std::size_t>(shape.Bytes()));
    const std::vector<std::uint8_t> saved(output.size(), 1);
    for (const std::int32_t left : {INT_MIN, -3840 * 1080, -3840 * 20, 0}) {
        for (const std::int32_t top : {INT_MIN, -1'000'000, 0, 540, 1080}) {
            for (const bool packed422 : {false, true}) {
                const auto start = std::chrono::steady_clock::now();
                Region rectangle{left, top, INT_MAX, INT_MAX};
                RestoreProtectedArea(output.data(), saved.data(), shape, packed422, top, rectangle);
                EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500))
                    << "left " << left << " top " << top << (packed422 ? " packed" : "");
            }
        }
    }
}

} // namespace
