// The about page: icon, names, a notice and a link to the vendor's site.
#pragma once

#include "ui/pages/BasePropertyPage.h"

class CAboutProperties : public CBasePropertyPage {
public:
    CAboutProperties();

    STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
    STDMETHODIMP Help(LPCOLESTR helpFolder) override;

    // Any object will do.
    HRESULT ConnectObject(IUnknown* object) override;
    // E_FAIL when the notice cannot be read.
    HRESULT ActivatePage() override;
    HRESULT DeactivatePage() override;
    INT_PTR PageMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void EnterLink(HWND link);
    void LeaveLink();
    void FollowMouse(HWND link, bool onLink, UINT mouseMessage);
    void Arm();
    void Disarm();
    HRESULT FillNotice();

    HCURSOR m_hPreviousCursor = nullptr; // the label class's, while hovering
    bool m_bHovering = false;
    bool m_bPressed = false; // the left button went down on the link and has not come up since
    char m_componentName[260] = {};
    char m_displayName[260] = {};
    char m_linkTarget[260];
};
