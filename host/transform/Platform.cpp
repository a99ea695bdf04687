#include "host/transform/Platform.h"

#include "host/console/Text.h"

#include <mfapi.h>
#include <objbase.h>

#include <atomic>
#include <cstdlib>

namespace host {

namespace {

std::atomic<bool> g_started{false};

} // namespace

CPlatform::CPlatform() {
    Check(CoInitializeEx(nullptr, COINIT_MULTITHREADED), ExitCode::Transform, "COM cannot be started");
    if (const HRESULT result = StartMediaFoundation(); FAILED(result)) {
        CoUninitialize();
        Check(result, ExitCode::Transform, "Media Foundation cannot be started");
    }
}

CPlatform::~CPlatform() {
    MFShutdown();
    CoUninitialize();
}

HRESULT StartMediaFoundation() {
    g_started = true;
    return MFStartup(MF_VERSION, MFSTARTUP_LITE);
}

bool IsWine() {
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    return system && GetProcAddress(system, "wine_get_version");
}

// Under Wine the platform's shutdown races with Media Foundation's own threads, and the shell then now and then gets 0
// for a run that failed; those that are only just starting race with this way out too, so a failed run gives them a
// moment.
void EndProcess(int code) {
    if (g_started && IsWine()) {
        if (code != 0) {
            Sleep(100);
        }
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(code));
    }
    std::exit(code);
}

} // namespace host
