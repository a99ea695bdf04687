// Identity, lifetime and settings of the transform object.
#include "mft/MFTDeinterlace.h"

#include "settings/SettingsBlob.h"
#include "settings/SettingsDefaults.h"

#include <mfapi.h>

CMFTDeinterlace::CMFTDeinterlace() {
    (void)LoadAttributes(); // a transform whose settings cannot be loaded works with its defaults
}

CMFTDeinterlace::~CMFTDeinterlace() {
    m_pInputType.Reset();
    m_pOutputType.Reset();
    m_pSample.Reset();
    (void)SaveAttributes(); // nobody is left to tell
    m_pStore.Reset();
}

STDMETHODIMP CMFTDeinterlace::QueryInterface(REFIID riid, void** ppv) {
    if (!ppv) {
        return E_POINTER;
    }
    if (riid == IID_IUnknown || riid == IID_IMFTransform) {
        *ppv = static_cast<IMFTransform*>(this);
    } else if (riid == IID_IDispatch || riid == IID_INMFVDeinterlace) {
        *ppv = static_cast<INMFVDeinterlace*>(this);
    } else if (riid == IID_ISpecifyPropertyPages) {
        *ppv = static_cast<ISpecifyPropertyPages*>(this);
    } else {
        *ppv = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

// The store itself: what a pipeline sets there is a setting.
STDMETHODIMP CMFTDeinterlace::GetAttributes(IMFAttributes** attributes) {
    if (!attributes) {
        return E_POINTER;
    }
    if (!Store()) {
        return E_NOTIMPL;
    }
    *attributes = Store();
    (*attributes)->AddRef();
    return S_OK;
}

STDMETHODIMP CMFTDeinterlace::ResetToDefaultsEx(LONG ApiLevel) {
    return ResetSettings(Store(), ApiLevel);
}

HRESULT CMFTDeinterlace::CreateStore() {
    if (const HRESULT hr = MFCreateAttributes(m_pStore.Put(), kSettingsStoreItems); FAILED(hr)) {
        return hr;
    }
    return ResetToDefaultsEx(NMVDeinterlace_APILEVEL_2);
}

STDMETHODIMP CMFTDeinterlace::LoadAttributes() {
    if (!Store()) {
        if (const HRESULT hr = CreateStore(); FAILED(hr)) {
            return hr;
        }
    }
    const HRESULT hr = LoadSettingsBlob(Store(), SettingsPath());
    if (FAILED(hr)) {
        (void)ResetToDefaultsEx(NMVDeinterlace_APILEVEL_2); // the blob's failure is what is reported
    }
    return hr;
}

STDMETHODIMP CMFTDeinterlace::SaveAttributes() {
    return SaveSettingsBlob(Store(), SettingsPath());
}
