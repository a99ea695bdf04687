#include "engine/CpuFeatures.h"

#if defined(_MSC_VER)

#include <immintrin.h>
#include <intrin.h>

bool HasAvx2() {
    constexpr int kOsxsaveAvxPopcnt = (1 << 27) | (1 << 28) | (1 << 23);
    constexpr int kAvx2 = 1 << 5;
    constexpr unsigned long long kXmmYmmState = 6;

    int leaf[4] = {};
    __cpuid(leaf, 0);
    if (leaf[0] < 7) {
        return false;
    }
    __cpuid(leaf, 1);
    if ((leaf[2] & kOsxsaveAvxPopcnt) != kOsxsaveAvxPopcnt || (_xgetbv(0) & kXmmYmmState) != kXmmYmmState) {
        return false;
    }
    __cpuidex(leaf, 7, 0);
    return (leaf[1] & kAvx2) != 0;
}

#else

// The compiler's run-time asks the operating system's part too.
bool HasAvx2() {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt");
}

#endif
