// A transform object that leaves no trace in the user's saved settings.
#pragma once

#include "host/console/Text.h"
#include "host/transform/TransformModule.h"

#include <NMFVDeinterlace.h>
#include <mftransform.h>
#include <wrl/client.h>

namespace host {

// Kept: the object's last reference is never given up; the process ends with it. A transform saves its settings when it
// goes, so letting it go would write over the user's settings, and over what another program saved meanwhile. Test:
// ToolSettings.OldOnesStayByteForByte. References that others hold must be gone before this owner, which unloads a DLL
// that it loaded.
class CHeldTransform {
public:
    // Throws HostError with ExitCode::Transform.
    explicit CHeldTransform(const Options& options)
        : m_transform(m_module.Create(options).Detach()) {}
    CHeldTransform(const CHeldTransform&) = delete;
    CHeldTransform& operator=(const CHeldTransform&) = delete;

    IMFTransform* operator->() const { return m_transform; }
    IMFTransform* Get() const { return m_transform; }
    const CTransformModule& Module() const { return m_module; }

private:
    CTransformModule m_module;
    IMFTransform* m_transform;
};

// Throws HostError with ExitCode::Transform.
inline Microsoft::WRL::ComPtr<INMFVDeinterlace> ControlOf(CHeldTransform& transform) {
    Microsoft::WRL::ComPtr<INMFVDeinterlace> control;
    Check(transform->QueryInterface(IID_PPV_ARGS(control.GetAddressOf())), ExitCode::Transform,
          "the transform has no control interface");
    return control;
}

} // namespace host
