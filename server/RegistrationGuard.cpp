#include "server/RegistrationGuard.h"

#include "base/Handles.h"
#include "server/ClassKeys.h"
#include "server/ModulePath.h"

#include <cstddef>
#include <iterator>
#include <memory>
#include <new>

namespace {

using Text = std::unique_ptr<char[]>;

// A value that isn't text, or that doesn't fit into memory, counts as missing. Its text need not be terminated.
bool ReadDefaultText(HKEY key, Text& text) {
    DWORD type = 0;
    DWORD size = 0;
    if (RegQueryValueExA(key, nullptr, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) {
        return false;
    }
    text.reset(new (std::nothrow) char[static_cast<std::size_t>(size) + 1]);
    if (!text || RegQueryValueExA(key, nullptr, nullptr, &type, reinterpret_cast<BYTE*>(text.get()), &size)) {
        return false;
    }
    text[size] = '\0';
    return type == REG_SZ || type == REG_EXPAND_SZ;
}

// Null when nothing is registered, or nothing that exists.
// Kept: the key is opened for all access though it is only read. Whoever may not write it gets past the guard and is
// told so by the writer, instead of getting a success with nothing done. Test: Registration.MissingRightsAreTold.
Text ReadRegisteredFile(REFCLSID clsid) {
    char keyPath[MAX_PATH];
    CRegKey key;
    Text path;
    if (FAILED(FormatClassKey(clsid, kServerSubkey, keyPath)) ||
        RegOpenKeyExA(HKEY_CLASSES_ROOT, keyPath, 0, KEY_ALL_ACCESS, key.Put()) != ERROR_SUCCESS ||
        !ReadDefaultText(key.Get(), path) || GetFileAttributesA(path.get()) == INVALID_FILE_ATTRIBUTES) {
        path.reset();
    }
    return path;
}

// As the file system compares names: ignoring case, and by no language's rules.
bool IsSamePath(const char* one, const char* other) {
    wchar_t wideOne[MAX_PATH], wideOther[MAX_PATH];
    return MultiByteToWideChar(CP_ACP, 0, one, -1, wideOne, static_cast<int>(std::size(wideOne))) &&
           MultiByteToWideChar(CP_ACP, 0, other, -1, wideOther, static_cast<int>(std::size(wideOther))) &&
           CompareStringOrdinal(wideOne, -1, wideOther, -1, TRUE) == CSTR_EQUAL;
}

bool IsModulesPath(HMODULE module, const char* path) {
    char own[MAX_PATH];
    return SUCCEEDED(GetModulePath(module, own)) && IsSamePath(own, path);
}

bool ReadFileVersion(const char* path, VS_FIXEDFILEINFO& version) {
    const DWORD size = GetFileVersionInfoSizeA(path, nullptr);
    const std::unique_ptr<BYTE[]> block(size ? new (std::nothrow) BYTE[size] : nullptr);
    void* fixed = nullptr;
    UINT length = 0;
    if (!block || !GetFileVersionInfoA(path, 0, size, block.get()) ||
        !VerQueryValueA(block.get(), "\\", &fixed, &length) || !fixed || length < sizeof(version)) {
        return false;
    }
    version = *static_cast<const VS_FIXEDFILEINFO*>(fixed);
    return true;
}

bool IsNewer(const VS_FIXEDFILEINFO& one, const VS_FIXEDFILEINFO& other) {
    return one.dwFileVersionMS != other.dwFileVersionMS ? one.dwFileVersionMS > other.dwFileVersionMS
                                                        : one.dwFileVersionLS > other.dwFileVersionLS;
}

// An unknown version is never in the way.
bool IsNewerFile(const char* path, HMODULE module) {
    char own[MAX_PATH];
    VS_FIXEDFILEINFO theirs, ours;
    return ReadFileVersion(path, theirs) && SUCCEEDED(GetModulePath(module, own)) && ReadFileVersion(own, ours) &&
           IsNewer(theirs, ours);
}

} // namespace

bool ShouldRegister(HMODULE module, REFCLSID clsid) {
    const Text registered = ReadRegisteredFile(clsid);
    return !registered || IsModulesPath(module, registered.get()) || !IsNewerFile(registered.get(), module);
}

bool ShouldUnregister(HMODULE module, REFCLSID clsid) {
    const Text registered = ReadRegisteredFile(clsid);
    return !registered || IsModulesPath(module, registered.get());
}
