#include "server/Module.h"

HINSTANCE g_hModule = nullptr;

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) {
        g_hModule = module;
    }
    return TRUE;
}
