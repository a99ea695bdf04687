// The control interface through IDispatch. The library is registered in a registry of the test's own.
#include "tests/support/Members.h"
#include "tests/support/Transform.h"

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include <oleauto.h>

namespace {

class Automation : public TransformTest {
protected:
    void SetUp() override {
        TransformTest::SetUp();
        ASSERT_TRUE(m_classes.Active());
    }

    static void RegisterLibrary() {
        CComRef<ITypeLib> library;
        ASSERT_HR(S_OK, LoadTypeLibEx(L"NMFVDeitrx.dll", REGKIND_NONE, library.Put()));
        wchar_t path[MAX_PATH] = {};
        GetModuleFileNameW(nullptr, path, MAX_PATH);
        std::wstring dll(path);
        dll = dll.substr(0, dll.find_last_of(L'\\') + 1) + L"NMFVDeitrx.dll";
        ASSERT_HR(S_OK, RegisterTypeLib(library.Get(), dll.data(), nullptr));
    }

    static void UnregisterLibrary() {
        EXPECT_HR(S_OK, UnRegisterTypeLib(LIBID_NMFVDeinterlaceLib, 1, 0, 0, SYS_WIN64));
    }

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

    DISPID IdOf(std::wstring name) {
        LPOLESTR names[] = {name.data()};
        DISPID id = DISPID_UNKNOWN;
        EXPECT_HR(S_OK, Control()->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id));
        return id;
    }

    PrivateRegistry m_classes{HKEY_CLASSES_ROOT};
};

VARIANT Long(LONG value) {
    VARIANT v{};
    v.vt = VT_I4;
    v.lVal = value;
    return v;
}

VARIANT Double(double value) {
    VARIANT v{};
    v.vt = VT_R8;
    v.dblVal = value;
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
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this] {
            CComRef<ITypeInfo> info;
            EXPECT_HR(S_OK, Control()->GetTypeInfo(0, 1031, info.Put()));
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    CComRef<ITypeInfo> one, other;
    Control()->GetTypeInfo(0, 0, one.Put());
    Control()->GetTypeInfo(0, 0, other.Put());
    EXPECT_EQ(one.Get(), other.Get());
    EXPECT_HR(DISP_E_BADINDEX, Control()->GetTypeInfo(1, 0, other.Put()));
    EXPECT_HR(E_POINTER, Control()->GetTypeInfo(0, 0, nullptr));
    UnregisterLibrary();
}

TEST_F(Automation, EveryNameHasItsIdentifier) {
    for (const MemberRow& row : kMembers) {
        EXPECT_EQ(row.id, IdOf(row.name)) << row.slot;
    }
    EXPECT_EQ(36, IdOf(L"framerate")); // automation doesn't mind the case
    std::wstring unknown = L"NoSuchMember";
    LPOLESTR names[] = {unknown.data()};
    DISPID id = 0;
    EXPECT_HR(DISP_E_UNKNOWNNAME, Control()->GetIDsOfNames(IID_NULL, names, 1, 0, &id));
}

TEST_F(Automation, PropertiesAndMethods) {
    VARIANT result{};
    EXPECT_HR(S_OK, Call(36, DISPATCH_PROPERTYPUT, {Double(29.97)}));
    EXPECT_HR(S_OK, Call(36, DISPATCH_PROPERTYGET, {}, &result));
    EXPECT_EQ(VT_R8, result.vt);
    EXPECT_EQ(29.97, result.dblVal);
    EXPECT_HR(DISP_E_EXCEPTION, Call(46, DISPATCH_PROPERTYPUT, {Double(9.0)})); // the member's own failure
    EXPECT_HR(S_OK, Call(22, DISPATCH_METHOD, {Long(0)}));
    EXPECT_HR(S_OK, Call(26, DISPATCH_PROPERTYGET, {}, &result));
    EXPECT_EQ(1, result.lVal);

    VARIANT start{};
    start.vt = VT_I8;
    start.llVal = 107'999'999;
    EXPECT_HR(S_OK, Call(31, DISPATCH_METHOD, {Long(0), start}));
    LONGLONG frame = 0;
    VARIANT out{};
    out.vt = VT_I8 | VT_BYREF;
    out.pllVal = &frame;
    EXPECT_HR(S_OK, Call(30, DISPATCH_METHOD, {Long(0), out}));
    EXPECT_EQ(107'999'999, frame);
    for (const DISPID unassigned : {4, 5, 12, 49}) {
        EXPECT_HR(DISP_E_MEMBERNOTFOUND, Call(unassigned, DISPATCH_PROPERTYGET, {}, &result));
    }
}

} // namespace
