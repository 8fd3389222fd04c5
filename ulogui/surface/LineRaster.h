#pragma once
// The rasterisers of the outline members, in device pixels on a drawing frame's canvas: the crisp
// horizontal or vertical span (fractionally covered rows on a magnified surface) and the anti-aliased
// line. Each is a template over the paint, so a member chooses its write once per call.
//
// Their odd corners are the surface's documented behaviour and are kept as they are: a span's start is
// clamped onto the surface without shortening it, and a span that would run past the far edge stops one
// pixel short of it; the anti-aliased line clamps both ends separately, so the slope changes when an end
// is off the surface, and never draws its end point. docs/lines-and-arcs.md describes both in full.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "pixelops/PixelTransferLoops.h"
#include "raster/RasterView.h"
#include "surface/LinePaint.h"
#include "ulogui/Geometry.h"

namespace ulogui {
namespace surface {

enum class Axis { kHorizontal, kVertical };

// Truncation toward zero held to +-2^40, far beyond any surface, so that the sums of span geometry never
// overflow; NaN gives 0.
inline std::int64_t TruncateHeld(double v) {
    constexpr double kLimit = 1099511627776.0;
    if (!(v > -kLimit)) {
        return v != v ? 0 : -static_cast<std::int64_t>(kLimit);
    }
    return v < kLimit ? static_cast<std::int64_t>(v) : static_cast<std::int64_t>(kLimit);
}

// A difference of two coordinates as an int, saturating.
inline int SaturatingDifference(std::int64_t a, std::int64_t b) {
    const std::int64_t d = a - b;
    return d > INT32_MAX ? INT32_MAX : d < INT32_MIN ? INT32_MIN : static_cast<int>(d);
}

// One horizontal or vertical line: `length` pixels along the axis from `along` (from along + length when
// negative), `thickness` pixels across it from `across`. All in device pixels, as floats: on a magnified
// surface the caller has multiplied them by the magnifier, and the thickness is the magnifier.
//
// Across the axis, line r from trunc(across) up to ceil(across + thickness) is covered by
// 1 - (across - r) when across > r, else across + thickness - r when r is trunc(across + thickness),
// else 1, and gets the coverage weight trunc(coverage * 255). Along it the span starts at the clamped
// start and keeps its length, except that a span that would pass the far edge is cut to end one pixel
// short of it; the dashes count from that start. Lines outside the surface are skipped.
template <typename Paint>
void DrawAxisLine(const raster::RasterView& canvas, Axis axis, float along, float across, float length,
                  float thickness, const Paint& paint, const Dashes& dashes) {
    const bool horizontal = axis == Axis::kHorizontal;
    const int alongSize = horizontal ? canvas.Width() : canvas.Height();
    const int acrossSize = horizontal ? canvas.Height() : canvas.Width();

    std::int64_t first = TruncateHeld(length < 0.0f ? along + length : along);
    std::int64_t count = TruncateHeld(length < 0.0f ? -length : length);
    first = first < 0 ? 0 : first >= alongSize ? alongSize - 1 : first;
    if (first + count > alongSize) {
        count = alongSize - first - 1;
    }
    const float farEdge = across + thickness;
    if (count <= 0 || !(farEdge == farEdge)) {
        return;
    }

    const std::ptrdiff_t alongStep = horizontal ? 4 : canvas.Stride();
    const std::int64_t farLine = TruncateHeld(farEdge);
    std::int64_t line = TruncateHeld(across);
    const std::int64_t end = TruncateHeld(std::ceil(farEdge));
    for (line = line < 0 ? 0 : line; line < end && line < acrossSize; ++line) {
        const float r = static_cast<float>(line);
        const float coverage = across > r ? 1.0f - (across - r) : line == farLine ? farEdge - r : 1.0f;
        const int weight = pixelops::OpacityWeight(coverage);
        if (weight == 0) {
            continue;
        }
        unsigned char* base = horizontal ? canvas.Pixel(first, line) : canvas.Pixel(line, first);
        dashes.ForEachRun(count, [&](std::int64_t run, std::int64_t runCount) {
            unsigned char* p = base + run * alongStep;
            if (weight == 255) {
                PaintRun(paint, p, runCount, alongStep);
            } else {
                for (std::int64_t i = 0; i < runCount; ++i, p += alongStep) {
                    paint.Cover(p, weight);
                }
            }
        });
    }
}

// The pixel memory of a canvas, for writes that are checked one by one: offsets from its lowest address.
class CheckedPixels {
public:
    explicit CheckedPixels(const raster::RasterView& canvas)
        : block_(canvas.Block()), size_(static_cast<std::ptrdiff_t>(canvas.BlockSize())) {}
    std::ptrdiff_t OffsetOf(const raster::RasterView& canvas, ULOPoint p) const {
        return canvas.Pixel(p.x, p.y) - block_;
    }
    // The pixel at `offset`, or null when any of its four bytes lies outside the memory.
    unsigned char* At(std::ptrdiff_t offset) const {
        return offset >= 0 && offset <= size_ - 4 ? block_ + offset : nullptr;
    }

private:
    unsigned char* block_;
    std::ptrdiff_t size_;
};

// The anti-aliased line from `from` to `to` (device pixels, the end point not drawn) on a canvas that is
// not empty. Both ends are clamped onto the surface. Along the major axis each step draws the current
// pixel P with the main weight w and its neighbour Q (one pixel toward the end across the major axis)
// with e = 255 - w; e grows by the slope weight g = |trunc(minor * 255.0f / major)| per step, and when
// it reaches 256 the line moves across (w += 256, e -= 256, P becomes Q). Every write is checked against
// the pixel memory.
template <typename Paint>
void DrawAntiAliasedLine(const raster::RasterView& canvas, ULOPoint from, ULOPoint to, const Paint& paint,
                         const Dashes& dashes) {
    const ULOPoint p0 = canvas.Clamp(from);
    const ULOPoint p1 = canvas.Clamp(to);
    const int dx = p1.x - p0.x;
    const int dy = p1.y - p0.y;
    const bool steep = std::abs(dx) <= std::abs(dy);
    const int steps = steep ? std::abs(dy) : std::abs(dx);
    if (steps == 0) {
        return;  // both ends clamped onto the same pixel
    }
    const std::ptrdiff_t right = dx > 0 ? 4 : -4;
    const std::ptrdiff_t down = dy > 0 ? canvas.Stride() : -canvas.Stride();
    const std::ptrdiff_t major = steep ? down : right;
    const std::ptrdiff_t neighbour = steep ? right : down;
    const int g =
        std::abs(steep ? static_cast<int>(static_cast<float>(dx) * 255.0f / static_cast<float>(dy))
                       : static_cast<int>(static_cast<float>(dy) * 255.0f / static_cast<float>(dx)));

    const CheckedPixels memory(canvas);
    std::ptrdiff_t at = memory.OffsetOf(canvas, p0);
    int w = 255;
    int e = 0;
    DashWalker dash(dashes);
    for (int k = 0; k < steps; ++k, dash.Step()) {
        if (dash.Draws()) {
            // A weight of 0 leaves a pixel as it is, so it is not written at all.
            unsigned char* p = w != 0 ? memory.At(at) : nullptr;
            if (p != nullptr) {
                paint.Cover(p, w);
            }
            unsigned char* q = e != 0 ? memory.At(at + neighbour) : nullptr;
            if (q != nullptr) {
                paint.Cover(q, e);
            }
        }
        e += g;
        w -= g;
        if (e >= 256) {
            w += 256;
            e -= 256;
            at += neighbour;
        }
        at += major;
    }
}

// A line in device pixels inside a frame (the guard raised), as the line members draw it: one pixel when
// both ends are equal, a one-pixel-thick span when they share a row or a column, else anti-aliased.
template <typename Paint>
void DrawDeviceLine(const raster::RasterView& canvas, ULOPoint from, ULOPoint to, const Paint& paint,
                    const Dashes& dashes) {
    if (from == to) {
        const ULOPoint p = canvas.Clamp(from);
        paint(canvas.Pixel(p.x, p.y));
    } else if (from.y == to.y) {
        DrawAxisLine(canvas, Axis::kHorizontal, static_cast<float>(from.x), static_cast<float>(from.y),
                     static_cast<float>(SaturatingDifference(to.x, from.x)), 1.0f, paint, dashes);
    } else if (from.x == to.x) {
        DrawAxisLine(canvas, Axis::kVertical, static_cast<float>(from.y), static_cast<float>(from.x),
                     static_cast<float>(SaturatingDifference(to.y, from.y)), 1.0f, paint, dashes);
    } else {
        DrawAntiAliasedLine(canvas, from, to, paint, dashes);
    }
}

}  // namespace surface
}  // namespace ulogui
