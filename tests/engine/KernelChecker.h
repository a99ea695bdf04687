// Compares the row kernels of a variant with the reference.
#pragma once

#include "engine/kernels/RowKernels.h"

#include <cstdint>
#include <string>

// Runs every kernel of `variant` and of the reference over every length up to 200 bytes or 130 samples, unaligned,
// against inaccessible pages on either side, on random data, extremes and steps around the detector's limits. Returns
// what differs first, with the kernel, its parameters and the seed; an empty text when nothing does. A kernel that
// reads or writes outside its rows ends the program.
[[nodiscard]] std::string CheckRowKernels(const RowKernels& variant, std::uint32_t seed);
