#pragma once
// The vector kernels of the blending wrappers, written once over the vector width with the compiler's
// generic vectors (GCC and Clang): a translation unit includes this header and instantiates the kernels
// at the width its target supports. Everything here has internal linkage on purpose, so that kernels
// compiled for a wider instruction set never stand in for the same code of another unit.
//
// Each kernel mixes whole vectors of pixels, dst[i] with the source colour fs[i] (bytes 0..2 the
// functor's result, byte 3 the source's alpha) exactly as the scalar wrapper of the same name does, and
// returns how many pixels it did; the caller finishes the row with the scalar wrapper.
//
// Two tricks keep everything in lane-wise operations, with no shuffles:
// - A 32-bit pixel seen as two 16-bit lanes holds (blue | green << 8) and (red | alpha << 8), so
//   `v & 0xFF` gives blue and red and `v >> 8` gives green and alpha, each in a 16-bit lane where a
//   product of two bytes fits. The two halves are joined back as lo | hi << 8.
// - Divisions become multiplications. The truncating division by 255 of a product sum x <= 255 * 255
//   is the high half of x * 0x8081 shifted right by 7. The compositing division by d (1..255) of a
//   numerator n <= 255 * d is trunc(n * r) in single precision with r = kReciprocalScale / d: the scale,
//   a little above 1, lifts an exact quotient safely above its integer, and stays far below the
//   distance 1 / d that separates any other quotient from the next integer.
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

#include "pixelops/PixelTransferKernelSet.h"

