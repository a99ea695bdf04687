// Frames and regions by example, what chooses the stores, and putting the protected area back.
#include "engine/kernels/CacheSize.h"
#include "engine/pixels/FrameOutput.h"
#include "engine/pixels/FrameRegion.h"
#include "engine/pixels/ProtectedArea.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

FrameShape ShapeOf(std::int32_t width, std::int32_t height, std::int32_t bits, bool topDown) {
    return {width, height, bits, StrideBytes(bits, width), topDown};
}

TEST(Frames, RegionsByExample) {
    const FrameShape pairs = ShapeOf(720, 480, 16, false);
    const FrameShape topDown = ShapeOf(721, 480, 24, true);
    const FrameShape widest = ShapeOf(0x07FFFFFE, 2, 16, false); // as many bits in a row as can be
    const struct {
        FrameShape shape;
        Region region;
        ProcessedArea area;
    } kCases[] = {
        {pairs, {5, 0, 10, 480}, {8, 6, 480}},
        {pairs, {6, 0, 7, 1}, {479 * 1440 + 12, 2, 1}},
        {pairs, {7, 10, 8, 20}, {460 * 1440 + 12, 2, 10}},
        {pairs, {719, 479, 720, 480}, {1436, 2, 1}},
        {pairs, {4, 0, 4, 480}, {8, 2, 480}}, // edges within one pair are that pair
        {pairs, {5, 0, 5, 480}, {8, 2, 480}},
        {pairs, {5, 0, 4, 480}, {8, 2, 480}},
        {pairs, {5, 0, 3, 480}, {0, 0, 0}},
        {pairs, {720, 0, 720, 480}, {0, 0, 0}},
        {pairs, {INT_MIN, INT_MIN, INT_MAX, INT_MAX}, {0, 720, 480}},
        {pairs, {INT_MAX, 0, INT_MIN, 480}, {0, 0, 0}},
        {topDown, {5, 7, 900, 900}, {7 * 2164 + 15, 716, 473}},
        {widest, {0x07000001, 0, INT_MAX, 1}, {0x0FFFFFFC + 0x0E000000, 0x00FFFFFE, 1}},
    };
    for (const auto& c : kCases) {
        const ProcessedArea area = PlaceRegion(c.shape, c.region);
        EXPECT_TRUE(area.offset == c.area.offset && area.m_lCropWidth == c.area.m_lCropWidth &&
                    area.m_lCropHeight == c.area.m_lCropHeight)
            << "row " << &c - kCases << ": " << area.offset << " " << area.m_lCropWidth << " " << area.m_lCropHeight;
    }
}

TEST(Stores, PastTheCacheWhenFramesInFlightOutgrowIt) {
    constexpr struct {
        std::size_t frame, cache;
        Stores stores;
    } kCases[] = {
        {720 * 480 * 2, 32u << 20, Stores::Ordinary},    {1920 * 1080 * 2, 32u << 20, Stores::Streaming},
        {2u << 20, 48u << 20, Stores::Ordinary},         {(2u << 20) + 1, 48u << 20, Stores::Streaming},
        {1920 * 1080 * 2, 256u << 20, Stores::Ordinary},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(c.stores, StoresFor(c.frame, c.cache)) << c.frame << " of " << c.cache;
    }
}

struct Answer {
    std::uint32_t leaf, subleaf;
    CpuidLeaf registers;
};

