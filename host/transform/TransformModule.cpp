#include "host/transform/TransformModule.h"

#include "host/HostError.h"
#include "host/files/Files.h"
#include "host/console/Text.h"

#include <NMFVDeinterlace.h>

using Microsoft::WRL::ComPtr;

namespace host {

namespace {

ComPtr<IMFTransform> CreateRegistered() {
    ComPtr<IMFTransform> transform;
    const HRESULT result = CoCreateInstance(__uuidof(NMFVDeinterlace), nullptr, CLSCTX_INPROC_SERVER,
                                            IID_PPV_ARGS(transform.GetAddressOf()));
    if (result == REGDB_E_CLASSNOTREG) {
        throw HostError(ExitCode::Transform, "the transform is not registered on this machine. Put NMFVDeitrx.dll "
                                             "beside nmfvdeint.exe, name it with --dll FILE, or register it: nmfvdeint "
                                             "register.");
    }
    Check(result, ExitCode::Transform, "the registered transform cannot be created");
    return transform;
}

} // namespace

ComPtr<IMFTransform> CTransformModule::Create(const Options& options) {
    if (options.registered) {
        return CreateRegistered();
    }
    if (!options.dll.empty()) {
        return CreateFromFile(FullPath(ToWide(options.dll)));
    }
    const std::wstring beside = DllBesideProgram();
    return beside.empty() ? CreateRegistered() : CreateFromFile(beside);
}

ComPtr<IMFTransform> CTransformModule::CreateFromFile(const std::wstring& path) {
    const std::string name = ToUtf8(path);
    m_dll.emplace(path);
    ComPtr<IClassFactory> factory;
    const HRESULT result = m_dll->GetFactory(__uuidof(NMFVDeinterlace), factory.GetAddressOf());
    if (result == E_NOTIMPL) {
        throw HostError(ExitCode::Transform, name + ": this is no COM server (it does not export DllGetClassObject).");
    }
    Check(result, ExitCode::Transform, name + ": does not hold the transform");
    ComPtr<IMFTransform> transform;
    Check(factory->CreateInstance(nullptr, IID_PPV_ARGS(transform.GetAddressOf())), ExitCode::Transform,
          name + ": the transform cannot be created");
    return transform;
}

} // namespace host
