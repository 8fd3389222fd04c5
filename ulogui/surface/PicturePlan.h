#pragma once
// Where a picture transfer writes on the canvas and where it reads the source: the clipping arithmetic
// of picture drawing, one axis at a time (docs/picture-drawing.md, "Clipping").
//
// Along an axis a run of destination pixels [dstLo, dstHi) reads the source either one source pixel per
// destination pixel from srcLo on (the run of source pixels [srcLo, srcHi) placed at dstLo), or the one
// source pixel srcLo for every destination pixel (a stretched column or row). The pixels written are
// those of the run that also lie inside the clip, the canvas and, moved the same way, the source run
// and the source picture; the source pixel of the first of them follows from the same shift, so cutting
// the destination on one side moves the source by as many pixels. Everything is computed in 64 bits:
// no rectangle, however wild, overflows on the way.
#include <algorithm>
#include <cstdint>

#include "ulogui/Geometry.h"

namespace ulogui {
namespace surface {

// One axis of a transfer: destination pixels [first, last) (inside the canvas), read from source pixel
// sourceFirst on, or from sourceFirst alone when `repeat`.
struct AxisPlan {
    int first = 0;
    int last = 0;
    int sourceFirst = 0;
    bool repeat = false;

    bool IsEmpty() const { return first >= last; }
};

struct AxisRun {
    std::int64_t dstLo;
    std::int64_t dstHi;
    std::int64_t srcLo;
    std::int64_t srcHi;  // unused when the source pixel is repeated
};

inline AxisPlan PlanAxis(const AxisRun& run, std::int64_t clipLo, std::int64_t clipHi, int canvasLength,
                         int sourceLength, bool repeat) {
    AxisPlan plan;
    std::int64_t lo = std::max<std::int64_t>({run.dstLo, clipLo, 0});
    std::int64_t hi = std::min<std::int64_t>({run.dstHi, clipHi, canvasLength});
    if (repeat) {
        if (run.srcLo < 0 || run.srcLo >= sourceLength) {
            return plan;  // the repeated pixel lies outside the picture: nothing
        }
    } else {
        // Source pixel s lands on destination pixel s + shift.
        const std::int64_t shift = run.dstLo - run.srcLo;
        lo = std::max(lo, shift);
        hi = std::min<std::int64_t>({hi, run.srcHi + shift, sourceLength + shift});
    }
    if (lo >= hi) {
        return plan;
    }
    plan.first = static_cast<int>(lo);
    plan.last = static_cast<int>(hi);
    plan.sourceFirst = static_cast<int>(repeat ? run.srcLo : lo - (run.dstLo - run.srcLo));
    plan.repeat = repeat;
    return plan;
}

// Both axes of a transfer.
struct TransferPlan {
    AxisPlan x;
    AxisPlan y;

    bool IsEmpty() const { return x.IsEmpty() || y.IsEmpty(); }
    ULORect Area() const { return ULORect(x.first, y.first, x.last, y.last); }
};

// The horizontal or vertical run of a rectangle, and of a pair of rectangles.
inline AxisRun RunX(const ULORect& dst, const ULORect& src) {
    return AxisRun{dst.left, dst.right, src.left, src.right};
}
inline AxisRun RunY(const ULORect& dst, const ULORect& src) {
    return AxisRun{dst.top, dst.bottom, src.top, src.bottom};
}

// The unscaled transfer of the master: source pixel (x, y) of `src` lands on (x + dst.left - src.left,
// y + dst.top - src.top); written where dst, the moved src, clip, the canvas and the moved picture meet.
inline TransferPlan PlanCopy(const ULORect& dst, const ULORect& src, const ULORect& clip, int canvasWidth,
                             int canvasHeight, int sourceWidth, int sourceHeight) {
    TransferPlan plan;
    plan.x = PlanAxis(RunX(dst, src), clip.left, clip.right, canvasWidth, sourceWidth, false);
    plan.y = PlanAxis(RunY(dst, src), clip.top, clip.bottom, canvasHeight, sourceHeight, false);
    return plan;
}

// A rectangle from an origin and a size given in 64 bits, its far edges held to the int range.
inline ULORect RectAt(std::int64_t left, std::int64_t top, std::int64_t width, std::int64_t height) {
    const auto hold = [](std::int64_t v) {
        return static_cast<int>(std::min<std::int64_t>(std::max<std::int64_t>(v, INT32_MIN), INT32_MAX));
    };
    return ULORect(hold(left), hold(top), hold(left + width), hold(top + height));
}
inline std::int64_t WidthOf(const ULORect& r) {
    return static_cast<std::int64_t>(r.right) - r.left;
}
inline std::int64_t HeightOf(const ULORect& r) {
    return static_cast<std::int64_t>(r.bottom) - r.top;
}

// (p, size of r): a rectangle of r's size with its top-left at p.
inline ULORect AtPoint(const ULOPoint& p, const ULORect& r) {
    return RectAt(p.x, p.y, WidthOf(r), HeightOf(r));
}

// The rectangles of CopyPicture and its kin: dst = rect and src = (0, 0, size of rect); with a skip both
// move in by it on the top and left while dst keeps rect's right and bottom edges, so the picture stays
// anchored at rect's top-left and its first skip.x columns and skip.y rows are left out.
struct CopyRects {
    CopyRects(const ULORect& rect, const ULOPoint* skip) {
        const std::int64_t sx = skip != nullptr ? skip->x : 0;
        const std::int64_t sy = skip != nullptr ? skip->y : 0;
        dst = RectAt(rect.left + sx, rect.top + sy, WidthOf(rect) - sx, HeightOf(rect) - sy);
        src = RectAt(sx, sy, WidthOf(rect) - sx, HeightOf(rect) - sy);
    }
    ULORect dst;
    ULORect src;
};

}  // namespace surface
}  // namespace ulogui
