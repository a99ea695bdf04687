// Memory between inaccessible pages: code that touches one byte too many ends the test program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#endif

class GuardedBlock {
public:
    // `bytes` is rounded up to whole pages. Ends the program when the system gives no memory.
    explicit GuardedBlock(std::size_t bytes)
        : m_bytes((bytes + kPage - 1) / kPage * kPage) {
        if (!Open()) {
            std::fputs("GuardedBlock: no memory\n", stderr);
            std::abort();
        }
    }
    GuardedBlock(const GuardedBlock&) = delete;
    GuardedBlock& operator=(const GuardedBlock&) = delete;
#if defined(_WIN32)
    ~GuardedBlock() {
        VirtualFree(m_reserved, 0, MEM_RELEASE);
    }
#else
    ~GuardedBlock() {
        munmap(m_reserved, m_bytes + 2 * kPage);
    }
#endif

    // The first byte, directly behind an inaccessible page.
    std::uint8_t* AtStart() const {
        return m_reserved + kPage;
    }

    // Where `bytes` bytes begin that end directly before an inaccessible page.
    std::uint8_t* AtEnd(std::size_t bytes) const {
        return AtStart() + (m_bytes - bytes);
    }

private:
    static constexpr std::size_t kPage = 1 << 16; // of any system

    bool Open() {
        const std::size_t all = m_bytes + 2 * kPage;
#if defined(_WIN32)
        m_reserved = static_cast<std::uint8_t*>(VirtualAlloc(nullptr, all, MEM_RESERVE, PAGE_NOACCESS));
        return m_reserved && VirtualAlloc(AtStart(), m_bytes, MEM_COMMIT, PAGE_READWRITE);
#else
        void* const at = mmap(nullptr, all, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        m_reserved = static_cast<std::uint8_t*>(at);
        return at != MAP_FAILED && mprotect(AtStart(), m_bytes, PROT_READ | PROT_WRITE) == 0;
#endif
    }

    std::size_t m_bytes;
    std::uint8_t* m_reserved = nullptr;
};
