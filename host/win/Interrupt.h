#pragma once

namespace host {

// From now on Ctrl-C and the closing of the console only mark the run as interrupted, and end a read or write that the
// calling thread waits in. A second Ctrl-C ends the program at once.
void WatchForInterrupt();

// Throws HostError with ExitCode::Interrupted once the run is interrupted. For the thread that called the above.
void ThrowIfInterrupted();

bool IsInterrupted();

} // namespace host
