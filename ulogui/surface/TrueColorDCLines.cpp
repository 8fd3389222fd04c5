// The outline members of the surface: pixels, lines, rectangle outlines and the two frames. Each public
// member picks its paint (plain, alpha, relative, onto alpha) once and runs one template.
#include <cstdint>

#include "pixelops/PixelTransferLoops.h"
#include "surface/DrawingFrame.h"
#include "surface/LinePaint.h"
#include "surface/LineRaster.h"
#include "surface/PixelWrites.h"
#include "ulogui/TrueColorDC.h"

using ulogui::pixelops::OpacityWeight;
using ulogui::surface::AlphaPaint;
using ulogui::surface::Axis;
using ulogui::surface::Dashes;
using ulogui::surface::DrawingFrame;
using ulogui::surface::OnAlphaPaint;
using ulogui::surface::PlainPaint;
using ulogui::surface::RelativePaint;
using ulogui::surface::SaturatingDifference;

namespace {

// One pixel: clamped onto the surface, or on a magnified surface outside the guard (magnifier other than
// 1.0) the logical pixel's device block, clipped like a rectangle.
template <typename Paint>
void PaintPixel(ULOTrueColorDCBase& dc, const ULOPoint& point, const Paint& paint) {
    const DrawingFrame frame(dc);
    const ulogui::raster::RasterView& canvas = frame.Canvas();
    if (canvas.IsEmpty()) {
        return;
    }
    if (frame.Conversion().PixelIsBlock()) {
        ULORect block = frame.ToDevice(ulogui::surface::DeviceConversion::PixelRect(point));
        if (canvas.Clip(block)) {
            ulogui::surface::WriteRect(canvas, block, paint);
        }
        return;
    }
    const ULOPoint p = canvas.Clamp(frame.ToDevice(point));
    paint(canvas.Pixel(p.x, p.y));
}
// The plain form is DrawPixel itself, whose block also becomes opaque.
void PaintPixel(ULOTrueColorDCBase& dc, const ULOPoint& point, const PlainPaint& paint) {
    dc.DrawPixel(point, CLR(paint.colour[2], paint.colour[1], paint.colour[0]));
}

// A horizontal or vertical line of `length` logical pixels from `start`: on a magnified surface outside
// the guard the start and length are multiplied by the magnifier without rounding and the line is the
// magnifier thick.
template <typename Paint>
void PaintAxisLine(ULOTrueColorDCBase& dc, Axis axis, const ULOPoint& start, int length, const Paint& paint,
                   const Dashes& dashes) {
    if (length == 0) {
        return;
    }
    const DrawingFrame frame(dc);
    if (frame.Canvas().IsEmpty()) {
        return;
    }
    float x = static_cast<float>(start.x);
    float y = static_cast<float>(start.y);
    float l = static_cast<float>(length);
    float thickness = 1.0f;
    if (frame.Conversion().IsActive()) {
        const float m = frame.Conversion().Magnifier();
        x *= m;
        y *= m;
        l *= m;
        thickness = m;
    }
    if (axis == Axis::kHorizontal) {
        DrawAxisLine(frame.Canvas(), axis, x, y, l, thickness, paint, dashes);
    } else {
        DrawAxisLine(frame.Canvas(), axis, y, x, l, thickness, paint, dashes);
    }
}

// A line between two logical points: a pixel, a horizontal or vertical line, or else both ends rounded to
// device pixels and drawn anti-aliased.
template <typename Paint>
void PaintLine(ULOTrueColorDCBase& dc, const ULOPoint& from, const ULOPoint& to, const Paint& paint,
               const Dashes& dashes) {
    if (from == to) {
        PaintPixel(dc, from, paint);
        return;
    }
    if (from.y == to.y) {
        PaintAxisLine(dc, Axis::kHorizontal, from, SaturatingDifference(to.x, from.x), paint, dashes);
        return;
    }
    if (from.x == to.x) {
        PaintAxisLine(dc, Axis::kVertical, from, SaturatingDifference(to.y, from.y), paint, dashes);
        return;
    }
    const DrawingFrame frame(dc);
    if (!frame.Canvas().IsEmpty()) {
        DrawAntiAliasedLine(frame.Canvas(), frame.ToDevice(from), frame.ToDevice(to), paint, dashes);
    }
}

// a + b held to the int range.
int Offset(int a, std::int64_t b) {
    return SaturatingDifference(a, -b);
}

// Top, left, bottom and right edges, each its own dashed line; the side edges leave out the corners.
template <typename Paint>
void PaintRect(ULOTrueColorDCBase& dc, const ULORect& r, const Paint& paint, const Dashes& dashes) {
    if (r.IsEmpty()) {
        return;
    }
    const int width = SaturatingDifference(r.right, r.left);
    const int side = Offset(SaturatingDifference(r.bottom, r.top), -2);
    PaintAxisLine(dc, Axis::kHorizontal, ULOPoint(r.left, r.top), width, paint, dashes);
    PaintAxisLine(dc, Axis::kVertical, ULOPoint(r.left, r.top + 1), side, paint, dashes);
    PaintAxisLine(dc, Axis::kHorizontal, ULOPoint(r.left, r.bottom - 1), width, paint, dashes);
    PaintAxisLine(dc, Axis::kVertical, ULOPoint(r.right - 1, r.top + 1), side, paint, dashes);
}

const Dashes kSolid(0, 0);

}  // namespace

