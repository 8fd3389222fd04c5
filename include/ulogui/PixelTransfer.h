#pragma once
// Pixel transfer functors: how one source pixel becomes a destination pixel when a picture is drawn
// onto the drawing surface (plain, highlighted, disabled, darkened, or a signed offset added to the
// background). Each is called as functor(dst, src, out) on 4-byte pixels (blue, green, red, alpha):
// dst is the background, src the source pixel, out where the result goes (in the drawing loops the
// destination pixel itself, so out may equal dst).
//
// The functors are tiny and inline so that the drawing loops, stamped once per functor and blending
// wrapper, carry no branch on the mode. docs/pixel-transfer.md gives the arithmetic of the functors,
// the wrappers and the selection of a loop.
#include "ulogui/Color.h"
#include "ulogui/Export.h"
#include "ulogui/Palette.h"

namespace ulogui {

// The copy types of picture drawing (values are fixed); the drawing surface offers them as
// ULOTrueColorDCBase::ECopyPictureType. The underlying type is fixed, so a host may pass any int: any
// other value draws nothing.
enum ECopyPictureType : int {
    eCopyNormal = 0,     // PixelCopy
    eCopyHighlight = 1,  // PixelCopyHighlight
    eCopyDisabled = 2,   // PixelCopyDisabled
    eCopyDarken = 3,     // PixelCopyDarken
};

}  // namespace ulogui

namespace ULOPixelTransfer {

namespace detail {
// Truncation toward zero of a value known to lie in 0..256, keeping the low 8 bits.
inline unsigned char TruncateSmall(float v) {
    return static_cast<unsigned char>(static_cast<int>(v));
}
// A signed offset byte: 0x80..0xFF are -128..-1.
inline int SignedOffset(unsigned char byte) {
    return byte < 128 ? byte : byte - 256;
}
}  // namespace detail

// Copies the colour; the alpha byte of out stays as it was.
struct PixelCopy {
    void operator()(const unsigned char*, const unsigned char* src, unsigned char* out) const {
        out[0] = src[0];
        out[1] = src[1];
        out[2] = src[2];
    }
};

// Copies all four bytes, alpha included.
struct PixelFullCopy {
    void operator()(const unsigned char*, const unsigned char* src, unsigned char* out) const {
        out[0] = src[0];
        out[1] = src[1];
        out[2] = src[2];
        out[3] = src[3];
    }
};

// Each colour byte through the host's highlight curve.
struct PixelCopyHighlight {
    void operator()(const unsigned char*, const unsigned char* src, unsigned char* out) const {
        out[0] = HIGHLIGHT_CLR_COMPONENT[src[0]];
        out[1] = HIGHLIGHT_CLR_COMPONENT[src[1]];
        out[2] = HIGHLIGHT_CLR_COMPONENT[src[2]];
    }
};

// A grey level of the source (blue 0.15, green 0.5, red 0.35) goes through the host's disabled curve,
// and each byte becomes 60 % of that tone and 40 % of the source byte. Single-precision floats, summed
// in that order, truncated.
struct PixelCopyDisabled {
    void operator()(const unsigned char*, const unsigned char* src, unsigned char* out) const {
        const unsigned char grey = detail::TruncateSmall(0.15f * src[0] + 0.5f * src[1] + 0.35f * src[2]);
        const float tone = 0.6f * DISABLED_CLR_COMPONENT[grey];
        out[0] = detail::TruncateSmall(tone + 0.4f * src[0]);
        out[1] = detail::TruncateSmall(tone + 0.4f * src[1]);
        out[2] = detail::TruncateSmall(tone + 0.4f * src[2]);
    }
};

// Pulls the source, through the disabled curve, 70 % toward CLR_GRADATION_TOP_LEFT as it is at the
// moment of the call.
struct PixelCopyDarken {
    void operator()(const unsigned char*, const unsigned char* src, unsigned char* out) const {
        const CLR& toward = CLR_GRADATION_TOP_LEFT;
        out[0] = detail::TruncateSmall(0.3f * DISABLED_CLR_COMPONENT[src[0]] + 0.7f * toward.blue);
        out[1] = detail::TruncateSmall(0.3f * DISABLED_CLR_COMPONENT[src[1]] + 0.7f * toward.green);
        out[2] = detail::TruncateSmall(0.3f * DISABLED_CLR_COMPONENT[src[2]] + 0.7f * toward.red);
    }
};

// The source bytes are signed offsets (-128..127) added to the background, clamped to 0..255: a
// source of 0 leaves the background as it is.
struct PixelCopyRelative {
    void operator()(const unsigned char* dst, const unsigned char* src, unsigned char* out) const {
        for (int i = 0; i < 3; ++i) {
            const int v = dst[i] + detail::SignedOffset(src[i]);
            out[i] = static_cast<unsigned char>(v < 0 ? 0 : (v > 255 ? 255 : v));
        }
    }
};

// As PixelCopyRelative with each offset scaled by the opacity first: trunc(s * opacity + dst) in single
// precision, clamped to 0..255 (a NaN opacity gives 0).
struct PixelCopyRelativeOpacity {
    explicit PixelCopyRelativeOpacity(float opacity) : opacity_(opacity) {}

    void operator()(const unsigned char* dst, const unsigned char* src, unsigned char* out) const {
        for (int i = 0; i < 3; ++i) {
            const float v = static_cast<float>(detail::SignedOffset(src[i])) * opacity_ + dst[i];
            // Truncating then clamping to 0..255 is the same as this, and no conversion overflows.
            out[i] = v >= 255.0f ? 255 : (v > 0.0f ? detail::TruncateSmall(v) : 0);
        }
    }

    float GetOpacity() const { return opacity_; }

private:
    float opacity_;
};

}  // namespace ULOPixelTransfer
