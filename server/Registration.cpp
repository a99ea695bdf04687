#include "server/Registration.h"

#include "server/ClassKeys.h"
#include "server/ClassTable.h"
#include "server/RegistrationGuard.h"
#include "server/TypeLibraryRegistration.h"

#include "NMFVDeinterlace.h"
#include "NMFVDeinterlaceKeys.h"
#include "Product.h"

#include <iterator>

#include <mfapi.h>
#include <mftransform.h>
#include <oleauto.h>

namespace {

HRESULT RegisterClasses(HMODULE module) {
    for (const ClassEntry& entry : ClassTable()) {
        if (const HRESULT hr = RegisterClassKey(module, *entry.clsid, entry.name); FAILED(hr)) {
            return hr;
        }
    }
    return S_OK;
}

// Without media types: the transform is found by its category or its class identifier, not by a format.
HRESULT RegisterCategories() {
    wchar_t name[] = L"" NMFV_DISPLAY_NAME;
    for (const GUID* category : {&NMFV_TRANSFORM_CATEGORY, &MFT_CATEGORY_VIDEO_EFFECT}) {
        const HRESULT hr = MFTRegister(CLSID_NMFVDeinterlace, *category, name, 0, 0, nullptr, 0, nullptr, nullptr);
        if (FAILED(hr)) {
            return hr;
        }
    }
    return S_OK;
}

void RegisterTypeLibrary(HMODULE module) {
    constexpr DWORD kCharacters = 520;
    char path[kCharacters] = "";
    GetModuleFileNameA(module, path, kCharacters);
    path[kCharacters - 1] = '\0';
    wchar_t widePath[kCharacters] = L"";
    if (!MultiByteToWideChar(CP_ACP, 0, path, -1, widePath, kCharacters)) {
        widePath[0] = L'\0';
    }
    // Kept: the user is told, unattended or not, and the registration succeeds without the library. Test:
    // Registration.TypeLibraryFailureIsShownOnly.
    (void)N_RegisterTypeLibrary(widePath, true);
}

} // namespace

HRESULT RegisterServer(HMODULE module) {
    if (!ShouldRegister(module, CLSID_NMFVDeinterlace)) {
        return S_OK;
    }
    HRESULT hr = RegisterClasses(module);
    if (SUCCEEDED(hr)) {
        hr = RegisterCategories();
    }
    RegisterTypeLibrary(module);
    return hr;
}

HRESULT UnregisterServer(HMODULE module) {
    if (!ShouldUnregister(module, CLSID_NMFVDeinterlace)) {
        return S_OK;
    }
    // Whatever isn't there, or may not be touched, is passed over.
    (void)MFTUnregister(CLSID_NMFVDeinterlace);
    for (const ClassEntry& entry : ClassTable()) {
        DeleteClassKey(*entry.clsid);
    }
    (void)UnRegisterTypeLib(LIBID_NMFVDeinterlaceLib, 1, 0, 0, SYS_WIN64);
    return S_OK;
}
