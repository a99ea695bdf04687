// The row kernels by instruction set, for the table in RowKernels.cpp and for the vector variants' tails.
#pragma once

#include "engine/kernels/RowKernels.h"

// `stores` is Cached or Streamed.
#define NMFV_DECLARE_ROW_WRITERS(stores, variant)                                                                      \
    void CopyRow##stores##variant(std::uint8_t* out, const std::uint8_t* in, std::size_t bytes);                       \
    void AverageRow##stores##variant(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* below,          \
                                     std::size_t bytes);                                                               \
    void BlendRow##stores##variant(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* current,          \
                                   const std::uint8_t* below, std::size_t bytes);                                      \
    void RebuildRows##stores##variant(const RowRun& run, std::uint8_t* carried);                                       \
    void BlendRows##stores##variant(const RowRun& run, std::uint8_t* older, std::uint8_t* newer);                      \
    void Finish##stores##variant()

#define NMFV_DECLARE_COMB_KERNELS(variant)                                                                             \
    std::uint32_t CombTrios16##variant(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples,           \
                                       int pairsAfter);                                                                \
    std::uint32_t CombTrios24##variant(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples,           \
                                       int pairsAfter);                                                                \
    std::uint32_t CombTrios32##variant(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples,           \
                                       int pairsAfter)

NMFV_DECLARE_ROW_WRITERS(Cached, Scalar);
NMFV_DECLARE_ROW_WRITERS(Cached, Sse2);
NMFV_DECLARE_ROW_WRITERS(Streamed, Sse2);
NMFV_DECLARE_ROW_WRITERS(Cached, Avx2);
NMFV_DECLARE_ROW_WRITERS(Streamed, Avx2);

void FetchSse2(const std::uint8_t* in, std::size_t bytes);

NMFV_DECLARE_COMB_KERNELS(Scalar);
NMFV_DECLARE_COMB_KERNELS(Sse2);
NMFV_DECLARE_COMB_KERNELS(Avx2);

#undef NMFV_DECLARE_ROW_WRITERS
#undef NMFV_DECLARE_COMB_KERNELS
