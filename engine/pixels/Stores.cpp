#include "engine/pixels/Stores.h"

#include "engine/kernels/CpuFeatures.h"

namespace {

// Six frames each side of the transform, and as much again for what else the programs use. Measured:
// docs/performance.md.
constexpr std::size_t kFramesInFlight = 24;

} // namespace

Stores StoresFor(std::size_t frameBytes, std::size_t cacheBytes) {
    return frameBytes <= cacheBytes / kFramesInFlight ? Stores::Ordinary : Stores::Streaming;
}

Stores StoresFor(std::size_t frameBytes) {
    static const std::size_t cacheBytes = LargestCacheBytes();
    return StoresFor(frameBytes, cacheBytes);
}
