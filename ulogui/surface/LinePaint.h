#pragma once
// What the outline members (pixels, lines, rectangle outlines, arcs, curves) do to one pixel, and which
// pixels of a dashed line they draw.
//
// A paint is a pixel write with two strengths: `p` applies it at full coverage (the write of a solid
// pixel, so paints are also plain write functors for WriteSpan and WriteRect), `Cover(p, w)` at a
// coverage weight w of 0..255, the share of the pixel that an anti-aliased line or a fractional row of a
// magnified line covers. Every paint but the one that writes alpha mixes in two stages: t is what full
// coverage would write, then p = (t * w + p * (255 - w)) / 255, truncating. Weight 0 leaves the pixel as
// it is and weight 255 equals full coverage, in every paint.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "surface/PixelWrites.h"
#include "ulogui/Color.h"

namespace ulogui {
namespace surface {

namespace detail {
inline void MixCoverage(unsigned char* p, const unsigned char (&t)[3], int w) {
    for (int i = 0; i < 3; ++i) {
        p[i] = static_cast<unsigned char>((t[i] * w + p[i] * (255 - w)) / 255);
    }
}
}  // namespace detail

// The colour replaces the colour bytes.
struct PlainPaint : SetColour {
    using SetColour::SetColour;
    void Cover(unsigned char* p, int w) const { detail::MixCoverage(p, colour, w); }
    // `count` pixels `step` bytes apart at full coverage, each read and written as one 32-bit word with
    // its alpha byte kept, so that a row (step 4) is stored a vector at a time.
    void Run(unsigned char* p, std::int64_t count, std::ptrdiff_t step) const {
        const unsigned char colourBytes[4] = {colour[0], colour[1], colour[2], 0};
        const unsigned char alphaByte[4] = {0, 0, 0, 0xFF};
        std::uint32_t rgb;
        std::uint32_t keep;
        std::memcpy(&rgb, colourBytes, 4);
        std::memcpy(&keep, alphaByte, 4);
        const auto store = [rgb, keep](unsigned char* pixel) {
            std::uint32_t v;
            std::memcpy(&v, pixel, 4);
            v = (v & keep) | rgb;
            std::memcpy(pixel, &v, 4);
        };
        if (step == 4) {
            for (std::int64_t i = 0; i < count; ++i) {
                store(p + 4 * i);
            }
        } else {
            for (std::int64_t i = 0; i < count; ++i, p += step) {
                store(p);
            }
        }
    }
};

// Any other paint at full coverage, pixel by pixel.
template <typename Paint>
void PaintRun(const Paint& paint, unsigned char* p, std::int64_t count, std::ptrdiff_t step) {
    for (std::int64_t i = 0; i < count; ++i, p += step) {
        paint(p);
    }
}
inline void PaintRun(const PlainPaint& paint, unsigned char* p, std::int64_t count, std::ptrdiff_t step) {
    paint.Run(p, count, step);
}

// The alpha colour write by the opacity weight a.
struct AlphaPaint : MixColour {
    using MixColour::MixColour;
    void Cover(unsigned char* p, int w) const {
        unsigned char t[3] = {p[0], p[1], p[2]};
        MixColour::operator()(t);
        detail::MixCoverage(p, t, w);
    }
};

// The colour's bytes as signed offsets (PixelCopyRelative).
struct RelativePaint : AddOffset {
    using AddOffset::AddOffset;
    void Cover(unsigned char* p, int w) const {
        unsigned char t[3] = {p[0], p[1], p[2]};
        AddOffset::operator()(t);
        detail::MixCoverage(p, t, w);
    }
};

// For surfaces whose alpha byte is a transparency that matters (DrawLineOnAlpha). The colour, with the
// opaqueness o = a * w / 255 (opacity weight times coverage, truncating), is composited onto the pixel
// by the rule that pictures with alpha follow onto surfaces with alpha: with t = 255 - o and the pixel's
// transparency b, a fully transparent pixel takes the colour and transparency t; otherwise the combined
// transparency is c = (b * t) >> 8, the colour (p * (t - c) + colour * (255 - t)) / (255 - c), and c
// the new alpha. On an opaque pixel (b = 0) that is the alpha write by weight o and the pixel stays
// opaque; o = 0 leaves all four bytes alone.
struct OnAlphaPaint {
    OnAlphaPaint(const CLR& c, int weight) : colour{c.blue, c.green, c.red}, a(weight) {}
    void operator()(unsigned char* p) const { Composite(p, a); }
    void Cover(unsigned char* p, int w) const { Composite(p, a * w / 255); }

    void Composite(unsigned char* p, int opaqueness) const {
        const int t = 255 - opaqueness;
        if (t >= 255) {
            return;
        }
        const int b = p[3];
        if (b >= 255) {
            p[0] = colour[0];
            p[1] = colour[1];
            p[2] = colour[2];
            p[3] = static_cast<unsigned char>(t);
            return;
        }
        const int c = (b * t) >> 8;
        const int d = 255 - c;  // at least 3
        for (int i = 0; i < 3; ++i) {
            p[i] = static_cast<unsigned char>((p[i] * (t - c) + colour[i] * (255 - t)) / d);
        }
        p[3] = static_cast<unsigned char>(c);
    }

    unsigned char colour[3];
    int a;
};

// The dash pattern of a line: on = max(dashOn, 0) pixels drawn in every period of on + (dashOff if it is
// at least 1, else on) pixels, counted from the line's first pixel; on = 0 is solid. 64-bit, so that
// no count overflows.
class Dashes {
public:
    Dashes(int dashOn, int dashOff)
        : on_(dashOn > 0 ? dashOn : 0), period_(on_ + (dashOff >= 1 ? dashOff : on_)) {}

    bool IsSolid() const { return on_ == 0; }
    std::int64_t On() const { return on_; }
    std::int64_t Period() const { return period_; }

    // Calls draw(first, count) for each drawn run of the pixels 0 .. count - 1: one call when solid, one
    // per period otherwise, so the work follows the line's length.
    template <typename Draw>
    void ForEachRun(std::int64_t count, const Draw& draw) const {
        if (IsSolid()) {
            draw(std::int64_t{0}, count);
            return;
        }
        for (std::int64_t first = 0; first < count; first += period_) {
            draw(first, count - first < on_ ? count - first : on_);
        }
    }

private:
    std::int64_t on_;
    std::int64_t period_;
};

// Walks a dash pattern one pixel at a time (the anti-aliased line, whose pixels are its steps).
class DashWalker {
public:
    explicit DashWalker(const Dashes& dashes) : dashes_(dashes) {}
    bool Draws() const { return dashes_.IsSolid() || phase_ < dashes_.On(); }
    void Step() {
        if (!dashes_.IsSolid() && ++phase_ == dashes_.Period()) {
            phase_ = 0;
        }
    }

private:
    Dashes dashes_;
    std::int64_t phase_ = 0;
};

}  // namespace surface
}  // namespace ulogui
