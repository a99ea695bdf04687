// Shows the transform's property pages in the platform's own frame, and then what was chosen. Nothing is registered:
// the frame makes pages by their identifiers, so the program offers them to COM while it runs.
//
//     sheet [SECONDS]     closes the frame after so many seconds, as Cancel does
#include <initguid.h>

#include <NMFVDeinterlace.h>
#include <mfapi.h>
#include <mftransform.h>
#include <ocidl.h>
#include <olectl.h>
#include <commctrl.h>
#include <wrl/client.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <vector>

using Microsoft::WRL::ComPtr;

namespace {

void Check(HRESULT hr, const char* what) {
    if (FAILED(hr)) {
        char text[160];
        std::snprintf(text, sizeof text, "%s: 0x%08lX", what, static_cast<unsigned long>(hr));
        throw std::runtime_error(text);
    }
}

ComPtr<IMFTransform> MakeTransform() {
    ComPtr<IClassFactory> factory;
    ComPtr<IMFTransform> transform;
    Check(DllGetClassObject(CLSID_NMFVDeinterlace, IID_PPV_ARGS(factory.GetAddressOf())), "DllGetClassObject");
    Check(factory->CreateInstance(nullptr, IID_PPV_ARGS(transform.GetAddressOf())), "CreateInstance");
    return transform;
}

std::vector<CLSID> PagesOf(IMFTransform* transform) {
    ComPtr<ISpecifyPropertyPages> specify;
    CAUUID pages{};
    Check(transform->QueryInterface(IID_PPV_ARGS(specify.GetAddressOf())), "ISpecifyPropertyPages");
    Check(specify->GetPages(&pages), "GetPages");
    std::vector<CLSID> ids(pages.pElems, pages.pElems + pages.cElems);
    CoTaskMemFree(pages.pElems);
    return ids;
}

// The classes of the pages, offered to this process.
class OfferedPages {
public:
    explicit OfferedPages(const std::vector<CLSID>& ids) {
        for (const CLSID& id : ids) {
            ComPtr<IUnknown> factory;
            DWORD cookie = 0;
            Check(DllGetClassObject(id, IID_PPV_ARGS(factory.GetAddressOf())), "DllGetClassObject");
            Check(CoRegisterClassObject(id, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie),
                  "CoRegisterClassObject");
            m_cookies.push_back(cookie);
        }
    }
    OfferedPages(const OfferedPages&) = delete;
    OfferedPages& operator=(const OfferedPages&) = delete;
    ~OfferedPages() {
        for (const DWORD cookie : m_cookies) {
            CoRevokeClassObject(cookie);
        }
    }

private:
    std::vector<DWORD> m_cookies;
};

// Tells how many pages the frame has, and cancels it.
BOOL CALLBACK CloseFrame(HWND window, LPARAM) {
    const HWND tabs = FindWindowExW(window, nullptr, WC_TABCONTROLW, nullptr);
    if (tabs) {
        std::printf("%d pages shown\n", static_cast<int>(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0)));
        PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
    }
    return TRUE;
}

void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
    EnumThreadWindows(GetCurrentThreadId(), &CloseFrame, 0);
}

void ShowPages(IMFTransform* transform) {
    std::vector<CLSID> ids = PagesOf(transform);
    const OfferedPages offered(ids);
    IUnknown* object = transform;
    Check(OleCreatePropertyFrame(nullptr, CW_USEDEFAULT, CW_USEDEFAULT, L"Deinterlacing", 1, &object,
                                 static_cast<ULONG>(ids.size()), ids.data(), GetUserDefaultLCID(), 0, nullptr),
          "OleCreatePropertyFrame");
}

void Show() {
    const ComPtr<IMFTransform> transform = MakeTransform();
    ComPtr<INMFVDeinterlace> control;
    Check(transform.As(&control), "INMFVDeinterlace");
    ShowPages(transform.Get());
    VARIANT_BOOL enabled = VARIANT_FALSE, automatic = VARIANT_FALSE;
    Check(control->get_Enabled(&enabled), "get_Enabled");
    Check(control->get_AutoDeinterlace(&automatic), "get_AutoDeinterlace");
    std::printf("deinterlacing %s, automatic %s\n", enabled ? "on" : "off", automatic ? "on" : "off");
    // The last Release saves what was chosen, for this user.
}

// Pages want an apartment of their own.
void Run() {
    Check(OleInitialize(nullptr), "OleInitialize");
    Check(MFStartup(MF_VERSION, MFSTARTUP_LITE), "MFStartup");
    Show();
    Check(MFShutdown(), "MFShutdown");
    OleUninitialize();
}

} // namespace

int wmain(int count, wchar_t** arguments) try {
    if (count > 1 &&
        !SetTimer(nullptr, 0, static_cast<UINT>(std::wcstoul(arguments[1], nullptr, 10)) * 1000, &OnTimer)) {
        throw std::runtime_error("SetTimer");
    }
    Run();
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "sheet: %s\n", error.what());
    return 1;
}
