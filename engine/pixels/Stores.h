// Which frames are written past the cache.
#pragma once

#include <cstddef>

enum class Stores {
    Ordinary,  // through the cache: whoever reads the frame next finds it there
    Streaming, // non-temporal: to memory, which is then not read first; whoever reads the frame next waits for it
};

// A transform stands between one who fills input frames and one who reads output frames, with some of each in flight.
// As long as those frames fit in the cache, ordinary stores keep them all there; beyond that their lines are evicted
// before they are read, and streaming stores save reading them in. `cacheBytes` is the processor's largest cache.
Stores StoresFor(std::size_t frameBytes, std::size_t cacheBytes);

// The same for this processor, whose caches are asked for once.
Stores StoresFor(std::size_t frameBytes);
