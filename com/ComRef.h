// An owner for one reference to a COM object.
#pragma once

#include <unknwn.h>

template <typename T>
class CComRef {
public:
    CComRef() = default;
    // Adds a reference of its own.
    explicit CComRef(T* object) { Share(object); }
    CComRef(const CComRef&) = delete;
    CComRef& operator=(const CComRef&) = delete;
    ~CComRef() { Reset(); }

    T* Get() const { return m_object; }
    T* operator->() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }

    // For out-parameters; releases what is held first.
    T** Put() {
        Reset();
        return &m_object;
    }

    void** PutVoid() { return reinterpret_cast<void**>(Put()); }

    // Holds `object` with a reference added; the old reference is released last.
    void Share(T* object) {
        if (object) {
            object->AddRef();
        }
        T* old = m_object;
        m_object = object;
        if (old) {
            old->Release();
        }
    }

    // Hands the reference over to the caller.
    T* Detach() {
        T* object = m_object;
        m_object = nullptr;
        return object;
    }

    void Reset() {
        if (T* object = Detach()) {
            object->Release();
        }
    }

private:
    T* m_object = nullptr;
};
