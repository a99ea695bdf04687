#include "engine/kernels/CpuFeatures.h"

#include <algorithm>
#include <cstdint>

#if defined(_MSC_VER)
#include <immintrin.h>
#include <intrin.h>
#else
#include <cpuid.h>
#endif

namespace {

struct CpuidLeaf {
    std::uint32_t eax, ebx, ecx, edx;
};

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

// One subleaf describes one cache.
std::size_t CacheBytes(const CpuidLeaf& r) {
    const std::size_t lineBytes = (r.ebx & 0xFFF) + 1;
    const std::size_t partitions = (r.ebx >> 12 & 0x3FF) + 1;
    const std::size_t ways = (r.ebx >> 22) + 1;
    const std::size_t sets = std::size_t{r.ecx} + 1;
    return lineBytes * partitions * ways * sets;
}

std::size_t LargestCacheOf(std::uint32_t leaf) {
    constexpr std::uint32_t kMostCaches = 16;
    constexpr std::uint32_t kInstructions = 2;
    std::size_t largest = 0;
    for (std::uint32_t i = 0; i < kMostCaches; ++i) {
        const CpuidLeaf cache = ReadCpuid(leaf, i);
        const std::uint32_t type = cache.eax & 0x1F;
        if (type == 0) {
            break;
        }
        if (type != kInstructions) {
            largest = std::max(largest, CacheBytes(cache));
        }
    }
    return largest;
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
    constexpr std::uint32_t kCaches = 4; // the same layout under two numbers, by maker
    constexpr std::uint32_t kExtendedCaches = 0x8000001D;
    std::size_t largest = 0;
    if (ReadCpuid(0, 0).eax >= kCaches) {
        largest = LargestCacheOf(kCaches);
    }
    if (largest == 0 && ReadCpuid(0x80000000u, 0).eax >= kExtendedCaches) {
        largest = LargestCacheOf(kExtendedCaches);
    }
    return largest;
}
