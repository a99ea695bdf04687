// The vector variants of the kernels that write rows, for any vector and either way of storing.
//
// `V` is the vector: Type; kBytes; Load and Store at any address, Stream past the cache at multiples of kBytes; Invert;
// Average, which rounds up; FetchSoon, into the second-level cache.
//
// (a + b) >> 1 is the rounding average between complements: ~avg(~a, ~b). Twice that is (a + 2c + b) >> 2, so the bytes
// stay bytes.
//
// Instantiate this with types of an unnamed namespace only, as CombTrios.h.
#pragma once

#include "engine/RowKernelVariants.h"

constexpr std::size_t kCacheLine = 64;

template <class V>
struct CopyOf {
    const std::uint8_t* in;

    typename V::Type At(std::size_t i) const { return V::Load(in + i); }
    void Fetch(std::size_t) const {} // one row after the other is what the processor foresees
};

template <class V>
struct AverageOf {
    const std::uint8_t* above;
    const std::uint8_t* below;

    typename V::Type At(std::size_t i) const {
        return V::Invert(V::Average(V::Invert(V::Load(above + i)), V::Invert(V::Load(below + i))));
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
    // Only where stores leave the memory the time for it.
    void Fetch(std::size_t i) const {
        if constexpr (Streamed) {
            V::FetchSoon(soon + i);
        }
    }
};

template <class V, bool Streamed>
void Put(std::uint8_t* out, typename V::Type v) {
    if constexpr (Streamed) {
        V::Stream(out, v);
    } else {
        V::Store(out, v);
    }
}

// Bytes from `out` to the first address that Put accepts.
template <class V, bool Streamed>
std::size_t BytesToPut(const std::uint8_t* out) {
    return Streamed ? (0 - reinterpret_cast<std::uintptr_t>(out)) % V::kBytes : 0;
}

// One row of at least one vector. What lies before the first and after the last whole vector is covered by a vector
// that overlaps its neighbour and is stored in the ordinary way.
template <class V, bool Streamed, class Mix>
void MixRow(std::uint8_t* out, std::size_t bytes, const Mix& mix) {
    std::size_t i = BytesToPut<V, Streamed>(out);
    if (i > 0) {
        V::Store(out, mix.At(0));
    }
    for (; i + kCacheLine <= bytes; i += kCacheLine) {
        mix.Fetch(i);
        for (std::size_t k = 0; k < kCacheLine; k += V::kBytes) {
            Put<V, Streamed>(out + i + k, mix.At(i + k));
        }
    }
    for (; i + V::kBytes <= bytes; i += V::kBytes) {
        Put<V, Streamed>(out + i, mix.At(i));
    }
    if (i < bytes) {
        V::Store(out + bytes - V::kBytes, mix.At(bytes - V::kBytes));
    }
}

// Two rows at least one vector long, whose addresses are alike as far as Put is concerned.
template <class V, bool Streamed>
void MixRebuiltRows(std::uint8_t* rebuilt, std::uint8_t* kept, const std::uint8_t* above, const std::uint8_t* below,
                    std::size_t bytes, const std::uint8_t* soon) {
    const AverageOf<V> average{above, below};
    const CopyOf<V> copy{below};
    const std::ptrdiff_t nextRebuilt = 2 * (kept - rebuilt);
    std::size_t i = BytesToPut<V, Streamed>(rebuilt);
    if (i > 0) {
        V::Store(rebuilt, average.At(0));
        V::Store(kept, copy.At(0));
    }
    for (; i + kCacheLine <= bytes; i += kCacheLine) {
        V::FetchSoon(soon + i);
        if constexpr (!Streamed) { // the lines that the next two rows are stored to
            V::FetchSoon(rebuilt + nextRebuilt + i);
            V::FetchSoon(kept + nextRebuilt + i);
        }
        for (std::size_t k = i; k < i + kCacheLine; k += V::kBytes) {
            Put<V, Streamed>(rebuilt + k, average.At(k));
            Put<V, Streamed>(kept + k, copy.At(k));
        }
    }
    for (; i + V::kBytes <= bytes; i += V::kBytes) {
        Put<V, Streamed>(rebuilt + i, average.At(i));
        Put<V, Streamed>(kept + i, copy.At(i));
    }
    if (i < bytes) {
        V::Store(rebuilt + bytes - V::kBytes, average.At(bytes - V::kBytes));
        V::Store(kept + bytes - V::kBytes, copy.At(bytes - V::kBytes));
    }
}

template <class V, bool Streamed>
void VectorCopy(std::uint8_t* out, const std::uint8_t* in, std::size_t bytes) {
    if (bytes < V::kBytes) {
        return CopyRowCachedScalar(out, in, bytes);
    }
    MixRow<V, Streamed>(out, bytes, CopyOf<V>{in});
}

template <class V, bool Streamed>
void VectorAverage(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* below, std::size_t bytes) {
    if (bytes < V::kBytes) {
        return AverageRowCachedScalar(out, above, below, bytes);
    }
    MixRow<V, Streamed>(out, bytes, AverageOf<V>{above, below});
}

template <class V, bool Streamed>
void VectorBlend(std::uint8_t* out, const std::uint8_t* above, const std::uint8_t* current, const std::uint8_t* below,
                 std::size_t bytes, const std::uint8_t* soon) {
    if (bytes < V::kBytes) {
        return BlendRowCachedScalar(out, above, current, below, bytes, soon);
    }
    MixRow<V, Streamed>(out, bytes, BlendOf<V, Streamed>{above, current, below, soon});
}

template <class V, bool Streamed>
void VectorRebuild(std::uint8_t* rebuilt, std::uint8_t* kept, const std::uint8_t* above, const std::uint8_t* below,
                   std::size_t bytes, const std::uint8_t* soon) {
    const bool alike = BytesToPut<V, Streamed>(rebuilt) == BytesToPut<V, Streamed>(kept);
    if (bytes < V::kBytes || !alike) {
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
