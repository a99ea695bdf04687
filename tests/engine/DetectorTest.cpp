// The combing detector against the four-row rule written out, and the hold that follows it.
#include "engine/detector/AutoHold.h"
#include "engine/pixels/FrameShape.h"
#include "engine/detector/InterlaceDetector.h"
#include "tests/support/RandomBytes.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cmath>
#include <limits>
#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kNoNumber = std::nan("");

using ColorTable = std::array<ColorEntry, 256>;

struct Frame {
    std::int32_t width, height, bits;
    const ColorEntry* table;
    std::uint8_t* bytes;

    std::int32_t Stride() const { return StrideBytes(bits, width); }
    std::size_t Bytes() const { return static_cast<std::size_t>(Stride()) * static_cast<std::size_t>(height); }
    CombScan Scan(double sensitivity) const { return ScanFrame(bytes, width, height, bits, table, sensitivity); }
    bool Interlaced(double sensitivity) const {
        return IsFrameInterlaced(bytes, width, height, bits, table, sensitivity) == 1;
    }
};

std::ostream& operator<<(std::ostream& out, const Frame& f) {
    return out << f.width << "x" << f.height << " of " << f.bits << " bits" << (f.table ? " with table" : "")
               << " seed=" << TestSeed();
}

int Component(const Frame& f, std::int32_t row, std::int32_t position, int component) {
    const std::uint8_t* start = f.bytes + row * f.Stride();
    switch (f.bits) {
    case 8: {
        const ColorEntry& color = f.table[start[position]];
        const int components[] = {color.blue, color.green, color.red};
        return components[component];
    }
    case 24:
        return start[position * 3 + component];
    default:
        return start[position * 4 + component];
    }
}

std::uint32_t CombedPositions(const Frame& f) {
    if (f.bits == 8 && !f.table) {
        return 0;
    }
    const std::int32_t positions = f.bits == 16 ? f.width / 2 : f.width;
    const int components = f.bits == 16 ? 4 : 3;
    std::uint32_t count = 0;
    for (std::int32_t row = 0; row + 3 < f.height; ++row) {
        for (std::int32_t position = 0; position < positions; ++position) {
            bool combed = true;
            for (std::int32_t step = row; step < row + 3 && combed; ++step) {
                int distance = 0;
                for (int i = 0; i < components; ++i) {
                    const int d = Component(f, step, position, i) - Component(f, step + 1, position, i);
                    distance += d * d;
                }
                combed = distance > 24 * 24;
            }
            count += combed ? 1u : 0u;
        }
    }
    return count;
}

constexpr int kContents = 9, kCombed = 0, kStripes = 1;

// Row y of a frame filled with one kind of content: combed, stripes, anything, and steps just below the rule and above
// it, alone, in all bytes, here and there and in one corner.
void FillRow(RandomBytes& random, std::span<std::uint8_t> row, std::int32_t y, int content) {
    for (std::size_t i = 0; i < row.size(); ++i) {
        const int odd = y % 2;
        const int value[kContents] = {odd * 255,
                                      y / 2 % 2 * 255,
                                      random.Byte(),
                                      i % 12 ? 0 : odd * 24,
                                      i % 12 ? 0 : odd * 25,
                                      odd * (12 + random.Below(2)),
                                      odd * (13 + random.Below(2)),
                                      random.Below(20) ? 0 : odd * 60,
                                      100 + (y > 3 && i > 20 ? odd * 60 : 0)};
        row[i] = static_cast<std::uint8_t>(value[content]);
    }
}

void FillFrame(RandomBytes& random, const Frame& f, int content) {
    const auto stride = static_cast<std::size_t>(f.Stride());
    for (std::int32_t y = 0; y < f.height; ++y) {
        FillRow(random, {f.bytes + y * f.Stride(), stride}, y, content);
    }
}

ColorTable RandomTable(RandomBytes& random) {
    ColorTable table;
    for (ColorEntry& color : table) {
        color = {random.Byte(), random.Byte(), random.Byte(), random.Byte()};
    }
    return table;
}

