// The transform's store of settings, and what it held at a moment.
#pragma once

#include "host/transform/HeldTransform.h"

#include <mfapi.h>
#include <utility>

namespace host {

// Throws HostError with ExitCode::Transform.
inline Microsoft::WRL::ComPtr<IMFAttributes> StoreOf(CHeldTransform& transform) {
    Microsoft::WRL::ComPtr<IMFAttributes> store;
    Check(transform->GetAttributes(store.GetAddressOf()), ExitCode::Transform, "the transform has no settings");
    return store;
}

// A copy, to see later whether the store changed. Throws HostError with ExitCode::Transform.
class CStoreCopy {
public:
    explicit CStoreCopy(Microsoft::WRL::ComPtr<IMFAttributes> store)
        : m_store(std::move(store)) {
        Check(MFCreateAttributes(m_copy.GetAddressOf(), 24), ExitCode::Transform, "the settings cannot be kept");
        Take();
    }

    void Take() { Check(m_store->CopyAllItems(m_copy.Get()), ExitCode::Transform, "the settings cannot be kept"); }
    bool Differs() const {
        BOOL same = FALSE;
        return FAILED(m_store->Compare(m_copy.Get(), MF_ATTRIBUTES_MATCH_ALL_ITEMS, &same)) || !same;
    }

private:
    Microsoft::WRL::ComPtr<IMFAttributes> m_store;
    Microsoft::WRL::ComPtr<IMFAttributes> m_copy;
};

} // namespace host
