#include "ui/pages/PageMessages.h"

#include "ui/help/Help.h"
#include "ui/resources/ResourceIds.h"

bool AnswerPageMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam, const char* helpTopic,
                       CHoverText* hover, INT_PTR* result) {
    switch (message) {
    case WM_SETCURSOR:
        hover->Follow(dialog, reinterpret_cast<HWND>(wParam));
        if (reinterpret_cast<HWND>(wParam) == dialog) {
            SetCursor(LoadCursorA(nullptr, MAKEINTRESOURCEA(32512))); // IDC_ARROW; controls set their own
        }
        *result = TRUE;
        return true;
    case WM_CTLCOLORSTATIC:
        if (reinterpret_cast<HWND>(lParam) != GetDlgItem(dialog, IDC_DESCRIPTION)) {
            return false;
        }
        *result = ColourAsHighlighted(reinterpret_cast<HDC>(wParam));
        return true;
    case WM_HELP:
        ShowPageHelp(dialog, helpTopic);
        *result = TRUE;
        return true;
    default:
        return false;
    }
}
