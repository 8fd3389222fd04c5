// The geometry of a magnified picture: its buffer holds device pixels, while its size queries and
// geometry operations speak logical units.
#include "picture/MagnifierHold.h"
#include "ulogui/Magnify.h"
#include "ulogui/Picture.h"

namespace {

int Magnified(int v) {
    int unused = 0;
    magnify::DoMagnify(v, unused, true);
    return v;
}

int Unmagnified(int v) {
    int unused = 0;
    magnify::UndoMagnify(v, unused, true);
    return v;
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
        magnify::DoMagnify(x, y, true);
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
    if (bIsMagnified && !magnified && magnify::GetMagnifier() != 1.0f) {
        return Unmagnified(width);
    }
    return width;
}

int ULOPicture::GetHeight(bool magnified) const {
    if (bIsMagnified && !magnified && magnify::GetMagnifier() != 1.0f) {
        return Unmagnified(height);
    }
    return height;
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

// Each operation below scales its arguments once and then runs the buffer's own operation with the
// magnifier held at 1.0, so that the buffer operations that call other virtual operations (Crop calls
// Resize, for one) do not scale the arguments a second time.

void ULOPicture::HEnlarge(int newWidth, int splitX) {
    if (!IsMagnified()) {
        ULOPictureBits::HEnlarge(newWidth, splitX);
        return;
    }
    magnify::DoMagnify(newWidth, splitX, true);
    const ulogui::picture::MagnifierHold hold;
    ULOPictureBits::HEnlarge(newWidth, splitX);
}

void ULOPicture::VEnlarge(int newHeight, int splitY) {
    if (!IsMagnified()) {
        ULOPictureBits::VEnlarge(newHeight, splitY);
        return;
    }
    magnify::DoMagnify(newHeight, splitY, true);
    const ulogui::picture::MagnifierHold hold;
    ULOPictureBits::VEnlarge(newHeight, splitY);
}

void ULOPicture::Enlarge(const ULORect& target, const ULOPoint& split) {
    HEnlarge(target.right - target.left, split.x);
    VEnlarge(target.bottom - target.top, split.y);
}

void ULOPicture::Crop(int newWidth, int newHeight, ECropPosition position) {
    if (!IsMagnified()) {
        ULOPictureBits::Crop(newWidth, newHeight, position);
        return;
    }
    magnify::DoMagnify(newWidth, newHeight, true);
    const ulogui::picture::MagnifierHold hold;
    ULOPictureBits::Crop(newWidth, newHeight, position);
}

void ULOPicture::Crop(ULORect rect) {
    if (!IsMagnified()) {
        ULOPictureBits::Crop(rect);
        return;
    }
    magnify::DoMagnify(rect, true);
    const ulogui::picture::MagnifierHold hold;
    ULOPictureBits::Crop(rect);
}

void ULOPicture::ResizeToWidth(int newWidth, EResizeMethod method) {
    if (!IsMagnified()) {
        ULOPictureBits::ResizeToWidth(newWidth, method);
        return;
    }
    newWidth = Magnified(newWidth);
    const ulogui::picture::MagnifierHold hold;
    ULOPictureBits::ResizeToWidth(newWidth, method);
}

void ULOPicture::ResizeToHeight(int newHeight, EResizeMethod method) {
    if (!IsMagnified()) {
        ULOPictureBits::ResizeToHeight(newHeight, method);
        return;
    }
    newHeight = Magnified(newHeight);
    const ulogui::picture::MagnifierHold hold;
    ULOPictureBits::ResizeToHeight(newHeight, method);
}

void ULOPicture::Resize(int newWidth, int newHeight, const ULORect& source, EResizeMethod method) {
    if (!IsMagnified()) {
        ULOPictureBits::Resize(newWidth, newHeight, source, method);
        return;
    }
    magnify::DoMagnify(newWidth, newHeight, true);
    ULORect scaledSource = source;
    magnify::DoMagnify(scaledSource, true);
    const ulogui::picture::MagnifierHold hold;
    ULOPictureBits::Resize(newWidth, newHeight, scaledSource, method);
}

void ULOPicture::Resize(int newWidth, int newHeight, EResizeMethod method) {
    if (!IsMagnified()) {
        ULOPictureBits::Resize(newWidth, newHeight, method);
        return;
    }
    magnify::DoMagnify(newWidth, newHeight, true);
    const ulogui::picture::MagnifierHold hold;
    ULOPictureBits::Resize(newWidth, newHeight, method);
}

void ULOPicture::ResizeLazy(int newWidth, int newHeight) {
    if (!IsMagnified()) {
        ULOPictureBits::ResizeLazy(newWidth, newHeight);
        return;
    }
    magnify::DoMagnify(newWidth, newHeight, true);
    const ulogui::picture::MagnifierHold hold;
    ULOPictureBits::ResizeLazy(newWidth, newHeight);
}

void ULOPicture::HResize(int newWidth) {
    if (!IsMagnified()) {
        ULOPictureBits::HResize(newWidth);
        return;
    }
    newWidth = Magnified(newWidth);
    const ulogui::picture::MagnifierHold hold;
    ULOPictureBits::HResize(newWidth);
}
