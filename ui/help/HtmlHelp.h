// The platform's HTML Help control, loaded on first use.
#pragma once

#include <windows.h>

// The control's entry for 8-bit text.
using HtmlHelpFn = HWND(WINAPI*)(HWND window, LPCSTR file, UINT command, DWORD_PTR data);

inline constexpr UINT kDisplayTopic = 0; // the control's command that shows a topic

// The process's one connection with the control. On the user-interface thread only.
struct HtmlHelpBinding {
    HMODULE library = nullptr; // stays loaded: the control runs windows of its own
    HtmlHelpFn entry = nullptr;
    bool failed = false; // once it could not be loaded, nobody tries again
};

extern HtmlHelpBinding g_HtmlHelp;

// Calls the control; a null window when it cannot be loaded or refuses.
HWND CallHtmlHelp(HWND window, const char* file, UINT command, DWORD_PTR data);
