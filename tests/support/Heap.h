// What is allocated on a heap.
#pragma once

#include <cstdint>

#include <windows.h>

inline std::int64_t BusyBytes(HANDLE heap) {
    std::int64_t bytes = 0;
    HeapLock(heap);
    for (PROCESS_HEAP_ENTRY entry = {}; HeapWalk(heap, &entry);) {
        bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) ? static_cast<std::int64_t>(entry.cbData) : 0;
    }
    HeapUnlock(heap);
    return bytes;
}
