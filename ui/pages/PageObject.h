// From a page class to a COM object, and its creation function for the class table.
#pragma once

#include "com/BaseObject.h"
#include "ui/pages/BasePropertyPage.h"

#include <new>

// A page with a reference count of its own, counted among the module's objects.
template <typename Page>
class CPageObject final : public Page, MediaFoundationSamples::BaseObject {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override {
        if (!ppv) {
            return E_POINTER;
        }
        if (riid != IID_IUnknown && riid != IID_IPropertyPage) {
            *ppv = nullptr;
            return E_NOINTERFACE;
        }
        *ppv = static_cast<IPropertyPage*>(this);
        AddRef();
        return S_OK;
    }

    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&m_references)); }

    STDMETHODIMP_(ULONG) Release() override {
        const LONG references = InterlockedDecrement(&m_references);
        if (references == 0) {
            m_references = kBeingDestroyed;
            (void)this->Deactivate(); // a host that forgot to; no dialog may outlive its page
            delete this;
        }
        return static_cast<ULONG>(references);
    }

private:
    // Far from 0, so that nothing that is called on the way out destroys the page again.
    static constexpr LONG kBeingDestroyed = 0x40000000;

    volatile LONG m_references = 1;
};

// The class table's creation function of a page: E_POINTER, CLASS_E_NOAGGREGATION, E_OUTOFMEMORY or E_NOINTERFACE.
template <typename Page>
HRESULT CreatePage(IUnknown* outer, REFIID riid, void** ppv) {
    if (!ppv) {
        return E_POINTER;
    }
    if (outer) {
        return CLASS_E_NOAGGREGATION;
    }
    auto* const page = new (std::nothrow) CPageObject<Page>;
    if (!page) {
        return E_OUTOFMEMORY;
    }
    const HRESULT hr = page->QueryInterface(riid, ppv);
    page->Release();
    return hr;
}
