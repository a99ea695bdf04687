// The vector variants of the kernels that write rows, for any vector and either way of storing.
//
// `V` is the vector: Type; kBytes; Load and Store at any address, Stream past the cache at multiples of kBytes; Invert;
// Average, which rounds up; FetchSoon, into the second-level cache.
//
// (a + b) >> 1 is the rounding average between complements: ~avg(~a, ~b). Twice that is (a + 2c + b) >> 2, so the bytes
// stay bytes.
//
// Streamed rows: whole cache lines are streamed, and what lies before the first and after the last one is stored in the
// ordinary way. A line that is stored in both ways costs many times what it saves.
//
// Instantiate this with types of an unnamed namespace only, as CombTrios.h.
#pragma once

#include "engine/RowKernelVariants.h"

constexpr std::size_t kCacheLine = 64;

// Mixes: what one row is made of, vector by vector or, where no vector fits, as the reference has it.

template <class V>
struct CopyOf {
    const std::uint8_t* in;

    typename V::Type At(std::size_t i) const { return V::Load(in + i); }
    void Bytes(std::uint8_t* out, std::size_t i, std::size_t bytes) const {
        CopyRowCachedScalar(out + i, in + i, bytes);
    }
    void Fetch(std::size_t) const {} // one row after the other is what the processor foresees
};

template <class V>
struct AverageOf {
    const std::uint8_t* above;
    const std::uint8_t* below;

    typename V::Type At(std::size_t i) const {
        return V::Invert(V::Average(V::Invert(V::Load(above + i)), V::Invert(V::Load(below + i))));
    }
    void Bytes(std::uint8_t* out, std::size_t i, std::size_t bytes) const {
        AverageRowCachedScalar(out + i, above + i, below + i, bytes);
    }
    void Fetch(std::size_t) const {}
};

template <class V, bool Streamed>
struct BlendOf {
    const std::uint8_t* above;
    const std::uint8_t* current;
    const std::uint8_t* below;
    const std::uint8_t* soon;

    typename V::Type At(std::size_t i) const {
        const auto outer = V::Average(V::Invert(V::Load(above + i)), V::Invert(V::Load(below + i)));
        return V::Invert(V::Average(outer, V::Invert(V::Load(current + i))));
    }
    void Bytes(std::uint8_t* out, std::size_t i, std::size_t bytes) const {
        BlendRowCachedScalar(out + i, above + i, current + i, below + i, bytes, soon);
    }
    // Only where stores leave the memory the time for it.
    void Fetch(std::size_t i) const {
        if constexpr (Streamed) {
            V::FetchSoon(soon + i);
        }
    }
};

// Bytes from `out` to where its first streamed line begins; 0 when none is.
template <bool Streamed>
std::size_t BytesToLine(const std::uint8_t* out) {
    return Streamed ? (0 - reinterpret_cast<std::uintptr_t>(out)) % kCacheLine : 0;
}

template <class V, bool Streamed, class Mix>
void PutLine(std::uint8_t* out, std::size_t i, const Mix& mix) {
    for (std::size_t k = i; k < i + kCacheLine; k += V::kBytes) {
        if constexpr (Streamed) {
            V::Stream(out + k, mix.At(k));
        } else {
            V::Store(out + k, mix.At(k));
        }
    }
}

// The bytes from i to end, stored in the ordinary way.
template <class V, class Mix>
void PutBytes(std::uint8_t* out, std::size_t i, std::size_t end, const Mix& mix) {
    for (; i + V::kBytes <= end; i += V::kBytes) {
        V::Store(out + i, mix.At(i));
    }
    mix.Bytes(out, i, end - i);
}

// What is left of a row of at least one vector, from i on. Where no line was streamed, the last vector may cover some
// bytes once more.
template <class V, bool Streamed, class Mix>
void PutTail(std::uint8_t* out, std::size_t i, std::size_t end, const Mix& mix) {
    if constexpr (Streamed) {
        return PutBytes<V>(out, i, end, mix);
    }
    for (; i + V::kBytes <= end; i += V::kBytes) {
        V::Store(out + i, mix.At(i));
    }
    if (i < end) {
        V::Store(out + end - V::kBytes, mix.At(end - V::kBytes));
    }
}

// One row of at least a line and what comes before the first one.
template <class V, bool Streamed, class Mix>
void MixRow(std::uint8_t* out, std::size_t bytes, const Mix& mix) {
    std::size_t i = BytesToLine<Streamed>(out);
    PutBytes<V>(out, 0, i, mix);
    for (; i + kCacheLine <= bytes; i += kCacheLine) {
        mix.Fetch(i);
        PutLine<V, Streamed>(out, i, mix);
    }
    PutTail<V, Streamed>(out, i, bytes, mix);
}

