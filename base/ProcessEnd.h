// Whether a static object is destroyed with its module or with the whole process.
#pragma once

#include <windows.h>

// True while the process ends. Other threads are gone then, in the middle of whatever they did, and other libraries may
// be: what a static object holds is best left to the system.
inline bool ProcessIsEnding() {
    using Function = BOOLEAN(NTAPI*)();
    const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    const FARPROC found = ntdll ? GetProcAddress(ntdll, "RtlDllShutdownInProgress") : nullptr;
    return found && reinterpret_cast<Function>(reinterpret_cast<void*>(found))();
}
