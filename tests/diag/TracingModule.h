// A loaded test module, and the file it traces to.
#pragma once

#include "base/Handles.h"

#include <cstdint>
#include <filesystem>
#include <string>

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
inline CFileHandle LockFile(const std::filesystem::path& path) {
    return CFileHandle(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_ALWAYS, 0, nullptr));
}
