#include "settings/SettingsBlob.h"

#include "base/Handles.h"

#include <memory>
#include <new>

#include <windows.h>
#include <mfapi.h>

namespace {

using Bytes = std::unique_ptr<BYTE[]>;

// False when the value is missing, unreadable, of another type, or there is no memory for it. A value that another
// process enlarges between the query for its size and the read is read again.
bool ReadBinaryValue(HKEY key, const char* name, Bytes& bytes, DWORD& size) {
    DWORD type = 0;
    LSTATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {
        if (RegQueryValueExA(key, name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS || type != REG_BINARY) {
            return false;
        }
        bytes.reset(new (std::nothrow) BYTE[size]);
        if (!bytes) {
            return false;
        }
        status = RegQueryValueExA(key, name, nullptr, &type, bytes.get(), &size);
    }
    return status == ERROR_SUCCESS && type == REG_BINARY;
}

// Keeps other threads out of a store.
class CStoreLock {
public:
    explicit CStoreLock(IMFAttributes* store)
        : m_store(store)
        , m_result(store->LockStore()) {}
    CStoreLock(const CStoreLock&) = delete;
    CStoreLock& operator=(const CStoreLock&) = delete;
    ~CStoreLock() {
        if (SUCCEEDED(m_result)) {
            m_store->UnlockStore();
        }
    }

    HRESULT Result() const { return m_result; }

private:
    IMFAttributes* const m_store;
    const HRESULT m_result;
};

// Size and content are from the same moment.
HRESULT GetBlob(IMFAttributes* store, Bytes& bytes, UINT32& size) {
    const CStoreLock lock(store);
    if (FAILED(lock.Result())) {
        return lock.Result();
    }
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
