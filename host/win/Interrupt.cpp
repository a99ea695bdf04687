#include "host/win/Interrupt.h"

#include "host/parts/HostError.h"

#include <atomic>
#include <windows.h>

namespace host {

namespace {

std::atomic<bool> g_interrupted{false};
HANDLE g_waiting = nullptr; // kept until the process ends

BOOL WINAPI OnControl(DWORD) {
    if (g_interrupted.exchange(true)) {
        return FALSE;
    }
    if (g_waiting) {
        CancelSynchronousIo(g_waiting);
    }
    return TRUE;
}

} // namespace

void WatchForInterrupt() {
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &g_waiting, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    SetConsoleCtrlHandler(&OnControl, TRUE);
}

bool IsInterrupted() {
    return g_interrupted;
}

void ThrowIfInterrupted() {
    if (IsInterrupted()) {
        throw HostError(ExitCode::Interrupted, "interrupted; nothing is left of unfinished files.");
    }
}

} // namespace host
