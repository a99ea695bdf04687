// Windows of another program, found and driven as a person would.
#pragma once

#include <cstdint>
#include <cwchar>
#include <string>
#include <vector>

#include <windows.h>

#include <prsht.h>

// The visible top-level window of this class whose title holds this text; null when none comes within half a minute.
inline HWND AwaitWindow(const wchar_t* className, const std::wstring& title) {
    struct Search {
        const wchar_t* className;
        const std::wstring& title;
        HWND found;
    } search{className, title, nullptr};
    const auto look = [](HWND window, LPARAM parameter) -> BOOL {
        auto& wanted = *reinterpret_cast<Search*>(parameter);
        wchar_t name[64] = L"";
        wchar_t text[256] = L"";
        GetClassNameW(window, name, ARRAYSIZE(name));
        GetWindowTextW(window, text, ARRAYSIZE(text));
        const bool fits = IsWindowVisible(window) && std::wcscmp(name, wanted.className) == 0 &&
                          std::wcsstr(text, wanted.title.c_str());
        return fits ? (wanted.found = window, FALSE) : TRUE;
    };
    for (int i = 0; i < 300 && !search.found; ++i) {
        Sleep(100);
        EnumWindows(look, reinterpret_cast<LPARAM>(&search));
    }
    return search.found;
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

// What the screen shows there: B G R and an unused byte, top row first.
inline std::vector<std::uint32_t> CaptureScreen(const RECT& area) {
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    BITMAPINFO format{};
    format.bmiHeader = {sizeof format.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateDIBSection(memory, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
    GdiFlush();
    const auto* const pixels = static_cast<const std::uint32_t*>(bits);
    std::vector<std::uint32_t> copy(pixels, pixels + std::size_t(width) * std::size_t(height));
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return copy;
}
