// The row kernels: the reference by example, every variant against the reference, and the checker against faults.
#include "engine/kernels/RowLoops.h"
#include "tests/engine/KernelChecker.h"
#include "tests/support/GuardedBlocks.h"
#include "tests/support/RandomBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

namespace {

TEST(Kernels, ReferenceByExample) {
    constexpr struct {
        std::uint8_t above, current, below, average, blend;
    } kExamples[] = {
        {255, 255, 254, 254, 254}, {1, 0, 2, 1, 0}, {0, 0, 200, 100, 50}, {0, 200, 200, 100, 150}, {0, 0, 1, 0, 0},
        {255, 255, 255, 255, 255}, {0, 1, 1, 0, 0}, {1, 1, 1, 1, 1},      {255, 0, 255, 255, 127}, {3, 255, 0, 1, 128},
    };
    for (const auto& e : kExamples) {
        std::uint8_t average = 0;
        std::uint8_t blend = 0;
        AverageBytes(&average, &e.above, &e.below, 1);
        BlendBytes(&blend, &e.above, &e.current, &e.below, 1);
        EXPECT_EQ(e.average, average) << +e.above << " and " << +e.below;
        EXPECT_EQ(e.blend, blend) << +e.above << ", " << +e.current << ", " << +e.below;
    }
}

// One sample wide, six rows: the steps between them, in all bytes compared or in the first alone.
TEST(Kernels, ReferenceCountsTriosByExample) {
    constexpr struct {
        std::uint8_t first[6];  // the sample's first byte, row by row
        std::uint32_t count[3]; // by pairsAfter
    } kExamples[] = {
        {{0, 25, 0, 25, 0, 25}, {1, 2, 3}},     {{0, 24, 0, 24, 0, 24}, {0, 0, 0}},
        {{0, 25, 50, 75, 100, 125}, {1, 2, 3}}, {{0, 25, 0, 25, 25, 0}, {1, 1, 1}},
        {{0, 0, 255, 0, 255, 255}, {0, 1, 1}},  {{9, 9, 9, 90, 9, 90}, {0, 0, 1}},
        {{0, 25, 0, 24, 255, 0}, {0, 0, 0}},
    };
    for (const auto& e : kExamples) {
        std::uint8_t rows[6][4] = {};
        for (int y = 0; y < 6; ++y) {
            rows[y][0] = e.first[y];
        }
        for (int pairsAfter = 0; pairsAfter <= 2; ++pairsAfter) {
            const auto count = [&](CombTriosFn comb) { return comb(rows[2], 4, 1, pairsAfter); };
            SCOPED_TRACE(testing::Message() << "example " << &e - kExamples << " pairsAfter " << pairsAfter);
            EXPECT_EQ(e.count[pairsAfter], count(kScalarKernels.comb16));
            EXPECT_EQ(e.count[pairsAfter], count(kScalarKernels.comb24));
            EXPECT_EQ(e.count[pairsAfter], count(kScalarKernels.comb32));
        }
    }
}

class KernelVariant : public testing::TestWithParam<std::size_t> {};

TEST_P(KernelVariant, EqualsTheReference) {
    const RowKernels& variant = *AllRowKernels()[GetParam()];
    if (!variant.supported()) {
        std::cout << variant.name << " is not supported by this processor: not checked\n";
        GTEST_SKIP() << variant.name << " is not supported by this processor";
    }
    EXPECT_NE(variant.cached.blend, kScalarKernels.cached.blend);
    EXPECT_NE(variant.streamed.blend, variant.cached.blend);
    EXPECT_NE(variant.comb16, kScalarKernels.comb16);
    EXPECT_NE(variant.comb24, kScalarKernels.comb24);
    EXPECT_NE(variant.comb32, kScalarKernels.comb32);
    EXPECT_EQ("", CheckRowKernels(variant, TestSeed()));
}

// Blocks so large that they are copied in two halves.
TEST_P(KernelVariant, CopiesLargeBlocks) {
    const RowKernels& variant = *AllRowKernels()[GetParam()];
    if (!variant.supported()) {
        GTEST_SKIP() << variant.name << " is not supported by this processor";
    }
    constexpr std::size_t kMost = 300'000;
    std::vector<std::uint8_t> in(kMost);
    RandomBytes(TestSeed()).Fill(in);
    for (const std::size_t bytes : {131'071u, 131'072u, 131'073u, 131'136u, 131'199u, 299'000u}) {
        for (const std::size_t at : {0u, 1u, 48u, 63u}) {
            for (const RowWriters* writers : {&variant.cached, &variant.streamed}) {
                std::vector<std::uint8_t> out(kMost + 64, 0xC5);
                std::vector<std::uint8_t> want = out;
                std::copy_n(in.begin(), bytes, want.begin() + static_cast<std::ptrdiff_t>(at));
                OpenLine line;
                writers->copy(out.data() + at, in.data(), bytes, line);
                writers->finish(line);
                ASSERT_TRUE(want == out) << bytes << " bytes to " << at;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Kernels, KernelVariant, testing::Range<std::size_t>(1, AllRowKernels().size()),
                         [](const auto& index) { return std::string(AllRowKernels()[index.param]->name); });

// A vector that notes the lines it streams.
struct NotingVector {
    using Type = std::array<std::uint8_t, kCacheLine>;
    using Smaller = void;
    static constexpr std::size_t kBytes = kCacheLine;
    static inline std::vector<const std::uint8_t*> streamed;

    static Type Load(const std::uint8_t* p) {
        return std::to_array(*reinterpret_cast<const std::uint8_t(*)[kBytes]>(p));
    }
    static void Store(std::uint8_t* p, Type v) { std::ranges::copy(v, p); }
    static void Stream(std::uint8_t* p, Type v) { streamed.push_back(p), Store(p, v); }
};

// Rows without a gap stream every line that is wholly theirs, once.
TEST(Kernels, StreamWholeLines) {
    alignas(kCacheLine) static std::uint8_t out[64 + 5 * 256];
    const std::vector<std::uint8_t> in(256, 7);
    for (const std::size_t bytes : {10u, 64u, 72u, 131u, 256u}) {
        for (std::size_t at = 0; at < 64; ++at) {
            std::vector<const std::uint8_t*> want;
            for (std::size_t i = (at + 63) / 64 * 64; i + 64 <= at + 5 * bytes; i += 64) {
                want.push_back(out + i);
            }
            NotingVector::streamed.clear();
            OpenLine line;
            for (std::size_t row = 0; row < 5; ++row) {
                VectorCopy<NotingVector, true>(out + at + row * bytes, in.data(), bytes, line);
            }
            ASSERT_EQ(want, NotingVector::streamed) << bytes << " bytes at " << at;
        }
    }
}

// --- the checker itself

RowRun Cut(RowRun run, std::size_t bytes) {
    run.bytes = bytes;
    return run;
}

template <class Break>
RowKernels Broken(Break breakOne) {
    RowKernels kernels = kScalarKernels;
    kernels.name = "broken";
    breakOne(kernels);
    return kernels;
}

TEST(Checker, ReportsBrokenKernels) {
    static constexpr RebuildRowsFn kForgetsToCarry = [](const RowRun& run, std::uint8_t* carried, OpenLine&) {
        AverageBytes(run.out, carried, run.below, run.bytes);
    };
    static constexpr RebuildRowsFn kWritesOneMore = [](const RowRun& run, std::uint8_t* carried, OpenLine& line) {
        kScalarKernels.cached.rebuild(run, carried, line);
        run.out[run.bytes] = 0;
    };
    static constexpr BlendRowsFn kForgetsTail = [](const RowRun& run, std::uint8_t* older, std::uint8_t* newer,
                                                   OpenLine& line) {
        kScalarKernels.cached.blend(Cut(run, run.bytes / 16 * 16), older, newer, line);
    };
    static constexpr CombTriosFn kCountsNoTail = [](const std::uint8_t* row, std::ptrdiff_t stride,
                                                    std::int32_t samples, int pairsAfter) {
        return kScalarKernels.comb16(row, stride, samples / 32 * 32, pairsAfter);
    };
    static constexpr CombTriosFn kCountsTwoTrios = [](const std::uint8_t* row, std::ptrdiff_t stride,
                                                      std::int32_t samples, int pairsAfter) {
        return kScalarKernels.comb24(row, stride, samples, std::min(pairsAfter, 1));
    };
    const struct {
        RowKernels kernels;
        const char* reported;
    } kBroken[] = {
        {Broken([](RowKernels& k) { k.streamed.rebuild = kForgetsToCarry; }), "rebuild differs"},
        {Broken([](RowKernels& k) { k.cached.rebuild = kWritesOneMore; }), "rebuild wrote outside"},
        {Broken([](RowKernels& k) { k.streamed.blend = kForgetsTail; }), "blend differs"},
        {Broken([](RowKernels& k) { k.comb16 = kCountsNoTail; }), "comb16 counts"},
        {Broken([](RowKernels& k) { k.comb24 = kCountsTwoTrios; }), "comb24 counts"},
        {Broken([](RowKernels& k) { k.comb32 = k.comb16; }), "comb32 counts"}, // compares all four bytes
    };
    for (const auto& broken : kBroken) {
        const std::string report = CheckRowKernels(broken.kernels, TestSeed());
        EXPECT_NE(std::string::npos, report.find(broken.reported)) << broken.reported << ": \"" << report << '"';
        EXPECT_NE(std::string::npos, report.find("seed=" + std::to_string(TestSeed()))) << broken.reported;
    }
}

#if GTEST_HAS_DEATH_TEST && !defined(_WIN32)
// What the checker rests on: a byte next to a block can't be touched.
TEST(CheckerDeathTest, ClosedPagesEndTheProgram) {
    const GuardedBlocks blocks(1, 1);
    volatile std::uint8_t* behind = blocks.AtEnd(0, 1) + 1;
    volatile std::uint8_t* before = blocks.AtStart(0) - 1;
    EXPECT_DEATH((void)*behind, "");
    EXPECT_DEATH((void)*before, "");
    EXPECT_DEATH(*behind = 1, "");
}
#endif

// Test builds may force a level; any other name is answered with the reference.
TEST(Kernels, ActiveIsTheBestOrTheForcedOne) {
    const char* forced = nullptr;
#if defined(NMFV_CPU_OVERRIDE)
    forced = std::getenv("NMFV_CPU");
#endif
    const char* expected = kScalarKernels.name;
    for (const RowKernels* variant : AllRowKernels()) {
        if (variant->supported() && (!forced || std::strcmp(forced, variant->name) == 0)) {
            expected = variant->name;
        }
    }
    EXPECT_STREQ(expected, ActiveRowKernels().name);
}

} // namespace
