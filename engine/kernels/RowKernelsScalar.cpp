// The reference: simple enough to trust.
#include "engine/kernels/RowKernelVariants.h"

#include "engine/kernels/CombTrios.h"

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

} // namespace

void CopyRowCachedScalar(std::uint8_t* out, const std::uint8_t* in, std::size_t bytes) {
    std::copy_n(in, bytes, out);
}

void AverageRowCachedScalar(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* below,
                            std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        out[i] = static_cast<std::uint8_t>((above[i] + below[i]) >> 1);
    }
}

void BlendRowCachedScalar(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* current,
                          const std::uint8_t* below, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        out[i] = static_cast<std::uint8_t>((above[i] + 2 * current[i] + below[i]) >> 2);
    }
}

void RebuildRowsCachedScalar(const RowRun& run, std::uint8_t* carried) {
    for (std::int32_t row = 0; row < run.rows; ++row) {
        const std::ptrdiff_t at = row * run.stride;
        if (row % 2 == 0) {
            AverageRowCachedScalar(run.out + at, carried, run.below + at, run.bytes);
            CopyRowCachedScalar(carried, run.below + at, run.bytes);
        } else {
            CopyRowCachedScalar(run.out + at, carried, run.keptBytes);
        }
    }
}

void BlendRowsCachedScalar(const RowRun& run, std::uint8_t* older, std::uint8_t* newer) {
    for (std::int32_t row = 0; row < run.rows; ++row, std::swap(older, newer)) {
        const std::ptrdiff_t at = row * run.stride;
        BlendRowCachedScalar(run.out + at, older, newer, run.below + at, run.bytes);
        CopyRowCachedScalar(older, run.below + at, run.bytes);
    }
}

void FinishCachedScalar() {}

std::uint32_t CombTrios16Scalar(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples, int pairsAfter) {
    return CombTriosOfBlocks(OneSample<4, 4>{}, row, stride, samples, pairsAfter);
}

std::uint32_t CombTrios24Scalar(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples, int pairsAfter) {
    return CombTriosOfBlocks(OneSample<3, 3>{}, row, stride, samples, pairsAfter);
}

std::uint32_t CombTrios32Scalar(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples, int pairsAfter) {
    return CombTriosOfBlocks(OneSample<4, 3>{}, row, stride, samples, pairsAfter);
}
