// How large the processor's largest cache is, from what the processor tells of itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

struct CpuidLeaf {
    std::uint32_t eax, ebx, ecx, edx;
};

using CpuidReader = std::function<CpuidLeaf(std::uint32_t leaf, std::uint32_t subleaf)>;

// What a third-level cache is taken to have that nobody tells of: the common size, which the rule that asks for it was
// measured with.
constexpr std::size_t kUsualCacheBytes = std::size_t{32} << 20;

// Bytes of the largest cache of the third level or above; kUsualCacheBytes when no such cache is told of. Smaller
// caches tell nothing: the core that is asked may be one of those without a third level, and hypervisors hide it.
std::size_t LargestCacheBytes(const CpuidReader& cpuid);
