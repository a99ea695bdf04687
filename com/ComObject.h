// What every COM object of the module has: its count of references, and the way it is created.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <new>

// The references of an object of these interfaces or classes. It begins with one, its creator's, and is deleted with
// the last. Callable from any thread.
template <typename... Bases>
class CRefCounted : public Bases... {
public:
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&m_references)); }

    STDMETHODIMP_(ULONG) Release() override {
        const LONG references = InterlockedDecrement(&m_references);
        if (references == 0) {
            m_references = kBeingDestroyed;
            delete this;
        }
        return static_cast<ULONG>(references);
    }

protected:
    CRefCounted() = default;
    CRefCounted(const CRefCounted&) = delete;
    CRefCounted& operator=(const CRefCounted&) = delete;
    virtual ~CRefCounted() = default;

private:
    // Far from 0: a destructor that adds and releases a reference must not destroy the object twice.
    static constexpr LONG kBeingDestroyed = 0x40000000;

    volatile LONG m_references = 1;
};

// Makes an Object and hands out `riid` of it with one reference: E_OUTOFMEMORY, or what its QueryInterface says.
template <typename Object, typename... Arguments>
HRESULT CreateAndQuery(REFIID riid, void** ppv, const Arguments&... arguments) {
    auto* const object = new (std::nothrow) Object(arguments...);
    if (!object) {
        return E_OUTOFMEMORY;
    }
    const HRESULT hr = object->QueryInterface(riid, ppv);
    object->Release();
    return hr;
}

// A class's creation function: E_POINTER, CLASS_E_NOAGGREGATION, E_OUTOFMEMORY or E_NOINTERFACE.
template <typename Object>
HRESULT CreateUnaggregated(IUnknown* outer, REFIID riid, void** ppv) {
    if (!ppv) {
        return E_POINTER;
    }
    return outer ? CLASS_E_NOAGGREGATION : CreateAndQuery<Object>(riid, ppv);
}
