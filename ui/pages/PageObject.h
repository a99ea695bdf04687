// From a page class to a COM object, and its creation function for the class table.
#pragma once

#include "com/BaseObject.h"
#include "com/ComObject.h"
#include "ui/pages/BasePropertyPage.h"

// A page with its references, counted among the module's objects.
template <typename Page>
class CPageObject final : public CRefCounted<Page>, MediaFoundationSamples::BaseObject {
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
        this->AddRef();
        return S_OK;
    }

private:
    // A host that forgot to deactivate: no dialog may outlive its page.
    ~CPageObject() override { (void)this->Deactivate(); }
};

// The class table's creation function of a page: E_POINTER, CLASS_E_NOAGGREGATION, E_OUTOFMEMORY or E_NOINTERFACE.
template <typename Page>
HRESULT CreatePage(IUnknown* outer, REFIID riid, void** ppv) {
    return CreateUnaggregated<CPageObject<Page>>(outer, riid, ppv);
}
