// Whole frames and regions: the engine's placing and line driver together, as the frame driver joins them, against the
// rules written out.
#include "engine/detector/AutomaticFrame.h"
#include "engine/pixels/FrameRegion.h"
#include "engine/detector/InterlaceDetector.h"
#include "engine/kernels/CacheSize.h"
#include "tests/support/GuardedBlocks.h"
#include "tests/support/OraclePixels.h"
#include "tests/support/RandomBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <ostream>
#include <span>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Method {
    const char* name;
    bool even, merge, averaging;
};

constexpr Method kMethods[] = {
    {"keep odd", false, false, true},
    {"keep even", true, false, true},
    {"merge", true, true, true},
    {"keep even, no levels", true, false, false},
    {"merge, no levels", false, true, false},
};

struct FrameCase {
    FrameShape shape;
    Method method;
    bool useRegion = false;
    Region region;
};

std::ostream& operator<<(std::ostream& out, const FrameCase& c) {
    out << c.shape.width << "x" << c.shape.height << " of " << c.shape.bits << " bits "
        << (c.shape.topDown ? "top-down " : "bottom-up ") << c.method.name;
    if (c.useRegion) {
        out << " region " << c.region.left << "," << c.region.top << "," << c.region.right << "," << c.region.bottom;
    }
    return out << " seed=" << TestSeed();
}

FrameShape ShapeOf(std::int32_t width, std::int32_t height, std::int32_t bits, bool topDown) {
    return {width, height, bits, StrideBytes(bits, width), topDown};
}

FramePlan PlanOf(const FrameCase& c) {
    const ProcessedArea area = c.useRegion ? PlaceRegion(c.shape, c.region) : WholeFrame(c.shape);
    return {area, c.useRegion, c.method.averaging, c.method.merge, !c.method.even};
}

// What the frame driver does with a frame that is to be deinterlaced.
void Deinterlace(const FrameCase& c, const std::uint8_t* in, std::uint8_t* out, Stores stores = Stores::Ordinary) {
    WriteFrame({c.shape, in, out}, PlanOf(c), stores);
}

void Expected(const FrameCase& c, const std::uint8_t* in, std::uint8_t* out) {
    const OracleFrame frame{c.shape.width, c.shape.height, c.shape.bits, c.shape.topDown};
    const OracleOptions options{c.method.even, c.method.merge, c.method.averaging, c.useRegion,
                                c.region.left, c.region.top,   c.region.right,     c.region.bottom};
    OracleDeinterlace(frame, options, in, out);
}

// An input and an output frame, each between closed pages.
class TestFrames {
public:
    explicit TestFrames(std::size_t mostBytes)
        : m_blocks(2, mostBytes)
        , m_random(TestSeed()) {}

    RandomBytes& Random() { return m_random; }

    // New contents for frames of a shape, against the closed page in front of them or behind them, or so many bytes
    // away from it.
    void Fill(const FrameShape& shape, bool atEnd, std::size_t inAway = 0, std::size_t outAway = 0) {
        const auto bytes = static_cast<std::size_t>(shape.Bytes());
        m_in = {atEnd ? m_blocks.AtEnd(0, bytes + inAway) : m_blocks.AtStart(0) + inAway, bytes};
        m_out = {atEnd ? m_blocks.AtEnd(1, bytes + outAway) : m_blocks.AtStart(1) + outAway, bytes};
        m_random.Fill(m_in);
        m_before.assign(bytes, 0);
        m_random.Fill(m_before);
    }

    testing::AssertionResult Matches(const FrameCase& c) {
        Bytes want = m_before;
        Expected(c, m_in.data(), want.data());
        for (const Stores stores : {Stores::Streaming, Stores::Ordinary}) {
            std::ranges::copy(m_before, m_out.begin());
            Deinterlace(c, m_in.data(), m_out.data(), stores);
            if (!std::ranges::equal(want, m_out)) {
                break;
            }
        }
        const auto at = std::ranges::mismatch(want, m_out).in1 - want.begin();
        if (at == static_cast<std::ptrdiff_t>(want.size())) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure()
               << c << ": row " << at / c.shape.stride << " byte " << at % c.shape.stride << " differs";
    }

private:
    GuardedBlocks m_blocks;
    RandomBytes m_random;
    std::span<std::uint8_t> m_in;
    std::span<std::uint8_t> m_out;
    Bytes m_before;
};

