// All keys and values below a registry key, as text, to compare one moment with another.
#pragma once

#include "base/Handles.h"

#include <set>
#include <string>

#include <windows.h>

// Adds "path", and "path|name=bytes" for each value. A key that isn't there adds nothing.
inline void ListRegistry(HKEY parent, const std::string& path, std::set<std::string>& listing) {
    CRegKey key;
    if (RegOpenKeyExA(parent, path.c_str(), 0, KEY_READ, key.Put()) != ERROR_SUCCESS) {
        return;
    }
    listing.insert(path);
    static char name[16384], data[1 << 16];
    for (DWORD i = 0;; ++i) {
        DWORD length = sizeof(name), size = sizeof(data);
        if (RegEnumValueA(key.Get(), i, name, &length, nullptr, nullptr, reinterpret_cast<BYTE*>(data), &size)) {
            break;
        }
        listing.insert(path + "|" + std::string(name, length) + "=" + std::string(data, size));
    }
    for (DWORD i = 0;; ++i) {
        DWORD length = sizeof(name);
        if (RegEnumKeyExA(key.Get(), i, name, &length, nullptr, nullptr, nullptr, nullptr)) {
            break;
        }
        ListRegistry(parent, path + "\\" + std::string(name, length), listing);
    }
}

// The default value of a key below HKEY_CLASSES_ROOT, or another of its values; "-" when it isn't there.
inline std::string ClassesText(const std::string& path, const char* name = nullptr) {
    char text[1024];
    DWORD size = sizeof(text);
    return RegGetValueA(HKEY_CLASSES_ROOT, path.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size) ? "-" : text;
}

// A key below HKEY_CLASSES_ROOT. REG_OPTION_VOLATILE makes one that refuses lasting subkeys.
inline void MakeClassesKey(const char* path, DWORD options) {
    CRegKey key;
    RegCreateKeyExA(HKEY_CLASSES_ROOT, path, 0, nullptr, options, KEY_ALL_ACCESS, nullptr, key.Put(), nullptr);
}
