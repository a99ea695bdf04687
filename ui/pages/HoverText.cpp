#include "ui/pages/HoverText.h"

#include "ui/resources/ModuleInstance.h"
#include "ui/resources/ResourceIds.h"

void CHoverText::Follow(HWND dialog, HWND underCursor) {
    if (underCursor == m_hLast) {
        return;
    }
    m_hLast = underCursor;
    char text[512] = {};
    const int id = GetDlgCtrlID(underCursor);
    // A child of the page only: ids of other windows, the sheet's say, mean other things.
    if (id > 0 && GetParent(underCursor) == dialog) {
        LoadStringA(ModuleInstance(), static_cast<UINT>(id), text, ARRAYSIZE(text));
    }
    SetDlgItemTextA(dialog, IDC_DESCRIPTION, text);
}

INT_PTR ColourAsHighlighted(HDC dc) {
    constexpr COLORREF kBlue = 0x00E60000;
    SetTextColor(dc, kBlue);
    SetBkMode(dc, TRANSPARENT);
    return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_BTNFACE));
}
