// Memory between inaccessible pages: code that touches one byte too many ends the test program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// Blocks at a fixed distance from each other; what lies between them, before the first and behind the last (two
// distances far) cannot be accessed.
class GuardedBlocks {
public:
    // `bytesEach` is rounded up to whole pages. Ends the program when the system gives no memory.
    GuardedBlocks(int count, std::size_t bytesEach);
    GuardedBlocks(const GuardedBlocks&) = delete;
    GuardedBlocks& operator=(const GuardedBlocks&) = delete;
    ~GuardedBlocks();

    std::span<std::uint8_t> Block(int index) const;

    // Bytes from one block to the next.
    std::ptrdiff_t Distance() const { return static_cast<std::ptrdiff_t>(m_blockBytes + m_pageBytes); }

    // The first byte of a block, directly behind an inaccessible page.
    std::uint8_t* AtStart(int index) const { return Block(index).data(); }

    // Where `bytes` bytes begin that end directly before an inaccessible page.
    std::uint8_t* AtEnd(int index, std::size_t bytes) const { return Block(index).data() + (m_blockBytes - bytes); }

private:
    std::size_t m_pageBytes;
    std::size_t m_blockBytes;
    std::size_t m_reservedBytes;
    std::uint8_t* m_reserved;
};
