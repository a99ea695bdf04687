#pragma once

#include <functional>
#include <windows.h>

namespace host {

// For dialogs that run a message loop of their own, in which only a timer still reaches this program. While it lives,
// `tick` is called several times a second between two messages of this thread, and an interrupted run closes the
// thread's dialogs as by Cancel. One at a time; `tick` must not throw.
class CDialogTimer {
public:
    explicit CDialogTimer(std::function<void()> tick);
    CDialogTimer(const CDialogTimer&) = delete;
    CDialogTimer& operator=(const CDialogTimer&) = delete;
    ~CDialogTimer();

private:
    static void CALLBACK OnTick(HWND window, UINT message, UINT_PTR id, DWORD time);

    static CDialogTimer* s_current;
    std::function<void()> m_tick;
    UINT_PTR m_id;
};

} // namespace host
