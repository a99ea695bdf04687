#include "host/win/HeldTransform.h"

using Microsoft::WRL::ComPtr;

namespace host {

CHeldTransform::CHeldTransform(const Options& options)
    : m_transform(m_module.Create(options)) {
    ComPtr<IMFAttributes> store;
    // Without a copy the saved value is still put back in the end.
    if (SUCCEEDED(m_transform->GetAttributes(store.GetAddressOf())) &&
        SUCCEEDED(MFCreateAttributes(m_loaded.GetAddressOf(), 24)) && FAILED(store->CopyAllItems(m_loaded.Get()))) {
        m_loaded.Reset();
    }
}

CHeldTransform::~CHeldTransform() {
    ComPtr<IMFAttributes> store;
    if (!m_keep && m_loaded && SUCCEEDED(m_transform->GetAttributes(store.GetAddressOf()))) {
        (void)m_loaded->CopyAllItems(store.Get()); // PutBack does the rest
    }
    store.Reset();
    m_transform.Reset();
    if (!m_keep) {
        m_saved.PutBack();
    }
}

} // namespace host
