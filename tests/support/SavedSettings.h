// Reads and writes the saved settings value.
#pragma once

#include "settings/SettingsBlob.h"

#include <vector>

#include <windows.h>

inline void WriteSavedSettings(DWORD type, const std::vector<BYTE>& bytes) {
    RegSetKeyValueA(HKEY_CURRENT_USER, kSettingsKey, kSettingsValue, type, bytes.data(),
                    static_cast<DWORD>(bytes.size()));
}

// Empty when there is none.
inline std::vector<BYTE> ReadSavedSettings() {
    DWORD size = 0;
    if (RegGetValueA(HKEY_CURRENT_USER, kSettingsKey, kSettingsValue, RRF_RT_REG_BINARY, nullptr, nullptr, &size)) {
        return {};
    }
    std::vector<BYTE> bytes(size);
    RegGetValueA(HKEY_CURRENT_USER, kSettingsKey, kSettingsValue, RRF_RT_REG_BINARY, nullptr, bytes.data(), &size);
    return bytes;
}

inline void ForgetSavedSettings() {
    RegDeleteTreeA(HKEY_CURRENT_USER, kSettingsKey);
}

// The settings of the user who runs the tests, put aside while this lives.
class UsersSettings {
public:
    UsersSettings() { ForgetSavedSettings(); }
    UsersSettings(const UsersSettings&) = delete;
    UsersSettings& operator=(const UsersSettings&) = delete;
    ~UsersSettings() {
        ForgetSavedSettings();
        if (!m_saved.empty()) {
            WriteSavedSettings(REG_BINARY, m_saved);
        }
    }

private:
    const std::vector<BYTE> m_saved = ReadSavedSettings();
};
