#pragma once

namespace host {

// From now on Ctrl-C and the closing of the console only mark the run as interrupted, and end a read or write that the
// calling thread waits in. Where that cannot be ended, the program is: within a second. A second Ctrl-C ends the
// program at once.
void WatchForInterrupt();

// Throws HostError with ExitCode::Interrupted once the run is interrupted.
void ThrowIfInterrupted();

bool IsInterrupted();

// To live as long as a read or write that may wait for ever. Throws as ThrowIfInterrupted does, so that none begins in
// an interrupted run.
class CTransfer {
public:
    CTransfer();
    CTransfer(const CTransfer&) = delete;
    CTransfer& operator=(const CTransfer&) = delete;
    ~CTransfer();
};

} // namespace host
