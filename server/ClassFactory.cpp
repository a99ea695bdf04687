#include "server/ClassFactory.h"

#include "com/BaseObject.h"

#include <algorithm>

namespace {

// Whatever fails after this, the caller finds null in its pointer.
void ClearResult(void** ppv) {
    if (ppv) {
        *ppv = nullptr;
    }
}

} // namespace

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

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID riid, void** ppv) {
    ClearResult(ppv);
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
    ClearResult(ppv);
    const auto classes = ClassTable();
    const auto row =
        std::find_if(classes.begin(), classes.end(), [&](const ClassEntry& entry) { return *entry.clsid == clsid; });
    return row == classes.end() ? CLASS_E_CLASSNOTAVAILABLE
                                : CreateAndQuery<MediaFoundationSamples::ClassFactory>(riid, ppv, row->create);
}
