#include "host/pages/SheetPage.h"

#include "host/console/Text.h"

#include <olectl.h>
#include <utility>

namespace host {

namespace {

// The text, which the page allocated.
std::wstring Take(wchar_t* text) {
    std::wstring taken = text ? text : L"";
    CoTaskMemFree(text);
    return taken;
}

} // namespace

CSheetPage::CSheetPage(Microsoft::WRL::ComPtr<IPropertyPage> page, IUnknown* object)
    : m_page(std::move(page)) {
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

void CSheetPage::Activate(HWND dialog) {
    m_dialog = dialog;
    RECT area{};
    GetClientRect(dialog, &area);
    m_page->Activate(dialog, &area, TRUE);
}

void CSheetPage::Fill() const {
    RECT area{};
    GetClientRect(m_dialog, &area);
    m_page->Move(&area);
}

// The sheet's messages; true when they are answered.
INT_PTR CSheetPage::OnNotify(UINT code) {
    switch (code) {
    case PSN_SETACTIVE:
        m_page->Show(SW_SHOW);
        break;
    case PSN_KILLACTIVE:
        m_page->Show(SW_HIDE);
        break;
    case PSN_APPLY: {
        // The page has told the user what is wrong; the sheet stays and shows it.
        const bool refused = FAILED(m_page->Apply());
        if (refused) {
            m_page->Show(SW_SHOW);
        }
        SetWindowLongPtrW(m_dialog, DWLP_MSGRESULT, refused ? PSNRET_INVALID : PSNRET_NOERROR);
        return TRUE;
    }
    case PSN_HELP:
        m_page->Help(nullptr);
        break;
    default:
        return FALSE;
    }
    SetWindowLongPtrW(m_dialog, DWLP_MSGRESULT, 0);
    return TRUE;
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
    case WM_NOTIFY:
        return self->OnNotify(reinterpret_cast<const NMHDR*>(lParam)->code);
    case WM_DESTROY:
        self->m_page->Deactivate();
        self->m_dialog = nullptr;
        return TRUE;
    }
    return FALSE;
}

} // namespace host
