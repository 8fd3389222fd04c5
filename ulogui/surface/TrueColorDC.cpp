// Construction, copying and destruction of the drawing surface.
#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <new>

#include "raster/PixelBlock.h"
#include "ulogui/Magnify.h"
#include "ulogui/TrueColorDC.h"

using ulogui::raster::AllocatePixelBlock;
using ulogui::raster::PixelBlockSize;

ulo::CriticalSection ULOTrueColorDCBase::csFontTextOut;

namespace {

// A side of the surface: at least one pixel. A side beyond the int range, or a row too long for a
// 32-bit stride, cannot be allocated.
int SurfaceSide(int32_t from, int32_t to, int64_t limit) {
    const int64_t side = static_cast<int64_t>(to) - from;
    if (side > limit) {
        throw std::bad_alloc();
    }
    return side < 1 ? 1 : static_cast<int>(side);
}

}  // namespace

ULOTrueColorDCBase::ULOTrueColorDCBase() = default;

ULOTrueColorDCBase::ULOTrueColorDCBase(const ULORect& rect, bool alpha, bool magnified) {
    ULORect device = rect;
    if (magnified) {
        magnify::DoMagnify(device, true);
    }
    const int newWidth = SurfaceSide(device.left, device.right, INT_MAX / 4);
    const int newHeight = SurfaceSide(device.top, device.bottom, INT_MAX);
    // 32 bits per pixel round up to whole words with nothing left over: the stride is 4 bytes a pixel.
    const int newLineWidth = newWidth * 4;
    // Cleared: black, alpha 0.
    unsigned char* block = AllocatePixelBlock(PixelBlockSize(newLineWidth, newHeight), true);
    const int newFlags = alpha ? (GetFlags() | PICTBITS_ALPHA) : GetFlags();
    Reset(block, newWidth, newHeight, newLineWidth, newFlags);
    ownBuffer = true;
    SetbIsMagnified(magnified);
}

// The picture part is built as a plain view of the other surface's pixels: a picture's own copy would
// duplicate them, and a surface copy must draw into the same memory.
ULOTrueColorDCBase::ULOTrueColorDCBase(const ULOTrueColorDCBase& other)
    : ULOPicture(),
      ownBuffer(other.ownBuffer),
      workingOnScreenSize(other.workingOnScreenSize),
      updated(other.updated),
      enableMnemonic(other.enableMnemonic) {
    ULOPictureBits::operator=(other);
    SetbIsMagnified(other.ULOPicture::IsMagnified());
}

const ULOTrueColorDCBase& ULOTrueColorDCBase::operator=(const ULOTrueColorDCBase& other) {
    // The count comes from this surface's getters, so outside the guard a magnified surface copies
    // fewer bytes than it holds. It is cut to both blocks, whose sizes are not otherwise compared.
    const int64_t requested = static_cast<int64_t>(GetLineWidth(false)) * GetHeight(false);
    const int64_t ownBytes = static_cast<int64_t>(PixelBlockSize(lineWidth, height));
    const int64_t otherBytes = static_cast<int64_t>(PixelBlockSize(other.lineWidth, other.height));
    const int64_t count = std::min({requested, ownBytes, otherBytes});
    if (count > 0 && bits != nullptr && other.bits != nullptr && bits != other.bits) {
        // Two surfaces may view overlapping memory.
        std::memmove(bits, other.bits, static_cast<size_t>(count));
    }
    return *this;
}

ULOTrueColorDCBase::~ULOTrueColorDCBase() {
    if (!ownBuffer) {
        Reset(nullptr, 0, 0, 0, 0);
    }
}

bool ULOTrueColorDCBase::CanGetBits() const {
    return workingOnScreenSize || !IsMagnified();
}

bool ULOTrueColorDCBase::ComputeAlpha() const {
    return (flags & PICTBITS_ALPHA) != 0;
}

bool ULOTrueColorDCBase::IsMagnified() const {
    return ULOPicture::IsMagnified();
}