void ULOTrueColorDCBase::DrawPixelAlpha(const ULOPoint& point, const CLR& colour, float opacity) {
    PaintPixel(*this, point, AlphaPaint(colour, OpacityWeight(opacity)));
}

void ULOTrueColorDCBase::DrawPixelRelative(const ULOPoint& point, const CLR& colour) {
    PaintPixel(*this, point, RelativePaint(colour));
}

void ULOTrueColorDCBase::DrawLine(const ULOPoint& from, const ULOPoint& to, const CLR& colour, int dashOn,
                                  int dashOff) {
    PaintLine(*this, from, to, PlainPaint(colour), Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::DrawLineRelative(const ULOPoint& from, const ULOPoint& to, const CLR& colour,
                                          int dashOn, int dashOff) {
    PaintLine(*this, from, to, RelativePaint(colour), Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::DrawLineAlpha(const ULOPoint& from, const ULOPoint& to, const CLR& colour,
                                       float opacity, int dashOn, int dashOff) {
    PaintLine(*this, from, to, AlphaPaint(colour, OpacityWeight(opacity)), Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::DrawLineOnAlpha(const ULOPoint& from, const ULOPoint& to, const CLR& colour,
                                         float opacity, int dashOn, int dashOff) {
    PaintLine(*this, from, to, OnAlphaPaint(colour, OpacityWeight(opacity)), Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::DrawHorizontalLine(const ULOPoint& start, int length, const CLR& colour, int dashOn,
                                            int dashOff) {
    PaintAxisLine(*this, Axis::kHorizontal, start, length, PlainPaint(colour), Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::DrawHorizontalLineRelative(const ULOPoint& start, int length, const CLR& colour,
                                                    int dashOn, int dashOff) {
    PaintAxisLine(*this, Axis::kHorizontal, start, length, RelativePaint(colour), Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::DrawHorizontalLineAlpha(const ULOPoint& start, int length, const CLR& colour,
                                                 float opacity, int dashOn, int dashOff) {
    PaintAxisLine(*this, Axis::kHorizontal, start, length, AlphaPaint(colour, OpacityWeight(opacity)),
                  Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::DrawVerticalLine(const ULOPoint& start, int length, const CLR& colour, int dashOn,
                                          int dashOff) {
    PaintAxisLine(*this, Axis::kVertical, start, length, PlainPaint(colour), Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::DrawVerticalLineRelative(const ULOPoint& start, int length, const CLR& colour,
                                                  int dashOn, int dashOff) {
    PaintAxisLine(*this, Axis::kVertical, start, length, RelativePaint(colour), Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::DrawVerticalLineAlpha(const ULOPoint& start, int length, const CLR& colour,
                                               float opacity, int dashOn, int dashOff) {
    PaintAxisLine(*this, Axis::kVertical, start, length, AlphaPaint(colour, OpacityWeight(opacity)),
                  Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::DrawRect(const ULORect& rect, const CLR& colour, int dashOn, int dashOff) {
    PaintRect(*this, rect, PlainPaint(colour), Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::DrawRectRelative(const ULORect& rect, const CLR& colour, int dashOn, int dashOff) {
    PaintRect(*this, rect, RelativePaint(colour), Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::DrawRectAlpha(const ULORect& rect, const CLR& colour, float opacity, int dashOn,
                                       int dashOff) {
    PaintRect(*this, rect, AlphaPaint(colour, OpacityWeight(opacity)), Dashes(dashOn, dashOff));
}

void ULOTrueColorDCBase::Draw3DRect(const ULORect& rect, bool raised) {
    if (rect.IsEmpty()) {
        return;
    }
    const PlainPaint light(CLR(255, 255, 255));
    const PlainPaint dark(CLR(0, 0, 0));
    const PlainPaint& topLeft = raised ? light : dark;
    const PlainPaint& bottomRight = raised ? dark : light;
    const int width = SaturatingDifference(rect.right, rect.left);
    const int height = SaturatingDifference(rect.bottom, rect.top);
    PaintAxisLine(*this, Axis::kHorizontal, rect.TopLeft(), width, topLeft, kSolid);
    PaintAxisLine(*this, Axis::kVertical, rect.TopLeft(), height, topLeft, kSolid);
    PaintAxisLine(*this, Axis::kHorizontal, ULOPoint(rect.left, rect.bottom - 1), width, bottomRight, kSolid);
    PaintAxisLine(*this, Axis::kVertical, ULOPoint(rect.right - 1, rect.top + 1), Offset(height, -1),
                  bottomRight, kSolid);
}

void ULOTrueColorDCBase::DrawRecessedFrame(const ULORect& rect) {
    if (rect.IsEmpty()) {
        return;
    }
    // Offsets as (red, green, blue); the differences between the horizontal and vertical ones and the
    // longer right edge belong to the frame's look.
    const RelativePaint faint(CLR(-10, -11, -8));
    const RelativePaint deepTop(CLR(-35, -35, -25));
    const RelativePaint deepCorner(CLR(-17, -18, -13));
    const RelativePaint deepLeft(CLR(-35, -35, -26));
    const RelativePaint lightBottom(CLR(29, 27, 15));
    const RelativePaint lightRight(CLR(29, 26, 15));
    const int l = rect.left;
    const int t = rect.top;
    const int across = Offset(SaturatingDifference(rect.right, l), -3);
    const int down = Offset(SaturatingDifference(rect.bottom, t), -3);
    PaintAxisLine(*this, Axis::kHorizontal, ULOPoint(Offset(l, 1), t), across, faint, kSolid);
    PaintAxisLine(*this, Axis::kHorizontal, ULOPoint(Offset(l, 2), Offset(t, 1)), across, deepTop, kSolid);
    PaintAxisLine(*this, Axis::kHorizontal, ULOPoint(Offset(l, 2), rect.bottom - 1), across, lightBottom,
                  kSolid);
    PaintAxisLine(*this, Axis::kVertical, ULOPoint(l, Offset(t, 1)), down, faint, kSolid);
    PaintPixel(*this, ULOPoint(Offset(l, 1), Offset(t, 1)), deepCorner);
    PaintAxisLine(*this, Axis::kVertical, ULOPoint(Offset(l, 1), Offset(t, 2)), down, deepLeft, kSolid);
    PaintAxisLine(*this, Axis::kVertical, ULOPoint(rect.right - 1, Offset(t, 2)), Offset(down, 1), lightRight,
                  kSolid);
}
