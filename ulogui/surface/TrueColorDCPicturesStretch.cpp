// Pictures stretched at marked columns or rows (DrawHEnlargedPicture, DrawVEnlargedPicture) and
// extruded along one column or row (ExtrudePicture*). Both lay out their pieces in device pixels on one
// frame and one read of the source, and draw every piece with the routine the master picks.
#include <algorithm>
#include <cstdint>

#include "surface/PictureDrawing.h"
#include "ulogui/TrueColorDC.h"

using namespace ulogui::surface;
using ulogui::raster::RasterView;

namespace {

// The stretched axis of a call and the one across it, so that one layout serves columns and rows.
struct Orientation {
    bool horizontal;

    AxisRun Along(const ULORect& dst, const ULORect& src) const {
        return horizontal ? RunX(dst, src) : RunY(dst, src);
    }
    AxisRun Across(const ULORect& dst, const ULORect& src) const {
        return horizontal ? RunY(dst, src) : RunX(dst, src);
    }
    std::int64_t Lo(const ULORect& r) const { return horizontal ? r.left : r.top; }
    std::int64_t Hi(const ULORect& r) const { return horizontal ? r.right : r.bottom; }
    int Length(const RasterView& v) const { return horizontal ? v.Width() : v.Height(); }
    int Breadth(const RasterView& v) const { return horizontal ? v.Height() : v.Width(); }
    int Of(const ULOPoint& p) const { return horizontal ? p.x : p.y; }
    std::int64_t AcrossLo(const ULORect& r) const { return horizontal ? r.top : r.left; }
    std::int64_t AcrossHi(const ULORect& r) const { return horizontal ? r.bottom : r.right; }

