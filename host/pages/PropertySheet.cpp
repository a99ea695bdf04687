#include "host/pages/TransformPages.h"

#include "base/Scoped.h"
#include "host/transform/RegisteredTransform.h"
#include "host/console/Text.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <ocidl.h>
#include <olectl.h>
#include <string>
#include <utility>
#include <vector>

#include <prsht.h>

using Microsoft::WRL::ComPtr;

namespace host {

namespace {

constexpr UINT kApplied = WM_APP; // to the page's dialog, when the sheet has done with it

// One OLE property page in a dialog of the platform's property sheet, and the site that the page tells its changes.
// Must outlive the sheet; counts no references, as the page lets go of its site before.
class CSheetPage final : public IPropertyPageSite {
public:
    // Connects the page with the object. With `region` it shows the region of interest, which others move meanwhile:
    // it then follows. Throws HostError with ExitCode::Transform.
    CSheetPage(ComPtr<IPropertyPage> page, IUnknown* object, ComPtr<INMFVDeinterlace> region);
    CSheetPage(const CSheetPage&) = delete;
    CSheetPage& operator=(const CSheetPage&) = delete;
    ~CSheetPage();

    SIZE Size() const { return m_size; } // that the page wants, in pixels
    // Why it could not be shown; a success when it could, or was not looked at.
    HRESULT Failure() const { return m_failure; }
    // What PropertySheetW is told of the page; `dialog` is an empty dialog of the size that all pages have.
    PROPSHEETPAGEW Describe(const DLGTEMPLATE* dialog);

    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP OnStatusChange(DWORD status) override;
    STDMETHODIMP GetLocaleID(LCID* locale) override;
    STDMETHODIMP GetPageContainer(IUnknown**) override { return E_NOTIMPL; }
    STDMETHODIMP TranslateAccelerator(MSG*) override { return S_FALSE; }

private:
    static INT_PTR CALLBACK OnDialogMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    void Activate(HWND dialog);
    void Follow();
    void RestoreFocus() const;
    void Fill() const;
    INT_PTR OnNotify(UINT code);

