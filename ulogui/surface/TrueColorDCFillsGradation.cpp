// The two-colour gradations with an alpha ramp: horizontal (written), vertical (blended) and
// diagonal (written). docs/fills-and-scrolling.md gives the sampling of each.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "pixelops/PixelTransferLoops.h"
#include "surface/AreaFrame.h"
#include "surface/ConstantSourceRows.h"
#include "ulogui/TrueColorDC.h"

using ulogui::surface::AreaFrame;

namespace {

// A ramp value truncated into a byte. Values the ramp reaches beyond its rectangle saturate at 0 and
// 255; a NaN (from an infinite or NaN alpha) gives 0.
unsigned char RampByte(float v) {
    return !(v > 0.0f) ? 0 : v >= 255.0f ? 255 : static_cast<unsigned char>(static_cast<int>(v));
}

// The colour and the alpha ramp at a position t: colour byte i = trunc(from[i] * (1 - t) + to[i] * t),
// byte 3 = trunc(((1 - t) * alphaFrom + t * alphaTo) * 255), single precision.
class Ramp {
public:
    Ramp(const CLR& from, const CLR& to, float alphaFrom, float alphaTo)
        : from_{from.blue, from.green, from.red},
          to_{to.blue, to.green, to.red},
          alphaFrom_(alphaFrom),
          alphaTo_(alphaTo) {}

    void At(float t, unsigned char* pixel) const {
        const float u = 1.0f - t;
        for (int i = 0; i < 3; ++i) {
            pixel[i] = RampByte(static_cast<float>(from_[i]) * u + static_cast<float>(to_[i]) * t);
        }
        pixel[3] = RampByte((u * alphaFrom_ + t * alphaTo_) * 255.0f);
    }

private:
    unsigned char from_[3];
    unsigned char to_[3];
    float alphaFrom_;
    float alphaTo_;
};

// offset / span in single precision; a ramp of no extent is its start everywhere.
float RampPosition(std::int64_t offset, std::int64_t span) {
    return span == 0 ? 0.0f : static_cast<float>(offset) / static_cast<float>(span);
}

// The common start of the gradations: both rectangles converted whenever the guard is down, the guard
// raised on every surface, the area clipped.
class GradationFrame : public AreaFrame {
public:
    GradationFrame(ULOTrueColorDCBase& dc, const ULORect& gradient, const ULORect& area)
        : AreaFrame(dc, Guard::kAlways), gradient_(ToDevice(gradient)), area_(ToDevice(area)) {
        drawn_ = Canvas().Clip(area_);
    }
    bool Drawn() const { return drawn_; }
    const ULORect& Gradient() const { return gradient_; }
    const ULORect& Area() const { return area_; }

private:
    ULORect gradient_;
    ULORect area_;
    bool drawn_ = false;
};

}  // namespace

void ULOTrueColorDCBase::FillRectHorizontalGradation(const ULORect* gradient, const ULORect* area,
                                                     const CLR& from, const CLR& to, float alphaFrom,
                                                     float alphaTo) {
    if (gradient == nullptr || area == nullptr || area->IsEmpty()) {
        return;
    }
    const GradationFrame frame(*this, *gradient, *area);
    if (!frame.Drawn()) {
        return;
    }
    const ulogui::raster::RasterView& canvas = frame.Canvas();
    const ULORect& g = frame.Gradient();
    const ULORect& a = frame.Area();
    const Ramp ramp(from, to, alphaFrom, alphaTo);
    const std::int64_t span = static_cast<std::int64_t>(g.right) - g.left;

    // The top row is computed (no half-pixel offset: t is 0 at the gradient's left edge) ...
    unsigned char* first = canvas.Pixel(a.left, a.top);
    for (int x = a.left; x < a.right; ++x) {
        ramp.At(RampPosition(static_cast<std::int64_t>(x) - g.left, span), first + 4 * (x - a.left));
    }
    // ... and copied into the others.
    const std::size_t bytes = static_cast<std::size_t>(a.right - a.left) * 4;
    for (int y = a.top + 1; y < a.bottom; ++y) {
        std::memcpy(canvas.Pixel(a.left, y), first, bytes);
    }
}

