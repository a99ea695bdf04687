// The search for combed positions in one frame, a few rows at a time, for as long as the verdict is open.
#pragma once

#include "engine/pixels/FrameShape.h"
#include "engine/pixels/GrayPalette.h"
#include "engine/kernels/RowKernels.h"

#include <cstdint>

// How many combed positions two rows and their neighbours hold, in frames of one format.
class FrameComber {
public:
    // A null `colors` leaves frames of 8 bits without positions to compare.
    FrameComber(std::int32_t width, std::int32_t bits, const ColorEntry* colors);

    // False when frames of this format have no positions to compare.
    bool CanCount() const { return m_kernel || (m_colors && m_bits >= 8); }

    // Positions in a row.
    std::int32_t Samples() const { return m_samples; }

    // As CombTriosFn.
    std::uint32_t Count(const std::uint8_t* row, std::ptrdiff_t stride, int pairsAfter) const;

private:
    std::int32_t m_bits;
    std::int32_t m_samples;
    const ColorEntry* m_colors;
    CombTriosFn m_kernel;
};

// Any three consecutive row pairs contain exactly one whose index is 2 modulo 3. So only those pairs are compared, and
// the pairs next to one only where it has a large step.
class CombSearch {
public:
    // `shape` is processable, or the search is settled from the start. `threshold`: more combed positions than that
    // make the frame interlaced.
    CombSearch(const std::uint8_t* frame, const FrameShape& shape, const FrameComber& comber, std::uint32_t threshold);

    // True when what has been seen decides, whatever the rest holds.
    bool IsSettled() const;

    // True when every row has been seen.
    bool IsComplete() const { return m_pair > LastPair(); }

    // The upper row of the pair that is compared next.
    std::int32_t NextRow() const { return m_pair; }

    void Step();

    // Prefetches the rows that the step after the next one compares. That pays where nobody else reads them.
    void PrefetchAhead() const;

    // Steps until the search is settled. True when the frame is interlaced.
    bool Settle();

    std::uint32_t Count() const { return m_count; }
    bool IsInterlaced() const { return m_count > m_threshold; }

private:
    std::int32_t LastPair() const { return m_shape.height - 2; }

    const std::uint8_t* m_frame;
    FrameShape m_shape;
    FrameComber m_comber;
    std::uint32_t m_threshold;
    std::uint32_t m_count = 0;
    std::int32_t m_pair = 2;
};
