#include "engine/InterlaceDetector.h"

#include "engine/CombTrios.h"
#include "engine/FrameShape.h"

#include <algorithm>

namespace {

constexpr std::int32_t kRowsPerPosition = 4;

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

// How the rows of one frame are compared.
class FrameComber {
public:
    FrameComber(std::int32_t width, std::int32_t bits, const ColorEntry* colors)
        : m_width(width)
        , m_colors{colors} {
        const RowKernels& kernels = ActiveRowKernels();
        m_kernel = bits == 16 ? kernels.comb16 : bits == 24 ? kernels.comb24 : bits == 32 ? kernels.comb32 : nullptr;
        m_samples = bits == 16 ? m_width >> 1 : m_width;
        m_possible = m_kernel || (colors && bits >= 8);
    }

    bool CanCount() const { return m_possible; }
    std::int32_t Samples() const { return m_samples; }

    std::uint32_t Count(const std::uint8_t* row, std::ptrdiff_t stride, int pairsAfter) const {
        if (m_kernel) {
            return m_kernel(row, stride, m_samples, pairsAfter);
        }
        return CombTriosOfBlocks(m_colors, row, stride, m_samples, pairsAfter);
    }

private:
    std::int32_t m_width;
    TableSample m_colors;
    CombTriosFn m_kernel = nullptr;
    std::int32_t m_samples = 0;
    bool m_possible = false;
};

FrameShape ShapeOf(std::int32_t width, std::int32_t height, std::int32_t bits) {
    return {width, height, bits, StrideBytes(bits, width)};
}

// Counts combed positions; `settled(count, rowsLeft)` may end the count early.
//
// Any three consecutive row pairs contain exactly one whose index is 2 modulo 3. So only those pairs are compared, and
// the pairs next to one only where it has a large step.
template <class Settled>
std::uint32_t CountCombed(const FrameComber& comber, const std::uint8_t* frame, const FrameShape& shape,
                          Settled settled) {
    const std::int32_t lastPair = shape.height - 2;
    const std::ptrdiff_t stride = shape.stride;
    std::uint32_t count = 0;
    for (std::int32_t pair = 2; pair <= lastPair; pair += 3) {
        const std::int32_t startsLeft = shape.height - (kRowsPerPosition - 1) - (pair - 2);
        if (settled(count, startsLeft)) {
            break;
        }
        count += comber.Count(frame + pair * stride, stride, std::min(lastPair - pair, 2));
    }
    return count;
}

} // namespace

std::uint32_t InterlaceThreshold(std::int32_t width, std::int32_t height, double sensitivity) {
    const std::int32_t area = FrameBytes(static_cast<std::int32_t>(static_cast<std::uint32_t>(height) - 3u), width);
    const double threshold = static_cast<double>(area / 16) * sensitivity;
    constexpr double kLimit = 9223372036854775808.0; // 2 to the power of 63
    if (!(threshold > -kLimit && threshold < kLimit)) {
        return 0;
    }
    return static_cast<std::uint32_t>(static_cast<std::int64_t>(threshold));
}

CombScan ScanFrame(const std::uint8_t* frame, std::int32_t width, std::int32_t height, std::int32_t bits,
                   const ColorEntry* colorTable, double sensitivity) {
    CombScan scan{0, InterlaceThreshold(width, height, sensitivity), false};
    const FrameShape shape = ShapeOf(width, height, bits);
    const FrameComber comber(width, bits, colorTable);
    if (height < kRowsPerPosition || !shape.IsProcessable() || !comber.CanCount()) {
        return scan;
    }
    scan.count = CountCombed(comber, frame, shape, [](std::uint32_t, std::int32_t) { return false; });
    scan.interlaced = scan.count > scan.threshold;
    return scan;
}

std::int32_t IsFrameInterlaced(const std::uint8_t* frame, std::int32_t width, std::int32_t height, std::int32_t bits,
                               const ColorEntry* colorTable, double sensitivity) {
    const FrameShape shape = ShapeOf(width, height, bits);
    const FrameComber comber(width, bits, colorTable);
    if (height < kRowsPerPosition || !shape.IsProcessable() || !comber.CanCount()) {
        return 0;
    }
    const std::uint32_t threshold = InterlaceThreshold(width, height, sensitivity);
    const auto settled = [&](std::uint32_t count, std::int32_t startsLeft) {
        const std::int64_t mostPossible = count + std::int64_t{startsLeft} * comber.Samples();
        return count > threshold || mostPossible <= threshold;
    };
    return CountCombed(comber, frame, shape, settled) > threshold ? 1 : 0;
}
