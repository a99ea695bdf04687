// A registry of the test program's own: what is written below HKEY_CURRENT_USER or HKEY_CLASSES_ROOT while this lives
// lands in a key that nobody else sees and that goes with this, so programs may run side by side. Where the platform
// refuses, the program ends: its tests would write what everybody sees.
#pragma once

#include "base/Handles.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <windows.h>

class PrivateRegistry {
public:
    explicit PrivateRegistry(HKEY root)
        : m_root(root) {
        char name[64];
        std::snprintf(name, sizeof(name), "Software\\NMFVTest.%lu.%p", GetCurrentProcessId(), static_cast<void*>(root));
        m_path = name;
        RegCreateKeyExA(HKEY_CURRENT_USER, name, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, m_key.Put(), nullptr);
        if (!m_key || RegOverridePredefKey(root, m_key.Get()) != ERROR_SUCCESS) {
            std::fputs("PrivateRegistry: refused\n", stderr);
            std::abort();
        }
    }
    PrivateRegistry(const PrivateRegistry&) = delete;
    PrivateRegistry& operator=(const PrivateRegistry&) = delete;
    ~PrivateRegistry() {
        RegOverridePredefKey(m_root, nullptr);
        m_key.Reset();
        RegDeleteTreeA(HKEY_CURRENT_USER, m_path.c_str());
    }

    // The key's place below the real HKEY_CURRENT_USER.
    const std::string& Path() const { return m_path; }

    // Takes the key away from under the root: every access fails from then on.
    void Delete() { RegDeleteKeyA(m_key.Get(), ""); }

private:
    HKEY m_root;
    CRegKey m_key;
    std::string m_path;
};
