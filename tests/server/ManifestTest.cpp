// The shipped assembly manifest: the classes without registration.
#include "base/Handles.h"
#include "tests/support/ComChecks.h"
#include "tests/support/Files.h"
#include "tests/support/PrivateRegistry.h"

#include "NMFVDeinterlace.h"
#include "NMFVDeinterlaceKeys.h"

#include <thread>

#include <mfapi.h>
#include <mftransform.h>
#include <oleauto.h>
#include <windows.h>

namespace {

// What an application's own manifest says.
constexpr char kClientManifest[] = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
  <assemblyIdentity type="win32" name="Client" version="1.0.0.0"/>
  <dependency><dependentAssembly>
    <assemblyIdentity type="win32" name="NMFVDeitrx.X" version="1.0.0.0" processorArchitecture="amd64"/>
  </dependentAssembly></dependency>
</assembly>)";

// Makes the calling thread see the assembly beside the test program, as an application's manifest does for it all.
class Activation {
public:
    Activation() {
        const TempFolder folderOfClient;
        const auto file = folderOfClient.Path() / "client.manifest";
        std::ofstream(file) << kClientManifest;
        const std::wstring folder = ProgramFolder().wstring();
        ACTCTXW context{};
        context.cbSize = sizeof(context);
        context.dwFlags = ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
        context.lpSource = file.c_str();
        context.lpAssemblyDirectory = folder.c_str();
        m_context = CreateActCtxW(&context);
        const DWORD error = GetLastError();
        m_active = m_context != INVALID_HANDLE_VALUE && ActivateActCtx(m_context, &m_cookie);
        EXPECT_TRUE(m_active) << error;
    }
    Activation(const Activation&) = delete;
    Activation& operator=(const Activation&) = delete;
    ~Activation() {
        if (m_active) {
            DeactivateActCtx(0, m_cookie);
        }
        ReleaseActCtx(m_context);
    }

private:
    HANDLE m_context = INVALID_HANDLE_VALUE;
    ULONG_PTR m_cookie = 0;
    bool m_active = false;
};

HRESULT Create(const CLSID& id, CComRef<IUnknown>& object) {
    return CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.PutVoid());
}

class Manifest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_HR(S_OK, CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        CComRef<IUnknown> object;
        ASSERT_HR(REGDB_E_CLASSNOTREG, Create(CLSID_NMFVDeinterlace, object)) << "registered: nothing would be proved";
    }
    void TearDown() override {
        CoUninitialize();
        // Wine registers what it loads for a proxy.
        (void)UnRegisterTypeLib(LIBID_NMFVDeinterlaceLib, 1, 0, 0, SYS_WIN64);
    }

    PrivateRegistry m_user{HKEY_CURRENT_USER};
};

TEST_F(Manifest, CreatesEveryClassAndAutomation) {
    const Activation activation;
    CComRef<IUnknown> object;
    ASSERT_HR(S_OK, Create(CLSID_NMFVDeinterlace, object));
    CComRef<IMFTransform> transform;
    EXPECT_HR(S_OK, object->QueryInterface(IID_IMFTransform, transform.PutVoid()));
    CComRef<IDispatch> automation;
    ASSERT_HR(S_OK, object->QueryInterface(IID_IDispatch, automation.PutVoid()));
    constexpr DISPID kSensitivity = 46;
    DISPPARAMS none{};
    VARIANT value{};
    ASSERT_HR(S_OK, automation->Invoke(kSensitivity, IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYGET, &none, &value,
                                       nullptr, nullptr));
    EXPECT_EQ(VT_R8, value.vt);
    EXPECT_EQ(1.0, value.dblVal);
    for (const CLSID* page :
         {&CLSID_NMFVDeinterlaceSettingsPage, &CLSID_NMFVDeinterlaceRoiPage, &CLSID_NMFVDeinterlaceAboutPage}) {
        CComRef<IUnknown> any; // the DLL is found and asked for it, whatever this apartment lets it answer
        EXPECT_NE(Hr{REGDB_E_CLASSNOTREG}, Hr{Create(*page, any)});
    }
}

// Holds a transform in an apartment of another thread until `done` is set; `stream` then carries its control interface.
void LendControl(CComRef<IStream>& stream, HANDLE ready, HANDLE done) {
    const Activation activation;
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
        CComRef<IUnknown> object;
        EXPECT_HR(S_OK, Create(CLSID_NMFVDeinterlace, object));
        EXPECT_HR(S_OK, CoMarshalInterThreadInterfaceInStream(IID_INMFVDeinterlace, object.Get(), stream.Put()));
        SetEvent(ready);
        DWORD index = 0;
        CoWaitForMultipleHandles(0, INFINITE, 1, &done, &index);
    }
    CoUninitialize();
}

TEST_F(Manifest, ControlInterfaceReachesOtherApartments) {
    const Activation activation;
    CHandle ready(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    CHandle done(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    CComRef<IStream> stream;
    std::thread apartment([&] { LendControl(stream, ready.Get(), done.Get()); });
    WaitForSingleObject(ready.Get(), INFINITE);
    CComRef<INMFVDeinterlace> control;
    double sensitivity = 0;
    if (stream && SUCCEEDED(CoGetInterfaceAndReleaseStream(stream.Detach(), IID_INMFVDeinterlace, control.PutVoid()))) {
        EXPECT_HR(S_OK, control->get_AutoDeinterlaceSensitivity(&sensitivity));
    }
    EXPECT_EQ(1.0, sensitivity);
    control.Reset();
    SetEvent(done.Get());
    apartment.join();
}

} // namespace