namespace ulogui {
namespace pixelops {
namespace {

constexpr float kReciprocalScale = 1.0f + 1.0f / (1 << 20);
constexpr uint16_t kDivide255Multiplier = 0x8081;
constexpr int kDivide255Shift = 7;

template <int Bytes>
struct Lanes {
    typedef uint16_t U16 __attribute__((vector_size(Bytes)));
    typedef uint32_t U32 __attribute__((vector_size(Bytes)));
    typedef int32_t I32 __attribute__((vector_size(Bytes)));
    typedef float F32 __attribute__((vector_size(Bytes)));
    typedef int8_t I8 __attribute__((vector_size(Bytes)));
    typedef uint64_t U64 __attribute__((vector_size(Bytes)));
    static constexpr int kPixels = Bytes / 4;
};

// Same bits, other lane type.
template <class To, class From>
inline To As(From v) {
    static_assert(sizeof(To) == sizeof(From), "a reinterpretation keeps the vector size");
    return (To)v;
}

template <class V>
inline V Load(const unsigned char* p) {
    V v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

template <class V>
inline void Store(unsigned char* p, const V& v) {
    std::memcpy(p, &v, sizeof v);
}

// Lane-wise mask ? a : b for a comparison result of the lanes' width (a mask register where the
// instruction set has them).
template <class M, class V>
inline V Select(M mask, V a, V b) {
    return mask ? a : b;
}

// (dst * dw + f * fw) >> 8 on the lo and hi halves of 32-bit pixels; weights are per 16-bit lane.
template <class U16, class U32>
inline U32 MixShift8(U32 dst, U32 fs, U16 dw, U16 fw) {
    const U16 d = As<U16>(dst);
    const U16 f = As<U16>(fs);
    const U16 lo = ((d & 0xFF) * dw + (f & 0xFF) * fw) >> 8;
    const U16 hi = ((d >> 8) * dw + (f >> 8) * fw) >> 8;
    const U16 joined = lo | (hi << 8);
    return As<U32>(joined);
}

// The high 16 bits of each lane's 32-bit product: one instruction on x86, widened arithmetic elsewhere.
template <int Bytes>
struct HighProduct {
    template <class U16>
    static U16 Of(U16 a, U16 b) {
        using Wide = typename Lanes<2 * Bytes>::U32;
        const Wide product = __builtin_convertvector(a, Wide) * __builtin_convertvector(b, Wide);
        return __builtin_convertvector(product >> 16, U16);
    }
};
#if defined(__SSE2__)
template <>
struct HighProduct<16> {
    template <class U16>
    static U16 Of(U16 a, U16 b) {
        return (U16)_mm_mulhi_epu16((__m128i)a, (__m128i)b);
    }
};
#endif
#if defined(__AVX2__)
template <>
struct HighProduct<32> {
    template <class U16>
    static U16 Of(U16 a, U16 b) {
        return (U16)_mm256_mulhi_epu16((__m256i)a, (__m256i)b);
    }
};
#endif
#if defined(__AVX512BW__)
template <>
struct HighProduct<64> {
    template <class U16>
    static U16 Of(U16 a, U16 b) {
        return (U16)_mm512_mulhi_epu16((__m512i)a, (__m512i)b);
    }
};
#endif

template <class U16>
inline U16 MulHigh(U16 a, U16 b) {
    return HighProduct<sizeof(U16)>::Of(a, b);
}

// x / 255, truncated, for x <= 255 * 255.
template <class U16>
inline U16 Divide255(U16 x) {
    return MulHigh(x, U16{} + kDivide255Multiplier) >> kDivide255Shift;
}

// (f * fw + dst * dw) / 255, truncated, with weights per 16-bit lane (fw + dw = 255 in every lane):
// one pair for the blue and red lanes, one for the green and alpha lanes.
template <class U16>
struct OpacityWeights {
    // The weights of W3; with keepAlpha the alpha lanes weigh the background alone ((dst * 255) / 255
    // is dst exactly), so the mix leaves the alpha byte as it was.
    template <class U32>
    static OpacityWeights Make(int k, bool keepAlpha) {
        const uint32_t f = static_cast<uint32_t>(k);
        const uint32_t d = static_cast<uint32_t>(255 - k);
        OpacityWeights w;
        w.srcLo = As<U16>(U32{} + (f | f << 16));
        w.dstLo = As<U16>(U32{} + (d | d << 16));
        w.srcHi = keepAlpha ? As<U16>(U32{} + f) : w.srcLo;
        w.dstHi = keepAlpha ? As<U16>(U32{} + (d | 255u << 16)) : w.dstLo;
        return w;
    }
    U16 srcLo, dstLo, srcHi, dstHi;
};

template <class U16, class U32>
inline U32 MixDivide255(U32 dst, U32 fs, const OpacityWeights<U16>& w) {
    const U16 d = As<U16>(dst);
    const U16 f = As<U16>(fs);
    const U16 lo = Divide255((f & 0xFF) * w.srcLo + (d & 0xFF) * w.dstLo);
    const U16 hi = Divide255((f >> 8) * w.srcHi + (d >> 8) * w.dstHi);
    const U16 joined = lo | (hi << 8);
    return As<U32>(joined);
}

// A per-pixel weight (< 256) in both 16-bit lanes of each pixel.
template <class U16, class U32>
inline U16 SpreadWeight(U32 w) {
    const U32 both = w | (w << 16);
    return As<U16>(both);
}

// Each pixel's alpha byte in both of its 16-bit lanes: a byte shuffle where there is one.
template <int Bytes>
struct AlphaSpread {
    template <class U16, class U32>
    static U16 Of(U32 pixels) {
        return SpreadWeight<U16>(pixels >> 24);
    }
};
// Shuffle indices that move byte 3 of each pixel to bytes 0 and 2 and zero bytes 1 and 3 (indices count
// within 16-byte lanes, as the x86 byte shuffles do).
template <int Bytes>
inline auto AlphaSpreadIndices() {
    typename Lanes<Bytes>::I8 indices;
    for (int i = 0; i < Bytes; ++i) {
        indices[i] = static_cast<int8_t>(i % 2 == 0 ? (i % 16) / 4 * 4 + 3 : -128);
    }
    return indices;
}
#if defined(__AVX2__)
template <>
struct AlphaSpread<32> {
    template <class U16, class U32>
    static U16 Of(U32 pixels) {
        return (U16)_mm256_shuffle_epi8((__m256i)pixels, (__m256i)AlphaSpreadIndices<32>());
    }
};
#endif
#if defined(__AVX512BW__)
template <>
struct AlphaSpread<64> {
    template <class U16, class U32>
    static U16 Of(U32 pixels) {
        return (U16)_mm512_shuffle_epi8((__m512i)pixels, (__m512i)AlphaSpreadIndices<64>());
    }
};
#endif

template <class U16, class U32>
inline U16 SpreadAlpha(U32 pixels) {
    return AlphaSpread<sizeof(U32)>::template Of<U16>(pixels);
}

// Product of 32-bit lanes whose values are below 2^16: the 16-bit multiply of the low halves, the high
// halves being zero (a 32-bit multiply costs several instructions without SSE4.1).
template <class U16, class U32>
inline U32 Mul16(U32 a, U32 b) {
    const U16 p = As<U16>(a) * As<U16>(b);
    return As<U32>(p);
}

constexpr uint32_t kColourBytes = 0x00FFFFFFu;
constexpr uint32_t kAlphaByte = 0xFF000000u;

// W0 with PixelCopy: the colour of fs, the alpha of dst.
template <int Bytes>
int PlainColourKernel(unsigned char* dst, const unsigned char* fs, int count, int) {
    using U32 = typename Lanes<Bytes>::U32;
    constexpr int n = Lanes<Bytes>::kPixels;
    int x = 0;
    for (; x + n <= count; x += n) {
        const U32 d = Load<U32>(dst + 4 * x);
        const U32 s = Load<U32>(fs + 4 * x);
        Store(dst + 4 * x, (s & kColourBytes) | (d & kAlphaByte));
    }
    return x;
}

// W1.
template <int Bytes>
int SourceAlphaKernel(unsigned char* dst, const unsigned char* fs, int count, int) {
    using U16 = typename Lanes<Bytes>::U16;
    using U32 = typename Lanes<Bytes>::U32;
    constexpr int n = Lanes<Bytes>::kPixels;
    int x = 0;
    for (; x + n <= count; x += n) {
        const U32 d = Load<U32>(dst + 4 * x);
        const U32 s = Load<U32>(fs + 4 * x);
        const U16 aw = SpreadAlpha<U16>(s);
        const U32 mixed = MixShift8<U16>(d, s, aw, 255 - aw);
        const U32 out = (mixed & kColourBytes) | (d & kAlphaByte);
        Store(dst + 4 * x, Select(s >= kAlphaByte, d, out));
    }
    return x;
}

// W2.
template <int Bytes>
int SourceAlphaOpacityKernel(unsigned char* dst, const unsigned char* fs, int count, int k) {
    using U16 = typename Lanes<Bytes>::U16;
    using U32 = typename Lanes<Bytes>::U32;
    constexpr int n = Lanes<Bytes>::kPixels;
    const U16 kw = U16{} + static_cast<uint16_t>(k);
    int x = 0;
    for (; x + n <= count; x += n) {
        const U32 d = Load<U32>(dst + 4 * x);
        const U32 s = Load<U32>(fs + 4 * x);
        const U16 ww = ((255 - SpreadAlpha<U16>(s)) * kw) >> 8;
        const U32 mixed = MixShift8<U16>(d, s, 255 - ww, ww);
        const U32 out = (mixed & kColourBytes) | (d & kAlphaByte);
        const auto keep = As<U32>(ww) == 0;
        Store(dst + 4 * x, Select(keep, d, out));
    }
    return x;
}

// W3 through the x86 byte-pair multiply-add, where there is one (AVX2, AVX-512BW): the background and
// the functor's bytes are interleaved in pairs, offset by -128 to fit the signed operand, and one
// instruction forms f * k + dst * (255 - k) - 128 * 255 per byte; adding 128 * 255 back gives the
// product sum (no partial sum can saturate: each lies within +-128 * 255). Packing with unsigned
// saturation puts the bytes back in their order. Weights come as 16-bit pairs (low byte for f, high
// byte for dst), (0, 255) in the alpha lanes when the alpha byte is kept.
//
// BytePairs<Bytes> names the instructions of one width that the generic vectors cannot express.
template <int Bytes>
struct BytePairs {
    static constexpr bool kAvailable = false;
};
#if defined(__AVX2__)
template <>
struct BytePairs<32> {
    static constexpr bool kAvailable = true;
    using V = __m256i;
    static V InterleaveLow(V a, V b) { return _mm256_unpacklo_epi8(a, b); }
    static V InterleaveHigh(V a, V b) { return _mm256_unpackhi_epi8(a, b); }
    static V MultiplyAdd(V weights, V pairs) { return _mm256_maddubs_epi16(weights, pairs); }
    static V PackSaturated(V lo, V hi) { return _mm256_packus_epi16(lo, hi); }
};
#endif
#if defined(__AVX512BW__)
template <>
struct BytePairs<64> {
    static constexpr bool kAvailable = true;
    using V = __m512i;
    static V InterleaveLow(V a, V b) { return _mm512_unpacklo_epi8(a, b); }
    static V InterleaveHigh(V a, V b) { return _mm512_unpackhi_epi8(a, b); }
    static V MultiplyAdd(V weights, V pairs) { return _mm512_maddubs_epi16(weights, pairs); }
    static V PackSaturated(V lo, V hi) { return _mm512_packus_epi16(lo, hi); }
};
#endif

constexpr uint64_t PairedWeights(int k, bool keepAlpha) {
    const uint64_t colour = static_cast<uint64_t>(k) | static_cast<uint64_t>(255 - k) << 8;
    const uint64_t alpha = keepAlpha ? 255u << 8 : colour;
    return colour | colour << 16 | colour << 32 | alpha << 48;
}

template <int Bytes>
struct PairedMix {
    using Ops = BytePairs<Bytes>;
    using V = typename Ops::V;
    using U16 = typename Lanes<Bytes>::U16;
    using U64 = typename Lanes<Bytes>::U64;

    static V Weights(int k, bool keepAlpha) { return As<V>(U64{} + PairedWeights(k, keepAlpha)); }
    static V Mix(V d, V f, V weights) {
        const U64 bias = U64{} + 0x8080808080808080u;
        const V fb = As<V>(As<U64>(f) ^ bias);
        const V db = As<V>(As<U64>(d) ^ bias);
        const U16 lo = As<U16>(Ops::MultiplyAdd(weights, Ops::InterleaveLow(fb, db))) + 128 * 255;
        const U16 hi = As<U16>(Ops::MultiplyAdd(weights, Ops::InterleaveHigh(fb, db))) + 128 * 255;
        return Ops::PackSaturated(As<V>(Divide255(lo)), As<V>(Divide255(hi)));
    }
};

// W3 (keepAlpha) and W3 over all four bytes.
template <int Bytes, bool KeepAlpha>
int OpacityMixKernel(unsigned char* dst, const unsigned char* fs, int count, int k) {
    using U16 = typename Lanes<Bytes>::U16;
    using U32 = typename Lanes<Bytes>::U32;
    constexpr int n = Lanes<Bytes>::kPixels;
    int x = 0;
    if constexpr (BytePairs<Bytes>::kAvailable) {
        using Native = typename PairedMix<Bytes>::V;
        const Native weights = PairedMix<Bytes>::Weights(k, KeepAlpha);
        for (; x + n <= count; x += n) {
            const Native d = Load<Native>(dst + 4 * x);
            const Native s = Load<Native>(fs + 4 * x);
            Store(dst + 4 * x, PairedMix<Bytes>::Mix(d, s, weights));
        }
    } else {
        const auto weights = OpacityWeights<U16>::template Make<U32>(k, KeepAlpha);
        for (; x + n <= count; x += n) {
            const U32 d = Load<U32>(dst + 4 * x);
            const U32 s = Load<U32>(fs + 4 * x);
            Store(dst + 4 * x, MixDivide255(d, s, weights));
        }
    }
    return x;
}

// W4. The per-pixel values (transparencies, weights) and the numerators live in 16-bit lanes, each
// pixel's values in both of its lanes; each colour byte is then divided in a 32-bit float lane of its
// own, because the divisor differs from pixel to pixel.
//
// A fully transparent background (b = 255) needs no case of its own: counted as b = 256 it gives
// c = t, so the background's weight t - c is 0 and the source's weight equals the divisor 255 - t
// (at least 1 whenever the pixel is not kept): out = f exactly, with alpha c = t.
template <int Bytes>
int OntoAlphaKernel(unsigned char* dst, const unsigned char* fs, int count, int k) {
    using U16 = typename Lanes<Bytes>::U16;
    using U32 = typename Lanes<Bytes>::U32;
    using I32 = typename Lanes<Bytes>::I32;
    using F32 = typename Lanes<Bytes>::F32;
    constexpr int n = Lanes<Bytes>::kPixels;
    const U16 kw = U16{} + static_cast<uint16_t>(k);
    int x = 0;
    for (; x + n <= count; x += n) {
        const U32 d = Load<U32>(dst + 4 * x);
        const U32 s = Load<U32>(fs + 4 * x);
        const U16 w = ((255 - SpreadAlpha<U16>(s)) * kw) >> 8;
        const U16 t = 255 - w;
        const U16 b = SpreadAlpha<U16>(d);
        const U16 c = ((b + (b == 255 ? U16{} + 1 : U16{})) * t) >> 8;
        const U16 dstWeight = t - c;
        const U16 srcWeight = 255 - t;
        const I32 divisor = As<I32>(As<U32>(255 - c) & 0xFFFF);
        const F32 reciprocal = kReciprocalScale / __builtin_convertvector(divisor, F32);

        const U16 d16 = As<U16>(d);
        const U16 f16 = As<U16>(s);
        const U32 lo = As<U32>((d16 & 0xFF) * dstWeight + (f16 & 0xFF) * srcWeight);  // blue, red
        const U32 hi = As<U32>((d16 >> 8) * dstWeight + (f16 >> 8) * srcWeight);      // green, (alpha)
        const auto quotient = [&](U32 numerator) {
            const F32 q = __builtin_convertvector(As<I32>(numerator), F32) * reciprocal;
            return As<U32>(__builtin_convertvector(q, I32));
        };
        U32 out = quotient(lo & 0xFFFF) | (quotient(hi & 0xFFFF) << 8) | (quotient(lo >> 16) << 16) |
                  (As<U32>(c) << 24);

        const auto keep = As<U32>(w) == 0;
        Store(dst + 4 * x, Select(keep, d, out));
    }
    return x;
}

template <int Bytes>
constexpr KernelSet MakeKernelSet() {
    return KernelSet{&PlainColourKernel<Bytes>,        &SourceAlphaKernel<Bytes>,
                     &SourceAlphaOpacityKernel<Bytes>, &OpacityMixKernel<Bytes, true>,
                     &OpacityMixKernel<Bytes, false>,  &OntoAlphaKernel<Bytes>};
}

}  // namespace
}  // namespace pixelops
}  // namespace ulogui
