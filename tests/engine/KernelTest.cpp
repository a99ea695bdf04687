// What the row kernels promise beside the bytes that they write: those are seen by the frame fuzzer and the detector's
// tests, which run at every level.
#include "engine/kernels/RowLoops.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

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

// Test builds may force a level; any other name is answered with the reference.
TEST(Kernels, ActiveIsTheBestOrTheForcedOne) {
    const char* forced = nullptr;
#if defined(NMFV_CPU_OVERRIDE)
    forced = std::getenv("NMFV_CPU");
#endif
    const char* expected = kScalarKernels.name;
    for (const RowKernels* variant : AllRowKernels()) {
        const bool own = variant->cached.blend != kScalarKernels.cached.blend &&
                         variant->streamed.blend != variant->cached.blend && variant->comb24 != kScalarKernels.comb24;
        EXPECT_EQ(variant != &kScalarKernels, own) << variant->name;
        if (variant->supported() && (!forced || std::strcmp(forced, variant->name) == 0)) {
            expected = variant->name;
        }
    }
    EXPECT_STREQ(expected, ActiveRowKernels().name);
}

} // namespace
