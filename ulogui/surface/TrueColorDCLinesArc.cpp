// DrawArc: a ring segment drawn as concentric polylines 1/8 pixel apart, each a circle sampled at about
// one point per pixel of circumference, of which only the segments inside the angle range, the clip
// rectangle and the surface are drawn, with the anti-aliased line.
//
// The work is bounded by what can reach the surface: only circles that pass within a few pixels of the
// visible area (the surface, cut to the clip) are walked, and of each only the points whose angles, seen
// from the centre, fall within the visible area's angular extent (plus a margin). A huge radius or a
// centre far away therefore costs what the visible part of the arc costs.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "base/MagnifyRounding.h"
#include "surface/CircleSamples.h"
#include "surface/DrawingFrame.h"
#include "surface/LinePaint.h"
#include "surface/LineRaster.h"
#include "ulogui/TrueColorDC.h"

using ulogui::surface::AlphaPaint;
using ulogui::surface::CircleSamples;
using ulogui::surface::Dashes;
using ulogui::surface::DrawingFrame;
using ulogui::surface::PlainPaint;

namespace {

constexpr float kTwoPi = ulogui::surface::kArcTwoPi;  // single precision, as every angle here
constexpr float kOffsetStep = 0.125f;
constexpr double kMargin = 4.0;  // device pixels around the visible area that a point may land in

// The angle range of one call: a segment is drawn when both its angles lie strictly between start and
// endClamped, or strictly between 0 and wrap.
struct AngleRange {
    float start;
    float endClamped;
    float wrap;
    bool Holds(float a) const { return (start < a && a < endClamped) || (0.0f < a && a < wrap); }
    // Whether every angle from `first` to `last` (rising) is held.
    bool HoldsAll(float first, float last) const {
        return (start < first && last < endClamped) || (0.0f < first && last < wrap);
    }
};

// Inclusive ranges of point indices k in 1 .. n (the segment k joins points k - 1 and k).
struct IndexRange {
    std::int64_t first;
    std::int64_t last;
};
// A few ranges, kept in place: two of angle, three of area, and their pairs.
struct IndexRanges {
    IndexRange items[6];
    int count = 0;

    const IndexRange* begin() const { return items; }
    const IndexRange* end() const { return items + count; }
    bool empty() const { return count == 0; }
    void Add(IndexRange r) {
        if (r.first <= r.last && count < 6) {
            items[count++] = r;
        }
    }
};

// The area where points can matter, in device pixels as doubles (pixel centres, widened by the margin).
struct Area {
    double left, top, right, bottom;

    bool Contains(double x, double y) const { return x >= left && x <= right && y >= top && y <= bottom; }
    // Nearest and farthest distance of the area from (x, y).
    double Nearest(double x, double y) const {
        const double dx = std::max({left - x, 0.0, x - right});
        const double dy = std::max({top - y, 0.0, y - bottom});
        return std::hypot(dx, dy);
    }
    double Farthest(double x, double y) const {
        return std::hypot(std::max(x - left, right - x), std::max(y - top, bottom - y));
    }
};

// Index k of the angle `a` on a circle of n points, as a double held to -1 .. n + 1.
double IndexOf(double a, std::int64_t n) {
    const double k = a / static_cast<double>(kTwoPi) * static_cast<double>(n);
    return std::min(std::max(k, -1.0), static_cast<double>(n) + 1.0);
}

void AddRange(IndexRanges& ranges, double first, double last, std::int64_t n) {
    const std::int64_t f = std::max<std::int64_t>(1, static_cast<std::int64_t>(std::floor(first)));
    const std::int64_t l = std::min<std::int64_t>(n, static_cast<std::int64_t>(std::ceil(last)));
    ranges.Add(IndexRange{f, l});
}

// The indices of a circle whose segments can pass the angle test and reach the area: the angle range as
// index ranges, cut to the area's angular extent seen from the centre, sorted and merged so that no
// index is visited twice. Each range is widened by two indices for the rounding of the float angles.
IndexRanges CandidateIndices(const AngleRange& angles, const Area& area, double cx, double cy,
                             std::int64_t n) {
    IndexRanges byAngle;
    if (angles.start < angles.endClamped) {
        AddRange(byAngle, IndexOf(angles.start, n) - 2.0, IndexOf(angles.endClamped, n) + 2.0, n);
    }
    if (0.0f < angles.wrap) {
        AddRange(byAngle, 1.0, IndexOf(angles.wrap, n) + 2.0, n);
    }

    IndexRanges byArea;
    if (area.Contains(cx, cy)) {
        byArea.Add(IndexRange{1, n});
    } else {
        // Outside a rectangle its corners span less than a half turn around the direction to its centre.
        const double twoPi = 6.283185307179586;
        const double mid = std::atan2((area.top + area.bottom) / 2 - cy, (area.left + area.right) / 2 - cx);
        double lo = 0.0;
        double hi = 0.0;
        for (const double x : {area.left, area.right}) {
            for (const double y : {area.top, area.bottom}) {
                const double rel = std::remainder(std::atan2(y - cy, x - cx) - mid, twoPi);
                lo = std::min(lo, rel);
                hi = std::max(hi, rel);
            }
        }
        double from = mid + lo;
        from -= twoPi * std::floor(from / twoPi);  // 0 .. 2pi
        const double to = from + (hi - lo);
        const double nd = static_cast<double>(n);
        // Point k lies at the angle k / n times the single-precision 2pi.
        const double kFrom = from / kTwoPi * nd - 2.0;
        const double kTo = to / kTwoPi * nd + 3.0;
        AddRange(byArea, kFrom, kTo, n);
        AddRange(byArea, kFrom - nd, kTo - nd, n);  // the part past a full turn
        AddRange(byArea, kFrom + nd, kTo + nd, n);  // the part before it, near the start
    }

    IndexRanges ranges;
    for (const IndexRange& a : byAngle) {
        for (const IndexRange& b : byArea) {
            ranges.Add(IndexRange{std::max(a.first, b.first), std::min(a.last, b.last)});
        }
    }
    for (int i = 1; i < ranges.count; ++i) {  // by first index; a handful of items
        for (int j = i; j > 0 && ranges.items[j].first < ranges.items[j - 1].first; --j) {
            std::swap(ranges.items[j], ranges.items[j - 1]);
        }
    }
    IndexRanges merged;
    for (const IndexRange& r : ranges) {
        if (merged.count > 0 && r.first <= merged.items[merged.count - 1].last + 1) {
            merged.items[merged.count - 1].last = std::max(merged.items[merged.count - 1].last, r.last);
        } else {
            merged.Add(r);
        }
    }
    return merged;
}

// What one call fixes for all its circles.
struct ArcCall {
    const ulogui::raster::RasterView& canvas;
    AngleRange angles;
    bool clipped;
    ULORect clip;      // device pixels; used when clipped
    ULORect admitted;  // the surface, cut to the clip: segments with both ends inside pass every test

