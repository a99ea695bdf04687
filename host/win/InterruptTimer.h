#pragma once

#include <windows.h>

namespace host {

// While it lives, an interrupted run closes the dialogs of this thread as by Cancel. For a dialog that runs a message
// loop of its own, in which only a timer still reaches this program.
class CInterruptTimer {
public:
    CInterruptTimer();
    CInterruptTimer(const CInterruptTimer&) = delete;
    CInterruptTimer& operator=(const CInterruptTimer&) = delete;
    ~CInterruptTimer();

private:
    UINT_PTR m_id;
};

} // namespace host
