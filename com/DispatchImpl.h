// IDispatch of a dual-like interface through its type information.
#pragma once

#include "com/TypeInfoHolder.h"

// Implements the four IDispatch members of Interface; HolderFor is a function that gives the interface's one holder.
template <typename Interface, CComTypeInfoHolder& (*HolderFor)()>
class IDispatchImpl : public Interface {
public:
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        if (!count) {
            return E_POINTER;
        }
        *count = 1;
        return S_OK;
    }

    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) override {
        return HolderFor().GetTypeInfo(index, locale, typeInfo);
    }

    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override {
        return HolderFor().GetIDsOfNames(names, count, locale, ids);
    }

    STDMETHODIMP Invoke(DISPID member, REFIID, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT* badArgument) override {
        return HolderFor().Invoke(this, member, locale, flags, parameters, result, exception, badArgument);
    }
};