    bool HoldsAll(float first, float last) const { return angles.HoldsAll(first, last); }
    bool Inside(const ULORect& points) const {
        return points.left >= admitted.left && points.right <= admitted.right && points.top >= admitted.top &&
               points.bottom <= admitted.bottom;
    }

    // A segment is drawn when both its ends lie inside the clip (if any) and its bounding box meets the
    // surface: one wholly beside the surface would only be clamped onto its border.
    bool Admits(ULOPoint a, ULOPoint b) const {
        if (clipped && !(clip.Contains(a) && clip.Contains(b))) {
            return false;
        }
        return std::max(a.x, b.x) >= 0 && std::min(a.x, b.x) < canvas.Width() && std::max(a.y, b.y) >= 0 &&
               std::min(a.y, b.y) < canvas.Height();
    }
};

// A segment, drawn with the solid anti-aliased line: from its start pixel up to, not including, its
// end. Most segments join neighbouring pixels on the surface, and such a line is its start pixel alone.
template <typename Paint>
void DrawSegment(const ArcCall& call, ULOPoint from, ULOPoint to, const Paint& paint) {
    if (std::abs(to.x - from.x) <= 1 && std::abs(to.y - from.y) <= 1 && call.canvas.Bounds().Contains(from) &&
        call.canvas.Bounds().Contains(to)) {
        paint(call.canvas.Pixel(from.x, from.y));
    } else {
        ulogui::surface::DrawAntiAliasedLine(call.canvas, from, to, paint, Dashes(0, 0));
    }
}

// One circle of the ring: the segments from point k - 1 to point k for the candidate k, equal points
// skipped, each admitted by the angle test on both its ends and by the clip and surface test.
template <typename Paint>
void DrawCircle(const ArcCall& call, CircleSamples& circle, const IndexRanges& indices, const Paint& paint) {
    for (const IndexRange& range : indices) {
        for (std::int64_t first = range.first - 1; first < range.last; first += CircleSamples::kRun) {
            const int count =
                static_cast<int>(std::min<std::int64_t>(CircleSamples::kRun, range.last - first));
            circle.Sample(first, count + 1);
            if (call.HoldsAll(circle.angle[0], circle.angle[count]) &&
                call.Inside(circle.Bounds(count + 1))) {
                // Every segment of the run passes every test.
                for (int j = 1; j <= count; ++j) {
                    const ULOPoint from(circle.x[j - 1], circle.y[j - 1]);
                    const ULOPoint to(circle.x[j], circle.y[j]);
                    if (from != to) {
                        DrawSegment(call, from, to, paint);
                    }
                }
                continue;
            }
            bool heldBefore = call.angles.Holds(circle.angle[0]);
            for (int j = 1; j <= count; ++j) {
                const bool held = call.angles.Holds(circle.angle[j]);
                const ULOPoint from(circle.x[j - 1], circle.y[j - 1]);
                const ULOPoint to(circle.x[j], circle.y[j]);
                if (held && heldBefore && from != to && call.Admits(from, to)) {
                    DrawSegment(call, from, to, paint);
                }
                heldBefore = held;
            }
        }
    }
}

// The weight of the circle at offset o in a ring from `lower` to `upper` when the ring is smooth. The
// circles 1/8 pixel apart each colour the pixels within about half a pixel of them, so a pixel at the
// ring's edge is reached by as many circles as eighths of it lie inside the ring. Weighting the circle
// at distance d from the nearer edge by 1 / (8 - 8d) (1/8 at the edge, then 1/7, 1/6 ... up to 1 from
// d = 7/8 inward) lets the j-th circle from the edge leave the pixel (j + 1) / 8 covered, so the edge
// pixels end up covered by about the share of them that lies inside the ring, and the ring is as thick as
// asked instead of a pixel thicker. Circles within 0.12 of the nominal radius are drawn at full weight,
// so a thin ring keeps one solid circle.
float SmoothWeight(float o, float lower, float upper) {
    if (std::fabs(o) < 0.12f) {
        return 1.0f;
    }
    const float d = std::min(o - lower, upper - o);
    return d >= 0.875f ? 1.0f : 0.125f / (1.0f - std::max(d, 0.0f));
}

}  // namespace

