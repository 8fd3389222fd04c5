// The AVX2 kernel of the smooth scaler for 4-byte pixels. It needs neighbouring tap pairs (true of
// every source wider than one pixel): both pixels of a pair come in with one load and a byte shuffle.
// Bilinear taps (one pair per output) are filtered four columns at a time, from one 32-byte load where
// the four pairs lie close together; area taps as runs of four neighbouring pixels; the vertical pass
// does eight pixels at a time. The file is built for AVX2 (x86-64 only) and entered only through the
// kernel table of SmoothScaler.cpp, at a level the processor check has found; the results are the
// scalar kernel's, bit for bit.
#include <cstdint>
#include <cstring>
#include <vector>

#include "resample/SmoothScaler.h"
#include "resample/SmoothScalerStrip.h"

#include <immintrin.h>

namespace ulogui {
namespace resample {
namespace smooth {

namespace {

// Pixels k and k + 1 channel by channel as 16-bit lanes: b0 b1 g0 g1 r0 r1 a0 a1.
inline __m128i LoadPair(const unsigned char* p) {
    const __m128i interleave = _mm_setr_epi8(0, -1, 4, -1, 1, -1, 5, -1, 2, -1, 6, -1, 3, -1, 7, -1);
    return _mm_shuffle_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)), interleave);
}

// Two such pairs, one per 128-bit lane.
inline __m256i LoadTwoPairs(const unsigned char* low, const unsigned char* high) {
    const __m256i interleave = _mm256_setr_epi8(0, -1, 4, -1, 1, -1, 5, -1, 2, -1, 6, -1, 3, -1, 7, -1, 0, -1,
                                                4, -1, 1, -1, 5, -1, 2, -1, 6, -1, 3, -1, 7, -1);
    const __m256i both = _mm256_inserti128_si256(
        _mm256_castsi128_si256(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(low))),
        _mm_loadl_epi64(reinterpret_cast<const __m128i*>(high)), 1);
    return _mm256_shuffle_epi8(both, interleave);
}

// The horizontal sum of one output column over one source row, shifted to 7 fraction bits.
inline __m128i FilterColumn(const unsigned char* row, const AxisTaps& xs, int column) {
    __m128i sum = _mm_set1_epi32(1 << (kHorizontalShift - 1));
    const int end = xs.start[column + 1];
    for (int t = xs.start[column]; t < end; t += 2) {
        const __m128i pair = LoadPair(row + static_cast<std::ptrdiff_t>(xs.index[t]) * 4);
        sum = _mm_add_epi32(sum, _mm_madd_epi16(pair, _mm_set1_epi32(xs.pairWeight[t / 2])));
    }
    return _mm_srai_epi32(sum, kHorizontalShift);
}

// One output column from its run of taps, four neighbouring source pixels per step.
inline __m128i FilterRun(const unsigned char* row, const AxisTaps& xs, int column) {
    const __m256i interleave = _mm256_setr_epi8(0, -1, 4, -1, 1, -1, 5, -1, 2, -1, 6, -1, 3, -1, 7, -1, 8, -1,
                                                12, -1, 9, -1, 13, -1, 10, -1, 14, -1, 11, -1, 15, -1);
    const unsigned char* p = row + static_cast<std::ptrdiff_t>(xs.runStart[column]) * 4;
    const std::int16_t* w = xs.runWeight.data() + static_cast<std::ptrdiff_t>(column) * xs.runLength * 4;
    __m256i sum = _mm256_setzero_si256();
    for (int k = 0; k < xs.runLength; k += 4) {
        // Pixels k..k+3 in both lanes, then pixels k, k+1 interleaved in the low lane and k+2, k+3 in the
        // high one.
        const __m256i four =
            _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 4 * k)));
        const __m256i weights = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(w + 4 * k));
        sum = _mm256_add_epi32(sum, _mm256_madd_epi16(_mm256_shuffle_epi8(four, interleave), weights));
    }
    const __m128i total =
        _mm_add_epi32(_mm_add_epi32(_mm256_castsi256_si128(sum), _mm256_extracti128_si256(sum, 1)),
                      _mm_set1_epi32(1 << (kHorizontalShift - 1)));
    return _mm_srai_epi32(total, kHorizontalShift);
}

