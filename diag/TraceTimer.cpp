#include "diag/TraceTimer.h"

#include "base/ProcessEnd.h"
#include "diag/Trace.h"
#include "diag/TraceWriter.h"

namespace {

constexpr DWORD kPeriod = 500;

void CALLBACK OnTimer(void* writer, BOOLEAN) {
    static_cast<TraceWriter*>(writer)->OnTimer();
}

void DeleteQueue(HANDLE queue) {
    // Doesn't wait for the queue's thread, which cannot end while this one holds the loader's lock.
    (void)DeleteTimerQueueEx(queue, nullptr);
}

void WaitWhileBusy(const TraceWriter& writer) {
    for (int waited = 0; writer.busy > 1 && waited < 1000; waited += 10) {
        Sleep(10);
    }
}

} // namespace

void StartTraceTimer(TraceWriter& writer) {
    const HANDLE queue = CreateTimerQueue();
    HANDLE none = nullptr;
    if (!queue || !writer.timerQueue.compare_exchange_strong(none, queue)) {
        if (queue) {
            DeleteQueue(queue);
        }
        return;
    }
    // Callbacks run in the timer's own thread. A thread started for a callback would wait for the loader's lock, while
    // an unloading module, which holds that lock, waits for the callback. The price is that other timers of that thread
    // wait for the file too.
    if (CreateTimerQueueTimer(&writer.timer, queue, &OnTimer, &writer, kPeriod, kPeriod, WT_EXECUTEINTIMERTHREAD)) {
        writer.timerOwner = &TraceFlags;
    } else {
        DeleteQueue(writer.timerQueue.exchange(nullptr));
    }
}

// Kept: the queue's handle is not cleared, so no module starts another timer; what others trace from now on is written
// when they release the writer. Test: TraceLog.SecondOutlivesTheTimersOwner.
void StopTraceTimer(TraceWriter& writer, bool lockIsLost) {
    if (!writer.timerQueue || writer.timerOwner != &TraceFlags) {
        return;
    }
    ++writer.busy; // a callback that begins from here on does nothing
    WaitWhileBusy(writer);
    const bool waitsForLostLock = lockIsLost && writer.busy > 1;
    // Kept: at process exit the timer is not waited for: a callback whose thread was killed never ends. Test:
    // TraceLog.ProcessEndsInTheMiddleOfAFlush.
    const bool wait = !waitsForLostLock && !ProcessIsEnding();
    (void)DeleteTimerQueueTimer(writer.timerQueue, writer.timer, wait ? INVALID_HANDLE_VALUE : nullptr);
    writer.timerOwner = nullptr;
    DeleteQueue(writer.timerQueue);
}
