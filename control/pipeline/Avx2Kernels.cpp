#include "control/pipeline/RowLoops.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include <immintrin.h>

// Only the functions marked so may use what not every processor has: the rest of the program is built for
// any.
#define CINEDISC_AVX2 [[gnu::target("avx2")]]
#define CINEDISC_AVX2_PART [[gnu::target("avx2"), gnu::always_inline]] inline

namespace cinedisc {

namespace byEight {
namespace {

CINEDISC_AVX2_PART __m256i eightNumbers(const std::uint8_t* at) {
    return _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(at)));
}
CINEDISC_AVX2_PART __m256i eightNumbers(const std::int8_t* at) {
    return _mm256_cvtepi8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(at)));
}
CINEDISC_AVX2_PART __m256i eightNumbers(const std::uint16_t* at) {
    return _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)));
}
CINEDISC_AVX2_PART __m256i eightNumbers(const std::int16_t* at) {
    return _mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)));
}

template <typename Sample>
CINEDISC_AVX2_PART __m256i eightLevels(const Sample* at, __m256 slope, __m256 offset) {
    const __m256 values = _mm256_cvtepi32_ps(eightNumbers(at));
    return _mm256_cvttps_epi32(_mm256_add_ps(_mm256_mul_ps(values, slope), offset));
}

template <typename Sample>
CINEDISC_AVX2 void linear(const Sample* samples, const LinearRule& rule, std::uint8_t* into, int count) {
    const __m256 slope = _mm256_set1_ps(rule.slope), offset = _mm256_set1_ps(rule.offset);
    const __m256i flip = _mm256_set1_epi8(static_cast<char>(rule.flip));
    const __m256i inOrder = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    int x = 0;
    for (; x + 32 <= count; x += 32) {
        // Packing keeps within the range, from both sides.
        const __m256i low = _mm256_packs_epi32(eightLevels(samples + x, slope, offset),
                                               eightLevels(samples + x + 8, slope, offset));
        const __m256i high = _mm256_packs_epi32(eightLevels(samples + x + 16, slope, offset),
                                                eightLevels(samples + x + 24, slope, offset));
        const __m256i greys = _mm256_permutevar8x32_epi32(_mm256_packus_epi16(low, high), inOrder);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(into + x), _mm256_xor_si256(greys, flip));
    }
    loops::linear(samples + x, rule, into + x, count - x);
}

CINEDISC_AVX2_PART __m256i twice(const std::uint8_t* low, const std::uint8_t* high) {
    return _mm256_inserti128_si256(
        _mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(low))),
        _mm_loadu_si128(reinterpret_cast<const __m128i*>(high)), 1);
}

/// Sixteen results from two neighbours each. The greys are moved to -128 ... 127, as the multiplication of
/// bytes wants one of its sides signed; weights that add up to 256 then give a sum that just fits.
CINEDISC_AVX2 void enlarge(const std::uint8_t* row, const PairBlocks& blocks, std::uint16_t* into) {
    const __m256i middle = _mm256_set1_epi8(-128), lift = _mm256_set1_epi16(-32768);
    for (const auto& block : blocks.blocks()) {
        const __m256i near = twice(row + block.from[0], row + block.from[1]);
        const __m256i order = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(block.order.data()));
        const __m256i weights = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(block.weights.data()));
        const __m256i pairs = _mm256_xor_si256(_mm256_shuffle_epi8(near, order), middle);
        const __m256i sums = _mm256_maddubs_epi16(weights, pairs);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(into), _mm256_xor_si256(sums, lift));
        into += 16;
    }
}

template <typename Number>
CINEDISC_AVX2_PART __m256i eightOf(const Number* at) {
    static_assert(sizeof(Number) == 4);
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}

