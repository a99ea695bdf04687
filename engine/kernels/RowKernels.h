// The inner loops over the bytes of rows, in one variant per instruction set.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

constexpr std::size_t kCacheLine = 64; // bytes

// The rules for bytes, one after the other: an `out` that overlaps a row reads what it has already written.

// out[i] = (above[i] + below[i]) >> 1
void AverageBytes(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* below, std::size_t bytes);

// out[i] = (above[i] + 2 * current[i] + below[i]) >> 2
void BlendBytes(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* current, const std::uint8_t* below,
                std::size_t bytes);

// The cache line that streamed rows have ended within. Its bytes are kept here: when the next row that is written
// begins where this one ended, the two share the line, and it is streamed whole. To be finished with `finish`.
struct OpenLine {
    alignas(kCacheLine) std::uint8_t bytes[kCacheLine]; // each at its place in the line, from the line's start on
    std::uint8_t* end = nullptr;                        // of those kept, in the frame; null: none are
};

// Kernels that write rows. `out` overlaps no other row.

// out[i] = in[i] for `bytes` bytes.
using CopyRowFn = void (*)(std::uint8_t* out, const std::uint8_t* in, std::size_t bytes, OpenLine& line);

// Rows one after the other that are made of the row above, the current one and the row below. Only the row below is
// read in the frame: the others are carried along outside it, and the row below takes the place of the row above.
struct RowRun {
    std::uint8_t* out;         // the first row that is written
    const std::uint8_t* below; // the row after that, in the frame that is read
    const std::uint8_t* last;  // the last row of that frame: a kernel prefetches no further
    std::ptrdiff_t stride;     // of both frames
    std::size_t bytes;         // of a combined row
    std::size_t keptBytes;     // of a kept row, at most as many
    std::int32_t rows;         // that are written
};

// Every second row is rebuilt, from the first one on: out[i] = (carried[i] + below[i]) >> 1, carried[i] = below[i]. The
// row after it is kept: out[i] = carried[i].
using RebuildRowsFn = void (*)(const RowRun& run, std::uint8_t* carried, OpenLine& line);

// `older` holds the row above, `newer` the current one: out[i] = (older[i] + 2 * newer[i] + below[i]) >> 2, older[i] =
// below[i]; for the next row the two change their roles.
using BlendRowsFn = void (*)(const RowRun& run, std::uint8_t* older, std::uint8_t* newer, OpenLine& line);

// One way to store rows. What is streamed is complete after `finish` only.
struct RowWriters {
    CopyRowFn copy;
    RebuildRowsFn rebuild;
    BlendRowsFn blend;
    void (*finish)(OpenLine& line); // after the last row, before anyone else may look at it
};

// Counts combed positions around one pair of rows.
//
// A pair is two neighbouring rows; a sample of it is a large step when the squared distance between its two values
// exceeds 576. A position is combed when three consecutive pairs have a large step there. `row` is the upper row in
// memory of pair p; the function counts, over `samples` positions, the combed ones of the trios (p-2, p-1, p) and,
// as far as `pairsAfter` (0, 1 or 2) says that those pairs exist, (p-1, p, p+1) and (p, p+1, p+2). So it may read the
// rows from two before `row` to one, two or three after it; it reads those other than the pair's own two only where
// the pair has a large step.
using CombTriosFn = std::uint32_t (*)(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples,
                                      int pairsAfter);

// Prefetches `bytes` bytes that will be read before long, or does nothing.
using PrefetchFn = void (*)(const std::uint8_t* in, std::size_t bytes);

struct RowKernels {
    const char* name;
    bool (*supported)();
    PrefetchFn prefetch;
    RowWriters cached;   // ordinary stores: what is written stays in the cache
    RowWriters streamed; // non-temporal stores, past the cache to memory; the same bytes
    CombTriosFn comb16;  // samples of 4 bytes, all four compared: a pixel pair of a packed 4:2:2 format
    CombTriosFn comb24;  // samples of 3 bytes
    CombTriosFn comb32;  // samples of 4 bytes, the first three compared
};

// One per instruction set, each in a file of its own.
extern const RowKernels kScalarKernels; // the reference, which the others equal for every length, offset and tail
extern const RowKernels kSse2Kernels;
extern const RowKernels kAvx2Kernels;

// All of them, slowest first; [0] is the reference.
std::span<const RowKernels* const> AllRowKernels();

// The fastest that this processor and operating system support; chosen once per process.
const RowKernels& ActiveRowKernels();
