// Reads and writes settings on both ways: by the control interface and by the attribute store. They are one: what goes
// in on one way comes out on the other. controls.vbs shows the third way, automation. The DLL is linked by its import
// library; nothing is registered.
#include <initguid.h>

#include <NMFVDeinterlace.h>
#include <NMFVDeinterlaceKeys.h>
#include <mfapi.h>
#include <mftransform.h>
#include <wrl/client.h>

#include <cstdio>
#include <stdexcept>

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

// Right and bottom first: the edges are clamped against each other.
void SetRegion(INMFVDeinterlace* control) {
    Check(control->put_ROIRight(320), "put_ROIRight");
    Check(control->put_ROIBottom(240), "put_ROIBottom");
    Check(control->put_ROILeft(16), "put_ROILeft");
    Check(control->put_ROITop(8), "put_ROITop");
    Check(control->put_EnableROI(VARIANT_TRUE), "put_EnableROI");
}

void ByInterface(INMFVDeinterlace* control, IMFAttributes* store) {
    SetRegion(control);
    UINT32 left = 0, right = 0;
    Check(store->GetUINT32(NMFV_DEINTERLACE_ROI_LEFT, &left), "ROI_LEFT");
    Check(store->GetUINT32(NMFV_DEINTERLACE_ROI_RIGHT, &right), "ROI_RIGHT");
    std::printf("set by the interface, read from the store: columns %u to %u\n", left, right);
}

void ByStore(INMFVDeinterlace* control, IMFAttributes* store) {
    Check(store->SetUINT32(NMFV_DEINTERLACE_MERGE_FIELDS, FALSE), "MERGE_FIELDS");
    Check(store->SetDouble(NMFV_DEINTERLACE_AUTO_SENSITIVITY, 0.5), "AUTO_SENSITIVITY");
    VARIANT_BOOL merge = VARIANT_TRUE;
    double sensitivity = 0;
    Check(control->get_MergeFields(&merge), "get_MergeFields");
    Check(control->get_AutoDeinterlaceSensitivity(&sensitivity), "get_AutoDeinterlaceSensitivity");
    std::printf("set in the store, read by the interface: merge %s, sensitivity %.2f\n", merge ? "on" : "off",
                sensitivity);
}

// A value out of range is refused, and changes nothing.
void OutOfRange(INMFVDeinterlace* control) {
    const HRESULT hr = control->put_AutoDeinterlaceSensitivity(9.0);
    std::printf("a sensitivity of 9: 0x%08lX\n", static_cast<unsigned long>(hr));
}

void Control() {
    const ComPtr<IMFTransform> transform = MakeTransform();
    ComPtr<INMFVDeinterlace> control;
    ComPtr<IMFAttributes> store;
    Check(transform.As(&control), "INMFVDeinterlace");
    Check(transform->GetAttributes(store.GetAddressOf()), "GetAttributes");
    Check(control->ResetToDefaultsEx(NMVDeinterlace_APILEVEL_2), "ResetToDefaultsEx");
    ByInterface(control.Get(), store.Get());
    ByStore(control.Get(), store.Get());
    OutOfRange(control.Get());
    // SaveAttributes would keep all this for the user, and so would the last Release; here nothing is to be kept.
    Check(control->ResetToDefaultsEx(NMVDeinterlace_APILEVEL_2), "ResetToDefaultsEx");
    Check(control->LoadAttributes(), "LoadAttributes");
}

void Run() {
    Check(CoInitializeEx(nullptr, COINIT_MULTITHREADED), "CoInitializeEx");
    Check(MFStartup(MF_VERSION, MFSTARTUP_LITE), "MFStartup");
    Control();
    Check(MFShutdown(), "MFShutdown");
    CoUninitialize();
}

} // namespace

int wmain() try {
    Run();
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "controls: %s\n", error.what());
    return 1;
}
