// Row kernels written from their description, and what tests break in them.
#pragma once

#include "engine/kernels/RowKernels.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

// Counts the trios that kernels count. `Compared` of the `Bytes` bytes of a sample make up the distance; a step is
// large when it exceeds `Limit`. `Trios` is the number of trios at most.
template <int Bytes, int Compared, int Limit = 576, int Trios = 3>
std::uint32_t PlainCombTrios(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples, int pairsAfter) {
    const auto isLarge = [&](const std::uint8_t* upper) {
        int distance = 0;
        for (int i = 0; i < Compared; ++i) {
            distance += (upper[i] - upper[i + stride]) * (upper[i] - upper[i + stride]);
        }
        return distance > Limit;
    };
    std::uint32_t count = 0;
    for (std::int32_t s = 0; s < samples; ++s) {
        for (int trio = 0; trio <= pairsAfter && trio < Trios; ++trio) {
            const std::uint8_t* first = row + s * Bytes + (trio - 2) * stride;
            count += isLarge(first) && isLarge(first + stride) && isLarge(first + 2 * stride) ? 1u : 0u;
        }
    }
    return count;
}

template <int Rounding = 0>
void PlainAverage(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* below, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        out[i] = static_cast<std::uint8_t>((above[i] + below[i] + Rounding) / 2);
    }
}

template <int Rounding = 0>
void PlainBlend(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* current, const std::uint8_t* below,
                std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        out[i] = static_cast<std::uint8_t>((above[i] + 2 * current[i] + below[i] + Rounding) / 4);
    }
}

// One row each.
inline void PlainRebuild(const RowRun& run, std::uint8_t* carried) {
    PlainAverage(run.out, carried, run.below, run.bytes);
    std::copy_n(run.below, run.bytes, carried);
}

inline void PlainBlendRows(const RowRun& run, std::uint8_t* older, std::uint8_t* newer) {
    PlainBlend(run.out, older, newer, run.below, run.bytes);
    std::copy_n(run.below, run.bytes, older);
}

inline void PlainCopy(std::uint8_t* out, const std::uint8_t* in, std::size_t bytes) {
    std::copy_n(in, bytes, out);
}
