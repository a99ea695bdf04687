// What is allocated on a heap.
#pragma once

#include <cstdint>

#include <malloc.h>
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

// On the heaps of the process and of the C run-time.
inline std::int64_t BusyBytes() {
    const auto runtime = reinterpret_cast<HANDLE>(_get_heap_handle());
    return BusyBytes(GetProcessHeap()) + (runtime == GetProcessHeap() ? 0 : BusyBytes(runtime));
}
