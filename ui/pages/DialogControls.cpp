#include "ui/pages/DialogControls.h"

#include "ui/rules/EnablingRules.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

std::uint32_t ReadUnsigned(HWND dialog, int control) {
    return static_cast<std::uint32_t>(std::clamp<std::int64_t>(ReadFrame(dialog, control), 0, UINT32_MAX));
}

std::int64_t ReadFrame(HWND dialog, int control) {
    char text[101] = ""; // as many digits as are looked at, and the terminator
    GetDlgItemTextA(dialog, control, text, sizeof(text));
    return std::strtoll(text, nullptr, 10);
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

void EnableByRules(HWND dialog, const PageSettings& settings, const PageSegment* selected) {
    for (const EnablingRule& rule : EnablingRules()) {
        Enable(dialog, rule.control, rule.allowed(settings, selected));
    }
}
