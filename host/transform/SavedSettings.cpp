#include "host/transform/SavedSettings.h"

#include "base/Handles.h"

#include <algorithm>
#include <mfapi.h>
#include <new>
#include <utility>

namespace host {

namespace {

constexpr wchar_t kPath[] = L"SOFTWARE\\Nerin Systems\\MF\\Transforms\\Deinterlace";
constexpr wchar_t kValue[] = L"Attributes";

std::vector<std::wstring> MissingKeys() {
    std::vector<std::wstring> missing;
    const std::wstring path = kPath;
    for (std::size_t end = path.find(L'\\'); end != path.npos; end = path.find(L'\\', end + 1)) {
        const std::wstring part = path.substr(0, path.find(L'\\', end + 1));
        CRegKey key;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, part.c_str(), 0, KEY_READ, key.Put()) != ERROR_SUCCESS) {
            missing.push_back(part);
        }
    }
    return missing;
}

bool IsEmpty(const std::wstring& path) {
    CRegKey key;
    DWORD subkeys = 0;
    DWORD values = 0;
    return RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, key.Put()) == ERROR_SUCCESS &&
           RegQueryInfoKeyW(key.Get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr, nullptr,
                            nullptr, nullptr) == ERROR_SUCCESS &&
           subkeys == 0 && values == 0;
}

// Nothing when it cannot be read. Another program may make it longer at any moment.
std::optional<SavedValue> ReadValue() {
    CRegKey key;
    SavedValue value{true, 0, std::vector<BYTE>(2048)};
    DWORD bytes = 0;
    LSTATUS status = RegOpenKeyExW(HKEY_CURRENT_USER, kPath, 0, KEY_READ, key.Put());
    if (key) {
        do {
            value.bytes.resize(std::max<std::size_t>(value.bytes.size(), bytes));
            bytes = static_cast<DWORD>(value.bytes.size());
            status = RegQueryValueExW(key.Get(), kValue, nullptr, &value.type, value.bytes.data(), &bytes);
        } while (status == ERROR_MORE_DATA);
    }
    value.bytes.resize(bytes);
    if (status == ERROR_FILE_NOT_FOUND) {
        return SavedValue{};
    }
    return status == ERROR_SUCCESS ? std::optional(std::move(value)) : std::nullopt;
}

void WriteValue(const SavedValue& value) {
    CRegKey key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kPath, 0, KEY_READ | KEY_WRITE, key.Put()) != ERROR_SUCCESS) {
        return;
    }
    if (value.exists) {
        RegSetValueExW(key.Get(), kValue, 0, value.type, value.bytes.data(), static_cast<DWORD>(value.bytes.size()));
    } else {
        RegDeleteValueW(key.Get(), kValue);
    }
}

// What the transform writes when it saves this store; empty when that fails.
std::vector<BYTE> BlobOf(IMFAttributes& store) {
    UINT32 size = 0;
    if (FAILED(MFGetAttributesAsBlobSize(&store, &size))) {
        return {};
    }
    std::vector<BYTE> blob(size);
    return SUCCEEDED(MFGetAttributesAsBlob(&store, blob.data(), size)) ? blob : std::vector<BYTE>();
}

} // namespace

CSavedSettings::CSavedSettings(Microsoft::WRL::ComPtr<IMFAttributes> store)
    : m_store(std::move(store))
    , m_missingKeys(MissingKeys())
    , m_others(ReadValue()) {}

CSavedSettings::~CSavedSettings() {
    if (!m_keep) {
        PutBack();
    }
}

void CSavedSettings::Look() noexcept try {
    const std::optional<SavedValue> now = ReadValue();
    if (now && now != m_others && now != m_own) {
        const bool own = *now == SavedValue{true, REG_BINARY, BlobOf(*m_store.Get())};
        (own ? m_own : m_others) = now;
    }
} catch (const std::bad_alloc&) {
    // As if nobody had looked.
}

void CSavedSettings::PutBack() noexcept try {
    Look();
    if (m_others && m_own && ReadValue() == m_own) {
        WriteValue(*m_others);
        for (auto path = m_missingKeys.rbegin(); path != m_missingKeys.rend() && IsEmpty(*path); ++path) {
            RegDeleteKeyW(HKEY_CURRENT_USER, path->c_str());
        }
    }
} catch (const std::bad_alloc&) {
    // The transform's settings stay saved, as any other client's would.
}

} // namespace host
