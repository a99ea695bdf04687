#include "engine/kernels/RowKernels.h"

#include "engine/kernels/CpuFeatures.h"
#include "engine/kernels/RowKernelVariants.h"

#if defined(NMFV_CPU_OVERRIDE)
#include <cstdlib>
#include <cstring>
#endif

namespace {

bool Always() {
    return true;
}

#define NMFV_WRITERS(suffix)                                                                                           \
    { CopyRow##suffix, AverageRow##suffix, BlendRow##suffix, RebuildRows##suffix, BlendRows##suffix, Finish##suffix }
#define NMFV_COMBS(variant) CombTrios16##variant, CombTrios24##variant, CombTrios32##variant

constexpr RowKernels kRowKernels[] = {
    {"scalar", Always, [](const std::uint8_t*, std::size_t) {}, NMFV_WRITERS(CachedScalar), NMFV_WRITERS(CachedScalar),
     NMFV_COMBS(Scalar)},
    // Every x64 processor has it.
    {"sse2", Always, FetchSse2, NMFV_WRITERS(CachedSse2), NMFV_WRITERS(StreamedSse2), NMFV_COMBS(Sse2)},
    {"avx2", HasAvx2, FetchSse2, NMFV_WRITERS(CachedAvx2), NMFV_WRITERS(StreamedAvx2), NMFV_COMBS(Avx2)},
};

#undef NMFV_WRITERS
#undef NMFV_COMBS

// A test build may be told to stay below what the processor offers.
bool IsWanted([[maybe_unused]] const RowKernels& variant) {
#if defined(NMFV_CPU_OVERRIDE)
    const char* forced = std::getenv("NMFV_CPU");
    return !forced || std::strcmp(forced, variant.name) == 0;
#else
    return true;
#endif
}

const RowKernels& BestSupported() {
    const RowKernels* best = &kRowKernels[0];
    for (const RowKernels& variant : kRowKernels) {
        if (variant.supported() && IsWanted(variant)) {
            best = &variant;
        }
    }
    return *best;
}

} // namespace

std::span<const RowKernels> AllRowKernels() {
    return kRowKernels;
}

const RowKernels& ActiveRowKernels() {
    static const RowKernels& best = BestSupported();
    return best;
}
