// Where the transform object comes from.
#pragma once

#include "host/command/Options.h"
#include "host/transform/DllFile.h"

#include <mftransform.h>
#include <optional>
#include <string>
#include <wrl/client.h>

namespace host {

// Holds the DLL, when it was loaded by its path. Must outlive every use of an object that it
// created.
class CTransformModule {
public:
    CTransformModule() = default;
    CTransformModule(const CTransformModule&) = delete;
    CTransformModule& operator=(const CTransformModule&) = delete;

    // As --dll and --registered say; with neither, from NMFVDeitrx.dll beside this program or else by class identifier.
    // COM must be initialised. Throws HostError with ExitCode::Transform.
    Microsoft::WRL::ComPtr<IMFTransform> Create(const Options& options);

    // Of the DLL that Create loaded; E_NOTIMPL when the transform is the registered one.
    HRESULT GetFactory(const CLSID& id, IClassFactory** factory) const {
        return m_dll ? m_dll->GetFactory(id, factory) : E_NOTIMPL;
    }

private:
    Microsoft::WRL::ComPtr<IMFTransform> CreateFromFile(const std::wstring& path);

    std::optional<CDllFile> m_dll;
};

} // namespace host
