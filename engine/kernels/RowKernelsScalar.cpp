// The reference: simple enough to trust.
#include "engine/kernels/CombTrios.h"
#include "engine/kernels/RowKernels.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::int32_t kLargeStep = 576; // squared distance of 24

template <int SampleBytes, int ComparedBytes>
struct OneSample {
    static constexpr std::int32_t kSamples = 1;
    static constexpr std::int32_t kBytes = SampleBytes;

    bool Mask(const std::uint8_t* a, const std::uint8_t* b) const {
        std::int32_t distance = 0;
        for (int i = 0; i < ComparedBytes; ++i) {
            const std::int32_t difference = a[i] - b[i];
            distance += difference * difference;
        }
        return distance > kLargeStep;
    }

    static std::uint32_t Count(bool step) { return step ? 1u : 0u; }
};

void CopyRow(std::uint8_t* out, const std::uint8_t* in, std::size_t bytes, OpenLine&) {
    std::copy_n(in, bytes, out);
}

void RebuildRows(const RowRun& run, std::uint8_t* carried, OpenLine&) {
    for (std::int32_t row = 0; row < run.rows; ++row) {
        const std::ptrdiff_t at = row * run.stride;
        if (row % 2 == 0) {
            AverageBytes(run.out + at, carried, run.below + at, run.bytes);
            std::copy_n(run.below + at, run.bytes, carried);
        } else {
            std::copy_n(carried, run.keptBytes, run.out + at);
        }
    }
}

void BlendRows(const RowRun& run, std::uint8_t* older, std::uint8_t* newer, OpenLine&) {
    for (std::int32_t row = 0; row < run.rows; ++row, std::swap(older, newer)) {
        const std::ptrdiff_t at = row * run.stride;
        BlendBytes(run.out + at, older, newer, run.below + at, run.bytes);
        std::copy_n(run.below + at, run.bytes, older);
    }
}

template <int SampleBytes, int ComparedBytes>
std::uint32_t CountTrios(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples, int pairsAfter) {
    return CombTriosOfBlocks(OneSample<SampleBytes, ComparedBytes>{}, row, stride, samples, pairsAfter);
}

constexpr RowWriters kWriters{CopyRow, RebuildRows, BlendRows, [](OpenLine&) {}};

} // namespace

void AverageBytes(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* below, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        out[i] = static_cast<std::uint8_t>((above[i] + below[i]) >> 1);
    }
}

void BlendBytes(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* current, const std::uint8_t* below,
                std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        out[i] = static_cast<std::uint8_t>((above[i] + 2 * current[i] + below[i]) >> 2);
    }
}

constinit const RowKernels kScalarKernels{
    .name = "scalar",
    .supported = [] { return true; },
    .prefetch = [](const std::uint8_t*, std::size_t) {},
    .cached = kWriters,
    .streamed = kWriters,
    .comb16 = CountTrios<4, 4>,
    .comb24 = CountTrios<3, 3>,
    .comb32 = CountTrios<4, 3>,
};