// Colours whose distances are those of their indices; the reserved byte takes no part.
ColorTable BlueTable() {
    ColorTable table;
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = {static_cast<std::uint8_t>(i), 7, 9, static_cast<std::uint8_t>(i * 77)};
    }
    return table;
}

// Sensitivities whose thresholds lie just below, at and above a count, and ones that no setting allows.
std::vector<double> Sensitivities(std::uint32_t count, std::int32_t area16) {
    std::vector<double> all{1.0, 0.001, 8.0, 0.0, -0.0, -1.0, 1e-300, 1e300, -1e300, kInfinity, -kInfinity, kNoNumber};
    for (const double threshold : {count - 1.5, count - 0.5, count + 0.5, count + 1.5}) {
        all.push_back(area16 ? threshold / area16 : threshold);
    }
    return all;
}

testing::AssertionResult AgreesWithTheRule(const Frame& f) {
    const std::uint32_t expected = CombedPositions(f);
    for (const double sensitivity : Sensitivities(expected, (f.height - 3) * f.width / 16)) {
        const CombScan scan = f.Scan(sensitivity);
        const bool verdict = scan.count > scan.threshold;
        if (scan.count != expected || scan.interlaced != verdict || f.Interlaced(sensitivity) != verdict) {
            return testing::AssertionFailure()
                   << f << ": counted " << scan.count << " instead of " << expected << ", threshold " << scan.threshold
                   << ", scan says " << scan.interlaced << ", detector " << f.Interlaced(sensitivity)
                   << ", sensitivity " << sensitivity;
        }
    }
    return testing::AssertionSuccess();
}

TEST(Detector, FollowsTheFourRowRule) {
    RandomBytes random(TestSeed());
    const ColorTable tables[] = {RandomTable(random), BlueTable()};
    for (const std::int32_t bits : {8, 16, 24, 32}) {
        for (const std::int32_t width : {1, 2, 3, 5, 15, 16, 17, 31, 33, 64, 67, 131}) {
            for (const std::int32_t height : {1, 2, 3, 4, 5, 6, 7, 8, 9, 24}) {
                Frame f{width, height, bits, bits == 8 ? tables[width % 2].data() : nullptr, nullptr};
                std::vector<std::uint8_t> bytes(f.Bytes()); // sanitizers see who reads beside them
                f.bytes = bytes.data();
                for (int content = 0; content < kContents; ++content) {
                    FillFrame(random, f, content);
                    ASSERT_TRUE(AgreesWithTheRule(f)) << "content " << content;
                }
            }
        }
    }
}

TEST(Detector, NothingIsCombedWithoutColoursOrAFrame) {
    std::vector<std::uint8_t> bytes(64 * 64);
    RandomBytes random(TestSeed());
    const ColorTable table = RandomTable(random);
    const Frame frames[] = {
        {64, 64, 8, nullptr, bytes.data()},
        {64, 64, 1, table.data(), bytes.data()},
        {64, 64, 0, nullptr, bytes.data()},
        {64, 3, 24, nullptr, nullptr},
        {0, 64, 24, nullptr, nullptr},
        {-64, 64, 24, nullptr, nullptr},
        {64, -64, 24, nullptr, nullptr},
        {65536, 65536, 24, nullptr, nullptr},
        {INT_MAX, INT_MAX, 32, nullptr, nullptr},
        {INT_MIN, INT_MIN, 16, nullptr, nullptr},
        {1, INT_MAX, 16, nullptr, nullptr},
    };
    random.Fill(bytes);
    for (const Frame& f : frames) {
        EXPECT_EQ(0u, f.Scan(0.0).count) << f;
        EXPECT_FALSE(f.Interlaced(0.0)) << f;
    }
}