void ULOTrueColorDCBase::DrawArc(CLR colour, ULORect clip, ULOPoint centre, float radius, float startAngle,
                                 float sweep, float thickness, ERadiusThicknessRelation relation,
                                 bool smooth) {
    const DrawingFrame frame(*this);
    const ulogui::raster::RasterView& canvas = frame.Canvas();
    if (canvas.IsEmpty()) {
        return;
    }
    // Everything in device pixels: centre and clip rounded like points and rectangles, lengths scaled.
    const bool clipped = !clip.IsEmpty();
    if (frame.Conversion().IsActive()) {
        const float m = frame.Conversion().Magnifier();
        centre = frame.ToDevice(centre);
        clip = frame.ToDevice(clip);
        radius *= m;
        thickness *= m;
    }
    if (clipped && clip.IsEmpty()) {
        return;  // a clip that shrank to nothing
    }

    // The angle range; a negative sweep runs the other way from the start.
    float start = std::fmod(startAngle, kTwoPi);
    if (sweep < 0.0f) {
        start += sweep;
        sweep = -sweep;
    }
    const float end = start + sweep;
    const AngleRange angles{start, std::min(kTwoPi, end), end > kTwoPi ? std::fmod(end, kTwoPi) : 0.0f};
    if (!(angles.start < angles.endClamped) && !(0.0f < angles.wrap)) {
        return;  // an empty or NaN range
    }

    // The ring's offsets from the nominal radius.
    if (!(radius == radius) || !(thickness == thickness)) {
        return;
    }
    const float t = std::min(thickness, radius);
    const float lower = relation == eRadiusIsInner ? 0.0f : relation == eRadiusIsOuter ? -t : -t / 2;
    const float upper = relation == eRadiusIsInner ? t : relation == eRadiusIsOuter ? 0.0f : t / 2;
    const float last = upper + 0.01f;
    if (!(lower <= last)) {
        return;
    }

    // Only the circles whose radius lies within the visible area's distances from the centre.
    ULORect visible = canvas.Bounds();
    if (clipped) {
        visible = visible.Intersect(clip);
        if (visible.IsEmpty()) {
            return;
        }
    }
    const Area area{visible.left - kMargin, visible.top - kMargin, visible.right - 1 + kMargin,
                    visible.bottom - 1 + kMargin};
    const double cx = centre.x;
    const double cy = centre.y;
    const double steps = std::floor((static_cast<double>(last) - lower) / kOffsetStep);
    const double firstStep = std::ceil((area.Nearest(cx, cy) - radius - lower) / kOffsetStep) - 1.0;
    const double lastStep = std::floor((area.Farthest(cx, cy) - radius - lower) / kOffsetStep) + 1.0;
    if (!(firstStep <= lastStep) || lastStep < 0.0 || firstStep > steps) {
        return;
    }
    // Held below 2^53, where doubles still count one by one; the range between them is short.
    const double kCountLimit = 9007199254740992.0;
    const std::int64_t iFirst = static_cast<std::int64_t>(std::min(std::max(firstStep, 0.0), kCountLimit));
    const std::int64_t iLast = static_cast<std::int64_t>(std::min({steps, lastStep, kCountLimit}));

    const ArcCall call{canvas, angles, clipped, clip, visible};
    for (std::int64_t i = iFirst; i <= iLast; ++i) {
        const float o = lower + static_cast<float>(i) * kOffsetStep;
        if (!(o <= last)) {
            break;
        }
        const float r = radius + o;
        const float around = std::floor(r * kTwoPi);
        const std::int64_t n = around >= 1.0f ? static_cast<std::int64_t>(std::min(around, 1e15f)) : 1;
        const int weight = ulogui::pixelops::OpacityWeight(smooth ? SmoothWeight(o, lower, upper) : 1.0f);
        const IndexRanges indices = CandidateIndices(angles, area, cx, cy, n);
        if (weight == 0 || indices.empty()) {
            continue;
        }
        CircleSamples circle(centre, r, n);
        if (weight == 255) {
            DrawCircle(call, circle, indices, PlainPaint(colour));  // the alpha write at full weight
        } else {
            DrawCircle(call, circle, indices, AlphaPaint(colour, weight));
        }
    }
}