void FilterRow(const unsigned char* row, const AxisTaps& xs, int first, int columns, std::int16_t* out) {
    int x = 0;
    if (!xs.quadStart.empty() && first % 4 == 0) {
        // Four columns from one 32-byte load: the permute puts each column's pair where the shuffles
        // interleave it, columns 0 and 2 in one register, 1 and 3 in the other.
        const __m256i low = _mm256_setr_epi8(0, -1, 4, -1, 1, -1, 5, -1, 2, -1, 6, -1, 3, -1, 7, -1, 0, -1, 4,
                                             -1, 1, -1, 5, -1, 2, -1, 6, -1, 3, -1, 7, -1);
        const __m256i high = _mm256_setr_epi8(8, -1, 12, -1, 9, -1, 13, -1, 10, -1, 14, -1, 11, -1, 15, -1, 8,
                                              -1, 12, -1, 9, -1, 13, -1, 10, -1, 14, -1, 11, -1, 15, -1);
        const __m256i round = _mm256_set1_epi32(1 << (kHorizontalShift - 1));
        for (; x + 4 <= columns; x += 4) {
            const int q = (first + x) / 4;
            const __m256i eight = _mm256_loadu_si256(
                reinterpret_cast<const __m256i*>(row + static_cast<std::ptrdiff_t>(xs.quadStart[q]) * 4));
            const __m256i order =
                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(&xs.quadPermute[8 * q]));
            const __m256i pairs = _mm256_permutevar8x32_epi32(eight, order);
            const __m256i* w = reinterpret_cast<const __m256i*>(&xs.quadWeight[16 * q]);
            const __m256i s02 = _mm256_srai_epi32(
                _mm256_add_epi32(_mm256_madd_epi16(_mm256_shuffle_epi8(pairs, low), _mm256_loadu_si256(w)),
                                 round),
                kHorizontalShift);
            const __m256i s13 = _mm256_srai_epi32(
                _mm256_add_epi32(
                    _mm256_madd_epi16(_mm256_shuffle_epi8(pairs, high), _mm256_loadu_si256(w + 1)), round),
                kHorizontalShift);
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 4 * x), _mm256_packs_epi32(s02, s13));
        }
    }
    if (!xs.onePair && xs.runLength != 0) {
        for (; x + 2 <= columns; x += 2) {
            const __m128i a = FilterRun(row, xs, first + x);
            const __m128i b = FilterRun(row, xs, first + x + 1);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4 * x), _mm_packs_epi32(a, b));
        }
    }
    if (xs.onePair && !xs.columnWeight.empty() && x + 4 <= columns) {
        // Column c's pair starts at tap 2c and has pair weight c.
        const std::int32_t* index = xs.index.data() + 2 * static_cast<std::ptrdiff_t>(first);
        // Each column's pair weight four times over, so two columns' weights are one 32-byte load.
        const std::int32_t* weight = xs.columnWeight.data() + 4 * static_cast<std::ptrdiff_t>(first);
        const __m256i round = _mm256_set1_epi32(1 << (kHorizontalShift - 1));
        for (; x + 4 <= columns; x += 4) {
            const __m256i p01 = LoadTwoPairs(row + static_cast<std::ptrdiff_t>(index[2 * x]) * 4,
                                             row + static_cast<std::ptrdiff_t>(index[2 * x + 2]) * 4);
            const __m256i p23 = LoadTwoPairs(row + static_cast<std::ptrdiff_t>(index[2 * x + 4]) * 4,
                                             row + static_cast<std::ptrdiff_t>(index[2 * x + 6]) * 4);
            const __m256i w01 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(weight + 4 * x));
            const __m256i w23 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(weight + 4 * x + 8));
            const __m256i s01 =
                _mm256_srai_epi32(_mm256_add_epi32(_mm256_madd_epi16(p01, w01), round), kHorizontalShift);
            const __m256i s23 =
                _mm256_srai_epi32(_mm256_add_epi32(_mm256_madd_epi16(p23, w23), round), kHorizontalShift);
            // Lanes hold columns 0, 2 | 1, 3; put them in order.
            const __m256i packed =
                _mm256_permute4x64_epi64(_mm256_packs_epi32(s01, s23), _MM_SHUFFLE(3, 1, 2, 0));
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 4 * x), packed);
        }
    }
    for (; x + 2 <= columns; x += 2) {
        const __m128i a = FilterColumn(row, xs, first + x);
        const __m128i b = FilterColumn(row, xs, first + x + 1);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4 * x), _mm_packs_epi32(a, b));
    }
    if (x < columns) {
        const __m128i a = FilterColumn(row, xs, first + x);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + 4 * x), _mm_packs_epi32(a, a));
    }
}