TEST(Detector, ThresholdComesFromPixels) {
    const struct {
        std::int32_t width, height;
        double sensitivity;
        std::uint32_t threshold;
    } kCases[] = {
        {720, 480, 1.0, 21'465},
        {720, 480, 8.0, 171'720},
        {15, 4, 8.0, 0},
        {720, 480, 0.0, 0},
        {720, 480, 1.0 / 21'465 * 0.99, 0},
        {720, 480, -0.00001, 0},        // truncated toward zero
        {720, 480, -1.0, 0u - 21'465u}, // the low 32 bits
        {720, 480, 4294967296.0, 0},    // a multiple of 2 to the power of 32
        {720, 480, 1e300, 0},
        {720, 480, -1e300, 0},
        {720, 480, kInfinity, 0},
        {720, 480, -kInfinity, 0},
        {720, 480, kNoNumber, 0},
        {100, 2, 1.0, 0u - 6u}, // -100 / 16
        {0, 480, 1.0, 0},
        {0, 480, kInfinity, 0},                // 0 x infinity
        {65536, 65539, 1.0, 0},                // the area wraps to 0
        {65536, 32771, 1.0, 0u - 0x08000000u}, // and to its least
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(c.threshold, InterlaceThreshold(c.width, c.height, c.sensitivity))
            << c.width << "x" << c.height << " sensitivity " << c.sensitivity;
    }
    std::vector<std::uint8_t> bytes(720 * 480 * 3);
    for (const std::int32_t bits : {16, 24}) {
        EXPECT_EQ(21'465u, (Frame{720, 480, bits, nullptr, bytes.data()}.Scan(1.0).threshold)) << bits;
    }
}

// Only the upper rows exist; sanitizers see who reads those below.
TEST(Detector, StopsWhenTheVerdictIsSettled) {
    constexpr std::int32_t kWidth = 256;
    for (const std::int32_t bits : {16, 24, 32}) {
        const auto upper = static_cast<std::size_t>(StrideBytes(bits, kWidth)) * 320;
        std::vector<std::uint8_t> bytes(upper);
        RandomBytes random(TestSeed());
        const Frame rows{kWidth, 320, bits, nullptr, bytes.data()};
        const Frame whole{kWidth, 480, bits, nullptr, rows.bytes};
        FillFrame(random, rows, kCombed);
        EXPECT_TRUE(whole.Interlaced(1.0)) << bits;
        FillFrame(random, rows, kStripes);
        EXPECT_FALSE(whole.Interlaced(8.0)) << bits;
    }
}

// "+" a frame called interlaced, "-" one that isn't; below: deinterlaced or not.
TEST(AutoHold, CountsDown) {
    const struct {
        std::int32_t hold;
        std::string frames, deinterlaced;
    } kCases[] = {
        {1, "-+-+-+++--", ".#.#.###.."},
        {3, "---+-----+-+----", "...###...#####.."},
        {125, "+" + std::string(300, '-'), std::string(125, '#') + std::string(176, '.')},
        {125, "--+" + std::string(100, '-') + "+" + std::string(130, '-'),
         ".." + std::string(226, '#') + std::string(6, '.')},
    };
    for (const auto& c : kCases) {
        std::int32_t counter = 0;
        std::string deinterlaced;
        for (const char frame : c.frames) {
            deinterlaced += AdvanceHold(frame == '+', c.hold, counter) ? '#' : '.';
            ASSERT_GE(counter, -1);
        }
        EXPECT_EQ(c.deinterlaced, deinterlaced);
        EXPECT_EQ(-1, counter);
    }
}

TEST(AutoHold, FramesInFiveSeconds) {
    constexpr struct {
        std::int64_t timePerFrame;
        std::int32_t frames;
    } kCases[] = {
        {0, 150},       {400'000, 125},  {333'667, 145}, {333'333, 150}, {10'000'000, 5}, {10'000'001, 1},
        {6'000'000, 5}, {1, 50'000'000}, {-1, 1},        {-400'000, 1},  {INT64_MAX, 1},  {INT64_MIN, 1},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(c.frames, HoldFrames(c.timePerFrame)) << c.timePerFrame;
    }
}

} // namespace
