// The geometry of a magnified picture: its buffer holds device pixels, while its size queries and
// geometry operations speak logical units.
#include "base/MagnifyRounding.h"
#include "base/ScopedOverride.h"
#include "ulogui/Magnify.h"
#include "ulogui/Picture.h"

namespace {

// Logical values to device pixels with the factor read once, or unchanged for a picture that is not
// magnified.
struct ToDevicePixels {
    float m;
    bool active;
    template <typename V>
    V operator()(const V& v) const {
        return active ? ulogui::base::ToDevice(v, m) : v;
    }
};

// Runs a buffer operation with its arguments in device pixels: on a magnified picture the arguments are
// scaled once and the operation runs with the thread's magnifier held at 1.0, so that the buffer
// operations that call other virtual operations (Crop calls Resize, for one) do not scale them again.
template <typename Operation>
void OnDevicePixels(bool magnified, Operation operation) {
    float& magnifier = magnify::GetMagnifier();
    const ToDevicePixels toDevice{magnifier, magnified};
    const ulogui::base::ScopedOverride<float> hold(magnifier, 1.0f, magnified);
    operation(toDevice);
}

}  // namespace

bool ULOPicture::CanGetBits() const {
    return !bIsMagnified;
}

CLR ULOPicture::GetPixel(ULOPoint p) const {
    return GetPixel(p.x, p.y);
}

CLR ULOPicture::GetPixel(int x, int y) const {
    if (IsMagnified()) {
        const float m = magnify::GetMagnifier();
        x = ulogui::base::ToDevice(x, m);
        y = ulogui::base::ToDevice(y, m);
        // Rounding up at a magnifier below 1.0 can carry the last logical column or row one past the
        // buffer; it reads the last device one instead.
        if (x == width && width > 0) {
            --x;
        }
        if (y == height && height > 0) {
            --y;
        }
    }
    return ULOPictureBits::GetPixel(x, y);
}

int ULOPicture::GetWidth(bool magnified) const {
    const float m = magnify::GetMagnifier();
    return bIsMagnified && !magnified && m != 1.0f ? ulogui::base::ToLogical(width, m) : width;
}

int ULOPicture::GetHeight(bool magnified) const {
    const float m = magnify::GetMagnifier();
    return bIsMagnified && !magnified && m != 1.0f ? ulogui::base::ToLogical(height, m) : height;
}

ULOSize ULOPicture::GetSize(bool magnified) const {
    return ULOSize(GetWidth(magnified), GetHeight(magnified));
}

int ULOPicture::GetLineWidth(bool magnified) const {
    if (bIsMagnified && !magnified && magnify::GetMagnifier() != 1.0f) {
        return ULOPictureUtil::ComputeLineWidth(GetWidth(false), flags);
    }
    return lineWidth;
}

void ULOPicture::HEnlarge(int newWidth, int splitX) {
    OnDevicePixels(IsMagnified(), [&](const ToDevicePixels& device) {
        ULOPictureBits::HEnlarge(device(newWidth), device(splitX));
    });
}

void ULOPicture::VEnlarge(int newHeight, int splitY) {
    OnDevicePixels(IsMagnified(), [&](const ToDevicePixels& device) {
        ULOPictureBits::VEnlarge(device(newHeight), device(splitY));
    });
}

void ULOPicture::Enlarge(const ULORect& target, const ULOPoint& split) {
    HEnlarge(target.right - target.left, split.x);
    VEnlarge(target.bottom - target.top, split.y);
}

void ULOPicture::Crop(int newWidth, int newHeight, ECropPosition position) {
    OnDevicePixels(IsMagnified(), [&](const ToDevicePixels& device) {
        ULOPictureBits::Crop(device(newWidth), device(newHeight), position);
    });
}

void ULOPicture::Crop(ULORect rect) {
    OnDevicePixels(IsMagnified(), [&](const ToDevicePixels& device) { ULOPictureBits::Crop(device(rect)); });
}

void ULOPicture::ResizeToWidth(int newWidth, EResizeMethod method) {
    OnDevicePixels(IsMagnified(), [&](const ToDevicePixels& device) {
        ULOPictureBits::ResizeToWidth(device(newWidth), method);
    });
}

void ULOPicture::ResizeToHeight(int newHeight, EResizeMethod method) {
    OnDevicePixels(IsMagnified(), [&](const ToDevicePixels& device) {
        ULOPictureBits::ResizeToHeight(device(newHeight), method);
    });
}

void ULOPicture::Resize(int newWidth, int newHeight, const ULORect& source, EResizeMethod method) {
    OnDevicePixels(IsMagnified(), [&](const ToDevicePixels& device) {
        ULOPictureBits::Resize(device(newWidth), device(newHeight), device(source), method);
    });
}

void ULOPicture::Resize(int newWidth, int newHeight, EResizeMethod method) {
    OnDevicePixels(IsMagnified(), [&](const ToDevicePixels& device) {
        ULOPictureBits::Resize(device(newWidth), device(newHeight), method);
    });
}

void ULOPicture::ResizeLazy(int newWidth, int newHeight) {
    OnDevicePixels(IsMagnified(), [&](const ToDevicePixels& device) {
        ULOPictureBits::ResizeLazy(device(newWidth), device(newHeight));
    });
}

void ULOPicture::HResize(int newWidth) {
    OnDevicePixels(IsMagnified(),
                   [&](const ToDevicePixels& device) { ULOPictureBits::HResize(device(newWidth)); });
}