// The same for two rows whose addresses are alike as far as lines are concerned.
template <class V, bool Streamed>
void MixRebuiltRows(std::uint8_t* rebuilt, std::uint8_t* kept, const std::uint8_t* above, const std::uint8_t* below,
                    std::size_t bytes, const std::uint8_t* soon) {
    const AverageOf<V> average{above, below};
    const CopyOf<V> copy{below};
    const std::ptrdiff_t nextRebuilt = 2 * (kept - rebuilt);
    std::size_t i = BytesToLine<Streamed>(rebuilt);
    PutBytes<V>(rebuilt, 0, i, average);
    PutBytes<V>(kept, 0, i, copy);
    for (; i + kCacheLine <= bytes; i += kCacheLine) {
        V::FetchSoon(soon + i);
        if constexpr (!Streamed) { // the lines that the next two rows are stored to
            V::FetchSoon(rebuilt + nextRebuilt + i);
            V::FetchSoon(kept + nextRebuilt + i);
        }
        PutLine<V, Streamed>(rebuilt, i, average);
        PutLine<V, Streamed>(kept, i, copy);
    }
    PutTail<V, Streamed>(rebuilt, i, bytes, average);
    PutTail<V, Streamed>(kept, i, bytes, copy);
}

// Rows shorter than this may have no line to stream, or no vector.
template <class V, bool Streamed>
constexpr std::size_t kShortRow = Streamed ? 2 * kCacheLine : V::kBytes;

template <class V, bool Streamed>
void VectorCopy(std::uint8_t* out, const std::uint8_t* in, std::size_t bytes) {
    if (bytes < kShortRow<V, Streamed>) {
        return CopyRowCachedScalar(out, in, bytes);
    }
    MixRow<V, Streamed>(out, bytes, CopyOf<V>{in});
}

template <class V, bool Streamed>
void VectorAverage(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* below, std::size_t bytes) {
    if (bytes < kShortRow<V, Streamed>) {
        return AverageRowCachedScalar(out, above, below, bytes);
    }
    MixRow<V, Streamed>(out, bytes, AverageOf<V>{above, below});
}

template <class V, bool Streamed>
void VectorBlend(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* current, const std::uint8_t* below,
                 std::size_t bytes, const std::uint8_t* soon) {
    if (bytes < kShortRow<V, Streamed>) {
        return BlendRowCachedScalar(out, above, current, below, bytes, soon);
    }
    MixRow<V, Streamed>(out, bytes, BlendOf<V, Streamed>{above, current, below, soon});
}

template <class V, bool Streamed>
void VectorRebuild(std::uint8_t* rebuilt, std::uint8_t* kept, const std::uint8_t* above, const std::uint8_t* below,
                   std::size_t bytes, const std::uint8_t* soon) {
    const bool alike = BytesToLine<Streamed>(rebuilt) == BytesToLine<Streamed>(kept);
    if (bytes < kShortRow<V, Streamed> || !alike) {
        VectorAverage<V, Streamed>(rebuilt, above, below, bytes);
        VectorCopy<V, Streamed>(kept, below, bytes);
        return;
    }
    MixRebuiltRows<V, Streamed>(rebuilt, kept, above, below, bytes, soon);
}

// Defines the functions that RowKernelVariants.h declares for a variant.
#define NMFV_DEFINE_ROW_WRITERS(V, streamed, suffix)                                                                   \
    void CopyRow##suffix(std::uint8_t* out, const std::uint8_t* in, std::size_t bytes) {                               \
        VectorCopy<V, streamed>(out, in, bytes);                                                                       \
    }                                                                                                                  \
    void AverageRow##suffix(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* below,                   \
                            std::size_t bytes) {                                                                       \
        VectorAverage<V, streamed>(out, above, below, bytes);                                                          \
    }                                                                                                                  \
    void BlendRow##suffix(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* current,                   \
                          const std::uint8_t* below, std::size_t bytes, const std::uint8_t* soon) {                    \
        VectorBlend<V, streamed>(out, above, current, below, bytes, soon);                                             \
    }                                                                                                                  \
    void RebuildRows##suffix(std::uint8_t* rebuilt, std::uint8_t* kept, const std::uint8_t* above,                     \
                             const std::uint8_t* below, std::size_t bytes, const std::uint8_t* soon) {                 \
        VectorRebuild<V, streamed>(rebuilt, kept, above, below, bytes, soon);                                          \
    }                                                                                                                  \
    void Finish##suffix() {                                                                                            \
        if (streamed) {                                                                                                \
            _mm_sfence();                                                                                              \
        }                                                                                                              \
    }                                                                                                                  \
    static_assert(true)
