// Compares the row kernels of a variant with the reference.
#pragma once

#include "engine/kernels/RowKernels.h"

#include <cstdint>
#include <string>

// The rules once more, as plainly as they can be written; name "plain".
extern const RowKernels kPlainKernels;

// Runs every kernel of `variant` and of `reference` over every length up to 200 bytes or 130 samples, unaligned,
// against inaccessible pages on either side, on random data, extremes and steps around the detector's limits. Returns
// what differs first, with the kernel, its parameters and the seed; an empty text when nothing does. A kernel that
// reads or writes outside its rows ends the program.
[[nodiscard]] std::string CheckRowKernels(const RowKernels& variant, const RowKernels& reference, std::uint32_t seed);