TEST(Stores, LargestCacheFromWhatTheProcessorTells) {
    constexpr std::uint32_t kMiB = 1 << 20;
    // A cache of 16 ways with lines of 64 bytes.
    const auto cache = [](std::uint32_t leaf, std::uint32_t at, std::uint32_t level, std::uint32_t bytes) {
        return Answer{leaf, at, {3 | level << 5, 15u << 22 | 63, bytes / (16 * 64) - 1, 0}};
    };
    const auto most = [](std::uint32_t leaf) { return Answer{leaf & 0x80000000, 0, {leaf, 0, 0, 0}}; };
    const auto third = [](std::uint32_t bytes) { return Answer{0x80000006, 0, {0, 0, 0, bytes / (kMiB / 2) << 18}}; };
    const struct {
        const char* processor;
        std::vector<Answer> answers;
        std::size_t bytes;
    } kCases[] = {
        {"three levels",
         {most(22), cache(4, 0, 1, kMiB), cache(4, 1, 2, 2 * kMiB), cache(4, 2, 3, 36 * kMiB)},
         36 * kMiB},
        {"four levels", {most(22), cache(4, 0, 3, 6 * kMiB), cache(4, 1, 4, 128 * kMiB)}, 128 * kMiB},
        {"a core without the third", {most(22), cache(4, 0, 1, kMiB), cache(4, 1, 2, 2 * kMiB)}, kUsualCacheBytes},
        {"a third of several", {most(0x8000001F), cache(0x8000001D, 0, 3, 16 * kMiB), third(256 * kMiB)}, 16 * kMiB},
        {"either list",
         {most(22), most(0x8000001F), cache(4, 0, 3, kMiB), cache(0x8000001D, 0, 3, 8 * kMiB)},
         8 * kMiB},
        {"a guest with an empty list", {most(13), most(0x8000001F), third(16 * kMiB)}, 16 * kMiB},
        {"a guest with a short list", {most(13), most(0x8000001F), cache(4, 0, 2, kMiB), third(8 * kMiB)}, 8 * kMiB},
        {"leaves that are not there", {most(2), most(0x80000004), cache(4, 0, 3, kMiB), third(kMiB)}, kUsualCacheBytes},
        {"nothing", {}, kUsualCacheBytes},
    };
    for (const auto& c : kCases) {
        const auto cpuid = [&](std::uint32_t leaf, std::uint32_t subleaf) {
            const auto at = std::ranges::find_if(
                c.answers, [&](const Answer& a) { return a.leaf == leaf && a.subleaf == subleaf; });
            return at == c.answers.end() ? CpuidLeaf{} : at->registers;
        };
        EXPECT_EQ(c.bytes, LargestCacheBytes(cpuid)) << c.processor;
    }
}

struct Method {
    bool even, merge, averaging;
};
constexpr Method kOdd{false, false, true}, kEven{true, false, true}, kMerge{true, true, true};
constexpr Method kNoLevels[] = {{true, false, false}, {false, true, false}};

// A frame whose rows are filled with one byte each, deinterlaced over bytes of 0xEE.
Bytes Deinterlaced(const FrameShape& shape, const Method& method, bool region, const Bytes& rows) {
    Bytes in;
    for (const std::uint8_t row : rows) {
        in.insert(in.end(), static_cast<std::size_t>(shape.stride), row);
    }
    Bytes out(in.size(), 0xEE);
    WriteFrame({shape, in.data(), out.data()},
               {WholeFrame(shape), region, method.averaging, method.merge, !method.even}, Stores::Ordinary);
    return out;
}

TEST(Frames, RowsByExample) {
    const struct {
        Method method;
        Bytes rows, expected;
    } kCases[] = {
        {kMerge, {7}, {7}},
        {kEven, {7, 90}, {7, 90}},
        {kEven, {10, 99, 21}, {10, 15, 21}},
        {kOdd, {10, 99, 21}, {10, 99, 21}},
        {kOdd, {1, 2, 3, 5, 9}, {1, 2, 3, 5, 9}},
        {kOdd, {1, 2, 77, 5, 9}, {1, 2, 3, 5, 9}},
        {kEven, {1, 77, 4, 77, 9, 77}, {1, 2, 4, 6, 9, 77}},
        {kMerge, {0, 0, 0, 200, 200, 200}, {0, 0, 50, 150, 200, 200}},
        {kNoLevels[0], {0, 9, 200, 7, 3}, {0, 9, 200, 7, 3}},
        {kNoLevels[1], {0, 9, 200, 7, 3}, {0, 9, 200, 7, 3}},
    };
    for (const auto& c : kCases) {
        const FrameShape shape = ShapeOf(4, static_cast<std::int32_t>(c.rows.size()), 8, false);
        const Bytes out = Deinterlaced(shape, c.method, false, c.rows);
        for (std::size_t i = 0; i < out.size(); ++i) {
            EXPECT_EQ(c.expected[i / 4], out[i]) << "example " << &c - kCases << " byte " << i;
        }
    }
}

// 3 pixels of 24 bits: 9 bytes of each 12 are pixels. With a region the frame was copied first, and so was its padding.
TEST(Frames, PaddingIsCombinedNotCopied) {
    for (const bool region : {false, true}) {
        const Bytes out = Deinterlaced(ShapeOf(3, 3, 24, false), kMerge, region, {10, 70, 30});
        const Bytes padding{out[9], out[21], out[35]};
        EXPECT_EQ(region ? (Bytes{10, 70, 30}) : (Bytes{0xEE, 45, 0xEE}), padding);
        EXPECT_EQ(45, out[20]);
    }
}

// In a frame of 8 rows: which are put back.
TEST(ProtectedArea, RestoreFollowsItsOwnWalk) {
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
