#include "server/ClassKeys.h"

#include "base/Handles.h"
#include "server/ModulePath.h"

#include <cstdio>
#include <cstring>
#include <iterator>

#include <objbase.h>

namespace {

HRESULT FromStatus(LSTATUS status) {
    return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

HRESULT CreateKey(HKEY parent, const char* path, CRegKey& key) {
    return FromStatus(RegCreateKeyExA(parent, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                                      key.Put(), nullptr));
}

// A null name means the key's default value.
HRESULT SetText(const CRegKey& key, const char* name, const char* text) {
    return FromStatus(RegSetValueExA(key.Get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                                     static_cast<DWORD>(std::strlen(text) + 1)));
}

} // namespace

HRESULT FormatClassKey(REFCLSID clsid, const char* subkey, char (&path)[MAX_PATH]) {
    wchar_t identifier[39];
    if (!StringFromGUID2(clsid, identifier, static_cast<int>(std::size(identifier)))) {
        return E_FAIL;
    }
    const int length =
        std::snprintf(path, sizeof(path), "CLSID\\%ls%s%s", identifier, subkey ? "\\" : "", subkey ? subkey : "");
    return length > 0 && static_cast<std::size_t>(length) < sizeof(path) ? S_OK : E_FAIL;
}

HRESULT RegisterClassKey(HMODULE module, REFCLSID clsid, const char* name) {
    char keyPath[MAX_PATH];
    if (const HRESULT hr = FormatClassKey(clsid, nullptr, keyPath); FAILED(hr)) {
        return hr;
    }
    CRegKey key;
    if (const HRESULT hr = CreateKey(HKEY_CLASSES_ROOT, keyPath, key); FAILED(hr)) {
        return hr;
    }
    if (const HRESULT hr = SetText(key, nullptr, name); FAILED(hr)) {
        return hr;
    }
    CRegKey server;
    if (const HRESULT hr = CreateKey(key.Get(), kServerSubkey, server); FAILED(hr)) {
        return hr;
    }
    char modulePath[MAX_PATH];
    if (const HRESULT hr = GetModulePath(module, modulePath); FAILED(hr)) {
        return hr;
    }
    if (const HRESULT hr = SetText(server, nullptr, modulePath); FAILED(hr)) {
        return hr;
    }
    return SetText(server, "ThreadingModel", "Both");
}

void DeleteClassKey(REFCLSID clsid) {
    char path[MAX_PATH];
    if (SUCCEEDED(FormatClassKey(clsid, nullptr, path))) {
        RegDeleteTreeA(HKEY_CLASSES_ROOT, path);
    }
}
