#include "engine/kernels/RowKernels.h"

#if defined(NMFV_CPU_OVERRIDE)
#include <cstdlib>
#include <cstring>
#endif

namespace {

constexpr const RowKernels* kRowKernels[] = {&kScalarKernels, &kSse2Kernels, &kAvx2Kernels};

// A test build may be told to stay below what the processor offers.
bool IsWanted([[maybe_unused]] const RowKernels& kernels) {
#if defined(NMFV_CPU_OVERRIDE)
    const char* forced = std::getenv("NMFV_CPU");
    return !forced || std::strcmp(forced, kernels.name) == 0;
#else
    return true;
#endif
}

const RowKernels& BestSupported() {
    const RowKernels* best = &kScalarKernels;
    for (const RowKernels* kernels : kRowKernels) {
        if (kernels->supported() && IsWanted(*kernels)) {
            best = kernels;
        }
    }
    return *best;
}

} // namespace

std::span<const RowKernels* const> AllRowKernels() {
    return kRowKernels;
}

const RowKernels& ActiveRowKernels() {
    static const RowKernels& best = BestSupported();
    return best;
}