    TransferPlan Plan(const AxisPlan& along, const AxisPlan& across) const {
        TransferPlan plan;
        (horizontal ? plan.x : plan.y) = along;
        (horizontal ? plan.y : plan.x) = across;
        return plan;
    }
};

std::int64_t Hold(std::int64_t v, std::int64_t lo, std::int64_t hi) {
    return std::min(std::max(v, lo), hi);
}

// The pieces of a stretched picture along its axis, in device pixels: draw(run, repeat) for each, where
// `run` places source pixels [srcLo, srcHi) at [dstLo, dstHi) one to one, or repeats source pixel srcLo
// over [dstLo, dstHi) when `repeat`. `length` is the picture's length from `origin`; `points` are
// turned into device pixels by `toDevice` and held between the point before and the picture's last
// pixel. Pieces that begin at or after `stop` cannot be seen, and the layout ends there.
template <typename ToDevice, typename Draw>
void LayOutStretch(std::int64_t dstLo, std::int64_t dstHi, std::int64_t origin, std::int64_t length,
                   const int* points, int count, std::int64_t stop, const ToDevice& toDevice,
                   const Draw& draw) {
    const std::int64_t dstLength = dstHi - dstLo;
    if (points == nullptr || count <= 0 || dstLength == length) {
        draw(AxisRun{dstLo, dstHi, origin, origin + dstLength}, false);
        return;
    }
    if (dstLength > length) {
        // The extra length is shared out by integer division, the remainder going to the later points.
        std::int64_t extra = dstLength - length;
        std::int64_t x = dstLo;
        std::int64_t sx = origin;
        std::int64_t previous = 0;
        for (int k = 0; k < count && x < stop; ++k) {
            const std::int64_t point = Hold(toDevice(points[k]), previous, length - 1);
            const std::int64_t segment = point - previous;
            draw(AxisRun{x, x + segment, sx, sx + segment}, false);
            x += segment;
            sx += segment;
            // The stretched pixel is also the first of the next segment.
            const std::int64_t per = extra / (count - k);
            draw(AxisRun{x, x + per, sx, sx + 1}, true);
            extra -= per;
            x += per;
            previous = point;
        }
        draw(AxisRun{x, dstHi, sx, sx + (dstHi - x)}, false);
        return;
    }
    // Narrower: the `remove` source pixels centred on the first point are left out. The left part keeps
    // the pixels before them, the right part the ones after them, up to the picture's end.
    const std::int64_t remove = length - dstLength;
    const std::int64_t start = Hold(Hold(toDevice(points[0]), 0, length - 1) - remove / 2, 0, dstLength);
    draw(AxisRun{dstLo, dstLo + start, origin, origin + start}, false);
    draw(AxisRun{dstLo + start, dstHi, origin + start + remove, origin + length}, false);
}

void DrawEnlarged(ULOTrueColorDCBase& dc, const ULOPictureBits& source, const ULORect& dst,
                  const ULOPoint& srcOrigin, const ULORect& clip, int* points, int count, float opacity,
                  Orientation orientation) {
    if (count == 1 && points != nullptr && points[0] == -1) {
        // A single unspecified point is the middle, and the caller gets to see which one it was.
        points[0] = (orientation.horizontal ? source.GetWidth(false) : source.GetHeight(false)) / 2;
    }
    if (dst.IsEmpty() || clip.IsEmpty()) {
        return;
    }
    const PictureRoutine routine =
        SelectPictureRoutine(source.GetFlags(), source.GetBytesPerPixel(), CarriesAlpha(dc), opacity,
                             ULOTrueColorDCBase::eCopyNormal);
    if (!routine.draws) {
        return;
    }
    const PictureCall call(dc, source);
    if (call.IsEmpty()) {
        return;
    }
    const ULORect device = call.ToDevice(dst);
    const ULORect deviceClip = call.ToDevice(clip);
    const ULOPoint origin = call.ToDevice(srcOrigin);
    const RasterView& canvas = call.Canvas();
    const RasterView& picture = call.Source();
    const AxisPlan across = PlanAxis(orientation.Across(device, AtPoint(origin, device)),
                                     orientation.AcrossLo(deviceClip), orientation.AcrossHi(deviceClip),
                                     orientation.Breadth(canvas), orientation.Breadth(picture), false);
    if (across.IsEmpty()) {
        return;
    }
    const std::int64_t clipLo = orientation.Lo(deviceClip);
    const std::int64_t clipHi = orientation.Hi(deviceClip);
    const std::int64_t stop = std::min<std::int64_t>(clipHi, orientation.Length(canvas));
    LayOutStretch(
        orientation.Lo(device), orientation.Hi(device), orientation.Of(origin), orientation.Length(picture),
        points, count, stop, [&call](int v) { return call.ToDevice(v); },
        [&](const AxisRun& run, bool repeat) {
            const AxisPlan along = PlanAxis(run, clipLo, clipHi, orientation.Length(canvas),
                                            orientation.Length(picture), repeat);
            call.Draw(orientation.Plan(along, across), routine);
        });
}

void Extrude(ULOTrueColorDCBase& dc, const ULOPictureBits* source, const ULORect* rect, float opacity,
             ULOTrueColorDCBase::ECopyPictureType type, const ULOPoint* skip, Orientation orientation) {
    if (source == nullptr || rect == nullptr || rect->IsEmpty()) {
        return;
    }
    const PictureRoutine routine =
        SelectPictureRoutine(source->GetFlags(), source->GetBytesPerPixel(), CarriesAlpha(dc), opacity, type);
    if (!routine.draws) {
        return;
    }
    const PictureCall call(dc, *source);
    if (call.IsEmpty()) {
        return;
    }
    const ULORect device = call.ToDevice(*rect);
    const ULOPoint from = skip != nullptr ? call.ToDevice(*skip) : ULOPoint(0, 0);
    const RasterView& canvas = call.Canvas();
    const RasterView& picture = call.Source();
    const std::int64_t repeated = orientation.Of(from);
    const AxisPlan along =
        PlanAxis(AxisRun{orientation.Lo(device), orientation.Hi(device), repeated, repeated + 1},
                 orientation.Lo(device), orientation.Hi(device), orientation.Length(canvas),
                 orientation.Length(picture), true);
    const AxisPlan across = PlanAxis(orientation.Across(device, AtPoint(from, device)),
                                     orientation.AcrossLo(device), orientation.AcrossHi(device),
                                     orientation.Breadth(canvas), orientation.Breadth(picture), false);
    call.Draw(orientation.Plan(along, across), routine);
}

constexpr Orientation kColumns{true};
constexpr Orientation kRows{false};

}  // namespace

void ULOTrueColorDCBase::DrawHEnlargedPicture(const ULOPictureBits& source, const ULORect& dst,
                                              const ULOPoint& srcOrigin, const ULORect& clip, int* points,
                                              int count, float opacity) {
    DrawEnlarged(*this, source, dst, srcOrigin, clip, points, count, opacity, kColumns);
}

