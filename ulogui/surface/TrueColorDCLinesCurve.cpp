// Chart curves: a polyline through an array of samples, one per logical pixel along x (or y), and the
// filled area between such a curve and a baseline. Samples are positions in logical pixels; on a
// magnified surface they are scaled to device pixels without rounding before they are drawn, so the
// fill's edge keeps its fraction, and the curve's points round like any point.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "base/MagnifyRounding.h"
#include "pixelops/PixelTransferLoops.h"
#include "surface/DrawingFrame.h"
#include "surface/LinePaint.h"
#include "surface/LineRaster.h"
#include "ulogui/TrueColorDC.h"

using ulogui::surface::AlphaPaint;
using ulogui::surface::Dashes;
using ulogui::surface::DrawingFrame;

namespace {

// The samples a call draws: the first `count` of the array (no more than it holds), cut to `range`
// [first, second) when one is given.
struct SampleRange {
    std::int64_t first = 0;
    std::int64_t end = 0;
};

SampleRange Samples(int count, const ULOArray_NOSTL<double>& values, const std::pair<int, int>* range) {
    SampleRange s;
    s.end = std::min<std::int64_t>(count, values.GetCount());
    if (range != nullptr) {
        s.first = std::max<std::int64_t>(range->first, 0);
        s.end = std::min<std::int64_t>(s.end, range->second);
    }
    return s;
}

// Logical pixel positions along the sample axis: sample i lies at origin + i. The samples whose position
// lies within two pixels of the surface, which is all that can reach it.
SampleRange OnSurface(SampleRange s, std::int64_t origin, int deviceSize, float m) {
    if (m > 0.0f && std::isfinite(m)) {
        const double first = std::floor(-2.0 / m) - origin;
        const double last = std::ceil((deviceSize + 2.0) / m) - origin;
        s.first = std::max<std::int64_t>(s.first, static_cast<std::int64_t>(std::max(first, -4e18)));
        s.end = std::min<std::int64_t>(s.end, static_cast<std::int64_t>(std::min(last + 1.0, 4e18)));
    }
    return s;
}

// A sample value in device pixels, held to +-2^30 so that differences of two stay in the int range; NaN
// is a gap.
bool DeviceValue(double v, double m, double& device) {
    if (v != v) {
        return false;
    }
    constexpr double kLimit = 1073741824.0;
    device = std::min(std::max(v * m, -kLimit), kLimit);
    return true;
}

// A logical position along the sample axis in device pixels, rounded like a point.
int DevicePosition(std::int64_t logical, const DrawingFrame& frame) {
    const int held = ulogui::surface::SaturatingDifference(logical, 0);
    return frame.ToDevice(held);
}

void TraceCurve(ULOTrueColorDCBase& dc, bool alongX, int count, const ULOArray_NOSTL<double>& values,
                const CLR& colour, float opacity, const std::pair<int, int>* range) {
    const DrawingFrame frame(dc);
    const ulogui::raster::RasterView& canvas = frame.Canvas();
    if (canvas.IsEmpty() || count <= 0) {
        return;
    }
    const bool convert = frame.Conversion().IsActive();
    const float m = convert ? frame.Conversion().Magnifier() : 1.0f;
    const SampleRange s =
        OnSurface(Samples(count, values, range), 0, alongX ? canvas.Width() : canvas.Height(), m);
    const AlphaPaint paint(colour, ulogui::pixelops::OpacityWeight(opacity));
    const Dashes solid(0, 0);

    // The point of sample i, false for a gap.
    const auto pointOf = [&](std::int64_t i, ULOPoint& p) {
        double v = 0.0;
        if (!DeviceValue(values[static_cast<size_t>(i)], m, v)) {
            return false;
        }
        const int along = DevicePosition(i, frame);
        const int value = static_cast<int>(std::floor(v + 0.5));
        p = alongX ? ULOPoint(along, value) : ULOPoint(value, along);
        return true;
    };
    const auto onSurface = [&](ULOPoint a, ULOPoint b) {
        return std::max(a.x, b.x) >= 0 && std::min(a.x, b.x) < canvas.Width() && std::max(a.y, b.y) >= 0 &&
               std::min(a.y, b.y) < canvas.Height();
    };

    bool havePrevious = false;
    ULOPoint previous;
    for (std::int64_t i = s.first; i < s.end; ++i) {
        ULOPoint point;
        const bool have = pointOf(i, point);
        if (have && havePrevious && onSurface(previous, point)) {
            ulogui::surface::DrawAntiAliasedLine(canvas, previous, point, paint, solid);
        }
        // The line leaves out its end point: the last sample of a run, or a lone one, is drawn on its own
        // when it lies on the surface.
        const bool runEnds = have && (i + 1 == s.end || std::isnan(values[static_cast<size_t>(i + 1)]));
        if (runEnds && canvas.Bounds().Contains(point)) {
            paint(canvas.Pixel(point.x, point.y));
        }
        havePrevious = have;
        previous = point;
    }
}

}  // namespace

