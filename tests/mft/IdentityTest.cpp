// One object, three interfaces, one reference count.
#include "com/BaseObject.h"
#include "server/ClassTable.h"
#include "tests/support/Transform.h"

namespace {

using MediaFoundationSamples::g_ObjectCount;

class Identity : public TransformTest {};

TEST_F(Identity, EveryInterfaceFromEveryOther) {
    CComRef<ISpecifyPropertyPages> pages;
    ASSERT_HR(S_OK, Mft()->QueryInterface(IID_ISpecifyPropertyPages, pages.PutVoid()));
    IUnknown* const doors[] = {Mft(), Control(), pages.Get()};
    for (IUnknown* door : doors) {
        for (const IID* iid :
             {&IID_IUnknown, &IID_IMFTransform, &IID_IDispatch, &IID_INMFVDeinterlace, &IID_ISpecifyPropertyPages}) {
            ExpectInterface(door, *iid, S_OK);
        }
        ExpectInterface(door, IID_IPersist, E_NOINTERFACE);
        EXPECT_HR(E_POINTER, door->QueryInterface(IID_IUnknown, nullptr));
        CComRef<IUnknown> identity;
        EXPECT_HR(S_OK, door->QueryInterface(IID_IUnknown, identity.PutVoid()));
        EXPECT_EQ(static_cast<IUnknown*>(Mft()), identity.Get());
        ExpectRefs(door, 4); // the fixture's two, pages and identity
    }
}

// Clients that were compiled against the object's layout find transform, control and pages in this order.
TEST_F(Identity, PartsFollowEachOther) {
    CComRef<ISpecifyPropertyPages> pages;
    ASSERT_HR(S_OK, Mft()->QueryInterface(IID_ISpecifyPropertyPages, pages.PutVoid()));
    const auto* transform = reinterpret_cast<const char*>(Mft());
    EXPECT_EQ(static_cast<std::ptrdiff_t>(sizeof(void*)), reinterpret_cast<const char*>(Control()) - transform);
    EXPECT_EQ(static_cast<std::ptrdiff_t>(2 * sizeof(void*)), reinterpret_cast<const char*>(pages.Get()) - transform);
}

// Whatever is refused, the caller's pointer is null afterwards.
template <typename Call>
void ExpectRefusal(HRESULT expected, Call call) {
    void* found = &found;
    EXPECT_HR(expected, call(&found));
    EXPECT_EQ(nullptr, found);
}

TEST_F(Identity, FactoryRefusals) {
    ExpectRefusal(CLASS_E_CLASSNOTAVAILABLE,
                  [](void** found) { return GetClassObject(IID_IUnknown, IID_IClassFactory, found); });
    ExpectRefusal(E_NOINTERFACE,
                  [](void** found) { return GetClassObject(CLSID_NMFVDeinterlace, IID_IDispatch, found); });
    EXPECT_HR(CLASS_E_CLASSNOTAVAILABLE, GetClassObject(IID_IUnknown, IID_IClassFactory, nullptr));
    EXPECT_HR(E_POINTER, GetClassObject(CLSID_NMFVDeinterlace, IID_IClassFactory, nullptr));

    const struct {
        IUnknown* outer;
        const IID& iid;
        HRESULT refused;
    } rows[] = {{Mft(), IID_IMFTransform, E_NOINTERFACE},
                {Mft(), IID_IUnknown, CLASS_E_NOAGGREGATION},
                {nullptr, IID_IPersist, E_NOINTERFACE}};
    const LONG objects = g_ObjectCount;
    for (const ClassEntry& entry : ClassTable()) {
        CComRef<IClassFactory> factory;
        ASSERT_HR(S_OK, GetClassObject(*entry.clsid, IID_IClassFactory, factory.PutVoid()));
        for (const auto& row : rows) {
            ExpectRefusal(row.refused,
                          [&](void** found) { return factory->CreateInstance(row.outer, row.iid, found); });
        }
        EXPECT_HR(E_POINTER, factory->CreateInstance(nullptr, IID_IUnknown, nullptr));
        ExpectRefs(factory.Get(), 1);
    }
    EXPECT_EQ(objects, g_ObjectCount);
}

} // namespace
