// A property page on a modeless dialog of this module: the IPropertyPage contract, once for all pages.
#pragma once

#include "com/ComRef.h"

#include <ocidl.h>

// A page derives from this, gives its string and dialog to the constructor and overrides the hooks; CPageObject (see
// PageObject.h) makes a COM object of it. Everything runs on the host's user-interface thread.
//
// Hosts that were compiled against the class rely on the order of the virtual functions and of the fields.
class CBasePropertyPage : public IPropertyPage {
public:
    CBasePropertyPage(const CBasePropertyPage&) = delete;
    CBasePropertyPage& operator=(const CBasePropertyPage&) = delete;

    // IPropertyPage. E_UNEXPECTED for a call out of order; null pointers are E_POINTER.
    STDMETHODIMP SetPageSite(IPropertyPageSite* site) override;
    STDMETHODIMP Activate(HWND parent, LPCRECT rect, BOOL modal) override;
    STDMETHODIMP Deactivate() override;
    STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
    STDMETHODIMP SetObjects(ULONG count, IUnknown** objects) override;
    STDMETHODIMP Show(UINT command) override;
    STDMETHODIMP Move(LPCRECT rect) override;
    STDMETHODIMP IsPageDirty() override;
    STDMETHODIMP Apply() override;
    STDMETHODIMP Help(LPCOLESTR helpFolder) override;
    STDMETHODIMP TranslateAccelerator(MSG* message) override;

    // Releases the site. A page's own DisconnectObject is out of reach by then: what it holds needs owners.
    virtual ~CBasePropertyPage();

    // The object to edit was set, or taken away; the result is SetObjects's.
    virtual HRESULT ConnectObject(IUnknown* object);
    virtual HRESULT DisconnectObject();

    // The dialog was made and is still hidden: fill the controls. / It is about to be destroyed, by Deactivate or
    // otherwise; the controls are still there. Results are ignored.
    virtual HRESULT ActivatePage();
    virtual HRESULT DeactivatePage();

    // Writes what was edited to the object; called on a dirty page only. A failure keeps the page dirty.
    virtual HRESULT ApplyChanges();

    // A dialog message; the result is the dialog procedure's. Pages hand what they don't handle to the base's.
    virtual INT_PTR PageMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

protected:
    // The ids of the title in the string table and of the dialog template.
    CBasePropertyPage(UINT titleId, UINT dialogId);

    // Marks the page as changed and tells the site.
    void MarkDirty();

    CComRef<IPropertyPageSite> m_pSite;
    HWND m_hDialog = nullptr;     // null while the page is not active, and while its dialog is made or destroyed
    HWND m_hDialogSeen = nullptr; // the dialog from WM_INITDIALOG to WM_NCDESTROY
    BOOL m_bDirty = FALSE;
    const UINT m_lTitleId;
    const UINT m_lDialogId;
    BOOL m_bObjectsSet = FALSE;

private:
    static INT_PTR CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void MeasureDialog(SIZE* size) const;
    // Gives back `hr` and traces a failure: hosts seldom report it.
    HRESULT Traced(const char* call, HRESULT hr) const;
    void LeaveDialog();
    void FollowEnd(HWND dialog, UINT message);
};

// Copies a page's title into task memory: E_INVALIDARG for 50000 characters and more, E_OUTOFMEMORY.
HRESULT CopyPageTitle(const wchar_t* title, LPOLESTR* copy);
