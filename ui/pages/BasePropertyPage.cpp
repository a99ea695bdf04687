#include "ui/pages/BasePropertyPage.h"

#include "diag/Trace.h"
#include "ui/resources/ModuleInstance.h"

#include <cwchar>

#include <commctrl.h>

namespace {

constexpr SIZE kFallbackSize = {340, 150}; // pixels, for a dialog that cannot be made

// Registers the spin buttons' class, which a host without such controls has not done.
void RegisterControls() {
    const INITCOMMONCONTROLSEX wanted = {sizeof(wanted), ICC_UPDOWN_CLASS};
    InitCommonControlsEx(&wanted);
}

HWND MakeDialog(UINT dialogId, HWND parent, DLGPROC procedure, CBasePropertyPage* page) {
    RegisterControls();
    return CreateDialogParamA(ModuleInstance(), MAKEINTRESOURCEA(dialogId), parent, procedure,
                              reinterpret_cast<LPARAM>(page));
}

// Wide text where the system has it, else its 8-bit text. A missing string is an empty title.
template <int Size>
void LoadTitle(UINT id, wchar_t (&title)[Size]) {
    title[0] = L'\0';
    if (LoadStringW(ModuleInstance(), id, title, Size) > 0) {
        return;
    }
    char narrow[Size] = {};
    LoadStringA(ModuleInstance(), id, narrow, Size);
    if (!MultiByteToWideChar(CP_ACP, 0, narrow, -1, title, Size)) {
        title[0] = L'\0';
    }
}

bool IsAcceptedShowCommand(UINT command) {
    return command == SW_HIDE || command == SW_SHOWNORMAL || command == SW_SHOW;
}

} // namespace

HRESULT CopyPageTitle(const wchar_t* title, LPOLESTR* copy) {
    constexpr std::size_t kLimit = 50000;
    const std::size_t length = wcsnlen(title, kLimit);
    if (length == kLimit) {
        return E_INVALIDARG;
    }
    *copy = static_cast<LPOLESTR>(CoTaskMemAlloc((length + 1) * sizeof(wchar_t)));
    if (!*copy) {
        return E_OUTOFMEMORY;
    }
    std::wmemcpy(*copy, title, length + 1);
    return S_OK;
}

CBasePropertyPage::CBasePropertyPage(UINT titleId, UINT dialogId)
    : m_lTitleId(titleId)
    , m_lDialogId(dialogId) {}

CBasePropertyPage::~CBasePropertyPage() {
    m_pSite.Reset();
    m_bObjectsSet = FALSE;
    (void)CBasePropertyPage::DisconnectObject(); // a derived page's is gone by now
}

STDMETHODIMP CBasePropertyPage::SetPageSite(IPropertyPageSite* site) {
    if (static_cast<bool>(m_pSite) == (site != nullptr)) {
        return E_UNEXPECTED;
    }
    m_pSite.Share(site);
    return S_OK;
}

STDMETHODIMP CBasePropertyPage::Activate(HWND parent, LPCRECT rect, BOOL) {
    if (!m_bObjectsSet || m_hDialog) {
        return Traced("Activate", E_UNEXPECTED);
    }
    if (!rect) {
        return Traced("Activate", E_POINTER);
    }
    m_hDialog = MakeDialog(m_lDialogId, parent, &DialogProcedure, this);
    if (!m_hDialog) {
        Trace("\nCBasePropertyPage::Activate: dialog %u cannot be made, error %lu", m_lDialogId, GetLastError());
        return E_OUTOFMEMORY;
    }
    (void)Traced("ActivatePage", ActivatePage());
    (void)Move(rect);
    return Show(SW_SHOWNORMAL);
}

STDMETHODIMP CBasePropertyPage::Deactivate() {
    if (!m_hDialog) {
        return E_UNEXPECTED;
    }
    // Without a dialog in its field the page leaves the style alone; otherwise it would put the bit back.
    const HWND dialog = m_hDialog;
    m_hDialog = nullptr;
    SetWindowLongPtrA(dialog, GWL_EXSTYLE, GetWindowLongPtrA(dialog, GWL_EXSTYLE) & ~LONG_PTR{WS_EX_CONTROLPARENT});
    m_hDialog = dialog;

    LeaveDialog();
    DestroyWindow(dialog);
    return S_OK;
}

// The controls are still there.
void CBasePropertyPage::LeaveDialog() {
    (void)DeactivatePage();
    m_hDialog = nullptr;
}

// A dialog may also be destroyed without Deactivate, for example with its sheet.
void CBasePropertyPage::FollowEnd(HWND dialog, UINT message) {
    if (m_hDialog == dialog) {
        LeaveDialog();
    }
    if (message == WM_NCDESTROY) {
        m_hDialogSeen = nullptr;
    }
}

