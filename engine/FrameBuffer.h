// An owned block of bytes the size of a frame.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

class CFrameBuffer {
public:
    // Releases what is held and takes `bytes` bytes anew, not initialised. False when there is no memory for them, or
    // their number is negative because it overflowed.
    bool Allocate(std::int32_t bytes) {
        Release();
        if (bytes < 0) {
            return false;
        }
        m_bytes.reset(new (std::nothrow) std::uint8_t[static_cast<std::size_t>(bytes)]);
        m_size = m_bytes ? bytes : 0;
        return m_bytes != nullptr;
    }

    void Release() {
        m_bytes.reset();
        m_size = 0;
    }

    void Clear() { std::memset(m_bytes.get(), 0, static_cast<std::size_t>(m_size)); }

    bool Holds(std::int32_t bytes) const { return m_bytes && bytes <= m_size; }
    std::uint8_t* Data() const { return m_bytes.get(); }

private:
    std::unique_ptr<std::uint8_t[]> m_bytes;
    std::int32_t m_size = 0;
};
