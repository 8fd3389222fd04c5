#include "platform/linux/NativeOutline.h"

#include <algorithm>
#include <cstdint>

namespace ulogui {
namespace platform {
namespace ft {

namespace {

POINTFX PointFrom(const FT_Vector& v) {
    POINTFX p;
    p.x = FixedFrom26Dot6(v.x);
    p.y = FixedFrom26Dot6(v.y);
    return p;
}

bool IsOnCurve(char tag) {
    return FT_CURVE_TAG(tag) == FT_CURVE_TAG_ON;
}

}  // namespace

FIXED FixedFrom26Dot6(FT_Pos value) {
    constexpr int64_t kLowest = -(int64_t{32768} << 16);
    constexpr int64_t kHighest = (int64_t{32768} << 16) - 1;
    // Clamped before scaling, so that the product cannot overflow.
    const int64_t clamped = std::clamp<int64_t>(value, kLowest / 1024 - 1, kHighest / 1024 + 1);
    const int64_t fixed = std::clamp<int64_t>(clamped * 1024, kLowest, kHighest);
    int64_t whole = fixed / 65536;
    int64_t fraction = fixed % 65536;
    if (fraction < 0) {  // the fraction of a FIXED counts upward from the integer below
        fraction += 65536;
        --whole;
    }
    FIXED f;
    f.value = static_cast<int16_t>(whole);
    f.fract = static_cast<uint16_t>(fraction);
    return f;
}

void NativeOutlineRecords(const FT_Outline& outline, GlyphOutline& out) {
    out.Clear();
    const FT_Vector* points = outline.points;
    const char* tags = outline.tags;
    int first = 0;
    for (int contour = 0; contour < outline.n_contours; ++contour) {
        const int last = outline.contours[contour];
        if (last < first || last >= outline.n_points) {
            return;
        }
        if (last == first) {
            first = last + 1;
            continue;
        }
        GlyphOutline::Polygon polygon;
        polygon.start = PointFrom(points[first]);
        polygon.firstCurve = static_cast<uint32_t>(out.curves.size());
        int p = first + 1;
        while (p <= last) {
            GlyphOutline::Curve curve;
            curve.firstPoint = static_cast<uint32_t>(out.points.size());
            const bool on = IsOnCurve(tags[p]);
            curve.kind = on ? CurveKind::kLine
                            : (FT_CURVE_TAG(tags[p]) == FT_CURVE_TAG_CUBIC ? CurveKind::kCubic
                                                                           : CurveKind::kQuadratic);
            const int runLimit = curve.kind == CurveKind::kCubic ? 2 : last - first + 1;
            int run = 0;
            do {
                out.points.push_back(PointFrom(points[p]));
                ++p;
                ++run;
            } while (p <= last && IsOnCurve(tags[p]) == on && run < runLimit);
            if (!on) {
                // A spline ends on the point after its controls, or on the start point at the end of
                // the contour.
                out.points.push_back(PointFrom(points[p <= last ? p : first]));
                p += p <= last ? 1 : 0;
            }
            curve.pointCount = static_cast<uint32_t>(out.points.size()) - curve.firstPoint;
            out.curves.push_back(curve);
        }
        polygon.curveCount = static_cast<uint32_t>(out.curves.size()) - polygon.firstCurve;
        out.polygons.push_back(polygon);
        first = last + 1;
    }
}

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
