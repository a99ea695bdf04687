#pragma once

#include <ocidl.h>
#include <string>
#include <windows.h>
#include <wrl/client.h>

#include <prsht.h>

namespace host {

// One OLE property page in a dialog of the platform's property sheet, and the site that the page tells its changes.
// Must outlive the sheet; counts no references, as the page lets go of its site before.
class CSheetPage final : public IPropertyPageSite {
public:
    // Connects the page with the object. Throws HostError with ExitCode::Transform.
    CSheetPage(Microsoft::WRL::ComPtr<IPropertyPage> page, IUnknown* object);
    CSheetPage(const CSheetPage&) = delete;
    CSheetPage& operator=(const CSheetPage&) = delete;
    ~CSheetPage();

    SIZE Size() const { return m_size; } // that the page wants, in pixels
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
    void Fill() const;
    INT_PTR OnNotify(UINT code);

    Microsoft::WRL::ComPtr<IPropertyPage> m_page;
    std::wstring m_title;
    bool m_hasHelp = false;
    SIZE m_size{};
    HWND m_dialog = nullptr;
};

} // namespace host
