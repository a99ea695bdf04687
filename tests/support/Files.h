// Folders and files of tests.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <windows.h>

// Where the test program lies, and the DLL beside it.
inline std::filesystem::path ProgramFolder() {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path();
}

// A folder of the test's own, with a blank in its path; gone with this.
class TempFolder {
public:
    TempFolder() {
        static int number = 0;
        m_path = std::filesystem::temp_directory_path() /
                 ("NMFV test " + std::to_string(GetCurrentProcessId()) + "." + std::to_string(++number));
        Remove(); // what a process that had the same number, and was killed, has left
        std::filesystem::create_directories(m_path);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() { Remove(); }

    const std::filesystem::path& Path() const { return m_path; }

private:
    void Remove() const {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    std::filesystem::path m_path;
};

// A std::string or a vector of bytes; empty when there is no such file.
template <typename Bytes>
Bytes ReadFileBytes(const std::filesystem::path& path) {
    std::ostringstream contents;
    contents << std::ifstream(path, std::ios::binary).rdbuf();
    const std::string text = contents.str();
    return {text.begin(), text.end()};
}

template <typename Bytes>
void WriteFileBytes(const std::filesystem::path& path, const Bytes& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}
