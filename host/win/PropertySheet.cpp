#include "host/win/PropertySheet.h"

#include "host/win/Interrupt.h"
#include "host/win/RegisteredTransform.h"
#include "host/win/SheetPage.h"
#include "host/win/Text.h"

#include <algorithm>
#include <cwchar>
#include <deque>
#include <vector>

using Microsoft::WRL::ComPtr;

namespace host {

namespace {

std::vector<CLSID> PagesOf(IMFTransform& transform) {
    ComPtr<ISpecifyPropertyPages> specify;
    Check(transform.QueryInterface(IID_PPV_ARGS(specify.GetAddressOf())), ExitCode::Transform,
          "the transform names no property pages");
    CAUUID pages{};
    Check(specify->GetPages(&pages), ExitCode::Transform, "the transform does not tell its property pages");
    std::vector<CLSID> ids(pages.pElems, pages.pElems + pages.cElems);
    CoTaskMemFree(pages.pElems);
    return ids;
}

// The transform's DLL makes its pages when it was loaded as a file, registered or not.
ComPtr<IPropertyPage> MakePage(const CTransformModule& module, const CLSID& id) {
    ComPtr<IClassFactory> factory;
    HRESULT result = module.GetFactory(id, factory.GetAddressOf());
    if (result == E_NOTIMPL) {
        result = CoGetClassObject(id, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(factory.GetAddressOf()));
    }
    ComPtr<IPropertyPage> page;
    if (SUCCEEDED(result)) {
        result = factory->CreateInstance(nullptr, IID_PPV_ARGS(page.GetAddressOf()));
    }
    Check(result, ExitCode::Transform, "a property page of the transform cannot be made");
    return page;
}

#pragma pack(push, 2)
// A dialog without controls, in the font of property sheets.
struct EmptyDialog {
    DLGTEMPLATE dialog{DS_SETFONT | DS_3DLOOK | DS_CONTROL | WS_CHILD, 0, 0, 0, 0, 0, 0};
    WORD menuClassTitle[3] = {};
    WORD points = 8;
    wchar_t font[13] = L"MS Shell Dlg";
};
#pragma pack(pop)

INT_PTR CALLBACK IgnoreMessage(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

// The dialog in which these pixels have room; its size is in units of its font.
EmptyDialog DialogFor(SIZE pixels) {
    EmptyDialog empty;
    constexpr int kMany = 1000;
    RECT units{0, 0, kMany, kMany};
    const HWND probe = CreateDialogIndirectParamW(nullptr, &empty.dialog, GetDesktopWindow(), &IgnoreMessage, 0);
    if (!probe || !MapDialogRect(probe, &units) || units.right <= 0 || units.bottom <= 0) {
        throw HostError(ExitCode::Display, "the property sheet cannot be measured.");
    }
    DestroyWindow(probe);
    empty.dialog.cx = static_cast<short>((pixels.cx * kMany + units.right - 1) / units.right);
    empty.dialog.cy = static_cast<short>((pixels.cy * kMany + units.bottom - 1) / units.bottom);
    return empty;
}

BOOL CALLBACK CancelDialog(HWND window, LPARAM) {
    wchar_t name[16] = L"";
    GetClassNameW(window, name, ARRAYSIZE(name));
    if (std::wcscmp(name, L"#32770") == 0) {
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
    return TRUE;
}

void CALLBACK OnTick(HWND, UINT, UINT_PTR, DWORD) {
    if (IsInterrupted()) {
        EnumThreadWindows(GetCurrentThreadId(), &CancelDialog, 0);
    }
}

// The sheet runs a message loop of its own, in which only a timer still reaches this program.
class CInterruptTimer {
public:
    CInterruptTimer()
        : m_id(SetTimer(nullptr, 0, 200, &OnTick)) {}
    CInterruptTimer(const CInterruptTimer&) = delete;
    CInterruptTimer& operator=(const CInterruptTimer&) = delete;
    ~CInterruptTimer() { KillTimer(nullptr, m_id); }

private:
    UINT_PTR m_id;
};

} // namespace

// Kept: not OleCreatePropertyFrame. Wine's never tells a page to apply. Test: WhatIsAppliedIsSavedUnlessToldOtherwise.
void ShowPropertySheet(CHeldTransform& transform) {
    std::deque<CSheetPage> pages;
    SIZE largest{};
    for (const CLSID& id : PagesOf(*transform.Get())) {
        const SIZE size = pages.emplace_back(MakePage(transform.Module(), id), transform.Get()).Size();
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
    sheet.pszCaption = RegisteredClasses()[0].name;
    sheet.nPages = static_cast<UINT>(descriptions.size());
    sheet.ppsp = descriptions.data();
    const CInterruptTimer timer;
    if (PropertySheetW(&sheet) < 0) {
        throw HostError(ExitCode::Display, "the property sheet cannot be shown: " + ErrorText(GetLastError()));
    }
}

} // namespace host
