#include "engine/kernels/CacheSize.h"

#include <algorithm>

namespace {

// One subleaf describes one cache.
std::size_t CacheBytes(const CpuidLeaf& r) {
    const std::size_t lineBytes = (r.ebx & 0xFFF) + 1;
    const std::size_t partitions = (r.ebx >> 12 & 0x3FF) + 1;
    const std::size_t ways = (r.ebx >> 22) + 1;
    const std::size_t sets = std::size_t{r.ecx} + 1;
    return lineBytes * partitions * ways * sets;
}

// The largest cache of the third level or above in a list of caches.
std::size_t LargestListed(const CpuidReader& cpuid, std::uint32_t leaf) {
    constexpr std::uint32_t kMostCaches = 16;
    std::size_t largest = 0;
    for (std::uint32_t i = 0; i < kMostCaches; ++i) {
        const CpuidLeaf cache = cpuid(leaf, i);
        if ((cache.eax & 0x1F) == 0) {
            break;
        }
        if ((cache.eax >> 5 & 7) >= 3) {
            largest = std::max(largest, CacheBytes(cache));
        }
    }
    return largest;
}

} // namespace

std::size_t LargestCacheBytes(const CpuidReader& cpuid) {
    constexpr std::uint32_t kCaches = 4; // the same layout under two numbers, by maker
    constexpr std::uint32_t kExtendedCaches = 0x8000001D;
    constexpr std::uint32_t kThirdLevel = 0x80000006; // where a guest doesn't see the list of 0x8000001D
    const std::uint32_t extended = cpuid(0x80000000u, 0).eax;
    std::size_t largest = 0;
    if (cpuid(0, 0).eax >= kCaches) {
        largest = LargestListed(cpuid, kCaches);
    }
    if (extended >= kExtendedCaches) {
        largest = std::max(largest, LargestListed(cpuid, kExtendedCaches));
    }
    // All third-level caches of the processor together, though a core reaches but one of them: only in want of better.
    if (largest == 0 && extended >= kThirdLevel) {
        largest = std::size_t{cpuid(kThirdLevel, 0).edx >> 18} * (512 * 1024);
    }
    return largest ? largest : kUsualCacheBytes;
}
