#include "com/ProcessEnd.h"

#include <windows.h>

bool ProcessIsEnding() {
    using Function = BOOLEAN(NTAPI*)();
    const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    const FARPROC found = ntdll ? GetProcAddress(ntdll, "RtlDllShutdownInProgress") : nullptr;
    return found && reinterpret_cast<Function>(reinterpret_cast<void*>(found))();
}
