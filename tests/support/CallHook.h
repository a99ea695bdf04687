// Real platform objects with a hook in front: calls are counted, and made to fail where a test wants it.
#pragma once

#include "com/ComRef.h"

#include <functional>
#include <map>
#include <string>

#include <mfidl.h>

// Asked before each call with the method's name; a failure is returned instead of calling. Attribute methods name the
// key too.
struct CallHook {
    std::function<HRESULT(const std::string& method, const GUID* key)> check;
    std::map<std::string, int> calls;

    HRESULT operator()(const char* method, const GUID* key = nullptr) {
        ++calls[method];
        return check ? check(method, key) : S_OK;
    }

    // Lets `method` fail with `result` from now on.
    void Fail(const std::string& method, HRESULT result) {
        check = [=](const std::string& called, const GUID*) { return called == method ? result : S_OK; };
    }
};

// NMFV_HOOKED(Name, (parameters), (arguments)) forwards to Inner() unless the hook says otherwise.
#define NMFV_HOOKED(Name, Parameters, Arguments)                                                                       \
    STDMETHODIMP Name Parameters override {                                                                            \
        const HRESULT hr = hook(#Name);                                                                                \
        return FAILED(hr) ? hr : Inner()->Name Arguments;                                                              \
    }
#define NMFV_HOOKED_KEY(Name, Parameters, Arguments)                                                                   \
    STDMETHODIMP Name Parameters override {                                                                            \
        const HRESULT hr = hook(#Name, &key);                                                                          \
        return FAILED(hr) ? hr : Inner()->Name Arguments;                                                              \
    }

// Reference counting and forwarding for an object that stands in front of `Interface`. Lives on the stack of a test.
template <typename Interface>
class Hooked : public Interface {
public:
    explicit Hooked(Interface* inner)
        : m_inner(inner) {}

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override {
        if (riid != IID_IUnknown && riid != __uuidof(Interface)) {
            *ppv = nullptr;
            return E_NOINTERFACE;
        }
        *ppv = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override { return --m_references; }

    Interface* Inner() const { return m_inner.Get(); }

    CallHook hook;

private:
    CComRef<Interface> m_inner;
    ULONG m_references = 0;
};

class HookedStore : public Hooked<IMFAttributes> {
public:
    using Hooked::Hooked;

    NMFV_HOOKED_KEY(GetItem, (REFGUID key, PROPVARIANT* value), (key, value))
    NMFV_HOOKED_KEY(GetItemType, (REFGUID key, MF_ATTRIBUTE_TYPE* type), (key, type))
    NMFV_HOOKED_KEY(CompareItem, (REFGUID key, REFPROPVARIANT value, BOOL* same), (key, value, same))
    NMFV_HOOKED(Compare, (IMFAttributes * other, MF_ATTRIBUTES_MATCH_TYPE how, BOOL* same), (other, how, same))
    NMFV_HOOKED_KEY(GetUINT32, (REFGUID key, UINT32* value), (key, value))
    NMFV_HOOKED_KEY(GetUINT64, (REFGUID key, UINT64* value), (key, value))
    NMFV_HOOKED_KEY(GetDouble, (REFGUID key, double* value), (key, value))
    NMFV_HOOKED_KEY(GetGUID, (REFGUID key, GUID* value), (key, value))
    NMFV_HOOKED_KEY(GetStringLength, (REFGUID key, UINT32* length), (key, length))
    NMFV_HOOKED_KEY(GetString, (REFGUID key, LPWSTR text, UINT32 size, UINT32* length), (key, text, size, length))
    NMFV_HOOKED_KEY(GetAllocatedString, (REFGUID key, LPWSTR* text, UINT32* length), (key, text, length))
    NMFV_HOOKED_KEY(GetBlobSize, (REFGUID key, UINT32* size), (key, size))
    NMFV_HOOKED_KEY(GetBlob, (REFGUID key, UINT8* bytes, UINT32 size, UINT32* used), (key, bytes, size, used))
    NMFV_HOOKED_KEY(GetAllocatedBlob, (REFGUID key, UINT8** bytes, UINT32* size), (key, bytes, size))
    NMFV_HOOKED_KEY(GetUnknown, (REFGUID key, REFIID riid, LPVOID* ppv), (key, riid, ppv))
    NMFV_HOOKED_KEY(SetItem, (REFGUID key, REFPROPVARIANT value), (key, value))
    NMFV_HOOKED_KEY(DeleteItem, (REFGUID key), (key))
    NMFV_HOOKED(DeleteAllItems, (), ())
    NMFV_HOOKED_KEY(SetUINT32, (REFGUID key, UINT32 value), (key, value))
    NMFV_HOOKED_KEY(SetUINT64, (REFGUID key, UINT64 value), (key, value))
    NMFV_HOOKED_KEY(SetDouble, (REFGUID key, double value), (key, value))
    NMFV_HOOKED_KEY(SetGUID, (REFGUID key, REFGUID value), (key, value))
    NMFV_HOOKED_KEY(SetString, (REFGUID key, LPCWSTR value), (key, value))
    NMFV_HOOKED_KEY(SetBlob, (REFGUID key, const UINT8* bytes, UINT32 size), (key, bytes, size))
    NMFV_HOOKED_KEY(SetUnknown, (REFGUID key, IUnknown* value), (key, value))
    NMFV_HOOKED(LockStore, (), ())
    NMFV_HOOKED(UnlockStore, (), ())
    NMFV_HOOKED(GetCount, (UINT32 * items), (items))
    NMFV_HOOKED(GetItemByIndex, (UINT32 index, GUID* key, PROPVARIANT* value), (index, key, value))
    NMFV_HOOKED(CopyAllItems, (IMFAttributes * destination), (destination))
};

class HookedBuffer : public Hooked<IMFMediaBuffer> {
public:
    using Hooked::Hooked;

    NMFV_HOOKED(Lock, (BYTE * *bytes, DWORD* size, DWORD* length), (bytes, size, length))
    NMFV_HOOKED(Unlock, (), ())
    NMFV_HOOKED(GetCurrentLength, (DWORD * length), (length))
    NMFV_HOOKED(SetCurrentLength, (DWORD length), (length))
    NMFV_HOOKED(GetMaxLength, (DWORD * length), (length))
};

#undef NMFV_HOOKED
#undef NMFV_HOOKED_KEY
