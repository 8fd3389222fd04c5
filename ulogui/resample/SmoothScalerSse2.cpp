// The SSE2 kernel of the smooth scaler for 4-byte pixels, the baseline of every x86-64 processor (this
// file is built for x86-64 only): the four channels of a pixel travel together in one register, and
// each pmaddwd applies a pair of taps. It computes exactly what the scalar kernel computes (the same
// integer sums and shifts), which the tests check on random pictures.
#include <cstdint>
#include <cstring>
#include <vector>

#include "resample/SmoothScaler.h"
#include "resample/SmoothScalerStrip.h"

#include <emmintrin.h>

namespace ulogui {
namespace resample {
namespace smooth {

namespace {

__m128i LoadPixel(const unsigned char* p) {
    std::int32_t v;
    std::memcpy(&v, p, sizeof v);
    return _mm_cvtsi32_si128(v);
}

// The horizontal pass of one source row for the strip's columns: four 16-bit channels per column.
void FilterRow(const unsigned char* row, const AxisTaps& xs, int first, int columns, std::int16_t* out) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i round = _mm_set1_epi32(1 << (kHorizontalShift - 1));
    for (int x = 0; x < columns; ++x) {
        __m128i sum = round;
        const int end = xs.start[first + x + 1];
        for (int t = xs.start[first + x]; t < end; t += 2) {
            // b0 b1 g0 g1 r0 r1 a0 a1 as 16-bit lanes, against w0 w1 in every pair.
            const __m128i a = LoadPixel(row + static_cast<std::ptrdiff_t>(xs.index[t]) * 4);
            const __m128i b = LoadPixel(row + static_cast<std::ptrdiff_t>(xs.index[t + 1]) * 4);
            const __m128i pair = _mm_unpacklo_epi8(_mm_unpacklo_epi8(a, b), zero);
            sum = _mm_add_epi32(sum, _mm_madd_epi16(pair, _mm_set1_epi32(xs.pairWeight[t / 2])));
        }
        const __m128i h = _mm_srai_epi32(sum, kHorizontalShift);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + 4 * x), _mm_packs_epi32(h, h));
    }
}

struct RowPair {
    const std::int16_t* a;
    const std::int16_t* b;
    __m128i weights;
};

void ScaleStrip(const Job& job, int first, int last) {
    const AxisTaps& xs = *job.xs;
    const AxisTaps& ys = *job.ys;
    const int columns = last - first;
    StripRing<std::int16_t> ring(job, first, last, 4);
    std::vector<RowPair> pairs;
    // Without PICTBITS_ALPHA the alpha reads as 0, so the output alpha is 0.
    const __m128i keep = job.format == PixelFormat::kRgba32 ? _mm_set1_epi32(-1) : _mm_set1_epi32(0x00FFFFFF);
    const __m128i round = _mm_set1_epi32(1 << (kVerticalShift - 1));

    for (int y = 0; y < job.rows; ++y) {
        const int t0 = ys.start[y];
        const int t1 = ys.start[y + 1];
        ring.Prepare(y, [&](std::int32_t r, std::int16_t* out) {
            FilterRow(ring.SourceRow(r), xs, first, columns, out);
        });
        pairs.clear();
        for (int t = t0; t < t1; t += 2) {
            pairs.push_back(
                {ring.Row(ys.index[t]), ring.Row(ys.index[t + 1]), _mm_set1_epi32(ys.pairWeight[t / 2])});
        }
        unsigned char* out = ring.TargetRow(y, 4);
        int x = 0;
        for (; x + 2 <= columns; x += 2) {
            __m128i sum0 = round;
            __m128i sum1 = round;
            for (const RowPair& p : pairs) {
                const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p.a + 4 * x));
                const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p.b + 4 * x));
                sum0 = _mm_add_epi32(sum0, _mm_madd_epi16(_mm_unpacklo_epi16(a, b), p.weights));
                sum1 = _mm_add_epi32(sum1, _mm_madd_epi16(_mm_unpackhi_epi16(a, b), p.weights));
            }
            const __m128i words =
                _mm_packs_epi32(_mm_srai_epi32(sum0, kVerticalShift), _mm_srai_epi32(sum1, kVerticalShift));
            _mm_storel_epi64(reinterpret_cast<__m128i*>(out + 4 * x),
                             _mm_and_si128(_mm_packus_epi16(words, words), keep));
        }
        if (x < columns) {
            __m128i sum = round;
            for (const RowPair& p : pairs) {
                const __m128i a = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p.a + 4 * x));
                const __m128i b = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p.b + 4 * x));
                sum = _mm_add_epi32(sum, _mm_madd_epi16(_mm_unpacklo_epi16(a, b), p.weights));
            }
            const __m128i words = _mm_packs_epi32(_mm_srai_epi32(sum, kVerticalShift), _mm_setzero_si128());
            const std::int32_t pixel = _mm_cvtsi128_si32(_mm_and_si128(_mm_packus_epi16(words, words), keep));
            std::memcpy(out + 4 * x, &pixel, sizeof pixel);
        }
    }
}

}  // namespace

void ScaleColumnsSse2(const Job& job, int first, int last) {
    ScaleStrip(job, first, last);
}

}  // namespace smooth
}  // namespace resample
}  // namespace ulogui
