#include "ui/pages/TransformPage.h"

#include "ui/help/Help.h"
#include "ui/help/HelpHook.h"
#include "ui/resources/PublishedNames.h"
#include "ui/resources/ResourceIds.h"

CTransformPage::CTransformPage(UINT titleId, UINT dialogId, const ImportState& importState)
    : CBasePropertyPage(titleId, dialogId)
    , m_importState(importState) {}

STDMETHODIMP CTransformPage::GetPageInfo(PROPPAGEINFO* info) {
    const HRESULT hr = CBasePropertyPage::GetPageInfo(info);
    if (SUCCEEDED(hr)) {
        SetPageHelpInfo(info, NMFV_DISPLAY_NAME);
    }
    return hr;
}

STDMETHODIMP CTransformPage::Help(LPCOLESTR) {
    (void)ShowHelpTopic(NMFV_DISPLAY_NAME, kUserInterfaceTopic);
    return S_OK;
}

HRESULT CTransformPage::ConnectObject(IUnknown* object) {
    if (FAILED(object->QueryInterface(IID_INMFVDeinterlace, m_control.PutVoid()))) {
        return E_NOINTERFACE;
    }
    if (const HRESULT hr = Read(false); FAILED(hr)) {
        m_control.Reset(); // half of the settings must not replace the object's
        return hr;
    }
    m_applied = true;
    m_ready = false;
    return S_OK;
}

HRESULT CTransformPage::DisconnectObject() {
    if (!m_control) {
        return E_UNEXPECTED;
    }
    m_control.Reset();
    m_bDirty = FALSE;
    return S_OK;
}

HRESULT CTransformPage::ActivatePage() {
    m_ready = false;
    bool taken = false;
    const HRESULT hr = TakeImport(&taken);
    if (!taken && !m_applied && m_pSite) {
        m_pSite->OnStatusChange(PROPPAGESTATUS_DIRTY);
    }
    Fill();
    (void)InstallHelpHook(m_hDialog, NMFV_DISPLAY_NAME, kUserInterfaceTopic); // the page works without help
    m_ready = true;
    return hr;
}

HRESULT CTransformPage::DeactivatePage() {
    m_ready = false;
    DetachControls();
    m_hover.Forget();
    RemoveHelpHook(m_hDialog);
    return S_OK;
}

HRESULT CTransformPage::ApplyChanges() {
    if (!m_control) {
        return S_FALSE;
    }
    const HRESULT hr = Write();
    if (SUCCEEDED(hr)) {
        m_applied = true;
    }
    return hr;
}

HRESULT CTransformPage::TakeImport(bool* taken) {
    *taken = false;
    if (m_control) {
        ReadFlag(m_control.Get(), m_importState.get, taken);
    }
    if (!*taken) {
        return S_OK;
    }
    if (m_pSite) {
        m_pSite->OnStatusChange(PROPPAGESTATUS_VALIDATE);
    }
    const HRESULT hr = Read(true);
    (m_control.Get()->*m_importState.put)(VARIANT_FALSE);
    return hr;
}

void CTransformPage::AttachControls(HWND) {}

void CTransformPage::DetachControls() {}

void CTransformPage::FollowCursor(HWND dialog, HWND underCursor) {
    m_hover.Follow(dialog, underCursor);
    if (underCursor == dialog) {
        SetCursor(LoadCursorA(nullptr, MAKEINTRESOURCEA(32512))); // IDC_ARROW; controls set their own
    }
}

INT_PTR CTransformPage::PageMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        AttachControls(window);
        break;
    case WM_SETCURSOR:
        FollowCursor(window, reinterpret_cast<HWND>(wParam));
        return TRUE;
    case WM_CTLCOLORSTATIC:
        if (reinterpret_cast<HWND>(lParam) == GetDlgItem(window, IDC_DESCRIPTION)) {
            return ColourAsHighlighted(reinterpret_cast<HDC>(wParam));
        }
        break;
    case WM_HELP:
        ShowPageHelp(window, NMFV_DISPLAY_NAME);
        return TRUE;
    case WM_COMMAND:
        if (m_ready && OnNotification(LOWORD(wParam), HIWORD(wParam))) {
            return TRUE;
        }
        break;
    default:
        break;
    }
    return CBasePropertyPage::PageMessage(window, message, wParam, lParam);
}

// True when the notification is the page's, or its own doing.
bool CTransformPage::OnNotification(int control, int code) {
    if (m_updating) {
        return true;
    }
    const Outcome outcome = OnCommand(control, code);
    if (outcome == Outcome::kChanged) {
        MarkDirty();
        m_applied = false;
    }
    return outcome != Outcome::kForeign;
}
