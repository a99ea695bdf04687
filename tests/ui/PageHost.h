// What a page meets in a host: a site, a sheet's window and an object, here a real one that notes what is written to
// it.
#pragma once

#include "settings/DeinterlaceControl.h"
#include "settings/SettingsDefaults.h"
#include "tests/support/ComChecks.h"
#include "tests/ui/SheetWindow.h"
#include "tests/ui/ShellLog.h"
#include "ui/pages/PageObject.h"
#include "ui/resources/ResourceIds.h"

#include <sstream>

#include <mfapi.h>

#define NMFV_NOTED(Name, Parameters, ...)                                                                              \
    STDMETHODIMP Name Parameters override {                                                                            \
        Note(#Name, __VA_ARGS__);                                                                                      \
        return CDeinterlaceControl::Name(__VA_ARGS__);                                                                 \
    }

class NotingControl final : public CDeinterlaceControl {
public:
    NotingControl() {
        MFCreateAttributes(m_pStore.Put(), kSettingsStoreItems);
        ResetSettings(Store(), NMVDeinterlace_APILEVEL_1);
    }

    Texts calls;
    std::string Calls() const {
        std::string all;
        for (const std::string& call : calls) {
            all += call + ", ";
        }
        return all;
    }
    HRESULT saveResult = S_OK;
    void SetInputSize(LONG width, LONG height) { m_lWidth = width, m_lHeight = height; }

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override {
        const bool known = riid == IID_IUnknown || riid == IID_INMFVDeinterlace;
        *ppv = known ? static_cast<INMFVDeinterlace*>(this) : nullptr;
        return known ? AddRef(), S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override { return --m_references; }

    NMFV_NOTED(put_Enabled, (VARIANT_BOOL v), v)
    NMFV_NOTED(put_Even, (VARIANT_BOOL v), v)
    NMFV_NOTED(put_MergeFields, (VARIANT_BOOL v), v)
    NMFV_NOTED(put_StartWithEvenFrame, (VARIANT_BOOL v), v)
    NMFV_NOTED(put_AutoDeinterlace, (VARIANT_BOOL v), v)
    NMFV_NOTED(put_AutoDeinterlaceSensitivity, (double v), v)
    NMFV_NOTED(put_EnableGlobalPattern, (VARIANT_BOOL v), v)
    NMFV_NOTED(SetGlobalPattern, (LONG p, LONG i, LONG d, VARIANT_BOOL b), p, i, d, b)
    NMFV_NOTED(put_SegmentsTimeFormat, (SEGMENT_TIME_FORMAT v), v)
    NMFV_NOTED(AddSegment, (LONG i), i)
    NMFV_NOTED(RemoveSegment, (LONG i), i)
    NMFV_NOTED(SetSegmentOperationMode, (LONG i, SEGMENT_OPERATION_MODE m), i, m)
    NMFV_NOTED(SetSegmentPattern, (LONG i, LONG p, LONG n, LONG d, VARIANT_BOOL b), i, p, n, d, b)
    NMFV_NOTED(SetSegmentData, (LONG i, LONG v), i, v)
    NMFV_NOTED(SetSegmentStartTime, (LONG i, LONG h, LONG m, LONG s, LONG l), i, h, m, s, l)
    NMFV_NOTED(SetSegmentStartFrame, (LONG i, hyper f), i, f)
    NMFV_NOTED(put_DeinterlaceSettingsImportState, (VARIANT_BOOL v), v)
    NMFV_NOTED(put_ROISettingsImportState, (VARIANT_BOOL v), v)
    NMFV_NOTED(put_EnableROI, (VARIANT_BOOL v), v)
    NMFV_NOTED(put_ROIRight, (LONG v), v)
    NMFV_NOTED(put_ROILeft, (LONG v), v)
    NMFV_NOTED(put_ROIBottom, (LONG v), v)
    NMFV_NOTED(put_ROITop, (LONG v), v)
    NMFV_NOTED(put_EnableProtectedArea, (VARIANT_BOOL v), v)
    NMFV_NOTED(SetProtectedAreaParams, (LONG l, LONG r, LONG t, LONG b), l, r, t, b)
    STDMETHODIMP ResetToDefaultsEx(LONG) override { return E_NOTIMPL; }
    STDMETHODIMP LoadAttributes() override { return E_NOTIMPL; }
    STDMETHODIMP SaveAttributes() override { return Note("SaveAttributes"), saveResult; }

private:
    template <typename... Values>
    void Note(const char* name, Values... values) {
        std::ostringstream text;
        text << name;
        ((text << ' ' << values), ...);
        calls.push_back(text.str());
    }

    ULONG m_references = 1;
};

#undef NMFV_NOTED

// One page in a window of its own, driven by messages as a person's hands would.
template <typename Page>
class PageHost : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_HR(S_OK, CreatePage<Page>(nullptr, IID_IPropertyPage, m_page.PutVoid()));
        ASSERT_HR(S_OK, m_page->SetPageSite(&m_site));
    }

    void Connect() {
        IUnknown* object = static_cast<INMFVDeinterlace*>(&m_object);
        ASSERT_HR(S_OK, m_page->SetObjects(1, &object));
    }
    void Activate() {
        constexpr RECT kRect = {0, 0, 640, 700};
        ASSERT_HR(S_OK, m_page->Activate(m_sheet.Get(), &kRect, FALSE));
    }
    void Open() {
        Connect();
        Activate();
        m_object.calls.clear();
    }

    HWND Dialog() { return m_sheet.Page(); }
    HWND Control(int id) { return GetDlgItem(Dialog(), id); }
    bool IsEnabled(int id) { return IsWindowEnabled(Control(id)); }
    LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return SendMessageA(Control(id), message, wParam, lParam);
    }
    void Click(int id) { Send(id, BM_CLICK); }
    void Type(int id, const char* text) { SetWindowTextA(Control(id), text); }
    // Chooses a line of a list as the mouse would, notification included.
    void Choose(int id, UINT message, WORD notification, int line) {
        Send(id, message, static_cast<WPARAM>(line));
        SendMessageA(Dialog(), WM_COMMAND, MAKEWPARAM(id, notification), reinterpret_cast<LPARAM>(Control(id)));
    }
    std::string Text(int id) { return TextOf(Control(id)); }
    // What the description line says of the window under the mouse.
    std::string Describe(HWND window) {
        const auto procedure = reinterpret_cast<DLGPROC>(GetWindowLongPtrA(Dialog(), DWLP_DLGPROC));
        EXPECT_EQ(TRUE, procedure(Dialog(), WM_SETCURSOR, reinterpret_cast<WPARAM>(window), HTCLIENT));
        return Text(IDC_DESCRIPTION);
    }
    bool Dirty() { return m_page->IsPageDirty() == S_OK; }

    ShellLog m_log;
    NotingControl m_object;
    NotingSite m_site;
    SheetWindow m_sheet;
    CComRef<IPropertyPage> m_page;
};
