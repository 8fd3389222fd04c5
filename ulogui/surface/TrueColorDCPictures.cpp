// Picture drawing: the master DrawPicture and the overloads that build its rectangles, CopyPicture,
// CopyOnlyPicture and BlitToTrueColor.
#include "surface/PictureDrawing.h"
#include "ulogui/TrueColorDC.h"

using ulogui::surface::AtPoint;
using ulogui::surface::CopyRects;
using ulogui::surface::DrawPictureWith;
using ulogui::surface::HeightOf;
using ulogui::surface::RectAt;
using ulogui::surface::SelectCopyOnlyRoutine;
using ulogui::surface::SelectPictureRoutine;
using ulogui::surface::WidthOf;
void ULOTrueColorDCBase::DrawPicture(const ULOPictureBits& source, const ULORect& dst, const ULORect& src,
                                     const ULORect& clip, ECopyPictureType type, float opacity) {
    DrawPictureWith(
        *this, source, dst, src, clip,
        SelectPictureRoutine(source.GetFlags(), source.GetBytesPerPixel(), ComputeAlpha(), opacity, type));
}

void ULOTrueColorDCBase::DrawPicture(const ULOPictureBits& source, const ULOPoint& point, const ULORect& src,
                                     const ULORect& clip, ECopyPictureType type, float opacity) {
    DrawPicture(source, AtPoint(point, src), src, clip, type, opacity);
}

void ULOTrueColorDCBase::DrawPicture(const ULOPictureBits& source, const ULOPoint& point, const ULORect& src,
                                     ECopyPictureType type, float opacity) {
    const ULORect dst = AtPoint(point, src);
    DrawPicture(source, dst, src, dst, type, opacity);
}

void ULOTrueColorDCBase::DrawPicture(const ULOPictureBits& source, const ULOPoint& point,
                                     ECopyPictureType type, float opacity) {
    const ULOSize size = source.GetSize(false);
    const ULORect dst = RectAt(point.x, point.y, size.cx, size.cy);
    DrawPicture(source, dst, ULORect(0, 0, size.cx, size.cy), dst, type, opacity);
}

void ULOTrueColorDCBase::DrawPicture(const ULOPictureBits& source, const ULORect& dst, const ULORect& src,
                                     ECopyPictureType type, float opacity) {
    DrawPicture(source, dst, src, dst, type, opacity);
}

void ULOTrueColorDCBase::DrawPicture(const ULOPictureBits& source, const ULORect& dst,
                                     const ULOPoint& srcOrigin, const ULORect& clip, ECopyPictureType type,
                                     float opacity) {
    DrawPicture(source, dst, AtPoint(srcOrigin, dst), clip, type, opacity);
}

void ULOTrueColorDCBase::DrawPicture(const ULOPictureBits& source, const ULORect& dst,
                                     const ULOPoint& srcOrigin, ECopyPictureType type, float opacity) {
    DrawPicture(source, dst, AtPoint(srcOrigin, dst), dst, type, opacity);
}

void ULOTrueColorDCBase::DrawPicture(const ULOPictureBits& source, const ULORect& dst, ECopyPictureType type,
                                     float opacity) {
    DrawPicture(source, dst, source.GetRect(false), dst, type, opacity);
}

void ULOTrueColorDCBase::DrawPicture(const ULOPictureBits& source, ECopyPictureType type, float opacity) {
    const ULORect whole = source.GetRect(false);
    DrawPicture(source, whole, whole, whole, type, opacity);
}

void ULOTrueColorDCBase::CopyPicture(const ULOPictureBits* source, const ULORect* rect, ECopyPictureType type,
                                     ULOPoint* skip) {
    CopyPictureAlpha(source, rect, 1.0f, type, skip);
}

void ULOTrueColorDCBase::CopyPictureAlpha(const ULOPictureBits* source, const ULORect* rect, float opacity,
                                          ECopyPictureType type, ULOPoint* skip) {
    if (source == nullptr || rect == nullptr) {
        return;
    }
    const CopyRects rects(*rect, skip);
    DrawPicture(*source, rects.dst, rects.src, rects.dst, type, opacity);
}

void ULOTrueColorDCBase::CopyOnlyPicture(const ULOPictureBits& source, const ULORect& dst, const ULORect& src,
                                         const ULORect& clip) {
    DrawPictureWith(*this, source, dst, src, clip,
                    SelectCopyOnlyRoutine(source.GetFlags(), source.GetBytesPerPixel()));
}

void ULOTrueColorDCBase::BlitToTrueColor(ULOTrueColorDCBase* target, const ULORect* targetRect,
                                         const ULORect* sourceRect, ECopyPictureType type) const {
    if (target == nullptr) {
        return;
    }
    const ULORect dst = targetRect != nullptr ? *targetRect : target->GetRect(false);
    const ULORect src = sourceRect != nullptr ? *sourceRect : RectAt(0, 0, WidthOf(dst), HeightOf(dst));
    target->DrawPicture(*this, dst, src, dst, type, 1.0f);
}
