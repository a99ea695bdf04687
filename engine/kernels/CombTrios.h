// The combed-position count of RowKernels.h over blocks of samples, for any way to compare a block of two rows.
//
// `Steps` says how: kSamples and kBytes of one block; Mask, a word that compares a block of two rows, bits set where
// the step is large; Count, the number of bits in such a word.
//
// Instantiate this with types of an unnamed namespace only: the instance then belongs to its file alone, and no code
// compiled for a newer processor can be taken for another file's.
#pragma once

#include "com/Compiler.h"
#include "engine/kernels/RowKernels.h"

// One block that has large steps `here` in pair p: how many of them stand in trios. Apart from the loop over blocks,
// whose registers it would otherwise take: that loop would then go through the stack in each turn.
template <class Steps, class Word>
NMFV_NOINLINE std::uint32_t CombTriosOfBlock(const Steps& steps, const std::uint8_t* row, std::ptrdiff_t stride,
                                             int pairsAfter, Word here) {
    const Word before = steps.Mask(row - stride, row) & here;
    std::uint32_t count = 0;
    if (before) {
        count += Steps::Count(before & steps.Mask(row - 2 * stride, row - stride));
    }
    if (pairsAfter < 1) {
        return count;
    }
    const Word after = steps.Mask(row + stride, row + 2 * stride) & here;
    if (!after) {
        return count;
    }
    count += Steps::Count(before & after);
    if (pairsAfter < 2) {
        return count;
    }
    return count + Steps::Count(after & steps.Mask(row + 2 * stride, row + 3 * stride));
}

// Whole blocks only; `samples` that fill no block are left to the caller.
template <class Steps>
std::uint32_t CombTriosOfBlocks(const Steps& steps, const std::uint8_t* row, std::ptrdiff_t stride,
                                std::int32_t samples, int pairsAfter) {
    std::uint32_t count = 0;
    for (; samples >= Steps::kSamples; samples -= Steps::kSamples, row += Steps::kBytes) {
        const auto here = steps.Mask(row, row + stride);
        if (here) {
            count += CombTriosOfBlock(steps, row, stride, pairsAfter, here);
        }
    }
    return count;
}
