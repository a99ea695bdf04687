// Copies of the input rows that were read last. Reading a row of the frame again costs far more than its copy, even
// from the cache: the hardware prefetcher takes it for a new stream and loads lines that nobody reads.
#pragma once

#include "engine/kernels/RowKernels.h"

#include <cstdint>

// Bytes of the fewest equal strips of a row, each of `most` bytes at most and of whole cache lines but for the last.
constexpr std::int32_t StripBytes(std::int32_t rowBytes, std::int32_t most) {
    constexpr auto kLine = static_cast<std::int32_t>(kCacheLine);
    const std::int32_t strips = (rowBytes - 1) / most + 1;
    return strips <= 1 ? rowBytes : ((rowBytes - 1) / strips / kLine + 1) * kLine;
}

// One row, or two neighbours: few enough bytes to stay close, and enough for a row of 4096 pixels of three bytes.
class CarriedRows {
    static constexpr std::int32_t kApart = 12288 + 320; // bytes between two rows: not in the same sets of the cache

public:
    static constexpr std::int32_t kMaxBytesOfTwo = 12288; // each
    static constexpr std::int32_t kMaxBytesOfOne = 16384; // in place of both
    static_assert(kMaxBytesOfTwo <= kApart && kMaxBytesOfOne <= 2 * kApart && kMaxBytesOfTwo % kCacheLine == 0);

    std::uint8_t* One() { return m_bytes; }

    // Where `row` of two is kept, until the row after the next takes its place.
    std::uint8_t* OfTwo(std::int32_t row) { return m_bytes + (row & 1) * kApart; }

private:
    alignas(kCacheLine) std::uint8_t m_bytes[2 * kApart];
};
