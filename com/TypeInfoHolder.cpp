#include "com/TypeInfoHolder.h"

#include "base/ProcessEnd.h"

#include <mutex>
#include <new>

#include <cwchar>

#include <oleauto.h>

CComTypeInfoHolder::~CComTypeInfoHolder() {
    if (ProcessIsEnding()) {
        (void)m_owner.Detach();
        (void)m_library.Detach();
        return;
    }
    for (std::size_t i = 0; i < m_nameCount; ++i) {
        SysFreeString(m_names[i].text);
    }
    delete[] m_names;
}

HRESULT CComTypeInfoHolder::GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) {
    if (!typeInfo) {
        return E_POINTER;
    }
    *typeInfo = nullptr;
    if (index != 0) {
        return DISP_E_BADINDEX;
    }
    if (const HRESULT hr = EnsureLoaded(locale); FAILED(hr)) {
        return hr;
    }
    *typeInfo = m_loaded;
    (*typeInfo)->AddRef();
    return S_OK;
}

HRESULT CComTypeInfoHolder::GetIDsOfNames(LPOLESTR* names, UINT count, LCID locale, DISPID* ids) {
    if (!names || !ids) {
        return E_POINTER;
    }
    if (const HRESULT hr = EnsureLoaded(locale); FAILED(hr)) {
        return hr;
    }
    if (count == 1 && names[0] && FindCachedName(names[0], ids)) {
        return S_OK;
    }
    return m_loaded.load()->GetIDsOfNames(names, count, ids);
}

HRESULT CComTypeInfoHolder::Invoke(IDispatch* target, DISPID member, LCID locale, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT* badArgument) {
    if (const HRESULT hr = EnsureLoaded(locale); FAILED(hr)) {
        return hr;
    }
    return m_loaded.load()->Invoke(target, member, flags, parameters, result, exception, badArgument);
}

HRESULT CComTypeInfoHolder::EnsureLoaded(LCID locale) {
    if (m_loaded) {
        return S_OK;
    }
    const std::lock_guard hold(m_loading);
    if (m_loaded) {
        return S_OK;
    }
    if (const HRESULT hr = LoadTypeInfo(locale, m_owner.Put()); FAILED(hr)) {
        return hr;
    }
    CacheMemberNames();
    m_loaded = m_owner.Get();
    return S_OK;
}

HRESULT CComTypeInfoHolder::LoadTypeInfo(LCID locale, ITypeInfo** typeInfo) {
    if (const HRESULT hr = LoadRegTypeLib(m_libraryId, m_major, m_minor, locale, m_library.Put()); FAILED(hr)) {
        return hr;
    }
    return m_library->GetTypeInfoOfGuid(m_interfaceId, typeInfo);
}

// The cache only saves work; without memory for it, every name is looked up in the type information.
void CComTypeInfoHolder::CacheMemberNames() {
    TYPEATTR* attributes = nullptr;
    if (FAILED(m_owner->GetTypeAttr(&attributes))) {
        return;
    }
    const UINT functions = attributes->cFuncs;
    m_owner->ReleaseTypeAttr(attributes);
    m_names = new (std::nothrow) MemberName[functions];
    if (!m_names) {
        return;
    }
    for (UINT i = 0; i < functions; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(m_owner->GetFuncDesc(i, &function))) {
            continue;
        }
        const MEMBERID id = function->memid;
        m_owner->ReleaseFuncDesc(function);
        BSTR name = nullptr;
        if (SUCCEEDED(m_owner->GetDocumentation(id, &name, nullptr, nullptr, nullptr)) && name) {
            m_names[m_nameCount++] = {name, id};
        }
    }
}

bool CComTypeInfoHolder::FindCachedName(const OLECHAR* name, DISPID* id) const {
    for (std::size_t i = 0; i < m_nameCount; ++i) {
        if (std::wcscmp(m_names[i].text, name) == 0) {
            *id = m_names[i].id;
            return true;
        }
    }
    return false;
}
