// The module itself: its entry and what it exports; the names stand in NMFVDeitrx.def.
#include "com/BaseObject.h"
#include "server/ClassFactory.h"
#include "server/Registration.h"
#include "server/RuntimeMemory.h"

#include <objbase.h>

namespace {

CRuntimeMemory g_runtimeMemory;
HINSTANCE g_hModule = nullptr;

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) {
        g_hModule = module;
    }
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, void** ppv) {
    return GetClassObject(clsid, riid, ppv);
}

STDAPI DllCanUnloadNow() {
    return MediaFoundationSamples::g_ObjectCount != 0 ? S_FALSE : S_OK;
}

STDAPI DllRegisterServer() {
    return RegisterServer(g_hModule);
}

STDAPI DllUnregisterServer() {
    return UnregisterServer(g_hModule);
}