void ULOTrueColorDCBase::TraceCurvefX(int count, const ULOArray_NOSTL<double>& values, const CLR& colour,
                                      float opacity, const std::pair<int, int>* range) {
    TraceCurve(*this, true, count, values, colour, opacity, range);
}

void ULOTrueColorDCBase::TraceCurvefY(int count, const ULOArray_NOSTL<double>& values, const CLR& colour,
                                      float opacity, const std::pair<int, int>* range) {
    TraceCurve(*this, false, count, values, colour, opacity, range);
}

void ULOTrueColorDCBase::FillBackGroundfX(int count, const ULOArray_NOSTL<double>& values,
                                          const ULOPoint& origin, const CLR& above, const CLR& below,
                                          const CLR& baseline, float opacity,
                                          const std::pair<int, int>* range) {
    const DrawingFrame frame(*this);
    const ulogui::raster::RasterView& canvas = frame.Canvas();
    if (canvas.IsEmpty() || count <= 0) {
        return;
    }
    const bool convert = frame.Conversion().IsActive();
    const float m = convert ? frame.Conversion().Magnifier() : 1.0f;
    const SampleRange s = OnSurface(Samples(count, values, range), origin.x, canvas.Width(), m);
    if (s.first >= s.end) {
        return;
    }
    const int weight = ulogui::pixelops::OpacityWeight(opacity);
    const AlphaPaint paintAbove(above, weight);
    const AlphaPaint paintBelow(below, weight);

    // Rows are covered between the curve's and the baseline's pixel centres: in device pixels, from
    // (min(v, b) + 0.5) * m to (max(v, b) + 0.5) * m, where row r spans r .. r + 1.
    const double base = (static_cast<double>(origin.y) + 0.5) * m;
    for (std::int64_t i = s.first; i < s.end; ++i) {
        double v = 0.0;
        if (!DeviceValue(values[static_cast<size_t>(i)] + 0.5, m, v) || v == base) {
            continue;
        }
        const int left = std::max(DevicePosition(origin.x + i, frame), 0);
        const int right = std::min(DevicePosition(origin.x + i + 1, frame), canvas.Width());
        if (left >= right) {
            continue;
        }
        const double top = std::min(v, base);
        const double bottom = std::max(v, base);
        const int firstRow = static_cast<int>(std::max(std::floor(top), 0.0));
        const int endRow =
            static_cast<int>(std::min(std::ceil(bottom), static_cast<double>(canvas.Height())));
        const AlphaPaint& paint = v < base ? paintAbove : paintBelow;
        for (int row = firstRow; row < endRow; ++row) {
            const double covered = std::min(row + 1.0, bottom) - std::max(static_cast<double>(row), top);
            const int coverage = ulogui::pixelops::OpacityWeight(static_cast<float>(covered));
            unsigned char* p = canvas.Pixel(left, row);
            for (int x = left; x < right; ++x, p += 4) {
                if (coverage == 255) {
                    paint(p);
                } else if (coverage > 0) {
                    paint.Cover(p, coverage);
                }
            }
        }
    }

    // The baseline across the columns of the samples drawn, as thick as a horizontal line, cut to the
    // surface so that it reaches the right edge.
    const int left = std::max(DevicePosition(origin.x + s.first, frame), 0);
    const int right = std::min(DevicePosition(origin.x + s.end, frame), canvas.Width());
    if (left < right) {
        const float y = static_cast<float>(origin.y) * m;
        ulogui::surface::DrawAxisLine(canvas, ulogui::surface::Axis::kHorizontal, static_cast<float>(left), y,
                                      static_cast<float>(right - left), convert ? m : 1.0f,
                                      AlphaPaint(baseline, weight), Dashes(0, 0));
    }
}
