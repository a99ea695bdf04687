// F1 anywhere on a property sheet: a hook on the sheet's window procedure while one of our pages is active.
#pragma once

#include <windows.h>

// What the hook knows. Stands in the sheet's user data while the sheet's own procedure doesn't run, and until the host
// writes there itself.
struct HelpHookRecord {
    UINT32 tag;
    char topicName[260];
    HWND page; // null when the hook was removed but cannot leave the chain: messages only pass through
    WNDPROC previousProcedure;
    LONG_PTR previousUserData; // as the host's procedure last left it
    UINT32 topicNumber;
};

inline constexpr UINT32 kHelpHookTag = 0x4E484B31; // "NHK1"

// Hooks the page's parent, once: S_OK also when it is hooked already. E_INVALIDARG for a window without a parent,
// E_OUTOFMEMORY. A name longer than a topic's limit is cut.
HRESULT InstallHelpHook(HWND page, const char* topicName, UINT32 topicNumber);

// Gives the page's parent its own procedure and user data back. Nothing happens to a sheet that isn't hooked. Where
// somebody has replaced the procedure since, ours stays behind it and passes everything on, and this module is never
// unloaded.
void RemoveHelpHook(HWND page);
