#include "tests/support/GuardedBlocks.h"

#include <cstdio>
#include <cstdlib>

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace {

constexpr int kMargin = 2; // blocks that stay closed before the first and behind the last

#if defined(_WIN32)

std::size_t PageBytes() {
    SYSTEM_INFO info;
    GetSystemInfo(&info);
    return info.dwPageSize;
}
void* Reserve(std::size_t bytes) {
    return VirtualAlloc(nullptr, bytes, MEM_RESERVE, PAGE_NOACCESS);
}
bool Open(void* address, std::size_t bytes) {
    return VirtualAlloc(address, bytes, MEM_COMMIT, PAGE_READWRITE) != nullptr;
}
void GiveBack(void* address, std::size_t) {
    VirtualFree(address, 0, MEM_RELEASE);
}

#else

std::size_t PageBytes() {
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}
void* Reserve(std::size_t bytes) {
    void* address = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return address == MAP_FAILED ? nullptr : address;
}
bool Open(void* address, std::size_t bytes) {
    return mprotect(address, bytes, PROT_READ | PROT_WRITE) == 0;
}
void GiveBack(void* address, std::size_t bytes) {
    munmap(address, bytes);
}

#endif

[[noreturn]] void NoMemory() {
    std::fputs("GuardedBlocks: no memory\n", stderr);
    std::abort();
}

} // namespace

GuardedBlocks::GuardedBlocks(int count, std::size_t bytesEach)
    : m_pageBytes(PageBytes())
    , m_blockBytes((bytesEach + m_pageBytes - 1) / m_pageBytes * m_pageBytes)
    , m_reservedBytes(static_cast<std::size_t>(count + 2 * kMargin) * (m_blockBytes + m_pageBytes))
    , m_reserved(static_cast<std::uint8_t*>(Reserve(m_reservedBytes))) {
    if (!m_reserved) {
        NoMemory();
    }
    for (int i = 0; i < count; ++i) {
        if (!Open(AtStart(i), m_blockBytes)) {
            NoMemory();
        }
    }
}

GuardedBlocks::~GuardedBlocks() {
    GiveBack(m_reserved, m_reservedBytes);
}

std::span<std::uint8_t> GuardedBlocks::Block(int index) const {
    return {m_reserved + (index + kMargin) * Distance(), m_blockBytes};
}