constexpr int kPrefetchRows = 3;

inline void PrefetchRange(const unsigned char* p, std::ptrdiff_t bytes) {
    for (std::ptrdiff_t i = 0; i < bytes; i += 64) {
        _mm_prefetch(reinterpret_cast<const char*>(p + i), _MM_HINT_T0);
    }
    _mm_prefetch(reinterpret_cast<const char*>(p + bytes - 1), _MM_HINT_T0);
}

struct RowPair {
    const std::int16_t* a;
    const std::int16_t* b;
    std::int32_t weights;
};

// Eight output pixels from the ring rows of the row's tap pairs (count of them).
inline __m256i BlendEight(const RowPair* pairs, int count, int x) {
    const __m256i round = _mm256_set1_epi32(1 << (kVerticalShift - 1));
    __m256i low0 = round;
    __m256i high0 = round;
    __m256i low1 = round;
    __m256i high1 = round;
    for (int k = 0; k < count; ++k) {
        const RowPair& p = pairs[k];
        const __m256i w = _mm256_set1_epi32(p.weights);
        const __m256i a0 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p.a + 4 * x));
        const __m256i b0 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p.b + 4 * x));
        const __m256i a1 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p.a + 4 * x + 16));
        const __m256i b1 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p.b + 4 * x + 16));
        // unpacklo: pixels 0 and 2 of four; unpackhi: pixels 1 and 3.
        low0 = _mm256_add_epi32(low0, _mm256_madd_epi16(_mm256_unpacklo_epi16(a0, b0), w));
        high0 = _mm256_add_epi32(high0, _mm256_madd_epi16(_mm256_unpackhi_epi16(a0, b0), w));
        low1 = _mm256_add_epi32(low1, _mm256_madd_epi16(_mm256_unpacklo_epi16(a1, b1), w));
        high1 = _mm256_add_epi32(high1, _mm256_madd_epi16(_mm256_unpackhi_epi16(a1, b1), w));
    }
    const __m256i words0 =
        _mm256_packs_epi32(_mm256_srai_epi32(low0, kVerticalShift), _mm256_srai_epi32(high0, kVerticalShift));
    const __m256i words1 =
        _mm256_packs_epi32(_mm256_srai_epi32(low1, kVerticalShift), _mm256_srai_epi32(high1, kVerticalShift));
    // Lanes hold pixels 0 1 4 5 | 2 3 6 7; put them in order.
    return _mm256_permute4x64_epi64(_mm256_packus_epi16(words0, words1), _MM_SHUFFLE(3, 1, 2, 0));
}

