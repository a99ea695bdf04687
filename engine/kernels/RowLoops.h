// The vector kernels, for any vector, either way of storing and any way to compare samples; and the table of them.
//
// `V` is the vector: Type; kBytes; Smaller, the vector for what this one is too long for, or void; Load and Store at
// any address, Stream (a non-temporal store) at multiples of kBytes, Fence after the last of those; Invert; Average,
// which rounds up; PrefetchNow into the first-level cache and PrefetchSoon into the second-level one, of any address.
//
// (a + b) >> 1 is the rounding average between complements: ~avg(~a, ~b). Twice that is (a + 2c + b) >> 2, so the bytes
// stay bytes.
//
// Streamed rows: whole cache lines get non-temporal stores. A line that two rows share is put together in the OpenLine;
// only what lies before the first whole line and after the last one of rows without a gap gets ordinary stores. Each of
// those waits for its line to be read, and all stores behind it wait too. A line that is stored in both ways costs many
// times what it saves.
//
// Instantiate this with types of an unnamed namespace only, as CombTrios.h, and call nothing else that is shared.
#pragma once

#include "engine/kernels/CombTrios.h"
#include "engine/kernels/RowKernels.h"

#include <cstring>
#include <type_traits>

// Mixes: what one row is made of, vector by vector (W: V or a smaller one) or, where none fits, as the reference has
// it; and what is prefetched meanwhile.

// How far ahead a row is prefetched that is read or written from end to end: as long as memory takes. Half as far, or
// twice, is slower in cold frames or in warm ones. A prefetch past the frame's end does no harm.
constexpr std::size_t kNowBytes = 32 * kCacheLine;

template <class V, bool Streamed>
struct CopyOf {
    const std::uint8_t* in;

