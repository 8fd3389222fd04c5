// Logical and device sizes of the drawing surface, and the operations that change its size.
#include "surface/DrawingFrame.h"
#include "ulogui/Magnify.h"
#include "ulogui/TrueColorDC.h"

using ulogui::surface::DeviceConversion;
using ulogui::surface::DeviceScope;

namespace {

// Runs a pixel buffer operation with its arguments in device pixels. The guard stays up while it runs,
// so that the buffer operations that call other virtual operations (cropping resizes, for one) reach
// this surface's overrides with device pixels and do not convert a second time.
template <typename Operation>
void OnDevicePixels(ULOTrueColorDCBase& dc, Operation operation) {
    const DeviceScope scope(dc);
    operation(scope.Conversion());
}

}  // namespace

int ULOTrueColorDCBase::LogicalOrStored_(int stored, bool magnified) const {
    if (magnified || workingOnScreenSize || !IsMagnified()) {
        return stored;
    }
    const float m = magnify::GetMagnifier();
    return m == 1.0f ? stored : ulogui::base::ToLogical(stored, m);
}

int ULOTrueColorDCBase::GetWidth(bool magnified) const {
    return LogicalOrStored_(width, magnified);
}

int ULOTrueColorDCBase::GetHeight(bool magnified) const {
    return LogicalOrStored_(height, magnified);
}

ULOSize ULOTrueColorDCBase::GetSize(bool magnified) const {
    return ULOSize(LogicalOrStored_(width, magnified), LogicalOrStored_(height, magnified));
}

// The stride is divided like a length, not recomputed from the logical width.
int ULOTrueColorDCBase::GetLineWidth(bool magnified) const {
    return LogicalOrStored_(lineWidth, magnified);
}

void ULOTrueColorDCBase::AdoptNewBlock_(const unsigned char* previousBits) {
    // The buffer operations leave the buffer owning the block they build; a surface that was given its
    // buffer would otherwise drop that new block unfreed.
    if (bits != previousBits && ownsBits) {
        ownBuffer = true;
    }
}

void ULOTrueColorDCBase::Crop(int newWidth, int newHeight, ECropPosition position) {
    const unsigned char* before = bits;
    OnDevicePixels(*this, [&](const DeviceConversion& device) {
        ULOPictureBits::Crop(device.Length(newWidth), device.Length(newHeight), position);
    });
    AdoptNewBlock_(before);
}

void ULOTrueColorDCBase::Crop(ULORect rect) {
    const unsigned char* before = bits;
    OnDevicePixels(*this, [&](const DeviceConversion& device) {
        const ULORect source = device.Rect(rect);
        ULOPictureBits::Resize(source.right - source.left, source.bottom - source.top, source, eResizeCopy);
    });
    AdoptNewBlock_(before);
}

void ULOTrueColorDCBase::ResizeToWidth(int newWidth, EResizeMethod method) {
    const unsigned char* before = bits;
    OnDevicePixels(*this, [&](const DeviceConversion& device) {
        ULOPictureBits::ResizeToWidth(device.Length(newWidth), method);
    });
    AdoptNewBlock_(before);
}

void ULOTrueColorDCBase::ResizeToHeight(int newHeight, EResizeMethod method) {
    const unsigned char* before = bits;
    OnDevicePixels(*this, [&](const DeviceConversion& device) {
        ULOPictureBits::ResizeToHeight(device.Length(newHeight), method);
    });
    AdoptNewBlock_(before);
}

// Each edge of the source is scaled on its own, like the two sizes.
void ULOTrueColorDCBase::Resize(int newWidth, int newHeight, const ULORect& source, EResizeMethod method) {
    const unsigned char* before = bits;
    OnDevicePixels(*this, [&](const DeviceConversion& device) {
        const ULORect deviceSource(device.Length(source.left), device.Length(source.top),
                                   device.Length(source.right), device.Length(source.bottom));
        ULOPictureBits::Resize(device.Length(newWidth), device.Length(newHeight), deviceSource, method);
    });
    AdoptNewBlock_(before);
}

void ULOTrueColorDCBase::Resize(int newWidth, int newHeight, EResizeMethod method) {
    const unsigned char* before = bits;
    OnDevicePixels(*this, [&](const DeviceConversion& device) {
        ULOPictureBits::Resize(device.Length(newWidth), device.Length(newHeight), method);
    });
    AdoptNewBlock_(before);
}

void ULOTrueColorDCBase::ResizeLazy(int newWidth, int newHeight) {
    const unsigned char* before = bits;
    OnDevicePixels(*this, [&](const DeviceConversion& device) {
        ULOPictureBits::ResizeLazy(device.Length(newWidth), device.Length(newHeight));
    });
    AdoptNewBlock_(before);
}

void ULOTrueColorDCBase::HResize(int newWidth) {
    const unsigned char* before = bits;
    OnDevicePixels(*this,
                   [&](const DeviceConversion& device) { ULOPictureBits::HResize(device.Length(newWidth)); });
    AdoptNewBlock_(before);
}
