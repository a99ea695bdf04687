#include "diag/TraceWriter.h"

#include "diag/text/LineEnds.h"
#include "diag/TraceFile.h"
#include "diag/TraceTimer.h"

#include <mutex>
#include <new>

static_assert(sizeof(TraceWriter) == 200);
static_assert(offsetof(TraceWriter, lock) == 0);
static_assert(offsetof(TraceWriter, pending) == 48);
static_assert(offsetof(TraceWriter, sinceWrite) == 56);
static_assert(offsetof(TraceWriter, references) == 96);
static_assert(offsetof(TraceWriter, timerQueue) == 104);
static_assert(offsetof(TraceWriter, timer) == 112);
static_assert(offsetof(TraceWriter, timerOwner) == 120);
static_assert(offsetof(TraceWriter, busy) == 128);
static_assert(offsetof(TraceWriter, folderFallback) == 132);

namespace {

// A timer that fires sooner after a write than this leaves the text for the next one.
constexpr std::int32_t kShortestGap = 51;

CHeapBuffer* CreateBuffer() {
    void* const memory = HeapAlloc(GetProcessHeap(), 0, sizeof(CHeapBuffer));
    return memory ? new (memory) CHeapBuffer : nullptr;
}

} // namespace

TraceWriter* TraceWriter::Create() {
    void* const memory = HeapAlloc(GetProcessHeap(), 0, sizeof(TraceWriter));
    return memory ? new (memory) TraceWriter : nullptr;
}

void TraceWriter::Append(const char* line) {
    const std::lock_guard hold(lock);
    if (!pending) {
        pending = CreateBuffer();
    }
    if (!pending) {
        return;
    }
    (void)AppendWithLineEnds(*pending, line); // without memory the line is lost, like everything that fails here
    if (!timerQueue) {
        StartTraceTimer(*this);
    }
}

void TraceWriter::OnTimer() {
    if (++busy == 1) {
        Flush(true);
    }
    --busy;
}

// The file is written outside the lock, so that tracing threads don't wait for the disk.
void TraceWriter::Flush(bool fromTimer) {
    CHeapBuffer text;
    {
        const std::lock_guard hold(lock);
        const bool tooSoon = fromTimer && sinceWrite.Elapsed() < kShortestGap;
        if (pending && !tooSoon) {
            (void)text.Take(pending);
        }
    }
    if (text.Length() > 0) {
        AppendToTraceFile(folderFallback, text.Data(), text.Length());
        const std::lock_guard hold(lock);
        sinceWrite.Restart();
    }
}

std::uint32_t TraceWriter::Release() {
    const std::uint32_t left = --references;
    const bool locked = TryLockForOneSecond();
    if (locked) {
        FinishUnderLock();
        lock.unlock();
    }
    StopTraceTimer(*this, !locked);
    return left;
}

// At process exit the lock may belong to a thread that is gone.
bool TraceWriter::TryLockForOneSecond() {
    for (int waited = 0; waited < 1000; waited += 100) {
        if (lock.try_lock()) {
            return true;
        }
        Sleep(100);
    }
    return lock.try_lock();
}

// The pending buffer is freed before the module goes, since its memory may be freed by this module's code; the next
// line of another module creates a new one.
void TraceWriter::FinishUnderLock() {
    Flush(false);
    sinceWrite.Restart();
    DestroyPending();
}

void TraceWriter::DestroyPending() {
    if (pending) {
        pending->CHeapBuffer::~CHeapBuffer(); // no virtual call: another module's compiler may have made it
        HeapFree(GetProcessHeap(), 0, pending);
        pending = nullptr;
    }
}

void TraceWriter::Destroy() {
    if (pending && pending->Length() > 0) {
        AppendToTraceFile(folderFallback, pending->Data(), pending->Length());
    }
    if (!lock.try_lock()) {
        return; // its owner still works in here, or was killed
    }
    lock.unlock();
    DestroyPending();
    this->~TraceWriter();
    HeapFree(GetProcessHeap(), 0, this);
}
