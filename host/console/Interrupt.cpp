#include "host/console/Interrupt.h"

#include "base/Handles.h"
#include "host/HostError.h"
#include "host/console/Console.h"

#include <atomic>
#include <string>
#include <windows.h>

namespace host {

namespace {

constexpr char kText[] = "interrupted; nothing is left of unfinished files.";

std::atomic<bool> g_interrupted{false};
std::atomic<int> g_transfers{0};
HANDLE g_waiting = nullptr; // kept until the process ends

DWORD WINAPI SayInterrupted(void*) {
    Say("nmfvdeint: " + std::string(kText) + "\n");
    return 0;
}

// Unfinished files go with their handles. The text has a thread of its own, as standard error may be stalled too.
void EndProgram() {
    const CHandle thread(CreateThread(nullptr, 0, &SayInterrupted, nullptr, 0, nullptr));
    WaitForSingleObject(thread.Get(), 200);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(ExitCode::Interrupted));
}

// Asked again and again, as a transfer that is only about to wait cannot be cancelled yet, and some never (a pipe that
// Wine has from the system around it).
BOOL WINAPI OnControl(DWORD) {
    if (g_interrupted.exchange(true)) {
        return FALSE;
    }
    for (int i = 0; i < 25 && g_transfers != 0; ++i) {
        CancelSynchronousIo(g_waiting);
        Sleep(20);
    }
    if (g_transfers != 0) {
        EndProgram();
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
        throw HostError(ExitCode::Interrupted, kText);
    }
}

// Counted before the question, so that either this sees the mark or OnControl sees the count.
CTransfer::CTransfer() {
    ++g_transfers;
    if (IsInterrupted()) {
        --g_transfers;
        ThrowIfInterrupted();
    }
}

CTransfer::~CTransfer() {
    --g_transfers;
}

} // namespace host
