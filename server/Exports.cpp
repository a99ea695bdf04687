// What the DLL exports; the names stand in NMFVDeitrx.def.
#include "com/BaseObject.h"
#include "server/ClassFactory.h"
#include "server/Module.h"
#include "server/Registration.h"

#include <objbase.h>

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
