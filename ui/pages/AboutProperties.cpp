#include "ui/pages/AboutProperties.h"

#include "ui/help/Help.h"
#include "ui/help/HelpHook.h"
#include "ui/help/Shell.h"
#include "ui/pages/HoverText.h"
#include "ui/resources/PublishedNames.h"
#include "ui/resources/ResourceIds.h"
#include "ui/rules/BoundedText.h"

CAboutProperties::CAboutProperties()
    : CBasePropertyPage(IDS_TITLE_ABOUT, IDD_ABOUT) {
    CopyText(m_linkTarget, NMFV_LINK_TARGET);
}

STDMETHODIMP CAboutProperties::GetPageInfo(PROPPAGEINFO* info) {
    const HRESULT hr = CBasePropertyPage::GetPageInfo(info);
    if (SUCCEEDED(hr)) {
        SetPageHelpInfo(info, NMFV_DISPLAY_NAME); // frames ask before there is an object
    }
    return hr;
}

STDMETHODIMP CAboutProperties::Help(LPCOLESTR) {
    (void)ShowHelpTopic(m_displayName, kUserInterfaceTopic);
    return S_OK;
}

HRESULT CAboutProperties::ConnectObject(IUnknown*) {
    CopyText(m_componentName, NMFV_COMPONENT_NAME);
    CopyText(m_displayName, NMFV_DISPLAY_NAME);
    return S_OK;
}

HRESULT CAboutProperties::ActivatePage() {
    m_bHovering = false;
    m_bPressed = false;
    (void)InstallHelpHook(m_hDialog, m_displayName,
                          kUserInterfaceTopic); // without it only the sheet's own F1 is missing
    return FillNotice();
}

HRESULT CAboutProperties::DeactivatePage() {
    LeaveLink();
    RemoveHelpHook(m_hDialog);
    return S_OK;
}

// Kept: the year is a fixed number, not the clock's. Test: FillsItsLabels.
HRESULT CAboutProperties::FillNotice() {
    constexpr std::string_view kPlace = "%d", kYear = "2023";
    char buffer[512];
    const UINT length = GetDlgItemTextA(m_hDialog, IDC_ABOUT_NOTICE, buffer, ARRAYSIZE(buffer));
    if (length == 0) {
        return E_FAIL;
    }
    const std::string_view text(buffer, length);
    const std::size_t place = text.find(kPlace);
    if (place == std::string_view::npos) {
        return S_OK;
    }
    char filled[ARRAYSIZE(buffer) + kYear.size()];
    CTextWriter(filled).Append(text.substr(0, place)).Append(kYear).Append(text.substr(place + kPlace.size()));
    SetDlgItemTextA(m_hDialog, IDC_ABOUT_NOTICE, filled);
    return S_OK;
}

// Otherwise the class's cursor would replace the hand at every move of the mouse.
void CAboutProperties::EnterLink(HWND link) {
    if (!m_bHovering) {
        m_hPreviousCursor = reinterpret_cast<HCURSOR>(SetClassLongPtrA(link, GCLP_HCURSOR, 0));
        m_bHovering = true;
    }
    SetCursor(LoadCursorA(nullptr, MAKEINTRESOURCEA(32649))); // IDC_HAND
}

void CAboutProperties::LeaveLink() {
    if (!m_bHovering) {
        return;
    }
    SetClassLongPtrA(GetDlgItem(m_hDialogSeen, IDC_ABOUT_LINK), GCLP_HCURSOR,
                     reinterpret_cast<LONG_PTR>(m_hPreviousCursor));
    SetCursor(m_hPreviousCursor);
    m_bHovering = false;
}

// Opens the link when the button goes down and up on it. The dialog captures the mouse in between, so it sees the
// button go up anywhere.
void CAboutProperties::FollowMouse(HWND link, bool onLink, UINT mouseMessage) {
    onLink ? EnterLink(link) : LeaveLink();
    if (mouseMessage == WM_LBUTTONDOWN) {
        onLink ? Arm() : Disarm();
    } else if (mouseMessage == WM_LBUTTONUP) {
        const bool clicked = m_bPressed && onLink;
        Disarm();
        if (clicked) {
            (void)OpenAddress(m_linkTarget); // nothing to say to the user
        }
    }
}

void CAboutProperties::Arm() {
    SetCapture(m_hDialog);
    m_bPressed = true;
}

void CAboutProperties::Disarm() {
    m_bPressed = false;
    if (m_hDialog && GetCapture() == m_hDialog) {
        ReleaseCapture();
    }
}

namespace {

// Whether the position of a mouse message to `dialog` lies on its child `control`.
bool IsOn(HWND dialog, HWND control, LPARAM position) {
    const POINT point = {static_cast<short>(LOWORD(position)), static_cast<short>(HIWORD(position))};
    return control && ChildWindowFromPoint(dialog, point) == control;
}

// A sheet gives all its pages the size of the largest, so the dialog's contents are kept centred, by whole pixels.
void CentreControls(HWND dialog) {
    RECT all{}, client{};
    for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        RECT one{};
        GetWindowRect(control, &one);
        UnionRect(&all, &all, &one);
    }
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&all), 2);
    GetClientRect(dialog, &client);
    const LONG shift = (client.right - all.left - all.right) / 2;
    for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        RECT one{};
        GetWindowRect(control, &one);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&one), 2);
        SetWindowPos(control, nullptr, one.left + shift, one.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

} // namespace

INT_PTR CAboutProperties::PageMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND link = GetDlgItem(window, IDC_ABOUT_LINK);
    switch (message) {
    case WM_SIZE:
        CentreControls(window);
        break;
    case WM_SHOWWINDOW:
        SetDlgItemTextA(window, IDC_ABOUT_COMPONENT, m_componentName);
        break;
    case WM_SETCURSOR: {
        const bool onLink = link && reinterpret_cast<HWND>(wParam) == link;
        FollowMouse(link, onLink, HIWORD(lParam));
        if (onLink) {
            return TRUE;
        }
        break;
    }
    case WM_LBUTTONUP:
        FollowMouse(link, IsOn(window, link, lParam), message);
        break;
    case WM_CAPTURECHANGED:
        m_bPressed = false;
        break;
    case WM_CTLCOLORSTATIC:
        if (link && reinterpret_cast<HWND>(lParam) == link) {
            return ColourAsHighlighted(reinterpret_cast<HDC>(wParam));
        }
        break;
    case WM_HELP:
        ShowPageHelp(window, m_displayName);
        return TRUE;
    default:
        break;
    }
    return CBasePropertyPage::PageMessage(window, message, wParam, lParam);
}
