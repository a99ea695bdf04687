// Copies of the input rows that were read last. Read in the frame once more, a row costs far more than its copy, though
// it is still in the cache: the processor takes it for the start of something to foresee and fetches in vain.
#pragma once

#include <cstdint>
#include <cstring>

// Rows, or strips of them, of up to kMaxBytes bytes. The copies of two rows fit in the first-level cache.
class CarriedRows {
public:
    static constexpr std::int32_t kMaxBytes = 8192;

    // Where `row` is kept, until the row after the next takes its place.
    std::uint8_t* Row(std::int32_t row) { return m_bytes + (row & 1) * kApart; }

    void Take(std::int32_t row, const std::uint8_t* in, std::int32_t bytes) {
        std::memcpy(Row(row), in, static_cast<std::size_t>(bytes));
    }

private:
    static constexpr std::int32_t kApart = kMaxBytes + 320; // not in the same sets of the cache

    alignas(64) std::uint8_t m_bytes[2 * kApart];
};
