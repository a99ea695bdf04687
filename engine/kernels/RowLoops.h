// The vector kernels, for any vector, either way of storing and any way to compare samples; and the table of them.
//
// `V` is the vector: Type; kBytes; Smaller, the vector for what this one is too long for, or void; Load and Store at
// any address, Stream (a non-temporal store) at multiples of kBytes, Fence after the last of those; Invert; Average,
// which rounds up; PrefetchNow into the first-level cache and PrefetchSoon into the second-level one, of any address.
//
// (a + b) >> 1 is the rounding average between complements: ~avg(~a, ~b). Twice that is (a + 2c + b) >> 2, so the bytes
// stay bytes.
//
// Streamed rows: whole cache lines get non-temporal stores, and what lies before the first and after the last one gets
// ordinary ones. A line that is stored in both ways costs many times what it saves.
//
// Instantiate this with types of an unnamed namespace only, as CombTrios.h, and call nothing else that is shared.
#pragma once

#include "engine/kernels/CombTrios.h"
#include "engine/kernels/RowKernels.h"

#include <type_traits>

// Mixes: what one row is made of, vector by vector (W: V or a smaller one) or, where none fits, as the reference has
// it; and what is prefetched meanwhile.

// How far ahead a row is prefetched that is read or written from end to end. A prefetch past the frame's end does no
// harm.
constexpr std::size_t kNowBytes = 4 * kCacheLine;

// What is left of one row, for the reference's kernels.
template <class V>
RowRun OneRow(std::uint8_t* out, const std::uint8_t* below, std::size_t bytes) {
    return {.out = out, .below = below, .last = below, .stride = 0, .bytes = bytes, .keptBytes = bytes, .rows = 1};
}

template <class V, bool Streamed>
struct CopyOf {
    const std::uint8_t* in;

    template <class W>
    typename W::Type Mixed(std::size_t i) const {
        return W::Load(in + i);
    }
    void MixBytes(std::uint8_t* out, std::size_t i, std::size_t bytes) const {
        kScalarKernels.cached.copy(out + i, in + i, bytes);
    }
    void Prefetch(const std::uint8_t* out, std::size_t i) const {
        if constexpr (!Streamed) {
            V::PrefetchNow(out + i + kNowBytes);
        }
    }
};

template <class W>
typename W::Type AverageDown(typename W::Type a, typename W::Type b) {
    return W::Invert(W::Average(W::Invert(a), W::Invert(b)));
}

template <class W>
typename W::Type BlendDown(typename W::Type above, typename W::Type current, typename W::Type below) {
    return W::Invert(W::Average(W::Average(W::Invert(above), W::Invert(below)), W::Invert(current)));
}

template <class V, bool Streamed>
struct AverageOf {
    std::uint8_t* carried;
    const std::uint8_t* below;
    const std::uint8_t* soon;

    template <class W>
    typename W::Type Mixed(std::size_t i) const {
        const auto above = W::Load(carried + i);
        const auto next = W::Load(below + i);
        W::Store(carried + i, next);
        return AverageDown<W>(above, next);
    }
    void MixBytes(std::uint8_t* out, std::size_t i, std::size_t bytes) const {
        kScalarKernels.cached.rebuild(OneRow<V>(out + i, below + i, bytes), carried + i);
    }
    void Prefetch(const std::uint8_t* out, std::size_t i) const {
        V::PrefetchSoon(soon + i); // every other row is read: the hardware prefetcher doesn't follow
        if constexpr (!Streamed) {
            V::PrefetchNow(out + i + kNowBytes);
        }
    }
};

template <class V, bool Streamed>
struct BlendOf {
    std::uint8_t* older;
    std::uint8_t* newer;
    const std::uint8_t* below;
    const std::uint8_t* soon;

    template <class W>
    typename W::Type Mixed(std::size_t i) const {
        const auto above = W::Load(older + i);
        const auto next = W::Load(below + i);
        W::Store(older + i, next);
        return BlendDown<W>(above, W::Load(newer + i), next);
    }
    void MixBytes(std::uint8_t* out, std::size_t i, std::size_t bytes) const {
        kScalarKernels.cached.blend(OneRow<V>(out + i, below + i, bytes), older + i, newer + i);
    }
    void Prefetch(const std::uint8_t* out, std::size_t i) const {
        if constexpr (Streamed) {
            V::PrefetchSoon(soon + i);
        } else {
            V::PrefetchNow(below + i + kNowBytes);
            V::PrefetchNow(out + i + kNowBytes);
        }
    }
};

// Bytes from `out` to where its first whole cache line begins.
template <class V>
std::size_t BytesToLine(const std::uint8_t* out) {
    return (0 - reinterpret_cast<std::uintptr_t>(out)) % kCacheLine;
}

template <class V, bool Streamed, class Mix>
void PutLine(std::uint8_t* out, std::size_t i, const Mix& mix) {
    for (std::size_t k = 0; k < kCacheLine; k += V::kBytes) {
        if constexpr (Streamed) {
            V::Stream(out + i + k, mix.template Mixed<V>(i + k));
        } else {
            V::Store(out + i + k, mix.template Mixed<V>(i + k));
        }
    }
}

// The bytes from i to end, stored in the ordinary way.
template <class V, class Mix>
void PutBytes(std::uint8_t* out, std::size_t i, std::size_t end, const Mix& mix) {
    for (; i + V::kBytes <= end; i += V::kBytes) {
        V::Store(out + i, mix.template Mixed<V>(i));
    }
    if (i == end) {
        return;
    }
    if constexpr (std::is_void_v<typename V::Smaller>) {
        mix.MixBytes(out, i, end - i);
    } else {
        PutBytes<typename V::Smaller>(out, i, end, mix);
    }
}

