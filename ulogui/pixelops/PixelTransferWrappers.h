#pragma once
// The blending wrappers and the scalar row loop: the reference arithmetic of every transfer loop.
// A wrapper is called as wrap(functor, dst, src, out) for one pixel; it evaluates the functor into a
// temporary (which starts as a copy of dst, so bytes the functor leaves alone read as the background's)
// and mixes that result f with the background. Alpha is a transparency: 0 opaque, 255 transparent.
#include <cstring>

#include "pixelops/PixelTransferLoops.h"
#include "ulogui/PixelTransfer.h"

namespace ulogui {
namespace pixelops {

using Byte = unsigned char;

template <class F>
inline void Evaluate(const F& functor, const Byte* dst, const Byte* src, Byte* f) {
    std::memcpy(f, dst, 4);
    functor(dst, src, f);
}

// W0: the functor writes the destination itself.
struct PlainWrap {
    explicit PlainWrap(const CallConstants&) {}
    template <class F>
    void operator()(const F& functor, const Byte* dst, const Byte* src, Byte* out) const {
        functor(dst, src, out);
    }
};

// W1: mixed by the source's alpha a with a shift by 8, so an opaque source loses one level
// ((f * 255) >> 8); a fully transparent source keeps the background.
struct SourceAlphaWrap {
    explicit SourceAlphaWrap(const CallConstants&) {}
    template <class F>
    void operator()(const F& functor, const Byte* dst, const Byte* src, Byte* out) const {
        const int a = src[3];
        if (a >= 255) {
            std::memmove(out, dst, 3);
            return;
        }
        Byte f[4];
        Evaluate(functor, dst, src, f);
        for (int i = 0; i < 3; ++i) {
            out[i] = static_cast<Byte>((dst[i] * a + f[i] * (255 - a)) >> 8);
        }
    }
};

// W2: as W1 with the source's opaqueness scaled by the call's weight k first.
struct SourceAlphaOpacityWrap {
    explicit SourceAlphaOpacityWrap(const CallConstants& c) : k(c.k) {}
    template <class F>
    void operator()(const F& functor, const Byte* dst, const Byte* src, Byte* out) const {
        const int w = ((255 - src[3]) * k) >> 8;
        if (w == 0) {
            std::memmove(out, dst, 3);
            return;
        }
        Byte f[4];
        Evaluate(functor, dst, src, f);
        for (int i = 0; i < 3; ++i) {
            out[i] = static_cast<Byte>((dst[i] * (255 - w) + f[i] * w) >> 8);
        }
    }
    int k;
};

// W3: mixed by the weight k alone, divided by 255 (truncating), over the first `Bytes` bytes: the colour
// bytes, or all four (alpha mixed like a colour) in the opacity loop of full-copy sources.
template <int Bytes>
struct OpacityMix {
    explicit OpacityMix(const CallConstants& c) : k(c.k) {}
    template <class F>
    void operator()(const F& functor, const Byte* dst, const Byte* src, Byte* out) const {
        Byte f[4];
        Evaluate(functor, dst, src, f);
        for (int i = 0; i < Bytes; ++i) {
            out[i] = static_cast<Byte>((f[i] * k + dst[i] * (255 - k)) / 255);
        }
    }
    int k;
};
using OpacityWrap = OpacityMix<3>;
using OpacityAllBytesWrap = OpacityMix<4>;

// W4: f with transparency t = 255 - w (w as in W2) composited onto a background of transparency
// b = dst[3]. The combined transparency c = (b * t) >> 8 is written as alpha; the colour divides by
// 255 - c, which is at least 3 whenever it is reached.
struct OntoAlphaWrap {
    explicit OntoAlphaWrap(const CallConstants& c) : k(c.k) {}
    template <class F>
    void operator()(const F& functor, const Byte* dst, const Byte* src, Byte* out) const {
        const int t = 255 - (((255 - src[3]) * k) >> 8);
        if (t >= 255) {
            std::memmove(out, dst, 4);
            return;
        }
        Byte f[4];
        Evaluate(functor, dst, src, f);
        const int b = dst[3];
        if (b >= 255) {
            out[0] = f[0];
            out[1] = f[1];
            out[2] = f[2];
            out[3] = static_cast<Byte>(t);
            return;
        }
        const int c = (b * t) >> 8;
        const int d = 255 - c;
        for (int i = 0; i < 3; ++i) {
            out[i] = static_cast<Byte>((dst[i] * (t - c) + f[i] * (255 - t)) / d);
        }
        out[3] = static_cast<Byte>(c);
    }
    int k;
};

template <class F>
inline F MakeFunctor(const CallConstants&) {
    return F();
}
template <>
inline ULOPixelTransfer::PixelCopyRelativeOpacity MakeFunctor<ULOPixelTransfer::PixelCopyRelativeOpacity>(
    const CallConstants& c) {
    return ULOPixelTransfer::PixelCopyRelativeOpacity(c.relativeOpacity);
}

// The per-pixel loop, written once: one instance per functor and wrapper.
template <class F, class W>
void ScalarRow(Byte* dst, const Byte* src, int count, const CallConstants& c) {
    const F functor = MakeFunctor<F>(c);
    const W wrap(c);
    for (int x = 0; x < count; ++x) {
        wrap(functor, dst + 4 * x, src + 4 * x, dst + 4 * x);
    }
}

}  // namespace pixelops
}  // namespace ulogui
