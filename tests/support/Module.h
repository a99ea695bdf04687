// The shipped DLL, or a copy of it, as a host without registration uses it.
#pragma once

#include "com/ComRef.h"

#include "NMFVDeinterlace.h"

#include <filesystem>

#include <mftransform.h>
#include <windows.h>

class Module {
public:
    explicit Module(const std::filesystem::path& path = "NMFVDeitrx.dll")
        : m_module(LoadLibraryW(path.c_str())) {}
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

    HRESULT CanUnloadNow() const { return Call("DllCanUnloadNow"); }
    HRESULT Register() const { return Call("DllRegisterServer"); }
    HRESULT Unregister() const { return Call("DllUnregisterServer"); }

    // An object of one of its classes.
    template <typename Interface>
    HRESULT Create(REFCLSID clsid, CComRef<Interface>& object) const {
        CComRef<IClassFactory> factory;
        const HRESULT hr = GetClassObject(clsid, IID_IClassFactory, factory.PutVoid());
        return FAILED(hr) ? hr : factory->CreateInstance(nullptr, __uuidof(Interface), object.PutVoid());
    }
    HRESULT CreateTransform(CComRef<IMFTransform>& transform) const { return Create(CLSID_NMFVDeinterlace, transform); }

private:
    HRESULT Call(const char* name) const {
        auto* const function = Find<HRESULT WINAPI()>(name);
        return function ? function() : E_NOTIMPL;
    }

    HMODULE m_module;
};
