// The platform's services that this program starts.
#pragma once

#include <windows.h>

namespace host {

// COM (multithreaded) and Media Foundation, started for as long as the object lives. Throws HostError with
// ExitCode::Transform.
class CPlatform {
public:
    CPlatform();
    CPlatform(const CPlatform&) = delete;
    CPlatform& operator=(const CPlatform&) = delete;
    ~CPlatform();
};

// MFStartup, for those who start COM in their own way; MFShutdown ends it. Fails with the platform's codes.
HRESULT StartMediaFoundation();

// Whether this runs under Wine, some of whose faults are worked around here.
bool IsWine();

// Ends the process with this exit code, once every file is closed and every text written.
[[noreturn]] void EndProcess(int code);

} // namespace host
