#include "ui/DialogControls.h"

#include "ui/NumberText.h"

#include <cstdio>

std::uint32_t ReadUnsigned(HWND dialog, int control) {
    char text[kNumberTextSize] = "";
    GetDlgItemTextA(dialog, control, text, sizeof(text));
    return UnsignedOfText(text);
}

std::int64_t ReadFrame(HWND dialog, int control) {
    char text[kNumberTextSize] = "";
    GetDlgItemTextA(dialog, control, text, sizeof(text));
    return FrameOfText(text);
}

void ShowUnsigned(HWND dialog, int control, std::uint32_t number) {
    SetDlgItemInt(dialog, control, number, FALSE);
}

void ReplaceNumber(HWND dialog, int control, std::int64_t number) {
    char text[32];
    std::snprintf(text, sizeof(text), "%lld", static_cast<long long>(number));
    SetDlgItemTextA(dialog, control, text);
    SendDlgItemMessageA(dialog, control, EM_SETSEL, 0, -1);
    SendDlgItemMessageA(dialog, control, EM_SETSEL, static_cast<WPARAM>(-1), -1);
}

bool IsChecked(HWND dialog, int control) {
    return IsDlgButtonChecked(dialog, control) == BST_CHECKED;
}

void Check(HWND dialog, int control, bool checked) {
    CheckDlgButton(dialog, control, checked ? BST_CHECKED : BST_UNCHECKED);
}

void Enable(HWND dialog, int control, bool enabled) {
    const HWND window = GetDlgItem(dialog, control);
    if (!enabled && window && GetFocus() == window) {
        SendMessageA(dialog, WM_NEXTDLGCTL, 0, FALSE);
    }
    EnableWindow(window, enabled);
}
