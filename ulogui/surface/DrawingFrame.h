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
// magnified), then raises the guard so that everything the member calls - the size getters, GetRect,
// other drawing members - works in device pixels, and reads the buffer's device-pixel bounds and stride
// through the virtual getters. Its destructor restores the guard, also when an exception passes through.
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/FloatToInteger.h"
#include "ulogui/Geometry.h"
#include "ulogui/Magnify.h"
#include "ulogui/TrueColorDC.h"

namespace ulogui {
namespace surface {

// Raises the guard of a magnified surface for as long as it lives and then restores the value it found.
// A surface that is not magnified is never touched.
class GuardRaiser {
public:
    explicit GuardRaiser(const ULOTrueColorDCBase& dc) : dc_(dc), saved_(dc.GetWorkingOnScreenSize()) {
        if (dc_.IsMagnified()) {
            dc_.SetWorkingOnScreenSize(true);
        }
    }
    ~GuardRaiser() {
        if (dc_.IsMagnified()) {
            dc_.SetWorkingOnScreenSize(saved_);
        }
    }
    GuardRaiser(const GuardRaiser&) = delete;
    GuardRaiser& operator=(const GuardRaiser&) = delete;

private:
    const ULOTrueColorDCBase& dc_;
    const bool saved_;
};

// floor(v * m + 0.5) in single precision, saturating at the int range (NaN gives 0): the rounding of
// every logical-to-device conversion, the same as magnify::DoMagnify's.
inline int ScaleToDevice(int v, float m) {
    return base::SaturatingTruncate(std::floor(static_cast<float>(v) * m + 0.5f));
}
// floor(v / m + 0.5), the same way: device to logical.
inline int ScaleToLogical(int v, float m) {
    return base::SaturatingTruncate(std::floor(static_cast<float>(v) / m + 0.5f));
}

// Logical-to-device conversion of a drawing call's arguments, decided when the call starts: active
// only when the guard is down and the surface is magnified. Opacities and colours are never converted.
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

    int Length(int v) const { return active_ ? ScaleToDevice(v, magnifier_) : v; }
    ULOPoint Point(ULOPoint p) const {
        return active_ ? ULOPoint(ScaleToDevice(p.x, magnifier_), ScaleToDevice(p.y, magnifier_)) : p;
    }
    // The logical rectangle that a single logical pixel covers. At the far end of the int range it is
    // empty, so such a pixel draws nothing.
    static ULORect PixelRect(ULOPoint p) {
        return ULORect(p.x, p.y, p.x < INT32_MAX ? p.x + 1 : p.x, p.y < INT32_MAX ? p.y + 1 : p.y);
    }
    // Origin and size are scaled separately, so equal sizes stay equal wherever they lie.
    ULORect Rect(ULORect r) const {
        magnify::DoMagnify(r, active_);
        return r;
    }

private:
    float magnifier_;
    bool active_;
};

// The buffer as a drawing member sees it inside the guard: device-pixel bounds and bottom-up rows.
// Read through the virtual getters, so a subclass that overrides them changes what is drawn on.
// A buffer that cannot be drawn on safely (no bits, not 4 bytes per pixel, a stride shorter than a row)
// has empty bounds.
class DeviceCanvas {
public:
    explicit DeviceCanvas(ULOTrueColorDCBase& dc) {
        const int width = dc.GetWidth(false);
        const int height = dc.GetHeight(false);
        const int lineWidth = dc.GetLineWidth(false);
        unsigned char* bits = dc.GetBits();
        if (bits == nullptr || dc.GetBytesPerPixel() != 4 || width <= 0 || height <= 0 ||
            lineWidth < static_cast<std::ptrdiff_t>(width) * 4) {
            return;
        }
        bits_ = bits;
        width_ = width;
        height_ = height;
        stride_ = lineWidth;
    }

    int Width() const { return width_; }
    int Height() const { return height_; }
    bool IsEmpty() const { return width_ <= 0 || height_ <= 0; }
    ULORect Bounds() const { return ULORect(0, 0, width_, height_); }
    // Bytes from one row to the next one in memory, which is the row above on screen.
    std::ptrdiff_t Stride() const { return stride_; }

    // Rectangle operations: intersects `r` with the bounds; false (and `r` unusable) when nothing is left.
    bool Clip(ULORect& r) const {
        r.left = r.left > 0 ? r.left : 0;
        r.top = r.top > 0 ? r.top : 0;
        r.right = r.right < width_ ? r.right : width_;
        r.bottom = r.bottom < height_ ? r.bottom : height_;
        return r.left < r.right && r.top < r.bottom;
    }
    // Point operations: each coordinate is clamped into the bounds, so an outside point lands on the
    // nearest border. Only for a canvas that is not empty.
    ULOPoint Clamp(ULOPoint p) const {
        return ULOPoint(p.x < 0         ? 0
                        : p.x >= width_ ? width_ - 1
                                        : p.x,
                        p.y < 0          ? 0
                        : p.y >= height_ ? height_ - 1
                                         : p.y);
    }

    // First byte of row y (y = 0 the top row); the row below on screen is Stride() bytes lower.
    unsigned char* Row(int y) const {
        return bits_ + (static_cast<std::ptrdiff_t>(height_) - 1 - y) * stride_;
    }
    unsigned char* Pixel(int x, int y) const { return Row(y) + static_cast<std::ptrdiff_t>(x) * 4; }

private:
    unsigned char* bits_ = nullptr;
    int width_ = 0;
    int height_ = 0;
    std::ptrdiff_t stride_ = 0;
};

// Conversion, guard and canvas in the order the frame needs them: the conversion is decided before the
// guard goes up, the canvas is read after.
class DrawingFrame {
public:
    explicit DrawingFrame(ULOTrueColorDCBase& dc) : conversion_(dc), guard_(dc), canvas_(dc) {}

    const DeviceConversion& Conversion() const { return conversion_; }
    const DeviceCanvas& Canvas() const { return canvas_; }

    int ToDevice(int length) const { return conversion_.Length(length); }
    ULOPoint ToDevice(ULOPoint p) const { return conversion_.Point(p); }
    ULORect ToDevice(const ULORect& r) const { return conversion_.Rect(r); }

private:
    DeviceConversion conversion_;
    GuardRaiser guard_;
    DeviceCanvas canvas_;
};

}  // namespace surface
}  // namespace ulogui
