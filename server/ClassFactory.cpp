#include "server/ClassFactory.h"

#include "com/BaseObject.h"

#include <algorithm>
#include <new>

namespace MediaFoundationSamples {

STDMETHODIMP ClassFactory::QueryInterface(REFIID riid, void** ppv) {
    if (!ppv) {
        return E_POINTER;
    }
    if (riid != IID_IUnknown && riid != IID_IClassFactory) {
        *ppv = nullptr;
        return E_NOINTERFACE;
    }
    *ppv = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) ClassFactory::AddRef() {
    return static_cast<ULONG>(InterlockedIncrement(&m_references));
}

STDMETHODIMP_(ULONG) ClassFactory::Release() {
    const LONG references = InterlockedDecrement(&m_references);
    if (references == 0) {
        delete this;
    }
    return static_cast<ULONG>(references);
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID riid, void** ppv) {
    if (outer && riid != IID_IUnknown) {
        return E_NOINTERFACE;
    }
    return m_create(outer, riid, ppv);
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) {
    if (lock) {
        InterlockedIncrement(&g_ObjectCount);
    } else {
        InterlockedDecrement(&g_ObjectCount);
    }
    return S_OK;
}

} // namespace MediaFoundationSamples

HRESULT GetClassObject(REFCLSID clsid, REFIID riid, void** ppv) {
    const auto classes = ClassTable();
    const auto row =
        std::find_if(classes.begin(), classes.end(), [&](const ClassEntry& entry) { return *entry.clsid == clsid; });
    if (row == classes.end()) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    auto* const factory = new (std::nothrow) MediaFoundationSamples::ClassFactory(row->create);
    if (!factory) {
        return E_OUTOFMEMORY;
    }
    const HRESULT hr = factory->QueryInterface(riid, ppv);
    factory->Release();
    return hr;
}
