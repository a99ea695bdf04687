#include "server/TypeLibraryRegistration.h"

#include "com/ComRef.h"
#include "diag/text/ResultCodes.h"
#include "diag/Trace.h"

#include <cstddef>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <new>

#include <oleauto.h>

namespace {

void TraceFailure(const char* call, HRESULT hr) {
    Trace("\nN_RegisterTypeLibrary: %s failed 0x%08x", call, static_cast<unsigned>(hr));
}

void ShowError(const char* text) {
    MessageBoxA(nullptr, text, "Error", MB_OK | MB_ICONERROR);
}

// A path that the code page cannot hold in `size` bytes becomes an empty text.
void Narrow(const wchar_t* path, UINT codePage, char* text, int size) {
    if (!WideCharToMultiByte(codePage, 0, path, -1, text, size, nullptr, nullptr)) {
        *text = '\0';
    }
}

void ShowLoadError(const wchar_t* path, HRESULT hr) {
    const std::size_t size = 2 * (std::wcslen(path) + 1);
    const std::unique_ptr<char[]> narrow(new (std::nothrow) char[size]);
    if (narrow) {
        Narrow(path, CP_THREAD_ACP, narrow.get(), static_cast<int>(size));
    }
    char text[2048];
    std::snprintf(text, sizeof(text), "Failed %s to register type library: %s",
                  ResultCodeName(static_cast<std::uint32_t>(hr)), narrow ? narrow.get() : "");
    ShowError(text);
}

void ShowRegisterError(const wchar_t* path) {
    char narrow[MAX_PATH];
    Narrow(path, CP_ACP, narrow, static_cast<int>(sizeof(narrow)));
    char text[2 * MAX_PATH];
    std::snprintf(text, sizeof(text), "Failed to register type library: %s", narrow);
    ShowError(text);
}

} // namespace

HRESULT N_RegisterTypeLibrary(const wchar_t* path, bool showErrors) {
    CComRef<ITypeLib> library;
    HRESULT hr = LoadTypeLib(path, library.Put());
    if (FAILED(hr)) {
        TraceFailure("LoadTypeLib", hr);
        if (showErrors) {
            ShowLoadError(path, hr);
        }
        return hr;
    }
    // The platform's headers differ in whether the path is const; it is only read.
    hr = RegisterTypeLib(library.Get(), const_cast<wchar_t*>(path), nullptr);
    if (FAILED(hr)) {
        TraceFailure("RegisterTypeLib", hr);
        if (showErrors) {
            ShowRegisterError(path);
        }
    }
    return hr;
}
