// A transform object that leaves no trace in the user's saved settings.
#pragma once

#include "host/win/SavedSettings.h"
#include "host/win/TransformModule.h"

#include <mfapi.h>
#include <mftransform.h>
#include <wrl/client.h>

namespace host {

// Every transform object saves its settings when it goes. This owner lets it save those that it began with, then puts
// back the saved value as it was, or takes it away when there was none; unless KeepSettings was called. References that
// others hold to the transform must be gone before.
class CHeldTransform {
public:
    explicit CHeldTransform(const Options& options);
    CHeldTransform(const CHeldTransform&) = delete;
    CHeldTransform& operator=(const CHeldTransform&) = delete;
    ~CHeldTransform();

    IMFTransform* operator->() const { return m_transform.Get(); }
    IMFTransform* Get() const { return m_transform.Get(); }
    const CTransformModule& Module() const { return m_module; }
    void KeepSettings() { m_keep = true; }

private:
    bool m_keep = false;
    CSavedSettings m_saved;
    CTransformModule m_module;
    Microsoft::WRL::ComPtr<IMFTransform> m_transform;
    Microsoft::WRL::ComPtr<IMFAttributes> m_loaded; // the settings as the transform found them
};

} // namespace host
