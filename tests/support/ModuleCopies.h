// Copies of the shipped DLL in a folder of the test's own, changed where a test wants it.
#pragma once

#include "tests/support/Files.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

class ModuleCopies {
public:
    // A copy with this file version, in a subfolder.
    std::string Add(const std::string& subfolder, std::uint32_t versionMs, std::uint32_t versionLs) {
        std::vector<char> bytes = ReadModule();
        const std::uint32_t signature[] = {VS_FFI_SIGNATURE, VS_FFI_STRUCVERSION};
        if (char* const fixed = Locate(bytes, std::as_bytes(std::span(signature)))) {
            const std::uint32_t version[] = {versionMs, versionLs};
            std::memcpy(fixed + sizeof(signature), version, sizeof(version));
        }
        return Write(subfolder, bytes);
    }

    // A copy that has its type library under another resource type, where nobody looks for it.
    std::string AddWithoutTypeLibrary(const std::string& subfolder) {
        std::vector<char> bytes = ReadModule();
        const wchar_t type[] = {L'T', L'Y', L'P', L'E', L'L', L'I', L'B'};
        if (char* const name = Locate(bytes, std::as_bytes(std::span(type)))) {
            *name = 'X';
        }
        return Write(subfolder, bytes);
    }

    // A file that is no module.
    std::string AddText(const std::string& subfolder) { return Write(subfolder, {'t', 'e', 'x', 't'}); }

    std::string Folder() const { return m_folder.Path().string(); }

private:
    static std::vector<char> ReadModule() {
        return ReadFileBytes<std::vector<char>>(ProgramFolder() / L"NMFVDeitrx.dll");
    }

    static char* Locate(std::vector<char>& bytes, std::span<const std::byte> pattern) {
        const auto found = std::search(bytes.begin(), bytes.end(), pattern.begin(), pattern.end(),
                                       [](char have, std::byte wanted) { return std::byte(have) == wanted; });
        return found == bytes.end() ? nullptr : &*found;
    }

    std::string Write(const std::string& subfolder, const std::vector<char>& bytes) {
        const std::filesystem::path path = m_folder.Path() / subfolder / "NMFVDeitrx.dll";
        std::filesystem::create_directories(path.parent_path());
        WriteFileBytes(path, bytes);
        return path.string();
    }

    TempFolder m_folder;
};