/// Eight results from at most four neighbours each, still in 32 bits.
CINEDISC_AVX2_PART __m256i eightSums(const std::uint8_t* row, const QuadBlocks::Block& block, int from) {
    const __m256i lowBytes = _mm256_set1_epi32(0x00FF00FF);
    const __m256i four =
        _mm256_i32gather_epi32(reinterpret_cast<const int*>(row), eightOf(block.from.data() + from), 1);
    const __m256i even =
        _mm256_madd_epi16(_mm256_and_si256(four, lowBytes), eightOf(block.even.data() + from));
    const __m256i odd = _mm256_madd_epi16(_mm256_and_si256(_mm256_srli_epi32(four, 8), lowBytes),
                                          eightOf(block.odd.data() + from));
    return _mm256_srli_epi32(_mm256_add_epi32(even, odd), 7);
}

CINEDISC_AVX2 void reduce(const std::uint8_t* row, const QuadBlocks& blocks, std::uint16_t* into) {
    for (const auto& block : blocks.blocks()) {
        const __m256i sums = _mm256_packus_epi32(eightSums(row, block, 0), eightSums(row, block, 8));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(into),
                            _mm256_permute4x64_epi64(sums, _MM_SHUFFLE(3, 1, 2, 0)));
        into += 16;
    }
}

CINEDISC_AVX2 void scale(const std::uint8_t* row, const AxisTable& columns, std::uint16_t* into) {
    if (!columns.pairs().empty()) return enlarge(row, columns.pairs(), into);
    if (!columns.quads().empty()) return reduce(row, columns.quads(), into);
    loops::scale(row, columns, into);
}

CINEDISC_AVX2 void packGrey(const std::uint8_t* grey, std::uint32_t* into, int count) {
    const __m256i alpha = _mm256_set1_epi32(static_cast<int>(0xFF000000));
    const __m256i spread = _mm256_setr_epi8(0, 0, 0, -1, 4, 4, 4, -1, 8, 8, 8, -1, 12, 12, 12, -1,  //
                                            0, 0, 0, -1, 4, 4, 4, -1, 8, 8, 8, -1, 12, 12, 12, -1);
    int x = 0;
    for (; x + 32 <= count; x += 32) {
        for (int part = x; part < x + 32; part += 8) {
            const __m256i pixels = _mm256_shuffle_epi8(eightNumbers(grey + part), spread);
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(into + part), _mm256_or_si256(pixels, alpha));
        }
    }
    loops::packGrey(grey + x, into + x, count - x);
}

CINEDISC_AVX2 void lookUpNarrow(const std::uint8_t* indices, const std::uint8_t* table, std::uint8_t* into,
                                int count) {
    loops::lookUp(indices, table, into, count);
}
CINEDISC_AVX2 void lookUpWide(const std::uint16_t* indices, const std::uint8_t* table, std::uint8_t* into,
                              int count) {
    loops::lookUp(indices, table, into, count);
}
CINEDISC_AVX2 void invert(std::uint8_t* row, int count) { loops::invert(row, count); }
CINEDISC_AVX2 void splitColors(const std::uint8_t* pixels, const RowSource::Channels& into, int count) {
    loops::splitColors(pixels, into, count);
}
CINEDISC_AVX2 void mix(const std::uint16_t* const* rows, const std::uint16_t* weights, int taps,
                       std::uint8_t* into, int count) {
    loops::mix(rows, weights, taps, into, count);
}
CINEDISC_AVX2 void packColor(const RowSource::Channels& colors, std::uint32_t* into, int count) {
    loops::packColor(colors, into, count);
}

}  // namespace
}  // namespace byEight

const RowKernels* RowKernels::avx2() {
    static constexpr RowKernels kernels{byEight::lookUpNarrow,
                                        byEight::lookUpWide,
                                        byEight::linear<std::uint8_t>,
                                        byEight::linear<std::int8_t>,
                                        byEight::linear<std::uint16_t>,
                                        byEight::linear<std::int16_t>,
                                        byEight::invert,
                                        byEight::splitColors,
                                        loops::pick,
                                        byEight::scale,
                                        byEight::mix,
                                        byEight::packGrey,
                                        byEight::packColor};
    return __builtin_cpu_supports("avx2") ? &kernels : nullptr;
}

}  // namespace cinedisc

#else

const cinedisc::RowKernels* cinedisc::RowKernels::avx2() { return nullptr; }

#endif
