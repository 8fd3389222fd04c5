#pragma once
// The frame that every drawing member of ULOTrueColorDCBase runs in.
//
// A drawing member builds one DrawingFrame on entry, before it reads the buffer:
//
//     void ULOTrueColorDCBase::FillSomething(const ULORect* rect, ...) {
//         if (rect == nullptr || rect->IsEmpty()) return;   // empty input: nothing, not even a conversion
//         const DrawingFrame frame(*this);
//         ULORect area = frame.ToDevice(*rect);               // logical -> device, only when due
//         if (!frame.Canvas().Clip(area)) return;             // rectangles are clipped ...
//         unsigned char* row = frame.Canvas().Row(area.top);  // ... rows found bottom-up
//         ...
//     }
//
// The frame decides once whether the arguments are logical (the guard is down and the surface is
// magnified) and reads the thread's magnifier once, then raises the guard so that everything the member
// calls - the size getters, GetRect, other drawing members - works in device pixels, and reads the
// buffer's device-pixel bounds and stride through the virtual getters. Leaving the frame restores the
// guard, also when an exception passes through.
#include <cstddef>
#include <cstdint>

#include "base/MagnifyRounding.h"
#include "base/ScopedOverride.h"
#include "raster/RasterView.h"
#include "ulogui/Geometry.h"
#include "ulogui/Magnify.h"
#include "ulogui/TrueColorDC.h"

namespace ulogui {
namespace surface {

// Logical-to-device conversion of a drawing call's arguments, decided when the call starts: active only
// when the guard is down and the surface is magnified. Opacities and colours are never converted. Every
// conversion uses the magnifier read when the call started.
class DeviceConversion {
public:
    explicit DeviceConversion(const ULOTrueColorDCBase& dc)
        : magnifier_(magnify::GetMagnifier()), active_(!dc.GetWorkingOnScreenSize() && dc.IsMagnified()) {}

    // Whether the arguments are logical and get converted.
    bool IsActive() const { return active_; }
    // The calling thread's magnifier, read when the call started.
    float Magnifier() const { return magnifier_; }
    // Whether a single logical pixel stands for a block of device pixels, so that pixel operations turn
    // into rectangle operations on (x, y, x + 1, y + 1).
    bool PixelIsBlock() const { return active_ && magnifier_ != 1.0f; }

    int Length(int v) const { return active_ ? base::ToDevice(v, magnifier_) : v; }
    ULOPoint Point(ULOPoint p) const { return ULOPoint(Length(p.x), Length(p.y)); }
    // Origin and size are scaled separately, so equal sizes stay equal wherever they lie.
    ULORect Rect(const ULORect& r) const { return active_ ? base::ToDevice(r, magnifier_) : r; }

    // The logical rectangle that a single logical pixel covers. At the far end of the int range it is
    // empty, so such a pixel draws nothing.
    static ULORect PixelRect(ULOPoint p) {
        return ULORect(p.x, p.y, p.x < INT32_MAX ? p.x + 1 : p.x, p.y < INT32_MAX ? p.y + 1 : p.y);
    }

private:
    float magnifier_;
    bool active_;
};

// The conversion of a call's arguments and the raised guard: while it lives the surface works in device
// pixels. A surface that is not magnified never has its guard touched.
class DeviceScope {
public:
    explicit DeviceScope(const ULOTrueColorDCBase& dc)
        : conversion_(dc), guard_(dc.workingOnScreenSize, true, dc.IsMagnified()) {}

    const DeviceConversion& Conversion() const { return conversion_; }
    int ToDevice(int length) const { return conversion_.Length(length); }
    ULOPoint ToDevice(ULOPoint p) const { return conversion_.Point(p); }
    ULORect ToDevice(const ULORect& r) const { return conversion_.Rect(r); }

private:
    DeviceConversion conversion_;  // decided before the guard goes up
    base::ScopedOverride<bool> guard_;
};

// The buffer as a drawing member sees it inside the guard: device-pixel bounds and bottom-up rows, read
// through the virtual getters, so a subclass that overrides them changes what is drawn on. A buffer that
// cannot be drawn on safely (no bits, not 4 bytes per pixel, a stride shorter than a row) gives an empty
// view.
inline raster::RasterView DeviceView(ULOTrueColorDCBase& dc) {
    const int width = dc.GetWidth(false);
    const int height = dc.GetHeight(false);
    const int lineWidth = dc.GetLineWidth(false);
    unsigned char* bits = dc.GetBits();
    if (bits == nullptr || dc.GetBytesPerPixel() != 4 || width <= 0 || height <= 0 ||
        lineWidth < static_cast<std::ptrdiff_t>(width) * 4) {
        return raster::RasterView();
    }
    return raster::RasterView::BottomUp(bits, width, height, lineWidth, 4);
}

// Conversion, guard and canvas in the order the frame needs them: the canvas is read after the guard
// went up.
class DrawingFrame : public DeviceScope {
public:
    explicit DrawingFrame(ULOTrueColorDCBase& dc) : DeviceScope(dc), canvas_(DeviceView(dc)) {}

    const raster::RasterView& Canvas() const { return canvas_; }

private:
    raster::RasterView canvas_;
};

}  // namespace surface
}  // namespace ulogui
