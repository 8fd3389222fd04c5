// Construction, ownership and single-pixel access of ULOPictureBits.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "raster/PixelBlock.h"
#include "raster/RasterView.h"
#include "ulogui/PictureBits.h"

using ulogui::raster::AllocatePixelBlock;
using ulogui::raster::PixelBlockSize;

namespace {

unsigned char BytesPerPixelOf(int flags) {
    if (flags & PICTBITS_MASK8) {
        return 1;
    }
    return (flags & PICTBITS_RGB24) ? 3 : 4;
}

}  // namespace

namespace ULOPictureUtil {

int ComputeLineWidth(int width, int flags) {
    const uint32_t bitsPerPixel = (flags & PICTBITS_MASK8) ? 8 : (flags & PICTBITS_RGB24) ? 24 : 32;
    // 32-bit arithmetic with an arithmetic shift, so that a negative width keeps its defined answer
    // (-1 gives -4) and an overflowing product wraps instead of being undefined.
    const int32_t rowBits = static_cast<int32_t>(static_cast<uint32_t>(width) * bitsPerPixel + 31u);
    return (rowBits >> 5) * 4;
}

}  // namespace ULOPictureUtil

ULOPictureBits::ULOPictureBits()
    : width(0), height(0), lineWidth(0), bits(nullptr), ownsBits(false), bytesPerPixel(4), flags(0) {}

ULOPictureBits::ULOPictureBits(ULOSize size, int newFlags)
    : width(size.cx),
      height(size.cy),
      lineWidth(ULOPictureUtil::ComputeLineWidth(size.cx, newFlags)),
      bits(nullptr),
      ownsBits(true),
      bytesPerPixel(BytesPerPixelOf(newFlags)),
      flags(newFlags) {
    bits = AllocatePixelBlock(PixelBlockSize(lineWidth, height));
}

ULOPictureBits::ULOPictureBits(unsigned char* newBits, int newWidth, int newHeight, int newLineWidth,
                               int newFlags)
    : width(newWidth),
      height(newHeight),
      lineWidth(newLineWidth),
      bits(newBits),
      ownsBits(false),
      bytesPerPixel(BytesPerPixelOf(newFlags)),
      flags(newFlags) {}

ULOPictureBits::ULOPictureBits(const ULOPictureBits& other)
    : width(other.width),
      height(other.height),
      lineWidth(other.lineWidth),
      bits(other.bits),
      ownsBits(false),
      bytesPerPixel(other.bytesPerPixel),
      flags(other.flags) {}

ULOPictureBits& ULOPictureBits::operator=(const ULOPictureBits& other) {
    // A block this buffer owned is not freed: the assignment turns it into a view of other's pixels.
    width = other.width;
    height = other.height;
    lineWidth = other.lineWidth;
    bits = other.bits;
    ownsBits = false;
    bytesPerPixel = other.bytesPerPixel;
    flags = other.flags;
    return *this;
}

ULOPictureBits::~ULOPictureBits() {
    if (ownsBits && bits != nullptr) {
        std::free(bits);
    }
}

ULOPictureBitsHolder::~ULOPictureBitsHolder() = default;

bool ULOPictureBits::CanGetBits() const {
    return true;
}

CLR ULOPictureBits::GetPixel(ULOPoint p) const {
    return GetPixel(p.x, p.y);
}

CLR ULOPictureBits::GetPixel(int x, int y) const {
    if (bytesPerPixel == 1) {
        return CLR(0, 0, 0);
    }
    const unsigned char* p = GetBitsImpl(x, y);
    return CLR(p[2], p[1], p[0]);
}

int ULOPictureBits::GetWidth(bool /*magnified*/) const {
    return width;
}

int ULOPictureBits::GetHeight(bool /*magnified*/) const {
    return height;
}

ULOSize ULOPictureBits::GetSize(bool /*magnified*/) const {
    return ULOSize(width, height);
}

ULORect ULOPictureBits::GetRect(bool magnified) const {
    const ULOSize size = GetSize(magnified);
    return ULORect(0, 0, size.cx, size.cy);
}

int ULOPictureBits::GetLineWidth(bool /*magnified*/) const {
    return lineWidth;
}

bool ULOPictureBits::IsMagnified() const {
    return false;
}

void ULOPictureBits::Clone(const ULOPictureBits& src) {
    const size_t size = PixelBlockSize(src.lineWidth, src.height);
    unsigned char* copy = AllocatePixelBlock(size);
    if (size != 0) {
        std::memcpy(copy, src.bits, size);
    }
    // A block this buffer owned before is not freed (src may even be this buffer).
    width = src.width;
    height = src.height;
    lineWidth = src.lineWidth;
    flags = src.flags;
    bits = copy;
    ownsBits = true;
    InitBytesPerPixels();
}

void ULOPictureBits::Reset(unsigned char* newBits, int newWidth, int newHeight, int newLineWidth,
                           int newFlags) {
    bits = newBits;
    width = newWidth;
    height = newHeight;
    lineWidth = newLineWidth;
    flags = newFlags;
    ownsBits = true;
    InitBytesPerPixels();
}

void ULOPictureBits::Swap(ULOPictureBits& other) {
    std::swap(width, other.width);
    std::swap(height, other.height);
    std::swap(lineWidth, other.lineWidth);
    std::swap(bits, other.bits);
    std::swap(ownsBits, other.ownsBits);
    std::swap(flags, other.flags);
    bytesPerPixel = other.bytesPerPixel;
    other.InitBytesPerPixels();
}

ULOPictureBits ULOPictureBits::GetRawPictureBits() const {
    return ULOPictureBits(bits, width, height, lineWidth, flags);
}

void ULOPictureBits::InitBytesPerPixels() {
    bytesPerPixel = BytesPerPixelOf(flags);
}

CLR ULOPictureBits::GetPixelAndAlpha(int x, int y, unsigned char& alpha) const {
    const unsigned char* p = GetBitsImpl(x, y);
    if (bytesPerPixel == 1) {
        alpha = p[0];
        return CLR(0, 0, 0);
    }
    // A 3-byte pixel has no byte 3 of its own, whatever the flags say.
    alpha = (flags & PICTBITS_ALPHA) && bytesPerPixel == 4 ? p[3] : 0;
    return CLR(p[2], p[1], p[0]);
}

void ULOPictureBits::SetPixelAndAlpha(int x, int y, const CLR& colour, unsigned char alpha) {
    unsigned char* p = GetBitsImpl(x, y);
    if (bytesPerPixel == 1) {
        p[0] = alpha;
        return;
    }
    p[0] = colour.blue;
    p[1] = colour.green;
    p[2] = colour.red;
    if (bytesPerPixel != 3) {
        p[3] = alpha;
    }
}

unsigned char* ULOPictureBits::GetBitsImpl(int x, int y) const {
    return ulogui::raster::RasterView::BottomUp(bits, width, height, lineWidth, bytesPerPixel).Pixel(x, y);
}
