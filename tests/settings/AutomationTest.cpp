// The control interface through IDispatch. The library is registered in a registry of the test's own.
#include "com/TypeInfoHolder.h"
#include "tests/support/Files.h"
#include "tests/support/Module.h"
#include "tests/support/Threads.h"
#include "tests/support/Transform.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <oleauto.h>

namespace {

void RegisterLibrary() {
    CComRef<ITypeLib> library;
    ASSERT_HR(S_OK, LoadTypeLibEx(L"NMFVDeitrx.dll", REGKIND_NONE, library.Put()));
    std::wstring dll = (ProgramFolder() / L"NMFVDeitrx.dll").wstring();
    ASSERT_HR(S_OK, RegisterTypeLib(library.Get(), dll.data(), nullptr));
}

void UnregisterLibrary() {
    EXPECT_HR(S_OK, UnRegisterTypeLib(LIBID_NMFVDeinterlaceLib, 1, 0, 0, SYS_WIN64));
}

class Automation : public TransformTest {
protected:
    HRESULT Call(DISPID id, WORD flags, std::vector<VARIANT> arguments, VARIANT* result = nullptr) {
        std::reverse(arguments.begin(), arguments.end());
        DISPID put = DISPID_PROPERTYPUT;
        DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
        if (flags & DISPATCH_PROPERTYPUT) {
            parameters.rgdispidNamedArgs = &put;
            parameters.cNamedArgs = 1;
        }
        return Control()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result, nullptr, nullptr);
    }

    HRESULT FindName(const wchar_t* name, DISPID* id) {
        std::wstring text = name;
        LPOLESTR names[] = {text.data()};
        return Control()->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, id);
    }

    PrivateRegistry m_classes{HKEY_CLASSES_ROOT};
};

template <typename Value>
VARIANT Variant(VARTYPE type, Value value) {
    VARIANT v{};
    v.vt = type;
    std::memcpy(&v.llVal, &value, sizeof(value));
    return v;
}

// First of all in this program: nothing is registered yet, and the failure must not stick.
TEST_F(Automation, UnregisteredLibraryFailsOnlyDispatch) {
    UINT count = 0;
    EXPECT_HR(S_OK, Control()->GetTypeInfoCount(&count));
    EXPECT_EQ(1u, count);
    EXPECT_HR(E_POINTER, Control()->GetTypeInfoCount(nullptr));
    CComRef<ITypeInfo> info;
    EXPECT_HR(TYPE_E_LIBNOTREGISTERED, Control()->GetTypeInfo(0, 0, info.Put()));
    EXPECT_HR(TYPE_E_LIBNOTREGISTERED, Call(36, DISPATCH_PROPERTYGET, {}));
    EXPECT_HR(S_OK, Control()->put_FrameRate(24.0));
}

TEST_F(Automation, FirstUseFromSeveralThreads) {
    RegisterLibrary();
    std::atomic<int> waiting{0};
    InThreads(4, [&](int) {
        for (++waiting; waiting < 4;) {
        }
        CComRef<ITypeInfo> info;
        EXPECT_HR(S_OK, Control()->GetTypeInfo(0, 1031, info.Put()));
    });
    CComRef<ITypeInfo> one, other;
    Control()->GetTypeInfo(0, 0, one.Put());
    Control()->GetTypeInfo(0, 0, other.Put());
    EXPECT_EQ(one.Get(), other.Get());
    EXPECT_HR(DISP_E_BADINDEX, Control()->GetTypeInfo(1, 0, other.Put()));
    EXPECT_HR(E_POINTER, Control()->GetTypeInfo(0, 0, nullptr));
    UnregisterLibrary();
}

