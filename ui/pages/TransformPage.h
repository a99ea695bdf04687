// A page that edits settings of the transform: what the settings page and the ROI page share.
#pragma once

#include "com/ComRef.h"
#include "ui/pages/BasePropertyPage.h"
#include "ui/pages/HoverText.h"
#include "ui/pages/ObjectFlags.h"

// Edits a copy of its settings, which a derived page reads, shows, changes and writes in the hooks below. Knows the
// object as INMFVDeinterlace only. User-interface thread only.
class CTransformPage : public CBasePropertyPage {
public:
    STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
    STDMETHODIMP Help(LPCOLESTR helpFolder) override;

    // E_NOINTERFACE without INMFVDeinterlace, or Read's failure; not connected then.
    HRESULT ConnectObject(IUnknown* object) override;
    // E_UNEXPECTED when not connected.
    HRESULT DisconnectObject() override;
    HRESULT ActivatePage() override;
    HRESULT DeactivatePage() override;
    // S_FALSE when not connected, or Write's failure.
    HRESULT ApplyChanges() override;
    INT_PTR PageMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

protected:
    // The object's mark that settings of this page were changed by other means.
    struct ImportState {
        FlagGetter get;
        FlagSetter put;
    };
    // What a notification came to.
    enum class Outcome { kForeign, kTaken, kChanged }; // not the page's; nothing is changed; something is

    CTransformPage(UINT titleId, UINT dialogId, const ImportState& importState);

    // From the object to the copy; an import may cover only a part of it.
    virtual HRESULT Read(bool import) = 0;
    // From the copy to the controls.
    virtual void Fill() = 0;
    // From a control to the copy; not called while the page changes controls itself.
    virtual Outcome OnCommand(int control, int code) = 0;
    // From the copy to the object.
    virtual HRESULT Write() = 0;

    // The dialog was made, and its controls are there; m_hDialog is not set yet. / They are about to go.
    virtual void AttachControls(HWND dialog);
    virtual void DetachControls();

    // When the object's settings were changed by other means: reads them anew and tells the sheet that what it shows is
    // stale.
    HRESULT TakeImport(bool* taken);

    CComRef<INMFVDeinterlace> m_control;
    bool m_updating = false; // the page changes controls itself; notifications don't count

private:
    void FollowCursor(HWND dialog, HWND underCursor);
    bool OnNotification(int control, int code);

    const ImportState m_importState;
    bool m_applied = true; // no change is pending
    bool m_ready = false;  // the controls are filled
    CHoverText m_hover;
};
