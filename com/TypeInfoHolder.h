// The type information behind IDispatch: one per interface and process, loaded from the registered type library on
// first use and kept until the module unloads. At process exit nothing of it is released.
#pragma once

#include "com/ComRef.h"
#include "com/CriticalSection.h"

#include <atomic>
#include <cstddef>

#include <oaidl.h>

class CComTypeInfoHolder {
public:
    // Identifiers are kept by reference: they must outlive the holder.
    CComTypeInfoHolder(const GUID& libraryId, WORD majorVersion, WORD minorVersion, const GUID& interfaceId)
        : m_libraryId(libraryId)
        , m_interfaceId(interfaceId)
        , m_major(majorVersion)
        , m_minor(minorVersion) {}
    CComTypeInfoHolder(const CComTypeInfoHolder&) = delete;
    CComTypeInfoHolder& operator=(const CComTypeInfoHolder&) = delete;
    ~CComTypeInfoHolder();

    // IDispatch's own contract: DISP_E_BADINDEX for an index other than 0, E_POINTER for a null out-pointer, else what
    // LoadRegTypeLib says. After a failure the next call tries again.
    HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo);
    HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, LCID locale, DISPID* ids);
    HRESULT Invoke(IDispatch* target, DISPID member, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                   EXCEPINFO* exception, UINT* badArgument);

private:
    struct MemberName {
        BSTR text;
        DISPID id;
    };

    HRESULT EnsureLoaded(LCID locale);
    HRESULT LoadTypeInfo(LCID locale, ITypeInfo** typeInfo);
    void CacheMemberNames();
    bool FindCachedName(const OLECHAR* name, DISPID* id) const;

    const GUID& m_libraryId;
    const GUID& m_interfaceId;
    const WORD m_major;
    const WORD m_minor;
    CCriticalSection m_loading;
    CComRef<ITypeLib> m_library;
    CComRef<ITypeInfo> m_owner;                // guarded by m_loading until published
    std::atomic<ITypeInfo*> m_loaded{nullptr}; // published once everything else is in place
    MemberName* m_names = nullptr;
    std::size_t m_nameCount = 0;
};