TEST(Frames, FormatsAndOddSizes) {
    TestFrames frames(200 * 4 * 9);
    for (const std::int32_t bits : {8, 16, 24, 32}) {
        for (const std::int32_t width : {1, 2, 3, 5, 6, 8, 11, 16, 17, 33, 65, 131}) {
            for (const std::int32_t height : {1, 2, 3, 4, 5, 8, 9}) {
                for (const bool topDown : {false, true}) {
                    const FrameShape shape = ShapeOf(width, height, bits, topDown);
                    ASSERT_TRUE(shape.IsProcessable());
                    frames.Fill(shape, !topDown);
                    for (const Method& method : kMethods) {
                        ASSERT_TRUE(frames.Matches({shape, method, false, {}}));
                        ASSERT_TRUE(frames.Matches({shape, method, true, {0, 0, width, height}}));
                    }
                }
            }
        }
    }
}

// Rows that share cache lines with those after them, at every place in a line.
TEST(Frames, EveryPlaceInACacheLine) {
    TestFrames frames(64 + 328 * 11);
    for (const std::int32_t width : {3, 20, 64, 100, 253, 328}) {
        for (std::size_t away = 0; away < 64; ++away) {
            const FrameShape shape = ShapeOf(width, 11, 8, false);
            frames.Fill(shape, away % 2 != 0, away * 5 % 64, away);
            for (int method = 0; method < 4; ++method) {
                ASSERT_TRUE(frames.Matches({shape, kMethods[method], false, {}})) << away << " bytes away";
                ASSERT_TRUE(frames.Matches({shape, kMethods[method], true, {0, 2, width, 9}})) << away << " bytes away";
            }
        }
    }
}

TEST(Frames, StripsHaveRoom) {
    for (const std::int32_t most : {CarriedRows::kMaxBytesOfTwo, CarriedRows::kMaxBytesOfOne}) {
        for (std::int32_t bytes = 1; bytes <= 4 * most; ++bytes) {
            const std::int32_t strip = StripBytes(bytes, most);
            ASSERT_TRUE(strip <= most && (strip == bytes || strip % 64 == 0)) << bytes << ": strips of " << strip;
        }
    }
}

// Rows so long that they are blended strip by strip.
TEST(Frames, LongRows) {
    TestFrames frames(9001 * 4 * 23);
    for (const std::int32_t width : {3073, 4500, 9001}) {
        const FrameShape shape = ShapeOf(width, 23, 32, false);
        frames.Fill(shape, width % 2 != 0);
        for (const Method& method : kMethods) {
            ASSERT_TRUE(frames.Matches({shape, method, false, {}}));
            ASSERT_TRUE(frames.Matches({shape, method, true, {3, 2, width - 5, 21}}));
        }
    }
}

// All edges from two before a small frame to two behind it: inside, cut, empty, inverted and outside.
TEST(Frames, EverySmallRegion) {
    constexpr std::int32_t kWidth = 6;
    constexpr std::int32_t kHeight = 5;
    TestFrames frames(4096);
    for (const std::int32_t bits : {8, 16, 24}) {
        for (const bool topDown : {false, true}) {
            const FrameShape shape = ShapeOf(kWidth, kHeight, bits, topDown);
            frames.Fill(shape, topDown);
            FrameCase c{shape, {}, true, {}};
            for (c.region.left = -2; c.region.left <= kWidth + 2; ++c.region.left) {
                for (c.region.right = -2; c.region.right <= kWidth + 2; ++c.region.right) {
                    for (c.region.top = -2; c.region.top <= kHeight + 2; ++c.region.top) {
                        for (c.region.bottom = -2; c.region.bottom <= kHeight + 2; ++c.region.bottom) {
                            for (int method = 0; method < 3; ++method) {
                                c.method = kMethods[method];
                                ASSERT_TRUE(frames.Matches(c));
                            }
                        }
                    }
                }
            }
        }
    }
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
            << FrameCase{c.shape, kMethods[0], true, c.region} << ": " << area.offset << " " << area.m_lCropWidth << " "
            << area.m_lCropHeight;
    }
}

