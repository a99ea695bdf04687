#include "host/win/SavedSettings.h"

#include "host/win/RegistryKey.h"

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
        if (!CRegistryKey(HKEY_CURRENT_USER, part, KEY_READ)) {
            missing.push_back(part);
        }
    }
    return missing;
}

bool IsEmpty(const std::wstring& path) {
    const CRegistryKey key(HKEY_CURRENT_USER, path, KEY_READ);
    DWORD subkeys = 0;
    DWORD values = 0;
    return key &&
           RegQueryInfoKeyW(key.Get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr, nullptr,
                            nullptr, nullptr) == ERROR_SUCCESS &&
           subkeys == 0 && values == 0;
}

} // namespace

CSavedSettings::CSavedSettings()
    : m_missingKeys(MissingKeys()) {
    const CRegistryKey key(HKEY_CURRENT_USER, kPath, KEY_READ);
    DWORD bytes = 0;
    if (!key || RegQueryValueExW(key.Get(), kValue, nullptr, &m_type, nullptr, &bytes) != ERROR_SUCCESS) {
        return;
    }
    m_value.resize(bytes);
    m_hadValue = RegQueryValueExW(key.Get(), kValue, nullptr, &m_type, m_value.data(), &bytes) == ERROR_SUCCESS;
    m_value.resize(bytes);
}

void CSavedSettings::PutBack() const {
    if (const CRegistryKey key(HKEY_CURRENT_USER, kPath, KEY_READ | KEY_WRITE); key) {
        if (m_hadValue) {
            RegSetValueExW(key.Get(), kValue, 0, m_type, m_value.data(), static_cast<DWORD>(m_value.size()));
        } else {
            RegDeleteValueW(key.Get(), kValue);
        }
    }
    for (auto path = m_missingKeys.rbegin(); path != m_missingKeys.rend() && IsEmpty(*path); ++path) {
        RegDeleteKeyW(HKEY_CURRENT_USER, path->c_str());
    }
}

} // namespace host
