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
// - The truncating division by 255 of a product sum x <= 255 * 255 is (x + 1 + (x >> 8)) >> 8, and
//   the compositing division by d (1..255) of a numerator n <= 255 * d is
//   trunc(n * (1.0f / d) + kQuotientNudge) in single precision: the rounding errors stay far below the
//   nudge, and the nudge far below the distance 1 / d between a quotient and the next integer.
#include <cstdint>
#include <cstring>

#include "ulogui/PixelTransferKernelSet.h"

namespace ulogui {
namespace transfer {
namespace {

constexpr float kQuotientNudge = 1.0f / 1024.0f;

template <int Bytes>
struct Lanes {
    typedef uint16_t U16 __attribute__((vector_size(Bytes)));
    typedef uint32_t U32 __attribute__((vector_size(Bytes)));
    typedef int32_t I32 __attribute__((vector_size(Bytes)));
    typedef float F32 __attribute__((vector_size(Bytes)));
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

// (f * k + dst * (255 - k)) / 255, truncated, on all four bytes.
template <class U16, class U32>
inline U32 MixDivide255(U32 dst, U32 fs, int k) {
    const U16 d = As<U16>(dst);
    const U16 f = As<U16>(fs);
    const uint16_t fw = static_cast<uint16_t>(k);
    const uint16_t dw = static_cast<uint16_t>(255 - k);
    U16 lo = (f & 0xFF) * fw + (d & 0xFF) * dw;
    U16 hi = (f >> 8) * fw + (d >> 8) * dw;
    lo = (lo + 1 + (lo >> 8)) >> 8;
    hi = (hi + 1 + (hi >> 8)) >> 8;
    const U16 joined = lo | (hi << 8);
    return As<U32>(joined);
}

// A per-pixel weight (< 256) in both 16-bit lanes of each pixel.
template <class U16, class U32>
inline U16 SpreadWeight(U32 w) {
    const U32 both = w | (w << 16);
    return As<U16>(both);
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
        const U32 a = s >> 24;
        const U16 aw = SpreadWeight<U16>(a);
        const U32 mixed = MixShift8<U16>(d, s, aw, 255 - aw);
        const U32 out = (mixed & kColourBytes) | (d & kAlphaByte);
        Store(dst + 4 * x, Select(As<U32>(a == 255), d, out));
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
    const U32 kw = U32{} + static_cast<uint32_t>(k);
    int x = 0;
    for (; x + n <= count; x += n) {
        const U32 d = Load<U32>(dst + 4 * x);
        const U32 s = Load<U32>(fs + 4 * x);
        const U32 w = Mul16<U16>(255 - (s >> 24), kw) >> 8;
        const U16 ww = SpreadWeight<U16>(w);
        const U32 mixed = MixShift8<U16>(d, s, 255 - ww, ww);
        const U32 out = (mixed & kColourBytes) | (d & kAlphaByte);
        const I32 keep = w == 0;
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

// W4, in 32-bit lanes (one pixel per lane, one colour byte at a time) because the compositing
// divisor differs from pixel to pixel.
template <int Bytes>
int OntoAlphaKernel(unsigned char* dst, const unsigned char* fs, int count, int k) {
    using U16 = typename Lanes<Bytes>::U16;
    using U32 = typename Lanes<Bytes>::U32;
    using I32 = typename Lanes<Bytes>::I32;
    using F32 = typename Lanes<Bytes>::F32;
    constexpr int n = Lanes<Bytes>::kPixels;
    const U32 kw = U32{} + static_cast<uint32_t>(k);
    int x = 0;
    for (; x + n <= count; x += n) {
        const U32 d = Load<U32>(dst + 4 * x);
        const U32 s = Load<U32>(fs + 4 * x);
        const U32 w = Mul16<U16>(255 - (s >> 24), kw) >> 8;
        const U32 t = 255 - w;
        const U32 b = d >> 24;
        const U32 c = Mul16<U16>(b, t) >> 8;
        const U32 dstWeight = t - c;
        const U32 srcWeight = 255 - t;
        const F32 reciprocal = 1.0f / __builtin_convertvector(As<I32>(255 - c), F32);
        U32 out = c << 24;
        for (int shift = 0; shift < 24; shift += 8) {
            const U32 numerator =
                Mul16<U16>((d >> shift) & 0xFF, dstWeight) + Mul16<U16>((s >> shift) & 0xFF, srcWeight);
            const F32 q = __builtin_convertvector(As<I32>(numerator), F32) * reciprocal + kQuotientNudge;
            const I32 quotient = __builtin_convertvector(q, I32);
            out |= As<U32>(quotient) << shift;
        }
        const I32 transparentBackground = b == 255;
        out = Select(As<U32>(transparentBackground), (s & kColourBytes) | (t << 24), out);
        const I32 keep = w == 0;
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
