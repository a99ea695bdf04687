// Windows of another program, found and driven as a person would.
#pragma once

#include <cwchar>

#include <windows.h>

#include <prsht.h>

// The visible top-level window of this class whose title holds this text; null when none comes within half a minute.
inline HWND AwaitWindow(const wchar_t* className, const wchar_t* title) {
    for (int i = 0; i < 300; ++i) {
        Sleep(100);
        for (HWND window = nullptr; (window = FindWindowExW(nullptr, window, className, nullptr)) != nullptr;) {
            wchar_t text[256] = L"";
            GetWindowTextW(window, text, ARRAYSIZE(text));
            if (IsWindowVisible(window) && std::wcsstr(text, title)) {
                return window;
            }
        }
    }
    return nullptr;
}

// The platform puts "Properties" before or after the name.
inline HWND AwaitSheet() {
    return AwaitWindow(L"#32770", L"Nerin MF Video Deinterlace Transform");
}

// The visible control with this id, however deep; null when there is none.
inline HWND FindControl(HWND sheet, int id) {
    struct Search {
        int id;
        HWND found;
    } search{id, nullptr};
    const auto look = [](HWND window, LPARAM parameter) -> BOOL {
        auto& wanted = *reinterpret_cast<Search*>(parameter);
        const bool fits = GetDlgCtrlID(window) == wanted.id && IsWindowVisible(window);
        return fits ? (wanted.found = window, FALSE) : TRUE;
    };
    EnumChildWindows(sheet, look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

inline void SelectPage(HWND sheet, int index) {
    SendMessageW(sheet, PSM_SETCURSEL, static_cast<WPARAM>(index), 0);
}

inline void PressButton(HWND sheet, int button) {
    PostMessageW(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0);
}
