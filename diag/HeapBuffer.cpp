#include "diag/text/Buffers.h"

#include <windows.h>

namespace {

void* ReallocateOnProcessHeap(void* block, std::size_t bytes) {
    const HANDLE heap = GetProcessHeap();
    return block ? HeapReAlloc(heap, 0, block, bytes) : HeapAlloc(heap, 0, bytes);
}

void FreeOnProcessHeap(void* block) {
    HeapFree(GetProcessHeap(), 0, block);
}

} // namespace

CHeapBuffer::CHeapBuffer()
    : CBaseBuffer(&FreeOnProcessHeap, &ReallocateOnProcessHeap) {}

static_assert(sizeof(CHeapBuffer) == 40);
