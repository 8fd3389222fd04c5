// The solid fills beside FillRect: mixed by an opacity, relative (signed offsets), relative scaled by
// an opacity, on the transparent part only, and the alpha-only fill.
#include <cstdint>

#include "pixelops/PixelTransferLoops.h"
#include "surface/AreaFrame.h"
#include "surface/ConstantSourceRows.h"
#include "surface/DrawingFrame.h"
#include "surface/PixelWrites.h"
#include "ulogui/TrueColorDC.h"

using ulogui::pixelops::CallConstants;
using ulogui::pixelops::Functor;
using ulogui::pixelops::Wrapper;
using ulogui::surface::AreaFrame;
using ulogui::surface::ConstantSourceRows;
using ulogui::surface::DrawingFrame;

namespace {

// An opacity held to 0..1, a NaN taken as 0: the rule of every opacity weight, applied to the opacity
// that scales relative offsets.
float HeldOpacity(float opacity) {
    return !(opacity > 0.0f) ? 0.0f : opacity > 1.0f ? 1.0f : opacity;
}

// Runs a transfer loop over the rectangle, in the frame of FillRect, with the colour as every source
// pixel.
void FillThroughTransfer(ULOTrueColorDCBase& dc, const ULORect* rect, const CLR& colour, Functor functor,
                         Wrapper wrapper, const CallConstants& constants) {
    if (rect == nullptr || rect->IsEmpty()) {
        return;
    }
    const DrawingFrame frame(dc);
    ULORect area = frame.ToDevice(*rect);
    if (!frame.Canvas().Clip(area)) {
        return;
    }
    ConstantSourceRows rows(functor, wrapper, constants,
                            static_cast<std::int64_t>(area.right - area.left) * (area.bottom - area.top));
    rows.SetPixel({colour.blue, colour.green, colour.red, 0});
    rows.Run(frame.Canvas(), area);
}

// The colour replaces the colour bytes of pixels at least as transparent as the threshold.
struct SetColourOnTransparent {
    void operator()(unsigned char* p) const {
        if (p[3] >= threshold) {
            p[0] = colour[0];
            p[1] = colour[1];
            p[2] = colour[2];
        }
    }
    unsigned char colour[3];
    unsigned char threshold;
};

struct SetAlpha {
    void operator()(unsigned char* p) const { p[3] = alpha; }
    unsigned char alpha;
};

}  // namespace

void ULOTrueColorDCBase::FillRectAlpha(const ULORect* rect, const CLR& colour, float opacity) {
    // The alpha colour write is the opacity wrapper around a plain copy of the colour.
    CallConstants constants;
    constants.k = ulogui::pixelops::OpacityWeight(opacity);
    FillThroughTransfer(*this, rect, colour, Functor::kCopy, Wrapper::kOpacity, constants);
}

void ULOTrueColorDCBase::FillRectRelative(const ULORect* rect, const CLR& colour) {
    FillThroughTransfer(*this, rect, colour, Functor::kRelative, Wrapper::kPlain, CallConstants());
}

void ULOTrueColorDCBase::FillRectRelativeAlpha(const ULORect* rect, const CLR& colour, float opacity) {
    CallConstants constants;
    constants.relativeOpacity = HeldOpacity(opacity);
    FillThroughTransfer(*this, rect, colour, Functor::kRelativeOpacity, Wrapper::kPlain, constants);
}

void ULOTrueColorDCBase::FillRectOnTransparentPart(const ULORect* rect, const CLR& colour,
                                                   unsigned char threshold) {
    if (rect == nullptr || rect->IsEmpty()) {
        return;
    }
    const DrawingFrame frame(*this);
    ULORect area = frame.ToDevice(*rect);
    if (!frame.Canvas().Clip(area)) {
        return;
    }
    ulogui::surface::WriteRect(frame.Canvas(), area,
                               SetColourOnTransparent{{colour.blue, colour.green, colour.red}, threshold});
}

void ULOTrueColorDCBase::FillAlphaRect(const ULORect* rect, unsigned char alpha) {
    if (rect == nullptr || rect->IsEmpty()) {
        return;
    }
    const AreaFrame frame(*this, AreaFrame::Guard::kWhenMagnified);
    ULORect area = frame.ToDevice(*rect);
    if (!frame.Canvas().Clip(area)) {
        return;
    }
    ulogui::surface::WriteRect(frame.Canvas(), area, SetAlpha{alpha});
}