STDMETHODIMP CBasePropertyPage::GetPageInfo(PROPPAGEINFO* info) {
    if (!info) {
        return E_POINTER;
    }
    wchar_t title[256];
    LoadTitle(m_lTitleId, title);
    LPOLESTR copy = nullptr;
    if (const HRESULT hr = CopyPageTitle(title, &copy); FAILED(hr)) {
        return hr;
    }
    static_assert(sizeof(PROPPAGEINFO) == 48);
    *info = {sizeof(PROPPAGEINFO), copy, kFallbackSize, nullptr, nullptr, 0};
    MeasureDialog(&info->size);
    return S_OK;
}

// Leaves the size alone when the dialog cannot be made.
void CBasePropertyPage::MeasureDialog(SIZE* size) const {
    const HWND dialog = MakeDialog(m_lDialogId, GetDesktopWindow(), &DialogProcedure, nullptr);
    if (!dialog) {
        return;
    }
    RECT rect;
    if (GetWindowRect(dialog, &rect)) {
        *size = {rect.right - rect.left, rect.bottom - rect.top};
    }
    DestroyWindow(dialog);
}

STDMETHODIMP CBasePropertyPage::SetObjects(ULONG count, IUnknown** objects) {
    if (count > 1) {
        return Traced("SetObjects", E_UNEXPECTED);
    }
    if (count == 0) {
        m_bObjectsSet = FALSE;
        return Traced("DisconnectObject", DisconnectObject());
    }
    if (!objects || !objects[0]) {
        return Traced("SetObjects", E_POINTER);
    }
    m_bObjectsSet = TRUE;
    return Traced("ConnectObject", ConnectObject(objects[0]));
}

STDMETHODIMP CBasePropertyPage::Show(UINT command) {
    if (!m_hDialog) {
        return E_UNEXPECTED;
    }
    if (!IsAcceptedShowCommand(command)) {
        return E_INVALIDARG;
    }
    ShowWindow(m_hDialog, static_cast<int>(command));
    InvalidateRect(m_hDialog, nullptr, TRUE);
    return S_OK;
}

STDMETHODIMP CBasePropertyPage::Move(LPCRECT rect) {
    if (!m_hDialog) {
        return E_UNEXPECTED;
    }
    if (!rect) {
        return E_POINTER;
    }
    MoveWindow(m_hDialog, rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, TRUE);
    return S_OK;
}

STDMETHODIMP CBasePropertyPage::IsPageDirty() {
    return m_bDirty ? S_OK : S_FALSE;
}

STDMETHODIMP CBasePropertyPage::Apply() {
    if (!m_bObjectsSet || !m_pSite) {
        return Traced("Apply", E_UNEXPECTED);
    }
    if (!m_bDirty) {
        return S_OK;
    }
    const HRESULT hr = Traced("ApplyChanges", ApplyChanges());
    if (SUCCEEDED(hr)) {
        m_bDirty = FALSE;
    }
    return hr;
}

STDMETHODIMP CBasePropertyPage::Help(LPCOLESTR) {
    return E_NOTIMPL;
}

STDMETHODIMP CBasePropertyPage::TranslateAccelerator(MSG*) {
    return E_NOTIMPL;
}

HRESULT CBasePropertyPage::ConnectObject(IUnknown*) {
    return S_OK;
}

HRESULT CBasePropertyPage::DisconnectObject() {
    return S_OK;
}

HRESULT CBasePropertyPage::ActivatePage() {
    return S_OK;
}

HRESULT CBasePropertyPage::DeactivatePage() {
    return S_OK;
}

HRESULT CBasePropertyPage::ApplyChanges() {
    return S_OK;
}

HRESULT CBasePropertyPage::Traced(const char* call, HRESULT hr) const {
    if (FAILED(hr)) {
        Trace("\nCBasePropertyPage::%s failed 0x%08x, dialog %u", call, static_cast<unsigned>(hr), m_lDialogId);
    }
    return hr;
}

void CBasePropertyPage::MarkDirty() {
    m_bDirty = TRUE;
    if (m_pSite) {
        m_pSite->OnStatusChange(PROPPAGESTATUS_DIRTY);
    }
}

INT_PTR CBasePropertyPage::PageMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!m_hDialog) {
        return 0;
    }
    if (message == WM_STYLECHANGING && static_cast<int>(wParam) == GWL_EXSTYLE) {
        // The sheet's keyboard navigation enters children with this bit only.
        reinterpret_cast<STYLESTRUCT*>(lParam)->styleNew |= WS_EX_CONTROLPARENT;
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

INT_PTR CALLBACK CBasePropertyPage::DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(window, DWLP_USER, lParam);
        if (!lParam) {
            return TRUE;
        }
        reinterpret_cast<CBasePropertyPage*>(lParam)->m_hDialogSeen = window;
    }
    auto* const page = reinterpret_cast<CBasePropertyPage*>(GetWindowLongPtrA(window, DWLP_USER));
    if (!page) {
        return message != WM_NCDESTROY; // which the dialog manager must see to free the dialog's font
    }
    if (message == WM_DESTROY || message == WM_NCDESTROY) {
        page->FollowEnd(window, message);
    }
    return page->PageMessage(window, message, wParam, lParam);
}
