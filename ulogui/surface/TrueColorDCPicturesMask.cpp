// A colour painted through a picture's alpha (CopyAlphaOnlyColors, DrawMask) and a picture cut out by a
// mask (DrawMaskedPicture).
#include <cstddef>
#include <cstring>

#include "buffer/BufferView.h"
#include "surface/PictureDrawing.h"
#include "ulogui/Picture.h"
#include "ulogui/TrueColorDC.h"

using namespace ulogui::surface;
using ulogui::raster::RasterView;

namespace {

// Byte `alpha` of every pixel of `view`; its rows are whole 4-byte pixels.
void FillAlpha(const RasterView& view, unsigned char alpha) {
    for (int y = 0; y < view.Height(); ++y) {
        unsigned char* p = view.Row(y);
        for (int x = 0; x < view.Width(); ++x, p += 4) {
            std::memset(p, 0, 3);
            p[3] = alpha;
        }
    }
}

// The alpha of a mask pixel as the alpha-only painting reads it: the byte of a 1-byte mask, byte 3 of
// a 4-byte picture with alpha, opaque otherwise.
unsigned char MaskAlpha(const RasterView& mask, int flags, int x, int y) {
    if (mask.BytesPerPixel() == 1) {
        return *mask.Pixel(x, y);
    }
    return mask.BytesPerPixel() == 4 && (flags & PICTBITS_ALPHA) ? mask.Pixel(x, y)[3] : 0;
}

}  // namespace

void ULOTrueColorDCBase::CopyAlphaOnlyColors(const ULOPictureBits* source, const ULORect* rect,
                                             const CLR& colour, const ULOPoint* skip, float opacity,
                                             bool alphaIsCoverage) {
    if (source == nullptr || rect == nullptr) {
        return;
    }
    const CopyRects rects(*rect, skip);
    DrawPictureWith(*this, *source, rects.dst, rects.src, rects.dst,
                    SelectAlphaOnlyRoutine(source->GetFlags(), source->GetBytesPerPixel(), ComputeAlpha(),
                                           colour, opacity, alphaIsCoverage));
}

void ULOTrueColorDCBase::DrawMask(const ULOPicture& mask, const CLR& colour, const ULOPoint& point,
                                  const ULORect& clip, float opacity) {
    const ULOSize size = mask.GetSize(false);
    DrawPictureWith(*this, mask, RectAt(point.x, point.y, size.cx, size.cy), ULORect(0, 0, size.cx, size.cy),
                    clip,
                    SelectAlphaOnlyRoutine(mask.GetFlags(), mask.GetBytesPerPixel(), ComputeAlpha(), colour,
                                           opacity, false));
}

void ULOTrueColorDCBase::DrawMaskedPicture(const ULOPicture& picture, const ULOPicture& mask,
                                           const CLR& colour, const ULOPoint& point, const ULORect& clip) {
    // The ground: the colour through the mask.
    DrawMask(mask, colour, point, clip, 1.0f);
    if (clip.IsEmpty()) {
        return;
    }
    // The picture through the mask: a picture of the mask's size holding the picture's pixels, whose
    // transparency t combines the picture's (tp) and the mask's (tm) as 255 - (255 - tp) * (255 - tm) / 255,
    // so a pixel shows only as far as both are opaque. Where the picture does not reach, it is transparent.
    const PictureRoutine copy = SelectCopyOnlyRoutine(picture.GetFlags(), picture.GetBytesPerPixel());
    if (!copy.draws) {
        return;
    }
    const PictureCall call(*this, picture);
    const SourcePixels maskPixels(mask, IsMagnified(), call.Frame().Conversion().Magnifier());
    if (call.IsEmpty() || maskPixels.IsEmpty()) {
        return;
    }
    const RasterView& maskView = maskPixels.View();
    ULOPictureBits cut(ULOSize(maskView.Width(), maskView.Height()), PICTBITS_ALPHA);
    const RasterView cutView = ulogui::buffer::ViewOf(cut);
    FillAlpha(cutView, 255);
    TransferRows(cutView,
                 PlanCopy(cutView.Bounds(), cutView.Bounds(), cutView.Bounds(), cutView.Width(),
                          cutView.Height(), call.Source().Width(), call.Source().Height()),
                 call.Source(), copy);
    for (int y = 0; y < cutView.Height(); ++y) {
        unsigned char* p = cutView.Row(y);
        for (int x = 0; x < cutView.Width(); ++x, p += 4) {
            const int opaque = (255 - p[3]) * (255 - MaskAlpha(maskView, maskPixels.Flags(), x, y)) / 255;
            p[3] = static_cast<unsigned char>(255 - opaque);
        }
    }
    const ULOPoint at = call.ToDevice(point);
    const ULORect dst = RectAt(at.x, at.y, cutView.Width(), cutView.Height());
    const PictureRoutine draw =
        SelectPictureRoutine(PICTBITS_ALPHA, 4, ComputeAlpha(), 1.0f, ULOTrueColorDCBase::eCopyNormal);
    const RasterView& canvas = call.Canvas();
    TransferRows(canvas,
                 PlanCopy(dst, cutView.Bounds(), call.ToDevice(clip), canvas.Width(), canvas.Height(),
                          cutView.Width(), cutView.Height()),
                 cutView, draw);
}
