#include "host/pages/PropertySheet.h"

#include "host/transform/RegisteredTransform.h"
#include "host/pages/SheetPage.h"
#include "host/console/Text.h"
#include "host/pages/TransformPages.h"

#include <algorithm>
#include <deque>
#include <vector>

using Microsoft::WRL::ComPtr;

namespace host {

namespace {

ComPtr<IPropertyPage> MakePage(const CTransformModule& module, const CLSID& id) {
    ComPtr<IPropertyPage> page;
    Check(PageFactory(module, id)->CreateInstance(nullptr, IID_PPV_ARGS(page.GetAddressOf())), ExitCode::Transform,
          "a property page of the transform cannot be made");
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

} // namespace

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
    sheet.pszCaption = RegisteredClasses()[kTransformRow].name;
    sheet.nPages = static_cast<UINT>(descriptions.size());
    sheet.ppsp = descriptions.data();
    if (PropertySheetW(&sheet) < 0) {
        throw HostError(ExitCode::Display, "the property sheet cannot be shown: " + ErrorText(GetLastError()));
    }
}

} // namespace host
