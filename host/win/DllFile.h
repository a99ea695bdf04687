// The transform's DLL as a file.
#pragma once

#include <string>
#include <windows.h>

namespace host {

// The path from its root; the path itself when the platform knows none.
std::wstring FullPath(const std::wstring& path);

// NMFVDeitrx.dll beside this program; empty when it is not there.
std::wstring DllBesideProgram();

// Holds a loaded DLL. Must outlive every object that the DLL made.
class CDllFile {
public:
    // Throws HostError with ExitCode::Transform.
    explicit CDllFile(const std::wstring& path);
    CDllFile(const CDllFile&) = delete;
    CDllFile& operator=(const CDllFile&) = delete;
    ~CDllFile();

    // The file's path as the DLL itself is told it.
    std::wstring Path() const;

    // Null when the DLL does not export it.
    template <typename Function>
    Function* Find(const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(m_module, name)));
    }

private:
    HMODULE m_module;
};

} // namespace host
