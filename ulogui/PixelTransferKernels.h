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

#include "ulogui/PixelTransferKernelSet.h"

namespace ulogui {
namespace transfer {
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

// Lane-wise where(mask, a, b) for all-ones / all-zeros masks.
template <class V>
inline V Select(V mask, V a, V b) {
    return (a & mask) | (b & ~mask);
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

// (f * k + dst * (255 - k)) / 255, truncated, on all four bytes.
template <class U16, class U32>
inline U32 MixDivide255(U32 dst, U32 fs, int k) {
    const U16 d = As<U16>(dst);
    const U16 f = As<U16>(fs);
    const uint16_t fw = static_cast<uint16_t>(k);
    const uint16_t dw = static_cast<uint16_t>(255 - k);
    const U16 lo = Divide255((f & 0xFF) * fw + (d & 0xFF) * dw);
    const U16 hi = Divide255((f >> 8) * fw + (d >> 8) * dw);
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
        Store(dst + 4 * x, Select(As<U32>(s >= kAlphaByte), d, out));
    }
    return x;
}

// W2.
template <int Bytes>
int SourceAlphaOpacityKernel(unsigned char* dst, const unsigned char* fs, int count, int k) {
    using U16 = typename Lanes<Bytes>::U16;
    using U32 = typename Lanes<Bytes>::U32;
    using I32 = typename Lanes<Bytes>::I32;
    constexpr int n = Lanes<Bytes>::kPixels;
    const U16 kw = U16{} + static_cast<uint16_t>(k);
    int x = 0;
    for (; x + n <= count; x += n) {
        const U32 d = Load<U32>(dst + 4 * x);
        const U32 s = Load<U32>(fs + 4 * x);
        const U16 ww = ((255 - SpreadAlpha<U16>(s)) * kw) >> 8;
        const U32 mixed = MixShift8<U16>(d, s, 255 - ww, ww);
        const U32 out = (mixed & kColourBytes) | (d & kAlphaByte);
        const I32 keep = As<U32>(ww) == 0;
        Store(dst + 4 * x, Select(As<U32>(keep), d, out));
    }
    return x;
}

// W3.
template <int Bytes>
int OpacityKernel(unsigned char* dst, const unsigned char* fs, int count, int k) {
    using U16 = typename Lanes<Bytes>::U16;
    using U32 = typename Lanes<Bytes>::U32;
    constexpr int n = Lanes<Bytes>::kPixels;
    int x = 0;
    for (; x + n <= count; x += n) {
        const U32 d = Load<U32>(dst + 4 * x);
        const U32 s = Load<U32>(fs + 4 * x);
        const U32 mixed = MixDivide255<U16>(d, s, k);
        Store(dst + 4 * x, (mixed & kColourBytes) | (d & kAlphaByte));
    }
    return x;
}

// W3 over all four bytes.
template <int Bytes>
int OpacityAllBytesKernel(unsigned char* dst, const unsigned char* fs, int count, int k) {
    using U16 = typename Lanes<Bytes>::U16;
    using U32 = typename Lanes<Bytes>::U32;
    constexpr int n = Lanes<Bytes>::kPixels;
    int x = 0;
    for (; x + n <= count; x += n) {
        const U32 d = Load<U32>(dst + 4 * x);
        const U32 s = Load<U32>(fs + 4 * x);
        Store(dst + 4 * x, MixDivide255<U16>(d, s, k));
    }
    return x;
}

// W4. The per-pixel values (transparencies, weights) and the numerators live in 16-bit lanes, each
// pixel's values in both of its lanes; each colour byte is then divided in a 32-bit float lane of its
// own, because the divisor differs from pixel to pixel.
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
        const U16 c = (SpreadAlpha<U16>(d) * t) >> 8;
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

        const I32 transparentBackground = d >= kAlphaByte;
        out = Select(As<U32>(transparentBackground), (s & kColourBytes) | (As<U32>(t) << 24), out);
        const I32 keep = As<U32>(w) == 0;
        Store(dst + 4 * x, Select(As<U32>(keep), d, out));
    }
    return x;
}

template <int Bytes>
constexpr KernelSet MakeKernelSet() {
    return KernelSet{&PlainColourKernel<Bytes>,        &SourceAlphaKernel<Bytes>,
                     &SourceAlphaOpacityKernel<Bytes>, &OpacityKernel<Bytes>,
                     &OpacityAllBytesKernel<Bytes>,    &OntoAlphaKernel<Bytes>};
}

}  // namespace
}  // namespace transfer
}  // namespace ulogui
