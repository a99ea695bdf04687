// A lock that knows its owner, so that a thread may take it more than once.
#pragma once

#include <atomic>

#include <windows.h>

// For std::lock_guard. Stands inside the writer that modules share, so its layout is fixed.
class TraceLock {
public:
    TraceLock() { InitializeCriticalSection(&m_section); }
    TraceLock(const TraceLock&) = delete;
    TraceLock& operator=(const TraceLock&) = delete;
    ~TraceLock() { DeleteCriticalSection(&m_section); }

    void lock() {
        if (!OwnedByMe()) {
            EnterCriticalSection(&m_section);
            m_owner = GetCurrentThreadId();
        }
        ++m_depth;
    }

    // False when another thread has it.
    bool try_lock() {
        if (!OwnedByMe()) {
            if (!TryEnterCriticalSection(&m_section)) {
                return false;
            }
            m_owner = GetCurrentThreadId();
        }
        ++m_depth;
        return true;
    }

    void unlock() {
        if (--m_depth == 0) {
            m_owner = 0;
            LeaveCriticalSection(&m_section);
        }
    }

private:
    bool OwnedByMe() const { return m_owner == GetCurrentThreadId(); }

    CRITICAL_SECTION m_section;
    std::atomic<DWORD> m_owner{0};
    DWORD m_depth = 0;
};
