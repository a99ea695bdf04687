#include "settings/SettingsBlob.h"

#include "com/RegKey.h"

#include <memory>
#include <new>

#include <windows.h>
#include <mfapi.h>

namespace {

using Bytes = std::unique_ptr<BYTE[]>;

// False when the value is missing, unreadable, of another type, or there is no memory for it.
bool ReadBinaryValue(HKEY key, const char* name, Bytes& bytes, DWORD& size) {
    DWORD type = 0;
    if (RegQueryValueExA(key, name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS || type != REG_BINARY) {
        return false;
    }
    bytes.reset(new (std::nothrow) BYTE[size]);
    return bytes && RegQueryValueExA(key, name, nullptr, &type, bytes.get(), &size) == ERROR_SUCCESS &&
           type == REG_BINARY;
}

HRESULT GetBlob(IMFAttributes* store, Bytes& bytes, UINT32& size) {
    if (const HRESULT hr = MFGetAttributesAsBlobSize(store, &size); FAILED(hr)) {
        return hr;
    }
    bytes.reset(new (std::nothrow) BYTE[size]);
    return bytes ? MFGetAttributesAsBlob(store, bytes.get(), size) : E_OUTOFMEMORY;
}

} // namespace

HRESULT LoadSettingsBlob(IMFAttributes* store, const char* path) {
    CRegKey key;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, KEY_READ, key.Put()) != ERROR_SUCCESS) {
        return S_OK;
    }
    Bytes blob;
    DWORD size = 0;
    if (!ReadBinaryValue(key.Get(), kSettingsValue, blob, size)) {
        return S_OK;
    }
    const HRESULT hr = MFInitAttributesFromBlob(store, blob.get(), size);
    return FAILED(hr) ? hr : S_OK;
}

HRESULT SaveSettingsBlob(IMFAttributes* store, const char* path) {
    if (!store) {
        return E_UNEXPECTED;
    }
    CRegKey key;
    LSTATUS status = RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE,
                                     nullptr, key.Put(), nullptr);
    if (status != ERROR_SUCCESS) {
        return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
    }
    Bytes blob;
    UINT32 size = 0;
    if (const HRESULT hr = GetBlob(store, blob, size); FAILED(hr)) {
        return hr;
    }
    status = RegSetValueExA(key.Get(), kSettingsValue, 0, REG_BINARY, blob.get(), size);
    return status == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}
