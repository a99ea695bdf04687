// A critical section that std::lock_guard can hold.
#pragma once

#include <windows.h>

class CCriticalSection {
public:
    CCriticalSection() { InitializeCriticalSection(&m_section); }
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;
    ~CCriticalSection() { DeleteCriticalSection(&m_section); }

    void lock() { EnterCriticalSection(&m_section); }
    void unlock() { LeaveCriticalSection(&m_section); }

private:
    CRITICAL_SECTION m_section;
};
