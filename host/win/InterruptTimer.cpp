#include "host/win/InterruptTimer.h"

#include "host/win/Interrupt.h"

#include <cwchar>

namespace host {

namespace {

BOOL CALLBACK CancelDialog(HWND window, LPARAM) {
    wchar_t name[16] = L"";
    GetClassNameW(window, name, ARRAYSIZE(name));
    if (std::wcscmp(name, L"#32770") == 0) {
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
    return TRUE;
}

void CALLBACK OnTick(HWND, UINT, UINT_PTR, DWORD) {
    if (IsInterrupted()) {
        EnumThreadWindows(GetCurrentThreadId(), &CancelDialog, 0);
    }
}

} // namespace

CInterruptTimer::CInterruptTimer()
    : m_id(SetTimer(nullptr, 0, 200, &OnTick)) {}

CInterruptTimer::~CInterruptTimer() {
    KillTimer(nullptr, m_id);
}

} // namespace host
