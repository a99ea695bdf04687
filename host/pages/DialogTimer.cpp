#include "host/pages/DialogTimer.h"

#include "host/console/Interrupt.h"

#include <cwchar>
#include <utility>

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

} // namespace

CDialogTimer* CDialogTimer::s_current = nullptr;

CDialogTimer::CDialogTimer(std::function<void()> tick)
    : m_tick(std::move(tick)) {
    s_current = this;
    m_id = SetTimer(nullptr, 0, 200, &OnTick);
}

CDialogTimer::~CDialogTimer() {
    KillTimer(nullptr, m_id);
    s_current = nullptr; // a tick may still be in the queue
}

void CALLBACK CDialogTimer::OnTick(HWND, UINT, UINT_PTR, DWORD) {
    if (s_current) {
        s_current->m_tick();
    }
    if (IsInterrupted()) {
        EnumThreadWindows(GetCurrentThreadId(), &CancelDialog, 0);
    }
}

} // namespace host
