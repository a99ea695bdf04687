// Copies of the shipped DLL in a folder of the test's own, changed where a test wants it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <vector>

#include <windows.h>

class ModuleCopies {
public:
    ModuleCopies() {
        static int number = 0;
        wchar_t temporary[MAX_PATH];
        GetTempPathW(MAX_PATH, temporary);
        m_folder = std::filesystem::path(temporary) /
                   ("NMFVCopies." + std::to_string(GetCurrentProcessId()) + "." + std::to_string(++number));
    }
    ModuleCopies(const ModuleCopies&) = delete;
    ModuleCopies& operator=(const ModuleCopies&) = delete;
    ~ModuleCopies() {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

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

    std::string Folder() const { return m_folder.string(); }

private:
    static std::vector<char> ReadModule() {
        wchar_t program[MAX_PATH];
        GetModuleFileNameW(nullptr, program, MAX_PATH);
        std::ifstream file(std::filesystem::path(program).parent_path() / L"NMFVDeitrx.dll", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static char* Locate(std::vector<char>& bytes, std::span<const std::byte> pattern) {
        const auto found = std::search(bytes.begin(), bytes.end(), pattern.begin(), pattern.end(),
                                       [](char have, std::byte wanted) { return std::byte(have) == wanted; });
        return found == bytes.end() ? nullptr : &*found;
    }

    std::string Write(const std::string& subfolder, const std::vector<char>& bytes) {
        const std::filesystem::path path = m_folder / subfolder / "NMFVDeitrx.dll";
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return path.string();
    }

    std::filesystem::path m_folder;
};
