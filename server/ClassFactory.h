// The one class factory for every class of the module.
#pragma once

#include "com/ComObject.h"
#include "server/ClassTable.h"

namespace MediaFoundationSamples {

// Free-threaded. Not counted among the module's objects; LockServer is. CreateInstance leaves *ppv null when it fails.
class ClassFactory final : public CRefCounted<IClassFactory> {
public:
    explicit ClassFactory(CreateInstanceFn create)
        : m_create(create) {}

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID riid, void** ppv) override;
    STDMETHODIMP LockServer(BOOL lock) override;

private:
    const CreateInstanceFn m_create;
};

} // namespace MediaFoundationSamples

// A class object for a row of the class table: CLASS_E_CLASSNOTAVAILABLE for another identifier, E_OUTOFMEMORY,
// E_POINTER, E_NOINTERFACE. *ppv is null after each of them.
HRESULT GetClassObject(REFCLSID clsid, REFIID riid, void** ppv);