    template <class W>
    typename W::Type Mixed(std::size_t i) const {
        return W::Load(in + i);
    }
    void MixBytes(std::uint8_t* out, std::size_t i, std::size_t bytes) const { std::memcpy(out, in + i, bytes); }
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
        AverageBytes(out, carried + i, below + i, bytes);
        std::memcpy(carried + i, below + i, bytes);
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
        BlendBytes(out, older + i, newer + i, below + i, bytes);
        std::memcpy(older + i, below + i, bytes);
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

// How far `p` lies into its cache line.
template <class V>
std::size_t PlaceInLine(const std::uint8_t* p) {
    return reinterpret_cast<std::uintptr_t>(p) % kCacheLine;
}

// Bytes from `out` to where its first whole cache line begins, `bytes` at most.
template <class V>
std::size_t BytesToLine(const std::uint8_t* out, std::size_t bytes) {
    const std::size_t toLine = (kCacheLine - PlaceInLine<V>(out)) % kCacheLine;
    return toLine < bytes ? toLine : bytes;
}

// The whole line is mixed before any of it is stored: a streaming store that waits for the next vector's input would
// keep a half-filled line waiting too, and the processor has few places for those.
template <class V, bool Streamed, class Mix>
void PutLine(std::uint8_t* out, std::size_t i, const Mix& mix) {
    typename V::Type mixed[kCacheLine / V::kBytes];
    for (std::size_t k = 0; k < kCacheLine; k += V::kBytes) {
        mixed[k / V::kBytes] = mix.template Mixed<V>(i + k);
    }
    for (std::size_t k = 0; k < kCacheLine; k += V::kBytes) {
        if constexpr (Streamed) {
            V::Stream(out + k, mixed[k / V::kBytes]);
        } else {
            V::Store(out + k, mixed[k / V::kBytes]);
        }
    }
}

// The mix's bytes from i to end, stored in the ordinary way.
template <class V, class Mix>
void PutBytes(std::uint8_t* out, std::size_t i, std::size_t end, const Mix& mix) {
    for (; i + V::kBytes <= end; i += V::kBytes, out += V::kBytes) {
        V::Store(out, mix.template Mixed<V>(i));
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

// The kept bytes of a line that nobody fills.
template <class V>
void CloseLine(OpenLine& line) {
    if (line.end) {
        const std::size_t kept = PlaceInLine<V>(line.end);
        std::memcpy(line.end - kept, line.bytes, kept);
        line.end = nullptr;
    }
}

// A row's bytes before its first whole line; streamed ones fill the line that the row before has left open, or begin
// within a line. Returns how many there are.
template <class V, bool Streamed, class Mix>
std::size_t PutFirstBytes(std::uint8_t* out, std::size_t bytes, const Mix& mix, OpenLine& line) {
    const std::size_t first = BytesToLine<V>(out, bytes);
    if (!Streamed || line.end != out) {
        if constexpr (Streamed) {
            CloseLine<V>(line);
        }
        PutBytes<V>(out, 0, first, mix);
        return first;
    }
    PutBytes<V>(line.bytes + PlaceInLine<V>(out), 0, first, mix);
    line.end = out + first;
    if (PlaceInLine<V>(line.end) == 0) {
        PutLine<V, Streamed>(line.end - kCacheLine, 0, CopyOf<V, Streamed>{line.bytes});
        line.end = nullptr;
    }
    return first;
}

// Lines: every store stays within a cache line. Ordinary stores may cross lines instead, from the row's start on.
template <class V, bool Streamed, bool Lines = Streamed, class Mix>
void MixRow(std::uint8_t* out, std::size_t bytes, const Mix& mix, OpenLine& line) {
    std::size_t i = 0;
    if constexpr (Lines) {
        i = PutFirstBytes<V, Streamed>(out, bytes, mix, line);
    }
    for (; i + kCacheLine <= bytes; i += kCacheLine) {
        mix.Prefetch(out, i);
        PutLine<V, Streamed>(out + i, i, mix);
    }
    if (i < bytes) {
        mix.Prefetch(out, i);
        PutBytes<V>(Streamed ? line.bytes : out + i, i, bytes, mix);
        if constexpr (Streamed) {
            line.end = out + bytes;
        }
    }
}

// A block of this many bytes or more is copied in two halves side by side: two streams keep more of the memory busy.
constexpr std::size_t kManyBytes = 128 * 1024;

template <class V, bool Streamed>
void CopyHalves(std::uint8_t* out, const std::uint8_t* in, std::size_t bytes, OpenLine& line) {
    const CopyOf<V, Streamed> copy{in};
    const std::size_t first = PutFirstBytes<V, Streamed>(out, bytes, copy, line);
    const std::size_t half = (bytes - first) / 2 / kCacheLine * kCacheLine;
    for (std::size_t i = first; i < first + half; i += kCacheLine) {
        PutLine<V, Streamed>(out + i, i, copy);
        PutLine<V, Streamed>(out + i + half, i + half, copy);
    }
    const std::size_t done = first + 2 * half;
    MixRow<V, Streamed, true>(out + done, bytes - done, CopyOf<V, Streamed>{in + done}, line);
}

template <class V, bool Streamed>
void VectorCopy(std::uint8_t* out, const std::uint8_t* in, std::size_t bytes, OpenLine& line) {
    if (bytes >= kManyBytes) {
        return CopyHalves<V, Streamed>(out, in, bytes, line);
    }
    MixRow<V, Streamed>(out, bytes, CopyOf<V, Streamed>{in}, line);
}

// What will be read four rows after the row that begins at run.below + at: an even number, as rebuilding reads every
// other row.
template <class V>
const std::uint8_t* SoonRead(const RowRun& run, std::ptrdiff_t at) {
    const std::uint8_t* row = run.below + at;
    return run.last - row < 4 * run.stride ? run.last : row + 4 * run.stride;
}

template <class V, bool Streamed>
void VectorRebuild(const RowRun& run, std::uint8_t* carried, OpenLine& line) {
    for (std::int32_t row = 0; row < run.rows; row += 2) {
        const std::ptrdiff_t at = row * run.stride;
        MixRow<V, Streamed, true>(run.out + at, run.bytes,
                                  AverageOf<V, Streamed>{carried, run.below + at, SoonRead<V>(run, at)}, line);
        if (row + 1 < run.rows) {
            MixRow<V, Streamed, true>(run.out + at + run.stride, run.keptBytes, CopyOf<V, Streamed>{carried}, line);
        }
    }
}

template <class V, bool Streamed>
void VectorBlend(const RowRun& run, std::uint8_t* older, std::uint8_t* newer, OpenLine& line) {
    for (std::int32_t row = 0; row < run.rows; ++row) {
        const std::ptrdiff_t at = row * run.stride;
        MixRow<V, Streamed>(run.out + at, run.bytes,
                            BlendOf<V, Streamed>{row % 2 ? newer : older, row % 2 ? older : newer, run.below + at,
                                                 SoonRead<V>(run, at)},
                            line);
    }
}

template <class V, bool Streamed>
void Finish(OpenLine& line) {
    if constexpr (Streamed) {
        CloseLine<V>(line);
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