// Lines: every store stays within a cache line. Ordinary stores may cross lines instead, from the row's start on.
template <class V, bool Streamed, bool Lines = Streamed, class Mix>
void MixRow(std::uint8_t* out, std::size_t bytes, const Mix& mix) {
    std::size_t i = 0;
    if constexpr (Lines) {
        i = BytesToLine<V>(out) < bytes ? BytesToLine<V>(out) : bytes;
        PutBytes<V>(out, 0, i, mix);
    }
    for (; i + kCacheLine <= bytes; i += kCacheLine) {
        mix.Prefetch(out, i);
        PutLine<V, Streamed>(out, i, mix);
    }
    if (i < bytes) {
        mix.Prefetch(out, i);
        PutBytes<V>(out, i, bytes, mix);
    }
}

// A block of this many bytes or more is copied in two halves side by side: two streams keep more of the memory busy.
constexpr std::size_t kManyBytes = 128 * 1024;

template <class V, bool Streamed>
void CopyHalves(std::uint8_t* out, const std::uint8_t* in, std::size_t bytes) {
    const CopyOf<V, Streamed> copy{in};
    const std::size_t first = Streamed ? BytesToLine<V>(out) : 0;
    const std::size_t half = (bytes - first) / 2 / kCacheLine * kCacheLine;
    PutBytes<V>(out, 0, first, copy);
    for (std::size_t i = first; i < first + half; i += kCacheLine) {
        PutLine<V, Streamed>(out, i, copy);
        PutLine<V, Streamed>(out, i + half, copy);
    }
    PutBytes<V>(out, first + 2 * half, bytes, copy);
}

template <class V, bool Streamed>
void VectorCopy(std::uint8_t* out, const std::uint8_t* in, std::size_t bytes) {
    if (bytes >= kManyBytes) {
        return CopyHalves<V, Streamed>(out, in, bytes);
    }
    MixRow<V, Streamed>(out, bytes, CopyOf<V, Streamed>{in});
}

// What will be read four rows after the row that begins at run.below + at: an even number, as rebuilding reads every
// other row.
template <class V>
const std::uint8_t* SoonRead(const RowRun& run, std::ptrdiff_t at) {
    const std::uint8_t* row = run.below + at;
    return run.last - row < 4 * run.stride ? run.last : row + 4 * run.stride;
}

template <class V, bool Streamed>
void VectorRebuild(const RowRun& run, std::uint8_t* carried) {
    for (std::int32_t row = 0; row < run.rows; row += 2) {
        const std::ptrdiff_t at = row * run.stride;
        MixRow<V, Streamed, true>(run.out + at, run.bytes,
                                  AverageOf<V, Streamed>{carried, run.below + at, SoonRead<V>(run, at)});
        if (row + 1 < run.rows) {
            MixRow<V, Streamed, true>(run.out + at + run.stride, run.keptBytes, CopyOf<V, Streamed>{carried});
        }
    }
}

template <class V, bool Streamed>
void VectorBlend(const RowRun& run, std::uint8_t* older, std::uint8_t* newer) {
    for (std::int32_t row = 0; row < run.rows; ++row) {
        const std::ptrdiff_t at = row * run.stride;
        MixRow<V, Streamed>(run.out + at, run.bytes,
                            BlendOf<V, Streamed>{row % 2 ? newer : older, row % 2 ? older : newer, run.below + at,
                                                 SoonRead<V>(run, at)});
    }
}

template <class V, bool Streamed>
void Finish() {
    if constexpr (Streamed) {
        V::Fence();
    }
}

template <class V, bool Streamed>
constexpr RowWriters VectorWriters() {
    return {VectorCopy<V, Streamed>, VectorRebuild<V, Streamed>, VectorBlend<V, Streamed>, Finish<V, Streamed>};
}

template <class V>
void PrefetchLines(const std::uint8_t* in, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; i += kCacheLine) {
        V::PrefetchSoon(in + i);
    }
}

// Whole blocks, then the samples left as the reference counts them.
template <class Steps, CombTriosFn RowKernels::*Comb>
std::uint32_t VectorComb(const std::uint8_t* row, std::ptrdiff_t stride, std::int32_t samples, int pairsAfter) {
    const std::int32_t blocks = samples / Steps::kSamples;
    const std::uint32_t count = CombTriosOfBlocks(Steps{}, row, stride, samples, pairsAfter);
    return count + (kScalarKernels.*Comb)(row + static_cast<std::ptrdiff_t>(blocks) * Steps::kBytes, stride,
                                          samples - blocks * Steps::kSamples, pairsAfter);
}

// The table of a level: its vector, and how it compares blocks of the three kinds of sample.
template <class V, class Steps16, class Steps24, class Steps32>
constexpr RowKernels VectorKernels(const char* name, bool (*supported)()) {
    return {.name = name,
            .supported = supported,
            .prefetch = PrefetchLines<V>,
            .cached = VectorWriters<V, false>(),
            .streamed = VectorWriters<V, true>(),
            .comb16 = VectorComb<Steps16, &RowKernels::comb16>,
            .comb24 = VectorComb<Steps24, &RowKernels::comb24>,
            .comb32 = VectorComb<Steps32, &RowKernels::comb32>};
}
