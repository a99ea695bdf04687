// The line at the bottom of a page that describes the control under the mouse.
#pragma once

#include <windows.h>

class CHoverText {
public:
    // For WM_SETCURSOR: when another window is under the cursor than last time, shows the string whose id is that
    // window's control id in the description line of `dialog`, or nothing when there is none.
    void Follow(HWND dialog, HWND underCursor);

    // For a page that is deactivated: the next dialog begins with an empty line.
    void Forget() { m_hLast = nullptr; }

private:
    HWND m_hLast = nullptr;
};

// For WM_CTLCOLORSTATIC: blue text on what is behind. The result is the dialog procedure's.
INT_PTR ColourAsHighlighted(HDC dc);
