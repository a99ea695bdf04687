// Row kernels for every x64 processor.
#include "engine/kernels/RowLoops.h"

#include <bit>

#include <emmintrin.h>

namespace {

__m128i Load(const std::uint8_t* p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

struct Vector {
    using Type = __m128i;
    using Smaller = void;
    static constexpr std::size_t kBytes = 16;

    static Type Load(const std::uint8_t* p) { return ::Load(p); }
    static void Store(std::uint8_t* p, Type v) { _mm_storeu_si128(reinterpret_cast<Type*>(p), v); }
    static void Stream(std::uint8_t* p, Type v) { _mm_stream_si128(reinterpret_cast<Type*>(p), v); }
    static Type Invert(Type v) { return _mm_xor_si128(v, _mm_set1_epi8(-1)); }
    static Type Average(Type a, Type b) { return _mm_avg_epu8(a, b); }
    static void Fence() { _mm_sfence(); }
    static void PrefetchNow(const std::uint8_t* p) { _mm_prefetch(reinterpret_cast<const char*>(p), _MM_HINT_T0); }
    static void PrefetchSoon(const std::uint8_t* p) { _mm_prefetch(reinterpret_cast<const char*>(p), _MM_HINT_T1); }
};

// |a - b| per byte, cut to 25: one difference of 25 is a large step already (625 > 576), and squares of at most 25
// sum up without overflow in 16 bits.
__m128i CutDifference(__m128i a, __m128i b) {
    const __m128i difference = _mm_or_si128(_mm_subs_epu8(a, b), _mm_subs_epu8(b, a));
    return _mm_min_epu8(difference, _mm_set1_epi8(25));
}

// No step can be large while no byte of three differs by 14 or of four by 13: 3 x 13^2 and 4 x 12^2 are at most 576.
bool AnyAbove(__m128i differences, int limit) {
    const __m128i above = _mm_subs_epu8(differences, _mm_set1_epi8(static_cast<char>(limit)));
    return _mm_movemask_epi8(_mm_cmpeq_epi8(above, _mm_setzero_si128())) != 0xFFFF;
}

// Four samples of 4 bytes: bit i set when the squares of sample i sum up to more than 576.
unsigned LargeSteps4(__m128i differences) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i low = _mm_unpacklo_epi8(differences, zero);
    const __m128i high = _mm_unpackhi_epi8(differences, zero);
    const __m128 lowPairs = _mm_castsi128_ps(_mm_madd_epi16(low, low));
    const __m128 highPairs = _mm_castsi128_ps(_mm_madd_epi16(high, high));
    const __m128i even = _mm_castps_si128(_mm_shuffle_ps(lowPairs, highPairs, _MM_SHUFFLE(2, 0, 2, 0)));
    const __m128i odd = _mm_castps_si128(_mm_shuffle_ps(lowPairs, highPairs, _MM_SHUFFLE(3, 1, 3, 1)));
    const __m128i large = _mm_cmpgt_epi32(_mm_add_epi32(even, odd), _mm_set1_epi32(576));
    return static_cast<unsigned>(_mm_movemask_ps(_mm_castsi128_ps(large)));
}

// Sixteen samples of 4 bytes, the bytes set in `Compared` taken into account.
template <std::uint32_t Compared, int Unremarkable>
struct Steps4Bytes {
    static constexpr std::int32_t kSamples = 16;
    static constexpr std::int32_t kBytes = 64;

    std::uint32_t Mask(const std::uint8_t* a, const std::uint8_t* b) const {
        const __m128i compared = _mm_set1_epi32(static_cast<int>(Compared));
        __m128i d[4];
        for (int i = 0; i < 4; ++i) {
            d[i] = _mm_and_si128(CutDifference(Load(a + 16 * i), Load(b + 16 * i)), compared);
        }
        const __m128i most = _mm_max_epu8(_mm_max_epu8(d[0], d[1]), _mm_max_epu8(d[2], d[3]));
        if (!AnyAbove(most, Unremarkable)) {
            return 0;
        }
        return LargeSteps4(d[0]) | LargeSteps4(d[1]) << 4 | LargeSteps4(d[2]) << 8 | LargeSteps4(d[3]) << 12;
    }

    static std::uint32_t Count(std::uint32_t mask) { return static_cast<std::uint32_t>(std::popcount(mask)); }
};

// The bytes of `v` moved down by N places, filled from `next`.
template <int N>
__m128i Following(__m128i v, __m128i next) {
    return _mm_or_si128(_mm_srli_si128(v, N), _mm_slli_si128(next, 16 - N));
}

// Bit i set when the squares of bytes i, i + 1 and i + 2 sum up to more than 576.
std::uint64_t LargeSteps3(__m128i differences, __m128i next) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i second = Following<1>(differences, next);
    const __m128i third = Following<2>(differences, next);
    __m128i large[2];
    for (int half = 0; half < 2; ++half) {
        const auto widen = [&](__m128i v) { return half ? _mm_unpackhi_epi8(v, zero) : _mm_unpacklo_epi8(v, zero); };
        const auto square = [&](__m128i v) { return _mm_mullo_epi16(widen(v), widen(v)); };
        const __m128i sum = _mm_add_epi16(_mm_add_epi16(square(differences), square(second)), square(third));
        large[half] = _mm_cmpgt_epi16(sum, _mm_set1_epi16(576));
    }
    return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(large[0], large[1])));
}

// Sixteen samples of 3 bytes: every third bit of the word stands for one.
struct Steps3Bytes {
    static constexpr std::int32_t kSamples = 16;
    static constexpr std::int32_t kBytes = 48;

    std::uint64_t Mask(const std::uint8_t* a, const std::uint8_t* b) const {
        constexpr std::uint64_t kFirstBytes = 0x249249249249u;
        __m128i d[3];
        for (int i = 0; i < 3; ++i) {
            d[i] = CutDifference(Load(a + 16 * i), Load(b + 16 * i));
        }
        if (!AnyAbove(_mm_max_epu8(_mm_max_epu8(d[0], d[1]), d[2]), 13)) {
            return 0;
        }
        const std::uint64_t large =
            LargeSteps3(d[0], d[1]) | LargeSteps3(d[1], d[2]) << 16 | LargeSteps3(d[2], _mm_setzero_si128()) << 32;
        return large & kFirstBytes;
    }

    static std::uint32_t Count(std::uint64_t mask) { return static_cast<std::uint32_t>(std::popcount(mask)); }
};

} // namespace

constinit const RowKernels kSse2Kernels =
    VectorKernels<Vector, Steps4Bytes<0xFFFFFFFFu, 12>, Steps3Bytes, Steps4Bytes<0x00FFFFFFu, 13>>(
        "sse2", [] { return true; }); // every x64 processor has it