    ComPtr<IPropertyPage> m_page;
    ComPtr<INMFVDeinterlace> m_region;
    std::wstring m_title;
    bool m_hasHelp = false;
    SIZE m_size{};
    HWND m_dialog = nullptr;
    HWND m_focus = nullptr; // when the page was last left
    HRESULT m_failure = S_OK;
};

// The text, which the page allocated.
std::wstring Take(wchar_t* text) {
    std::wstring taken = text ? text : L"";
    CoTaskMemFree(text);
    return taken;
}

CSheetPage::CSheetPage(ComPtr<IPropertyPage> page, IUnknown* object, ComPtr<INMFVDeinterlace> region)
    : m_page(std::move(page))
    , m_region(std::move(region)) {
    Check(m_page->SetPageSite(this), ExitCode::Transform, "a property page takes no site");
    PROPPAGEINFO info{};
    info.cb = sizeof info;
    HRESULT result = m_page->SetObjects(1, &object);
    if (SUCCEEDED(result)) {
        result = m_page->GetPageInfo(&info);
    }
    if (FAILED(result)) {
        m_page->SetPageSite(nullptr);
        Check(result, ExitCode::Transform, "a property page does not take the transform");
    }
    m_title = Take(info.pszTitle);
    (void)Take(info.pszDocString);
    m_hasHelp = !Take(info.pszHelpFile).empty();
    m_size = info.size;
}

CSheetPage::~CSheetPage() {
    m_page->SetObjects(0, nullptr);
    m_page->SetPageSite(nullptr);
}

PROPSHEETPAGEW CSheetPage::Describe(const DLGTEMPLATE* dialog) {
    PROPSHEETPAGEW page{};
    page.dwSize = sizeof page;
    page.dwFlags = PSP_DLGINDIRECT | PSP_USETITLE | (m_hasHelp ? PSP_HASHELP : 0u);
    page.pResource = dialog;
    page.pszTitle = m_title.c_str();
    page.pfnDlgProc = &OnDialogMessage;
    page.lParam = reinterpret_cast<LPARAM>(this);
    return page;
}

STDMETHODIMP CSheetPage::QueryInterface(REFIID id, void** object) {
    if (!object) {
        return E_POINTER;
    }
    const bool known = id == __uuidof(IUnknown) || id == __uuidof(IPropertyPageSite);
    *object = known ? static_cast<IPropertyPageSite*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP CSheetPage::OnStatusChange(DWORD status) {
    if (m_dialog && (status & PROPPAGESTATUS_DIRTY)) {
        PropSheet_Changed(GetParent(m_dialog), m_dialog);
    } else if (m_dialog && (status & PROPPAGESTATUS_CLEAN)) {
        PropSheet_UnChanged(GetParent(m_dialog), m_dialog);
    }
    return S_OK;
}

STDMETHODIMP CSheetPage::GetLocaleID(LCID* locale) {
    if (!locale) {
        return E_POINTER;
    }
    *locale = GetUserDefaultLCID();
    return S_OK;
}

// A page that cannot be shown ends the sheet, which the sheet's caller then tells.
void CSheetPage::Activate(HWND dialog) {
    m_dialog = dialog;
    RECT area{};
    GetClientRect(dialog, &area);
    m_failure = m_page->Activate(dialog, &area, TRUE);
    if (FAILED(m_failure)) {
        PostMessageW(GetParent(dialog), PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
    } else if (m_region) {
        SetTimer(dialog, 1, 200, nullptr);
    }
}

// A page takes what others have changed when it is activated.
void CSheetPage::Follow() {
    VARIANT_BOOL moved = VARIANT_FALSE;
    if (SUCCEEDED(m_region->get_ROISettingsImportState(&moved)) && moved) {
        m_page->Deactivate();
        Activate(m_dialog);
    }
}

// Wine's sheet gives the focus to the page's first control after each Apply.
void CSheetPage::RestoreFocus() const {
    if (IsChild(m_dialog, m_focus) && IsWindowVisible(m_focus)) {
        SetFocus(m_focus);
    }
}

void CSheetPage::Fill() const {
    RECT area{};
    GetClientRect(m_dialog, &area);
    m_page->Move(&area);
}

// The sheet's messages; true when they are answered. The sheet hides and shows the dialog around the page; the page
// itself stays visible in it, also while it is left to be applied: what is hidden loses the focus.
INT_PTR CSheetPage::OnNotify(UINT code) {
    switch (code) {
    case PSN_KILLACTIVE:
        m_focus = GetFocus();
        return FALSE;
    case PSN_APPLY: {
        // The page has told the user what is wrong; the sheet stays and shows it.
        const bool refused = FAILED(m_page->Apply());
        SetWindowLongPtrW(m_dialog, DWLP_MSGRESULT, refused ? PSNRET_INVALID : PSNRET_NOERROR);
        if (!refused) {
            PostMessageW(m_dialog, kApplied, 0, 0);
        }
        return TRUE;
    }
    case PSN_HELP:
        m_page->Help(nullptr);
        SetWindowLongPtrW(m_dialog, DWLP_MSGRESULT, 0);
        return TRUE;
    }
    return FALSE;
}

INT_PTR CALLBACK CSheetPage::OnDialogMessage(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        const LPARAM self = reinterpret_cast<const PROPSHEETPAGEW*>(lParam)->lParam;
        SetWindowLongPtrW(dialog, DWLP_USER, self);
        reinterpret_cast<CSheetPage*>(self)->Activate(dialog);
        return TRUE;
    }
    auto* const self = reinterpret_cast<CSheetPage*>(GetWindowLongPtrW(dialog, DWLP_USER));
    switch (self ? message : WM_NULL) {
    case WM_SIZE:
        self->Fill();
        return TRUE;
    case WM_TIMER:
        self->Follow();
        return TRUE;
    case kApplied:
        self->RestoreFocus();
        return TRUE;
    case WM_NOTIFY:
        return self->OnNotify(reinterpret_cast<const NMHDR*>(lParam)->code);
    case WM_DESTROY:
        self->m_page->Deactivate();
        self->m_dialog = nullptr;
        return TRUE;
    }
    return FALSE;
}

ComPtr<IPropertyPage> MakePage(const CTransformModule& module, const CLSID& id) {
    ComPtr<IPropertyPage> page;
    Check(PageFactory(module, id)->CreateInstance(nullptr, IID_PPV_ARGS(page.GetAddressOf())), ExitCode::Transform,
          "a property page of the transform cannot be made");
    return page;
}

// A dialog without controls, in the font of property sheets. A template begins on a DWORD, and its parts follow each
// other without gaps.
struct alignas(4) EmptyDialog {
    DLGTEMPLATE dialog{DS_SETFONT | DS_3DLOOK | DS_CONTROL | WS_CHILD, 0, 0, 0, 0, 0, 0};
    WORD menuClassTitle[3] = {};
    WORD points = 8;
    wchar_t font[13] = L"MS Shell Dlg";
};
static_assert(offsetof(EmptyDialog, menuClassTitle) == 18 && offsetof(EmptyDialog, font) == 26);

struct WindowPolicy {
    using Type = HWND;
    static Type Invalid() { return nullptr; }
    static void Close(Type window) { DestroyWindow(window); }
};

INT_PTR CALLBACK IgnoreMessage(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

// The dialog in which these pixels have room; its size is in units of its font.
EmptyDialog DialogFor(SIZE pixels) {
    EmptyDialog empty;
    constexpr int kMany = 1000;
    RECT units{0, 0, kMany, kMany};
    const CScoped<WindowPolicy> probe(
        CreateDialogIndirectParamW(nullptr, &empty.dialog, GetDesktopWindow(), &IgnoreMessage, 0));
    if (!probe || !MapDialogRect(probe.Get(), &units) || units.right <= 0 || units.bottom <= 0) {
        throw HostError(ExitCode::Display, "the property sheet cannot be measured.");
    }
    empty.dialog.cx = static_cast<short>((pixels.cx * kMany + units.right - 1) / units.right);
    empty.dialog.cy = static_cast<short>((pixels.cy * kMany + units.bottom - 1) / units.bottom);
    return empty;
}

} // namespace

void ShowPropertySheet(CHeldTransform& transform) {
    std::deque<CSheetPage> pages;
    SIZE largest{};
    for (const CLSID& id : PagesOf(*transform.Get())) {
        const bool region = id == *RegisteredClasses()[kRegionPageRow].id;
        const SIZE size = pages
                              .emplace_back(MakePage(transform.Module(), id), transform.Get(),
                                            region ? ControlOf(transform) : nullptr)
                              .Size();
        largest = {std::max(largest.cx, size.cx), std::max(largest.cy, size.cy)};
    }
    const EmptyDialog dialog = DialogFor(largest);
    std::vector<PROPSHEETPAGEW> descriptions;
    for (CSheetPage& page : pages) {
        descriptions.push_back(page.Describe(&dialog.dialog));
    }
    PROPSHEETHEADERW sheet{};
    sheet.dwSize = sizeof sheet;
    sheet.dwFlags = PSH_PROPSHEETPAGE | PSH_PROPTITLE | PSH_NOCONTEXTHELP;
    sheet.pszCaption = RegisteredClasses()[kTransformRow].name;
    sheet.nPages = static_cast<UINT>(descriptions.size());
    sheet.ppsp = descriptions.data();
    if (PropertySheetW(&sheet) < 0) {
        throw HostError(ExitCode::Display, "the property sheet cannot be shown: " + ErrorText(GetLastError()));
    }
    for (const CSheetPage& page : pages) {
        Check(page.Failure(), ExitCode::Display, "a property page of the transform cannot be shown");
    }
}

} // namespace host