TEST_F(Automation, PropertiesAndMethods) {
    DISPID id = 0;
    EXPECT_HR(S_OK, FindName(L"framerate", &id)); // automation ignores case
    EXPECT_EQ(36, id);
    EXPECT_HR(DISP_E_UNKNOWNNAME, FindName(L"NoSuchMember", &id));
    VARIANT result{};
    EXPECT_HR(S_OK, Call(36, DISPATCH_PROPERTYPUT, {Variant(VT_R8, 29.97)}));
    EXPECT_HR(S_OK, Call(36, DISPATCH_PROPERTYGET, {}, &result));
    EXPECT_EQ(VT_R8, result.vt);
    EXPECT_EQ(29.97, result.dblVal);
    EXPECT_HR(DISP_E_EXCEPTION, Call(46, DISPATCH_PROPERTYPUT, {Variant(VT_R8, 9.0)})); // the member's own failure
    EXPECT_HR(S_OK, Call(22, DISPATCH_METHOD, {Variant(VT_I4, 0)}));
    EXPECT_HR(S_OK, Call(26, DISPATCH_PROPERTYGET, {}, &result));
    EXPECT_EQ(1, result.lVal);

    LONGLONG frame = 0;
    EXPECT_HR(S_OK, Call(31, DISPATCH_METHOD, {Variant(VT_I4, 0), Variant(VT_I8, 107'999'999ll)}));
    EXPECT_HR(S_OK, Call(30, DISPATCH_METHOD, {Variant(VT_I4, 0), Variant(VT_I8 | VT_BYREF, &frame)}));
    EXPECT_EQ(107'999'999, frame);
    for (const DISPID unassigned : {4, 5, 12, 49}) {
        EXPECT_HR(DISP_E_MEMBERNOTFOUND, Call(unassigned, DISPATCH_PROPERTYGET, {}, &result));
    }
}

ULONG STDMETHODCALLTYPE EndTheProcess(IUnknown*) {
    TerminateProcess(GetCurrentProcess(), 99);
    return 0;
}

// The process ends with code 99 when anybody releases `object`, or another of its class.
void EndOnRelease(IUnknown* object) {
    void** const release = *reinterpret_cast<void***>(object) + 2;
    DWORD before = 0;
    ASSERT_TRUE(VirtualProtect(release, sizeof(*release), PAGE_READWRITE, &before));
    *release = reinterpret_cast<void*>(&EndTheProcess);
}

// Leaves the module loaded, with the type information in its hands.
void HaveTheModuleHoldItsTypeInformation() {
    const PrivateRegistry user(HKEY_CURRENT_USER), classes(HKEY_CLASSES_ROOT);
    RegisterLibrary();
    const auto* const module = new Module;
    CComRef<IMFTransform> transform;
    CComRef<IDispatch> automation;
    CComRef<ITypeInfo> info;
    CComRef<ITypeLib> library;
    UINT index = 0;
    ASSERT_HR(S_OK, module->CreateTransform(transform));
    ASSERT_HR(S_OK, transform->QueryInterface(IID_IDispatch, automation.PutVoid()));
    ASSERT_HR(S_OK, automation->GetTypeInfo(0, 0, info.Put()));
    ASSERT_HR(S_OK, info->GetContainingTypeLib(library.Put(), &index));
    EndOnRelease(info.Detach());
    EndOnRelease(library.Detach());
}

// Other libraries may be gone already, and their threads in the middle of anything.
TEST(TypeInformation, IsLeftAloneWhileTheProcessEnds) {
    EXPECT_EXIT(
        {
            HaveTheModuleHoldItsTypeInformation();
            ExitProcess(7);
        },
        testing::ExitedWithCode(7), "");
}

TEST(TypeInformation, GoesWithItsHolder) {
    const PrivateRegistry classes(HKEY_CLASSES_ROOT);
    RegisterLibrary();
    auto holder = std::make_unique<CComTypeInfoHolder>(LIBID_NMFVDeinterlaceLib, 1, 0, IID_INMFVDeinterlace);
    CComRef<ITypeInfo> info;
    ASSERT_HR(S_OK, holder->GetTypeInfo(0, 0, info.Put()));
    const ULONG held = ReferencesOf(info.Get());
    holder.reset();
    ExpectRefs(info.Get(), held - 1);
}

} // namespace
