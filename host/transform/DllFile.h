// The transform's DLL as a file.
#pragma once

#include <string>
#include <unknwn.h>
#include <windows.h>

namespace host {

// NMFVDeitrx.dll beside this program; empty when it is not there.
std::wstring DllBesideProgram();

// Holds a loaded DLL. Must outlive every use of an object that the DLL made.
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

    // What the DLL says when it is asked for the class's factory; E_NOTIMPL when it is no COM server.
    HRESULT GetFactory(const CLSID& id, IClassFactory** factory) const;

private:
    HMODULE m_module;
};

// Whether the file is there, loads, and makes objects of the class.
bool HoldsClass(const std::wstring& path, const CLSID& id);

} // namespace host
