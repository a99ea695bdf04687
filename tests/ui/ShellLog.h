// Stands in for what the pages open, so that no test opens a browser or waits in a box: everything is noted.
#pragma once

#include "ui/help/HtmlHelp.h"
#include "ui/help/Shell.h"

#include <string>
#include <vector>

using Texts = std::vector<std::string>;

// While it lives. One at a time.
class ShellLog {
public:
    ShellLog() {
        s_log = this;
        g_Shell = {&Execute, &Box, &Load, &Find};
        g_HtmlHelp = {};
    }
    ShellLog(const ShellLog&) = delete;
    ShellLog& operator=(const ShellLog&) = delete;
    ~ShellLog() {
        g_Shell = m_saved;
        g_HtmlHelp = {};
        s_log = nullptr;
    }

    // What the calls answer.
    INT_PTR executeResult = 33;
    bool loads = true;
    bool finds = true;

    // What was asked for.
    Texts opened; // addresses
    Texts boxes;  // "caption: text"
    Texts loaded; // libraries
    Texts shown;  // topics in help files

private:
    static HINSTANCE WINAPI Execute(HWND, LPCSTR verb, LPCSTR file, LPCSTR, LPCSTR, INT show) {
        s_log->opened.push_back(std::string(verb) == "open" && show == SW_SHOWNORMAL ? file : "wrong verb");
        return reinterpret_cast<HINSTANCE>(s_log->executeResult);
    }
    static int WINAPI Box(HWND, LPCSTR text, LPCSTR caption, UINT) {
        s_log->boxes.push_back(std::string(caption ? caption : "") + ": " + text);
        return IDOK;
    }
    static HMODULE WINAPI Load(LPCSTR file, HANDLE, DWORD) {
        s_log->loaded.push_back(file);
        return s_log->loads ? GetModuleHandleA(nullptr) : nullptr;
    }
    static FARPROC WINAPI Find(HMODULE, LPCSTR name) {
        const bool ordinal14 = reinterpret_cast<ULONG_PTR>(name) == 14;
        return s_log->finds && ordinal14 ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&HtmlHelp)) : nullptr;
    }
    static HWND WINAPI HtmlHelp(HWND window, LPCSTR file, UINT command, DWORD_PTR data) {
        const bool expected = window == GetDesktopWindow() && command == 0 && data == 0;
        s_log->shown.push_back(expected ? file : "wrong call");
        return window;
    }

    static inline ShellLog* s_log = nullptr;
    ShellCalls m_saved = g_Shell;
};
