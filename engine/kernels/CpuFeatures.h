// What the processor and the operating system offer to the row kernels.
#pragma once

#include <cstddef>

// True when the processor has AVX2 and population count, and the operating system saves the wide registers.
bool HasAvx2();

// Bytes of the largest cache that a core of this processor reaches, as the processor itself tells: see CacheSize.h.
std::size_t LargestCacheBytes();
