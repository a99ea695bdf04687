// A transform made by the module's class factory, with all its interfaces, in a registry of its own.
#pragma once

#include "com/ComRef.h"
#include "server/ClassFactory.h"
#include "tests/support/ComChecks.h"
#include "tests/support/Media.h"
#include "tests/support/PrivateRegistry.h"

#include "NMFVDeinterlace.h"
#include "NMFVDeinterlaceKeys.h"

#include <mftransform.h>
#include <ocidl.h>

inline UINT32 StoredNumber(IMFAttributes* store, REFGUID key) {
    UINT32 value = 0xDEAD;
    store->GetUINT32(key, &value);
    return value;
}

inline UINT32 ItemsOf(IMFAttributes* store) {
    UINT32 items = 0xDEAD;
    store->GetCount(&items);
    return items;
}

struct TransformUnderTest {
    // False when anything of it failed.
    bool Create() {
        CComRef<IClassFactory> factory;
        return SUCCEEDED(GetClassObject(CLSID_NMFVDeinterlace, IID_IClassFactory, factory.PutVoid())) &&
               SUCCEEDED(factory->CreateInstance(nullptr, IID_IMFTransform, transform.PutVoid())) &&
               SUCCEEDED(transform->QueryInterface(IID_INMFVDeinterlace, control.PutVoid())) &&
               SUCCEEDED(transform->GetAttributes(store.Put()));
    }

    // What a getter of the control interface reports; it must succeed.
    template <typename Value>
    Value Get(HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*getter)(Value*)) const {
        Value value{};
        EXPECT_HR(S_OK, (control.Get()->*getter)(&value));
        return value;
    }

    void Release() {
        store.Reset();
        control.Reset();
        transform.Reset();
    }

    CComRef<IMFTransform> transform;
    CComRef<INMFVDeinterlace> control;
    CComRef<IMFAttributes> store;
};

// The common fixture: no saved settings, one transform with its defaults.
class TransformTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_object.Create()); }

    // One type for both sides.
    void SetTypes(REFGUID subtype, UINT32 width, UINT32 height, UINT32 rate = 25) {
        CComRef<IMFMediaType> type;
        MakeVideoType(subtype, width, height, type, rate);
        ASSERT_HR(S_OK, Mft()->SetInputType(0, type.Get(), 0));
        ASSERT_HR(S_OK, Mft()->SetOutputType(0, type.Get(), 0));
    }

    IMFTransform* Mft() { return m_object.transform.Get(); }
    INMFVDeinterlace* Control() { return m_object.control.Get(); }
    IMFAttributes* Store() { return m_object.store.Get(); }

    template <typename Value>
    Value Get(HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*getter)(Value*)) const {
        return m_object.Get(getter);
    }

    PrivateRegistry m_user{HKEY_CURRENT_USER};
    TransformUnderTest m_object;
};
