// The owner of a platform handle.
#pragma once

#include <utility>
#include <windows.h>

namespace host {

class CHandle {
public:
    CHandle() = default;
    explicit CHandle(HANDLE handle)
        : m_handle(handle) {}
    CHandle(CHandle&& other) noexcept
        : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE)) {}
    ~CHandle() { Reset(); }

    explicit operator bool() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return m_handle; }
    void Reset() {
        if (*this) {
            CloseHandle(std::exchange(m_handle, INVALID_HANDLE_VALUE));
        }
    }

private:
    HANDLE m_handle = INVALID_HANDLE_VALUE;
};

} // namespace host