// --- detection and output in one go

// Rows alike from `from` to `to`, else in turn black and white.
void FillCombed(const FrameShape& shape, std::int32_t from, std::int32_t to, std::uint8_t* frame) {
    for (std::int32_t y = 0; y < shape.height; ++y) {
        const bool white = y >= from && y < to && y % 2;
        for (std::int32_t i = 0; i < shape.stride; ++i) {
            frame[y * shape.stride + i] = static_cast<std::uint8_t>(white ? 255 - i % 50 : i % 50);
        }
    }
}

struct AutomaticCase {
    FrameCase frame;
    std::ptrdiff_t outputAt; // bytes from the input's start to the output's
    Stores stores;
    double sensitivity;
    std::int32_t owed; // frames that the hold owes before
};

constexpr std::int32_t kHold = 5;

// What the frame driver does with a frame in automatic mode, against the steps one after the other: search, hold,
// output.
testing::AssertionResult EqualsItsSteps(const AutomaticCase& c, bool interlaced, const Bytes& start) {
    const FrameShape& shape = c.frame.shape;
    Bytes want = start;
    std::int32_t owed = c.owed;
    const bool deinterlaced = AdvanceHold(interlaced, kHold, owed);
    if (deinterlaced) {
        Expected(c.frame, want.data(), want.data() + c.outputAt);
    } else {
        std::memmove(want.data() + c.outputAt, want.data(), static_cast<std::size_t>(shape.Bytes()));
    }
    Bytes got = start;
    const CombSearch search(got.data(), shape, FrameComber(shape.width, shape.bits, nullptr),
                            InterlaceThreshold(shape.width, shape.height, c.sensitivity));
    int plansRead = 0;
    const auto readPlan = [&] { return ++plansRead, PlanOf(c.frame); };
    std::int32_t counter = c.owed;
    const bool written =
        WriteAutomaticFrame({shape, got.data(), got.data() + c.outputAt}, search, readPlan, c.stores, kHold, counter);
    const auto at = std::ranges::mismatch(want, got).in1 - want.begin();
    if (at == static_cast<std::ptrdiff_t>(want.size()) && written == deinterlaced && counter == owed &&
        plansRead == (deinterlaced ? 1 : 0)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << c.frame << " owed " << c.owed << ", then " << counter << " output at "
                                       << c.outputAt << " sensitivity " << c.sensitivity << ": byte " << at - c.outputAt
                                       << ", plans read " << plansRead;
}

// Combing that decides in the first rows, in the last ones and nearly; frames apart, at odd addresses, overlapping and
// the same; a hold that ends, that is over and that decides alone. Methods, regions and stores take turns.
TEST(Frames, AutomaticEqualsItsSteps) {
    int turn = 0;
    for (const FrameShape& shape : {ShapeOf(80, 60, 24, false), ShapeOf(1040, 45, 16, false), ShapeOf(67, 70, 24, true),
                                    ShapeOf(52, 8, 32, false), ShapeOf(9, 3, 16, false)}) {
        const std::ptrdiff_t bytes = shape.Bytes();
        Bytes start(static_cast<std::size_t>(2 * bytes + 64), 0xEE);
        for (const auto& [from, to] : {std::pair{0, 0}, {0, shape.height}, {shape.height - 7, shape.height}, {0, 6}}) {
            FillCombed(shape, from, to, start.data());
            const std::uint32_t count =
                ScanFrame(start.data(), shape.width, shape.height, shape.bits, nullptr, 1).count;
            const double area = std::max((shape.height - 3) * shape.width / 16, 1);
            for (const double sensitivity : {1.0, 8.0, (count + 0.5) / area, (count - 0.5) / area}) {
                const bool interlaced = count > InterlaceThreshold(shape.width, shape.height, sensitivity);
                for (const std::ptrdiff_t outputAt : {bytes, bytes + 1, bytes + 48, bytes - 1, std::ptrdiff_t{0}}) {
                    for (const std::int32_t owed : {0, 1, 2, -1, kHold}) {
                        ++turn;
                        const bool useRegion = turn / 3 % 2 != 0;
                        const FrameCase frame{shape, kMethods[turn % 3], useRegion, {5, 2, 40, shape.height - 3}};
                        const auto stores = turn / 6 % 2 ? Stores::Streaming : Stores::Ordinary;
                        ASSERT_TRUE(EqualsItsSteps({frame, outputAt, stores, sensitivity, owed}, interlaced, start));
                    }
                }
            }
        }
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

// Columns of one byte per row, as they come out of a frame 4 pixels wide at 8 bits.
TEST(Frames, RowsByExample) {
    const struct {
        Method method;
        Bytes rows, expected;
    } kCases[] = {
        {kMethods[2], {7}, {7}},
        {kMethods[1], {7, 90}, {7, 90}},
        {kMethods[1], {10, 99, 21}, {10, 15, 21}},
        {kMethods[0], {10, 99, 21}, {10, 99, 21}},
        {kMethods[0], {1, 2, 3, 5, 9}, {1, 2, 3, 5, 9}},
        {kMethods[0], {1, 2, 77, 5, 9}, {1, 2, 3, 5, 9}},
        {kMethods[1], {1, 77, 4, 77, 9, 77}, {1, 2, 4, 6, 9, 77}},
        {kMethods[2], {0, 0, 0, 200, 200, 200}, {0, 0, 50, 150, 200, 200}},
        {kMethods[3], {0, 9, 200, 7, 3}, {0, 9, 200, 7, 3}},
        {kMethods[4], {0, 9, 200, 7, 3}, {0, 9, 200, 7, 3}},
    };
    for (const auto& c : kCases) {
        const FrameShape shape = ShapeOf(4, static_cast<std::int32_t>(c.rows.size()), 8, false);
        Bytes in;
        Bytes want;
        for (std::size_t y = 0; y < c.rows.size(); ++y) {
            in.insert(in.end(), 4, c.rows[y]);
            want.insert(want.end(), 4, c.expected[y]);
        }
        Bytes out(in.size(), 0xEE);
        const FrameCase frame{shape, c.method, false, {}};
        Deinterlace(frame, in.data(), out.data());
        EXPECT_EQ(want, out) << frame << " example " << &c - kCases;
    }
}

// 3 pixels of 24 bits: 9 bytes of each 12 are pixels.
TEST(Frames, PaddingIsCombinedNotCopied) {
    const FrameShape shape = ShapeOf(3, 3, 24, false);
    Bytes in(36);
    std::fill_n(in.begin(), 12, std::uint8_t{10});
    std::fill_n(in.begin() + 12, 12, std::uint8_t{70});
    std::fill_n(in.begin() + 24, 12, std::uint8_t{30});
    for (const bool useRegion : {false, true}) {
        for (const Method& method : {kMethods[1], kMethods[2]}) {
            Bytes out(36, 0xEE);
            Deinterlace({shape, method, useRegion, {0, 0, 3, 3}}, in.data(), out.data());
            const int combined = method.merge ? 45 : 20;
            EXPECT_EQ(10, out[8]);
            EXPECT_EQ(combined, out[20]);
            // With a region the whole frame was copied first and the padding is the input's.
            EXPECT_EQ(useRegion ? 10 : 0xEE, out[9]) << "padding of a copied row";
            EXPECT_EQ(useRegion ? 70 : combined, out[21]) << "padding of a combined row";
            EXPECT_EQ(useRegion ? 30 : 0xEE, out[35]);
        }
    }
}

// The frames are one and the same, or one row apart.
TEST(Frames, OverlappingFramesAreWrittenRowByRow) {
    RandomBytes random(TestSeed());
    for (const std::int32_t width : {3, 9, 40}) {
        for (const Method& method : kMethods) {
            for (const int rowsApart : {0, 1, -1}) {
                const FrameShape shape = ShapeOf(width, 7, 24, false);
                Bytes got(static_cast<std::size_t>(shape.stride) * 9);
                random.Fill(got);
                Bytes want = got;
                const FrameCase c{shape, method, false, {}};
                const std::ptrdiff_t in = shape.stride;
                const std::ptrdiff_t out = in + rowsApart * in;
                Expected(c, want.data() + in, want.data() + out);
                Deinterlace(c, got.data() + in, got.data() + out);
                ASSERT_EQ(want, got) << c << " rows apart " << rowsApart;
            }
        }
    }
}

} // namespace