void ULOTrueColorDCBase::DrawHEnlargedPicture(const ULOPictureBits& source, const ULORect& dst,
                                              const ULOPoint& srcOrigin, const ULORect& clip, int point,
                                              float opacity) {
    DrawEnlarged(*this, source, dst, srcOrigin, clip, &point, 1, opacity, kColumns);
}

void ULOTrueColorDCBase::DrawHEnlargedPicture(const ULOPictureBits& source, const ULORect& dst,
                                              const ULOPoint& srcOrigin, int* points, int count,
                                              float opacity) {
    DrawEnlarged(*this, source, dst, srcOrigin, dst, points, count, opacity, kColumns);
}

void ULOTrueColorDCBase::DrawHEnlargedPicture(const ULOPictureBits& source, const ULORect& dst,
                                              const ULOPoint& srcOrigin, int point, float opacity) {
    DrawEnlarged(*this, source, dst, srcOrigin, dst, &point, 1, opacity, kColumns);
}

void ULOTrueColorDCBase::DrawHEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, int* points,
                                              int count, float opacity) {
    DrawEnlarged(*this, source, dst, ULOPoint(0, 0), dst, points, count, opacity, kColumns);
}

void ULOTrueColorDCBase::DrawHEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, int point,
                                              float opacity) {
    DrawEnlarged(*this, source, dst, ULOPoint(0, 0), dst, &point, 1, opacity, kColumns);
}

void ULOTrueColorDCBase::DrawVEnlargedPicture(const ULOPictureBits& source, const ULORect& dst,
                                              const ULOPoint& srcOrigin, const ULORect& clip, int* points,
                                              int count, float opacity) {
    DrawEnlarged(*this, source, dst, srcOrigin, clip, points, count, opacity, kRows);
}

void ULOTrueColorDCBase::DrawVEnlargedPicture(const ULOPictureBits& source, const ULORect& dst,
                                              const ULOPoint& srcOrigin, const ULORect& clip, int point,
                                              float opacity) {
    DrawEnlarged(*this, source, dst, srcOrigin, clip, &point, 1, opacity, kRows);
}

void ULOTrueColorDCBase::DrawVEnlargedPicture(const ULOPictureBits& source, const ULORect& dst,
                                              const ULOPoint& srcOrigin, int* points, int count,
                                              float opacity) {
    DrawEnlarged(*this, source, dst, srcOrigin, dst, points, count, opacity, kRows);
}

void ULOTrueColorDCBase::DrawVEnlargedPicture(const ULOPictureBits& source, const ULORect& dst,
                                              const ULOPoint& srcOrigin, int point, float opacity) {
    DrawEnlarged(*this, source, dst, srcOrigin, dst, &point, 1, opacity, kRows);
}

void ULOTrueColorDCBase::DrawVEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, int* points,
                                              int count, float opacity) {
    DrawEnlarged(*this, source, dst, ULOPoint(0, 0), dst, points, count, opacity, kRows);
}

void ULOTrueColorDCBase::DrawVEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, int point,
                                              float opacity) {
    DrawEnlarged(*this, source, dst, ULOPoint(0, 0), dst, &point, 1, opacity, kRows);
}

void ULOTrueColorDCBase::ExtrudePictureHorizontally(const ULOPictureBits* source, const ULORect* rect,
                                                    ECopyPictureType type, ULOPoint* skip) {
    Extrude(*this, source, rect, 1.0f, type, skip, kColumns);
}

void ULOTrueColorDCBase::ExtrudePictureVertically(const ULOPictureBits* source, const ULORect* rect,
                                                  ECopyPictureType type, ULOPoint* skip) {
    Extrude(*this, source, rect, 1.0f, type, skip, kRows);
}

void ULOTrueColorDCBase::ExtrudePictureHorizontallyAlpha(const ULOPictureBits* source, const ULORect* rect,
                                                         float opacity, ECopyPictureType type,
                                                         ULOPoint* skip) {
    Extrude(*this, source, rect, opacity, type, skip, kColumns);
}

void ULOTrueColorDCBase::ExtrudePictureVerticallyAlpha(const ULOPictureBits* source, const ULORect* rect,
                                                       float opacity, ECopyPictureType type, ULOPoint* skip) {
    Extrude(*this, source, rect, opacity, type, skip, kRows);
}
