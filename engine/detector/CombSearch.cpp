#include "engine/detector/CombSearch.h"

#include "engine/kernels/CombTrios.h"

#include <algorithm>

namespace {

// One sample of a frame whose pixels are looked up in a colour table.
struct TableSample {
    static constexpr std::int32_t kSamples = 1;
    static constexpr std::int32_t kBytes = 1;

    const ColorEntry* colors;

    bool Mask(const std::uint8_t* a, const std::uint8_t* b) const {
        const ColorEntry& first = colors[*a];
        const ColorEntry& second = colors[*b];
        const std::int32_t blue = first.blue - second.blue;
        const std::int32_t green = first.green - second.green;
        const std::int32_t red = first.red - second.red;
        return blue * blue + green * green + red * red > 576;
    }

    static std::uint32_t Count(bool step) { return step ? 1u : 0u; }
};

constexpr std::int32_t kStep = 3;

CombTriosFn KernelFor(std::int32_t bits) {
    const RowKernels& kernels = ActiveRowKernels();
    return bits == 16 ? kernels.comb16 : bits == 24 ? kernels.comb24 : bits == 32 ? kernels.comb32 : nullptr;
}

} // namespace

FrameComber::FrameComber(std::int32_t width, std::int32_t bits, const ColorEntry* colors)
    : m_bits(bits)
    , m_samples(bits == 16 ? width >> 1 : width)
    , m_colors(colors)
    , m_kernel(KernelFor(bits)) {}

std::uint32_t FrameComber::Count(const std::uint8_t* row, std::ptrdiff_t stride, int pairsAfter) const {
    if (m_kernel) {
        return m_kernel(row, stride, m_samples, pairsAfter);
    }
    return CombTriosOfBlocks(TableSample{m_colors}, row, stride, m_samples, pairsAfter);
}

CombSearch::CombSearch(const std::uint8_t* frame, const FrameShape& shape, const FrameComber& comber,
                       std::uint32_t threshold)
    : m_frame(frame)
    , m_shape(shape)
    , m_comber(comber)
    , m_threshold(threshold) {
    if (!shape.IsProcessable() || !comber.CanCount()) {
        m_shape.height = 0;
    }
}

bool CombSearch::IsSettled() const {
    const std::int64_t startsLeft = std::max(m_shape.height - 3 - (m_pair - 2), 0); // upper rows of trios
    return IsInterlaced() || m_count + startsLeft * m_comber.Samples() <= m_threshold;
}

void CombSearch::Step() {
    const std::ptrdiff_t stride = m_shape.stride;
    m_count += m_comber.Count(m_frame + m_pair * stride, stride, std::min(LastPair() - m_pair, 2));
    m_pair += kStep;
}

void CombSearch::PrefetchAhead() const {
    const std::int32_t pair = m_pair + kStep;
    if (pair <= LastPair()) {
        ActiveRowKernels().prefetch(m_frame + pair * std::ptrdiff_t{m_shape.stride},
                                    2 * static_cast<std::size_t>(m_shape.stride));
    }
}

bool CombSearch::Settle() {
    while (!IsSettled()) {
        Step();
    }
    return IsInterlaced();
}
