#include "server/Module.h"
#include "server/RuntimeMemory.h"

HINSTANCE g_hModule = nullptr;

namespace {

CRuntimeMemory g_runtimeMemory;

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) {
        g_hModule = module;
    }
    return TRUE;
}
