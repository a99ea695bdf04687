// The row kernels: the reference by example, every variant against the reference, and the checker against faults.
#include "tests/engine/KernelChecker.h"
#include "tests/engine/PlainKernels.h"
#include "tests/support/GuardedBlocks.h"
#include "tests/support/RandomBytes.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

namespace {

const RowKernels& Reference() {
    return AllRowKernels().front();
}

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
        Reference().cached.average(&average, &e.above, &e.below, 1);
        Reference().cached.blend121(&blend, &e.above, &e.current, &e.below, 1);
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
            EXPECT_EQ(e.count[pairsAfter], count(Reference().comb16));
            EXPECT_EQ(e.count[pairsAfter], count(Reference().comb24));
            EXPECT_EQ(e.count[pairsAfter], count(Reference().comb32));
        }
    }
}

TEST(Kernels, ReferenceEqualsThePlainRules) {
    EXPECT_EQ("", CheckRowKernels(Reference(), kPlainKernels, TestSeed()));
}

class KernelVariant : public testing::TestWithParam<std::size_t> {};

TEST_P(KernelVariant, EqualsTheReference) {
    const RowKernels& variant = AllRowKernels()[GetParam()];
    if (!variant.supported()) {
        std::cout << variant.name << " is not supported by this processor: not checked\n";
        GTEST_SKIP() << variant.name << " is not supported by this processor";
    }
    EXPECT_NE(variant.cached.blend, Reference().cached.blend);
    EXPECT_NE(variant.streamed.blend, variant.cached.blend);
    EXPECT_NE(variant.comb16, Reference().comb16);
    EXPECT_NE(variant.comb24, Reference().comb24);
    EXPECT_NE(variant.comb32, Reference().comb32);
    for (std::uint32_t seed = TestSeed(); seed < TestSeed() + 3; ++seed) {
        ASSERT_EQ("", CheckRowKernels(variant, Reference(), seed));
    }
}

// Blocks so large that they are copied in two halves.
TEST_P(KernelVariant, CopiesLargeBlocks) {
    const RowKernels& variant = AllRowKernels()[GetParam()];
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
                writers->copy(out.data() + at, in.data(), bytes);
                writers->finish();
                ASSERT_TRUE(want == out) << bytes << " bytes to " << at;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Kernels, KernelVariant, testing::Range<std::size_t>(1, AllRowKernels().size()),
                         [](const auto& index) { return std::string(AllRowKernels()[index.param].name); });

// --- the checker itself

void AverageWritesOneMore(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* below, std::size_t bytes) {
    PlainAverage(out, above, below, bytes);
    out[bytes] = 0;
}

void BlendForgetsTail(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* current,
                      const std::uint8_t* below, std::size_t bytes) {
    PlainBlend(out, above, current, below, bytes / 16 * 16);
}

std::uint32_t CombForgetsTail(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples, int pairsAfter) {
    return PlainCombTrios<4, 4>(row, stride, samples / 32 * 32, pairsAfter);
}

void RebuildForgetsToCarry(const RowRun& run, std::uint8_t* carried) {
    PlainAverage(run.out, carried, run.below, run.bytes);
}

template <auto Way, auto Member, auto Kernel>
RowKernels BrokenIn() {
    RowKernels kernels = kPlainKernels;
    kernels.name = "broken";
    (kernels.*Way).*Member = Kernel;
    return kernels;
}

template <auto Member, auto Kernel>
RowKernels BrokenIn() {
    RowKernels kernels = kPlainKernels;
    kernels.name = "broken";
    kernels.*Member = Kernel;
    return kernels;
}

TEST(Checker, ReportsBrokenKernels) {
    const struct {
        const char* fault;
        RowKernels kernels;
        const char* reported;
    } kBroken[] = {
        {"rounds up", BrokenIn<&RowKernels::cached, &RowWriters::average, PlainAverage<1>>(), "average differs"},
        {"rounds to nearest", BrokenIn<&RowKernels::streamed, &RowWriters::blend121, PlainBlend<2>>(),
         "blend121 differs"},
        {"writes one byte more", BrokenIn<&RowKernels::cached, &RowWriters::average, AverageWritesOneMore>(),
         "average wrote outside"},
        {"forgets the tail", BrokenIn<&RowKernels::streamed, &RowWriters::blend121, BlendForgetsTail>(),
         "blend121 differs"},
        {"carries the wrong row", BrokenIn<&RowKernels::streamed, &RowWriters::rebuild, RebuildForgetsToCarry>(),
         "rebuild differs"},
        {"counts 576", BrokenIn<&RowKernels::comb16, PlainCombTrios<4, 4, 575>>(), "comb16 counts"},
        {"misses 577", BrokenIn<&RowKernels::comb24, PlainCombTrios<3, 3, 577>>(), "comb24 counts"},
        {"compares all bytes", BrokenIn<&RowKernels::comb32, PlainCombTrios<4, 4>>(), "comb32 counts"},
        {"leaves the last trio out", BrokenIn<&RowKernels::comb24, PlainCombTrios<3, 3, 576, 2>>(), "comb24 counts"},
        {"forgets the samples' tail", BrokenIn<&RowKernels::comb16, CombForgetsTail>(), "comb16 counts"},
    };
    EXPECT_EQ("", CheckRowKernels(kPlainKernels, kPlainKernels, TestSeed()));
    for (const auto& broken : kBroken) {
        const std::string report = CheckRowKernels(broken.kernels, kPlainKernels, TestSeed());
        EXPECT_NE(std::string::npos, report.find(broken.reported)) << broken.fault << ": \"" << report << '"';
        EXPECT_NE(std::string::npos, report.find("seed=" + std::to_string(TestSeed()))) << broken.fault;
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
    const RowKernels* expected = &Reference();
    for (const RowKernels& variant : AllRowKernels()) {
        if (variant.supported() && (!forced || std::strcmp(forced, variant.name) == 0)) {
            expected = &variant;
        }
    }
    EXPECT_EQ(expected->name, ActiveRowKernels().name);
}

} // namespace