// One output pixel (in the low 4 bytes).
inline __m128i BlendOne(const RowPair* pairs, int count, int x) {
    __m128i sum = _mm_set1_epi32(1 << (kVerticalShift - 1));
    for (int k = 0; k < count; ++k) {
        const RowPair& p = pairs[k];
        const __m128i a = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p.a + 4 * x));
        const __m128i b = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p.b + 4 * x));
        sum = _mm_add_epi32(sum, _mm_madd_epi16(_mm_unpacklo_epi16(a, b), _mm_set1_epi32(p.weights)));
    }
    const __m128i words = _mm_packs_epi32(_mm_srai_epi32(sum, kVerticalShift), _mm_setzero_si128());
    return _mm_packus_epi16(words, words);
}

inline void WriteOne(unsigned char* out, __m128i pixel, std::int32_t keepMask) {
    const std::int32_t value = _mm_cvtsi128_si32(pixel) & keepMask;
    std::memcpy(out, &value, sizeof value);
}

// One output row of the strip. OnePair: the row has exactly one tap pair (bilinear), which then stays
// in registers. KeepAlpha: otherwise the alpha byte is cleared.
template <bool OnePair, bool KeepAlpha>
void BlendRow(const RowPair* pairs, int pairCount, int columns, unsigned char* out) {
    const int count = OnePair ? 1 : pairCount;
    const std::int32_t keepMask = KeepAlpha ? -1 : 0x00FFFFFF;
    const __m256i keep = _mm256_set1_epi32(keepMask);
    int x = 0;
    for (; x + 8 <= columns; x += 8) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 4 * x),
                            _mm256_and_si256(BlendEight(pairs, count, x), keep));
    }
    for (; x < columns; ++x) {
        WriteOne(out + 4 * x, BlendOne(pairs, count, x), keepMask);
    }
}

void BlendRowFor(const std::vector<RowPair>& pairs, bool keepAlpha, int columns, unsigned char* out) {
    const int count = static_cast<int>(pairs.size());
    if (count == 1) {
        keepAlpha ? BlendRow<true, true>(pairs.data(), count, columns, out)
                  : BlendRow<true, false>(pairs.data(), count, columns, out);
    } else {
        keepAlpha ? BlendRow<false, true>(pairs.data(), count, columns, out)
                  : BlendRow<false, false>(pairs.data(), count, columns, out);
    }
}

void ScaleStrip(const Job& job, int first, int last) {
    const AxisTaps& xs = *job.xs;
    const AxisTaps& ys = *job.ys;
    const int columns = last - first;
    StripRing<std::int16_t> ring(job, first, last, 4);
    std::vector<RowPair> pairs;
    const bool keepAlpha = job.format == PixelFormat::kRgba32;
    // The bytes of a source row that the strip reads. Rows a little ahead are fetched into the cache
    // while the current one is filtered: each row of a tall picture lies on a page of its own, which
    // the processor does not prefetch across.
    const std::ptrdiff_t stripBegin = static_cast<std::ptrdiff_t>(xs.index[xs.start[first]]) * 4;
    const std::ptrdiff_t stripBytes =
        (static_cast<std::ptrdiff_t>(xs.index[xs.start[last] - 1]) + 1) * 4 - stripBegin;
    for (int y = 0; y < job.rows; ++y) {
        const int t0 = ys.start[y];
        const int t1 = ys.start[y + 1];
        ring.Prepare(y, [&](std::int32_t r, std::int16_t* out) {
            const unsigned char* row = ring.SourceRow(r);
            if (r + kPrefetchRows < job.source.Height()) {
                PrefetchRange(ring.SourceRow(r + kPrefetchRows) + stripBegin, stripBytes);
            }
            FilterRow(row, xs, first, columns, out);
        });
        pairs.clear();
        for (int t = t0; t < t1; t += 2) {
            pairs.push_back({ring.Row(ys.index[t]), ring.Row(ys.index[t + 1]), ys.pairWeight[t / 2]});
        }
        unsigned char* out = ring.TargetRow(y, 4);
        BlendRowFor(pairs, keepAlpha, columns, out);
    }
}

}  // namespace

void ScaleColumnsAvx2(const Job& job, int first, int last) {
    ScaleStrip(job, first, last);
}

}  // namespace smooth
}  // namespace resample
}  // namespace ulogui
