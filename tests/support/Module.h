// The shipped DLL as a host without registration uses it.
#pragma once

#include "com/ComRef.h"

#include "NMFVDeinterlace.h"

#include <mftransform.h>
#include <windows.h>

class Module {
public:
    Module()
        : m_module(LoadLibraryW(L"NMFVDeitrx.dll")) {}
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    ~Module() { FreeLibrary(m_module); }

    HMODULE Handle() const { return m_module; }

    // Null when the DLL doesn't export it.
    template <typename Function>
    Function* Find(const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(m_module, name)));
    }

    HRESULT GetClassObject(REFCLSID clsid, REFIID riid, void** ppv) const {
        auto* const get = Find<HRESULT WINAPI(REFCLSID, REFIID, void**)>("DllGetClassObject");
        return get ? get(clsid, riid, ppv) : E_NOTIMPL;
    }

    HRESULT CanUnloadNow() const {
        auto* const can = Find<HRESULT WINAPI()>("DllCanUnloadNow");
        return can ? can() : E_NOTIMPL;
    }

    HRESULT CreateTransform(CComRef<IMFTransform>& transform) const {
        CComRef<IClassFactory> factory;
        const HRESULT hr = GetClassObject(CLSID_NMFVDeinterlace, IID_IClassFactory, factory.PutVoid());
        return FAILED(hr) ? hr : factory->CreateInstance(nullptr, IID_IMFTransform, transform.PutVoid());
    }

private:
    HMODULE m_module;
};