void ULOTrueColorDCBase::FillRectVerticalGradation(const ULORect* gradient, const ULORect* area,
                                                   const CLR& from, const CLR& to, float alphaFrom,
                                                   float alphaTo) {
    if (gradient == nullptr || area == nullptr || area->IsEmpty()) {
        return;
    }
    const GradationFrame frame(*this, *gradient, *area);
    if (!frame.Drawn()) {
        return;
    }
    const ULORect& g = frame.Gradient();
    const ULORect& a = frame.Area();
    const Ramp ramp(from, to, alphaFrom, alphaTo);
    const std::int64_t span = static_cast<std::int64_t>(g.bottom) - g.top;

    // Each row is a solid span of its colour under the alpha write, i.e. the opacity wrapper around a
    // plain copy with the ramp's alpha as the weight; byte 3 stays.
    ulogui::surface::ConstantSourceRows rows(ulogui::pixelops::Functor::kCopy,
                                             ulogui::pixelops::Wrapper::kOpacity,
                                             ulogui::pixelops::CallConstants(), a.right - a.left);
    for (int y = a.bottom - 1; y >= a.top; --y) {
        // Deliberately the row's centre: j + 0.5 + area top - gradient top, summed in double, rounded
        // to float.
        const double centre = static_cast<double>(y - a.top) + 0.5 + a.top - g.top;
        const float t = span == 0 ? 0.0f : static_cast<float>(centre) / static_cast<float>(span);
        unsigned char pixel[4];
        ramp.At(t, pixel);
        if (pixel[3] == 0) {
            continue;  // weight 0 leaves the row as it is
        }
        rows.SetPixel(pixel);
        rows.SetWeight(pixel[3]);
        rows.RunRow(frame.Canvas().Pixel(a.left, y), a.right - a.left);
    }
}

void ULOTrueColorDCBase::FillRectTopLeftToBottomRightGradation(const ULORect* gradient, const ULORect* area,
                                                               const CLR& from, const CLR& to,
                                                               float alphaFrom, float alphaTo) {
    if (gradient == nullptr || area == nullptr || area->IsEmpty()) {
        return;
    }
    const GradationFrame frame(*this, *gradient, *area);
    if (!frame.Drawn()) {
        return;
    }
    const ulogui::raster::RasterView& canvas = frame.Canvas();
    const ULORect& g = frame.Gradient();
    const ULORect& a = frame.Area();
    const Ramp ramp(from, to, alphaFrom, alphaTo);
    // t = ((x - left) + (y - top)) / (width + height): 0 at the gradient's top-left corner, 1 at its
    // bottom-right one, constant along lines of 45 degrees. Pixel (x, y + 1) is therefore pixel
    // (x + 1, y): each row is the row above moved left by one pixel, with one new pixel at its end.
    const std::int64_t span =
        (static_cast<std::int64_t>(g.right) - g.left) + (static_cast<std::int64_t>(g.bottom) - g.top);
    const std::int64_t firstOffset =
        (static_cast<std::int64_t>(a.left) - g.left) + (static_cast<std::int64_t>(a.top) - g.top);
    const int count = a.right - a.left;

    unsigned char* above = canvas.Pixel(a.left, a.top);
    for (int x = 0; x < count; ++x) {
        ramp.At(RampPosition(firstOffset + x, span), above + 4 * x);
    }
    const std::size_t shifted = static_cast<std::size_t>(count - 1) * 4;
    for (int y = a.top + 1; y < a.bottom; ++y) {
        unsigned char* row = canvas.Pixel(a.left, y);
        std::memcpy(row, above + 4, shifted);
        ramp.At(RampPosition(firstOffset + (y - a.top) + (count - 1), span), row + shifted);
        above = row;
    }
}
