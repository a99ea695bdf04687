#include "engine/kernels/CpuFeatures.h"

#include "engine/kernels/CacheSize.h"

#if defined(_MSC_VER)
#include <immintrin.h>
#include <intrin.h>
#else
#include <cpuid.h>
#endif

namespace {

CpuidLeaf ReadCpuid(std::uint32_t leaf, std::uint32_t subleaf) {
    CpuidLeaf r{};
#if defined(_MSC_VER)
    int registers[4] = {};
    __cpuidex(registers, static_cast<int>(leaf), static_cast<int>(subleaf));
    r = {static_cast<std::uint32_t>(registers[0]), static_cast<std::uint32_t>(registers[1]),
         static_cast<std::uint32_t>(registers[2]), static_cast<std::uint32_t>(registers[3])};
#else
    __cpuid_count(leaf, subleaf, r.eax, r.ebx, r.ecx, r.edx);
#endif
    return r;
}

} // namespace

#if defined(_MSC_VER)

bool HasAvx2() {
    constexpr std::uint32_t kOsxsaveAvxPopcnt = 1u << 27 | 1u << 28 | 1u << 23;
    constexpr std::uint32_t kAvx2 = 1u << 5;
    constexpr unsigned long long kXmmYmmState = 6;

    if (ReadCpuid(0, 0).eax < 7) {
        return false;
    }
    if ((ReadCpuid(1, 0).ecx & kOsxsaveAvxPopcnt) != kOsxsaveAvxPopcnt || (_xgetbv(0) & kXmmYmmState) != kXmmYmmState) {
        return false;
    }
    return (ReadCpuid(7, 0).ebx & kAvx2) != 0;
}

#else

// The compiler's run-time asks the operating system's part too.
bool HasAvx2() {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt");
}

#endif

std::size_t LargestCacheBytes() {
    return LargestCacheBytes(ReadCpuid);
}
