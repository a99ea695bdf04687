// Row kernels for processors with AVX2. This file is compiled for them, so it holds nothing but the kernels and
// helpers of its own: an inline function shared with other files might reach the whole module in its AVX2 form.
#include "engine/kernels/CpuFeatures.h"
#include "engine/kernels/RowLoops.h"

#include <immintrin.h>

namespace {

__m256i Load(const std::uint8_t* p) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}

struct HalfVector {
    using Type = __m128i;
    using Smaller = void;
    static constexpr std::size_t kBytes = 16;

    static Type Load(const std::uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const Type*>(p)); }
    static void Store(std::uint8_t* p, Type v) { _mm_storeu_si128(reinterpret_cast<Type*>(p), v); }
    static Type Invert(Type v) { return _mm_xor_si128(v, _mm_set1_epi8(-1)); }
    static Type Average(Type a, Type b) { return _mm_avg_epu8(a, b); }
};

struct Vector {
    using Type = __m256i;
    using Smaller = HalfVector;
    static constexpr std::size_t kBytes = 32;

    static Type Load(const std::uint8_t* p) { return ::Load(p); }
    static void Store(std::uint8_t* p, Type v) { _mm256_storeu_si256(reinterpret_cast<Type*>(p), v); }
    static void Stream(std::uint8_t* p, Type v) { _mm256_stream_si256(reinterpret_cast<Type*>(p), v); }
    static Type Invert(Type v) { return _mm256_xor_si256(v, _mm256_set1_epi8(-1)); }
    static Type Average(Type a, Type b) { return _mm256_avg_epu8(a, b); }
    static void Fence() { _mm_sfence(); }
    static void PrefetchNow(const std::uint8_t* p) { _mm_prefetch(reinterpret_cast<const char*>(p), _MM_HINT_T0); }
    static void PrefetchSoon(const std::uint8_t* p) { _mm_prefetch(reinterpret_cast<const char*>(p), _MM_HINT_T1); }
};

__m256i Difference(__m256i a, __m256i b) {
    return _mm256_or_si256(_mm256_subs_epu8(a, b), _mm256_subs_epu8(b, a));
}

// No step can be large while no byte of three differs by 14 or of four by 13: 3 x 13^2 and 4 x 12^2 are at most 576.
bool AnyAbove(__m256i differences, int limit) {
    const __m256i above = _mm256_subs_epu8(differences, _mm256_set1_epi8(static_cast<char>(limit)));
    return !_mm256_testz_si256(above, above);
}

// Eight samples of 4 bytes: bit i set when the squares of sample i sum up to more than 576. Differences are cut to 25,
// which is a large step on its own and keeps the sums within 16 bits.
std::uint32_t LargeSteps(__m256i differences) {
    const __m256i cut = _mm256_min_epu8(differences, _mm256_set1_epi8(25));
    const __m256i pairs = _mm256_maddubs_epi16(cut, cut);
    const __m256i sums = _mm256_madd_epi16(pairs, _mm256_set1_epi16(1));
    const __m256i large = _mm256_cmpgt_epi32(sums, _mm256_set1_epi32(576));
    return static_cast<std::uint32_t>(_mm256_movemask_ps(_mm256_castsi256_ps(large)));
}

// Thirty-two samples of 4 bytes, the bytes set in `Compared` taken into account.
template <std::uint32_t Compared, int Unremarkable>
struct Steps4Bytes {
    static constexpr std::int32_t kSamples = 32;
    static constexpr std::int32_t kBytes = 128;

    std::uint32_t Mask(const std::uint8_t* a, const std::uint8_t* b) const {
        const __m256i compared = _mm256_set1_epi32(static_cast<int>(Compared));
        __m256i d[4];
        for (int i = 0; i < 4; ++i) {
            d[i] = _mm256_and_si256(Difference(Load(a + 32 * i), Load(b + 32 * i)), compared);
        }
        const __m256i most = _mm256_max_epu8(_mm256_max_epu8(d[0], d[1]), _mm256_max_epu8(d[2], d[3]));
        if (!AnyAbove(most, Unremarkable)) {
            return 0;
        }
        return LargeSteps(d[0]) | LargeSteps(d[1]) << 8 | LargeSteps(d[2]) << 16 | LargeSteps(d[3]) << 24;
    }

    static std::uint32_t Count(std::uint32_t mask) { return static_cast<std::uint32_t>(_mm_popcnt_u32(mask)); }
};

// Eight samples of 3 bytes spread to 4 bytes each, the fourth zero. Reads the 24 bytes and no more: the upper lane is
// loaded from byte 8 on and takes bytes 12 to 23 of it.
__m256i SpreadSamples(const std::uint8_t* p) {
    const __m256i spread = _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1, //
                                            4, 5, 6, -1, 7, 8, 9, -1, 10, 11, 12, -1, 13, 14, 15, -1);
    const __m128i lower = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const __m128i upper = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 8));
    return _mm256_shuffle_epi8(_mm256_inserti128_si256(_mm256_castsi128_si256(lower), upper, 1), spread);
}

// Thirty-two samples of 3 bytes.
struct Steps3Bytes {
    static constexpr std::int32_t kSamples = 32;
    static constexpr std::int32_t kBytes = 96;

    std::uint32_t Mask(const std::uint8_t* a, const std::uint8_t* b) const {
        __m256i most = Difference(Load(a), Load(b));
        most = _mm256_max_epu8(most, Difference(Load(a + 32), Load(b + 32)));
        most = _mm256_max_epu8(most, Difference(Load(a + 64), Load(b + 64)));
        if (!AnyAbove(most, 13)) {
            return 0;
        }
        std::uint32_t mask = 0;
        for (int i = 0; i < 4; ++i) {
            mask |= LargeSteps(Difference(SpreadSamples(a + 24 * i), SpreadSamples(b + 24 * i))) << (8 * i);
        }
        return mask;
    }

    static std::uint32_t Count(std::uint32_t mask) { return static_cast<std::uint32_t>(_mm_popcnt_u32(mask)); }
};

} // namespace

constinit const RowKernels kAvx2Kernels =
    VectorKernels<Vector, Steps4Bytes<0xFFFFFFFFu, 12>, Steps3Bytes, Steps4Bytes<0x00FFFFFFu, 13>>("avx2", HasAvx2);
