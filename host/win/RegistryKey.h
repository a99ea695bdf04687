// The owner of an open registry key.
#pragma once

#include <string>
#include <windows.h>

namespace host {

class CRegistryKey {
public:
    CRegistryKey(HKEY root, const std::wstring& path, REGSAM access)
        : m_status(RegOpenKeyExW(root, path.c_str(), 0, access, &m_key)) {}
    CRegistryKey(const CRegistryKey&) = delete;
    CRegistryKey& operator=(const CRegistryKey&) = delete;
    ~CRegistryKey() {
        if (*this) {
            RegCloseKey(m_key);
        }
    }

    // False when the key could not be opened; Status then says why.
    explicit operator bool() const { return m_status == ERROR_SUCCESS; }
    LSTATUS Status() const { return m_status; }
    HKEY Get() const { return m_key; }

private:
    HKEY m_key = nullptr; // before m_status, whose initialisation opens it
    LSTATUS m_status;
};

} // namespace host
