#include "host/win/TransformModule.h"

#include "host/parts/HostError.h"
#include "host/win/Text.h"

#include <NMFVDeinterlace.h>

using Microsoft::WRL::ComPtr;

namespace host {

namespace {

constexpr wchar_t kDllName[] = L"NMFVDeitrx.dll";

std::wstring FullPath(const std::wstring& path) {
    wchar_t full[32768];
    const DWORD length = GetFullPathNameW(path.c_str(), ARRAYSIZE(full), full, nullptr);
    return length != 0 && length < ARRAYSIZE(full) ? std::wstring(full, length) : path;
}

// The DLL's path beside this program; empty when it is not there.
std::wstring BesideProgram() {
    wchar_t program[32768];
    const DWORD length = GetModuleFileNameW(nullptr, program, ARRAYSIZE(program));
    std::wstring path(program, length);
    path.resize(path.find_last_of(L"\\/") + 1);
    path += kDllName;
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES ? path : std::wstring();
}

ComPtr<IMFTransform> CreateRegistered() {
    ComPtr<IMFTransform> transform;
    const HRESULT result = CoCreateInstance(__uuidof(NMFVDeinterlace), nullptr, CLSCTX_INPROC_SERVER,
                                            IID_PPV_ARGS(transform.GetAddressOf()));
    if (result == REGDB_E_CLASSNOTREG) {
        throw HostError(ExitCode::Transform, "the transform is not registered on this machine. Put NMFVDeitrx.dll "
                                             "beside nmfvdeint.exe, name it with --dll FILE, or register it.");
    }
    Check(result, ExitCode::Transform, "the registered transform cannot be created");
    return transform;
}

} // namespace

CTransformModule::~CTransformModule() {
    if (m_module) {
        FreeLibrary(m_module);
    }
}

ComPtr<IMFTransform> CTransformModule::Create(const Options& options) {
    if (options.registered) {
        return CreateRegistered();
    }
    if (!options.dll.empty()) {
        return CreateFromFile(FullPath(ToWide(options.dll)));
    }
    const std::wstring beside = BesideProgram();
    return beside.empty() ? CreateRegistered() : CreateFromFile(beside);
}

ComPtr<IMFTransform> CTransformModule::CreateFromFile(const std::wstring& path) {
    const std::string name = ToUtf8(path);
    m_module = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!m_module) {
        throw HostError(ExitCode::Transform, name + ": cannot be loaded: " + ErrorText(GetLastError()));
    }
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    const auto getClassObject =
        reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(m_module, "DllGetClassObject")));
    if (!getClassObject) {
        throw HostError(ExitCode::Transform, name + ": this is no COM server (it does not export DllGetClassObject).");
    }
    ComPtr<IClassFactory> factory;
    Check(getClassObject(__uuidof(NMFVDeinterlace), IID_PPV_ARGS(factory.GetAddressOf())), ExitCode::Transform,
          name + ": does not hold the transform");
    ComPtr<IMFTransform> transform;
    Check(factory->CreateInstance(nullptr, IID_PPV_ARGS(transform.GetAddressOf())), ExitCode::Transform,
          name + ": the transform cannot be created");
    return transform;
}

} // namespace host
