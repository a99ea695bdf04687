// A loaded test module, and the file it traces to.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include <windows.h>

inline constexpr wchar_t kOneModule[] = L"trace_module_a.dll";
inline constexpr wchar_t kOtherModule[] = L"trace_module_b.dll";

class TracingModule {
public:
    TracingModule(const wchar_t* name, std::uint32_t flags, const std::filesystem::path& file)
        : m_module(LoadLibraryW(name)) {
        Call<void, std::uint32_t, const wchar_t*>("Configure", flags, file.c_str());
    }
    TracingModule(const TracingModule&) = delete;
    TracingModule& operator=(const TracingModule&) = delete;
    ~TracingModule() { Unload(); }

    void Unload() {
        if (m_module) {
            FreeLibrary(m_module);
            m_module = nullptr;
        }
    }

    template <typename Result, typename... Arguments>
    Result Call(const char* name, Arguments... arguments) const {
        const auto found = reinterpret_cast<void*>(GetProcAddress(m_module, name));
        return reinterpret_cast<Result (*)(Arguments...)>(found)(arguments...);
    }

    void Line(const std::string& text) const { Call<void, const char*>("Line", text.c_str()); }

private:
    HMODULE m_module;
};

// Holds a file open so that nobody else gets it.
class LockedFile {
public:
    explicit LockedFile(const std::filesystem::path& path)
        : m_file(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_ALWAYS, 0, nullptr)) {}
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;
    ~LockedFile() { CloseHandle(m_file); }

private:
    HANDLE m_file;
};
