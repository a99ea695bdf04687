// The one object of a process that collects trace lines and writes them to the file in batches.
#pragma once

#include "diag/text/Buffers.h"
#include "diag/TraceLock.h"
#include "diag/TraceStopwatch.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

#include <windows.h>

// Lives on the process heap and is used by every module that finds it, whichever created it: its layout is fixed, and
// what it points to belongs to the process, not to a module.
struct TraceWriter {
    // On the process heap, with no reference; null when there is no memory.
    static TraceWriter* Create();

    TraceWriter(const TraceWriter&) = delete;
    TraceWriter& operator=(const TraceWriter&) = delete;

    void AddReference() { ++references; }

    // Gives one reference back, writes what is pending and stops the timer when it is this module's. Returns the
    // references left. Waits a second for a lock that another thread has, and then leaves the pending text alone.
    std::uint32_t Release();

    // Writes what is pending and frees a writer without references that no module can find any more; it is not freed
    // while another thread holds its lock.
    void Destroy();

    // Queues a line. It is written within half a second while the module that started the timer is loaded, otherwise by
    // the next Release. Drops it when there is no memory.
    void Append(const char* line);

    // What the timer does.
    void OnTimer();

    TraceLock lock; // guards `pending` and `sinceWrite`
    CHeapBuffer* pending = nullptr;
    TraceStopwatch sinceWrite;
    std::atomic<std::uint32_t> references{0};
    std::atomic<HANDLE> timerQueue{nullptr};
    HANDLE timer = nullptr;
    const void* timerOwner = nullptr; // the address of TraceFlags in the module that started the timer
    std::atomic<std::int32_t> busy{0};
    std::atomic<std::uint32_t> folderFallback{1};
    unsigned char reserved[64] = {};

private:
    TraceWriter() = default;
    ~TraceWriter() = default;

    void Flush(bool fromTimer);
    void FinishUnderLock();
    bool TryLockForOneSecond();
    void DestroyPending();
};
