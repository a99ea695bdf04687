// The row kernels by instruction set, for the table in RowKernels.cpp and for the vector variants' tails.
#pragma once

#include "engine/RowKernels.h"

#define NMFV_DECLARE_ROW_KERNELS(variant)                                                                              \
    void AverageRow##variant(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* below,                  \
                             std::size_t bytes);                                                                       \
    void BlendRow##variant(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* current,                  \
                           const std::uint8_t* below, std::size_t bytes);                                              \
    std::uint32_t CombTrios16##variant(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples,           \
                                       int pairsAfter);                                                                \
    std::uint32_t CombTrios24##variant(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples,           \
                                       int pairsAfter);                                                                \
    std::uint32_t CombTrios32##variant(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples,           \
                                       int pairsAfter)

NMFV_DECLARE_ROW_KERNELS(Scalar);
NMFV_DECLARE_ROW_KERNELS(Sse2);
NMFV_DECLARE_ROW_KERNELS(Avx2);

#undef NMFV_DECLARE_ROW_KERNELS
