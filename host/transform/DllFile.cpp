#include "host/transform/DllFile.h"

#include "host/console/Text.h"

#include <wrl/client.h>

namespace host {

namespace {

std::wstring PathOf(HMODULE module) {
    wchar_t path[32768];
    return {path, GetModuleFileNameW(module, path, ARRAYSIZE(path))};
}

} // namespace

std::wstring DllBesideProgram() {
    std::wstring path = PathOf(nullptr);
    path.resize(path.find_last_of(L"\\/") + 1);
    path += L"NMFVDeitrx.dll";
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES ? path : std::wstring();
}

CDllFile::CDllFile(const std::wstring& path)
    : m_module(LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
    if (!m_module) {
        throw HostError(ExitCode::Transform, ToUtf8(path) + ": cannot be loaded: " + ErrorText(GetLastError()));
    }
}

CDllFile::~CDllFile() {
    FreeLibrary(m_module);
}

HRESULT CDllFile::GetFactory(const CLSID& id, IClassFactory** factory) const {
    auto* const getClassObject = Find<HRESULT STDAPICALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject");
    return getClassObject ? getClassObject(id, IID_PPV_ARGS(factory)) : E_NOTIMPL;
}

bool HoldsClass(const std::wstring& path, const CLSID& id) try {
    const CDllFile file(path);
    Microsoft::WRL::ComPtr<IClassFactory> factory;
    return SUCCEEDED(file.GetFactory(id, factory.GetAddressOf()));
} catch (const HostError&) {
    return false;
}

std::wstring CDllFile::Path() const {
    return PathOf(m_module);
}

} // namespace host
