// ULOPicture construction: choosing the size version, decoding it through the cache and scaling it
// to the display's magnification.
#include <cmath>
#include <cstring>
#include <memory>
#include <utility>

#include "base/ScopedOverride.h"
#include "picture/PictureReader.h"
#include "raster/PixelBlock.h"
#include "ulogui/Magnify.h"
#include "ulogui/Picture.h"

using ulogui::raster::AllocatePixelBlock;
using ulogui::raster::PixelBlockSize;
using ulogui::resfile::PixelBlockPtr;

ulo::CriticalSection ULOPicture::ccResource;

namespace {

// Pictures decoded so far; each decode passes the new value as its cache stamp.
int decodeCounter = 0;

ULOSize Magnified(ULOSize size) {
    magnify::DoMagnify(size, true);
    return size;
}

}  // namespace

// A decoded block as the cache hands it out (owned by the cache).
struct ULOPicture::Decoded {
    // Part `part` of version `version` of picture `id`, stamped as the newest use in the cache.
    static Decoded Read(int id, int version, unsigned int part) {
        Decoded decoded;
        int sizeVersionFlags = 0;
        int stamp = ++decodeCounter;
        ReadPictureVersion(id, static_cast<unsigned int>(version), part, decoded.bits, decoded.flags,
                           sizeVersionFlags, decoded.width, decoded.height, decoded.lineWidth, stamp);
        return decoded;
    }

    unsigned char* bits = nullptr;
    int flags = 0;
    int width = 0;
    int height = 0;
    int lineWidth = 0;
};

ULOPicture::ULOPicture() = default;

ULOPicture::ULOPicture(int id, unsigned int partNumber, bool magnified, bool preferLarge, bool forceLarge)
    : bPreferLarge(preferLarge),
      bForceLarge(forceLarge),
      part(partNumber),
      bCanBeRemade(true),
      bIsMagnified(magnified) {
    ulo::SingleLock lock(ccResource);
    const ULOPictureInfo& record = GetInfoByID(id);
    const float m = magnify::GetMagnifier();
    if (forceLarge) {
        currentVersion = 2;
    } else if (magnified && m != 1.0f && (record.GetSizeVersionFlags() & 2) != 0) {
        currentVersion = (preferLarge || m > 1.99) ? 2 : 1;
    } else {
        currentVersion = 1;
    }
    if (id == -2) {
        MakeTransparentPixel_();
        return;
    }

    const Decoded decoded = Decoded::Read(id, currentVersion, part);
    info = GetInfoByID(id);

    const ULOSize target = magnified ? Magnified(ULOSize(decoded.width, decoded.height))
                                     : ULOSize(decoded.width, decoded.height);
    // Smooth scaling suits whole-number magnifiers; at fractional ones (and for pictures flagged 0x2)
    // stretching the middle keeps edges and frames sharp.
    const bool smooth = (preferLarge || m == std::floor(m)) && (info.GetFlags() & 0x2) == 0;
    TakeDecoded_(decoded, target, smooth, true);
}

ULOPicture::ULOPicture(int id, const ULOSize& size, unsigned int partNumber, bool magnifyRequest, bool smooth)
    : bPreferLarge(smooth),
      requestedSize(size),
      part(partNumber),
      bMagnifyRequest(magnifyRequest),
      bCanBeRemade(true),
      bIsMagnified(true) {
    ulo::SingleLock lock(ccResource);
    const ULOPictureInfo& record = GetInfoByID(id);
    const ULOPictureSizeInfo& first = record.GetPicSizeInfo(1);
    const bool hasLarge = (record.GetSizeVersionFlags() & 2) != 0;
    currentVersion = hasLarge && (first.GetWidth() > size.cx || first.GetHeight() > size.cy) ? 2 : 1;
    const ULOSize target = magnifyRequest ? Magnified(size) : size;
    if (id == -2) {
        MakeTransparentPixel_();
        return;
    }

    const Decoded decoded = Decoded::Read(id, currentVersion, part);
    info = GetInfoByID(id);
    TakeDecoded_(decoded, target, smooth, false);
}

ULOPicture::ULOPicture(const unsigned char* source, int newWidth, int newHeight, int newFlags, int parts)
    : requestedSize(0x7FFFFFFF, 0x7FFFFFFF) {
    ResetInfo_(parts, newFlags, newWidth, newHeight);
    InitCurrentVersion_();
    const int stride = ULOPictureUtil::ComputeLineWidth(newWidth, newFlags);
    const size_t size = PixelBlockSize(stride, newHeight);
    unsigned char* block = AllocatePixelBlock(size, source == nullptr);
    if (size != 0 && source != nullptr) {
        std::memcpy(block, source, size);
    }
    Reset(block, newWidth, newHeight, stride, newFlags);
}

ULOPicture::ULOPicture(ULOSize size, int newFlags, int parts)
    : ULOPicture(nullptr, size.cx, size.cy, newFlags, parts) {}

ULOPicture::ULOPicture(const ULOPicture& other)
    : ULOPictureBits(),
      currentVersion(other.currentVersion),
      info(other.info),
      bPreferLarge(other.bPreferLarge),
      bForceLarge(other.bForceLarge),
      requestedSize(other.requestedSize),
      part(other.part),
      bMagnifyRequest(other.bMagnifyRequest),
      bCanBeRemade(other.bCanBeRemade),
      bIsMagnified(other.bIsMagnified) {
    if (other.GetBits() != nullptr) {
        Clone(other);
    } else {
        Reset(nullptr, other.width, other.height, other.lineWidth, other.flags);
    }
}

ULOPicture::ULOPicture(ULOPicture&& other) noexcept : ULOPicture() {
    Swap(other);
}

ULOPicture& ULOPicture::operator=(const ULOPicture& other) {
    ULOPicture copy(other);
    Swap(copy);
    return *this;
}

ULOPicture& ULOPicture::operator=(ULOPicture&& other) noexcept {
    ULOPicture taken(std::move(other));
    Swap(taken);
    return *this;
}

ULOPicture::~ULOPicture() = default;

void ULOPicture::Swap(ULOPicture& other) {
    ULOPictureBits::Swap(other);
    std::swap(currentVersion, other.currentVersion);
    std::swap(info, other.info);
    std::swap(bPreferLarge, other.bPreferLarge);
    std::swap(bForceLarge, other.bForceLarge);
    std::swap(requestedSize, other.requestedSize);
    std::swap(part, other.part);
    std::swap(bMagnifyRequest, other.bMagnifyRequest);
    std::swap(bCanBeRemade, other.bCanBeRemade);
    std::swap(bIsMagnified, other.bIsMagnified);
}

ULOPicture ULOPicture::Remake() const {
    if (!bCanBeRemade || info.GetID() < 1) {
        return ULOPicture();
    }
    if (requestedSize.cx >= 0 && requestedSize.cy >= 1) {
        return ULOPicture(info.GetID(), requestedSize, part, bMagnifyRequest, bPreferLarge);
    }
    return ULOPicture(info.GetID(), part, bIsMagnified, bPreferLarge, bForceLarge);
}

bool ULOPicture::InitCurrentVersion_() {
    const int versions = info.GetSizeVersionFlags();
    currentVersion = (versions & 1) ? 1 : (versions & 2) ? 2 : 0;
    return currentVersion != 0;
}

void ULOPicture::ResetInfo_(int parts, int newFlags, int newWidth, int newHeight) {
    info = ULOPictureInfo(
        -1, parts, newFlags, 1,
        {ULOPictureSizeInfo(1, newWidth, newHeight, ULOPictureUtil::ComputeLineWidth(newWidth, newFlags))});
}

void ULOPicture::MakeTransparentPixel_() {
    unsigned char* block = AllocatePixelBlock(4);
    std::memset(block, 255, 4);
    Reset(block, 1, 1, 4, 0);
}

void ULOPicture::TakeDecoded_(const Decoded& decoded, ULOSize target, bool smooth, bool shrinkByNearest) {
    const int stride = ULOPictureUtil::ComputeLineWidth(target.cx, decoded.flags);
    if (target.cx < 1 || target.cy < 1) {
        // Nothing can be shown at that size.
        Reset(nullptr, 0, 0, 0, decoded.flags);
        return;
    }
    const size_t decodedSize = PixelBlockSize(decoded.lineWidth, decoded.height);
    if (target.cx == decoded.width && target.cy == decoded.height && stride == decoded.lineWidth) {
        unsigned char* copy = AllocatePixelBlock(decodedSize);
        std::memcpy(copy, decoded.bits, decodedSize);
        Reset(copy, decoded.width, decoded.height, decoded.lineWidth, decoded.flags);
        return;
    }
    if (smooth) {
        // Cleared first, so that row padding the scaler does not write is never left undefined.
        PixelBlockPtr block(AllocatePixelBlock(PixelBlockSize(stride, target.cy), true));
        const ULOPictureBitsHolder source(decoded.bits, decoded.width, decoded.height, decoded.lineWidth,
                                          decoded.flags);
        ULOPictureBitsHolder scaled(block.get(), target.cx, target.cy, stride, decoded.flags);
        source.EnlargeSmooth(scaled, nullptr);
        Reset(block.release(), target.cx, target.cy, stride, decoded.flags);
        return;
    }
    unsigned char* copy = AllocatePixelBlock(decodedSize);
    std::memcpy(copy, decoded.bits, decodedSize);
    Reset(copy, decoded.width, decoded.height, decoded.lineWidth, decoded.flags);
    // The targets are device pixels already: with the magnifier at 1.0 the operations take them as such.
    const ulogui::base::ScopedOverride<float> hold(magnify::GetMagnifier(), 1.0f);
    if (!shrinkByNearest || target.cx > decoded.width || target.cy > decoded.height) {
        HEnlarge(target.cx, -1);
        VEnlarge(target.cy, -1);
    } else {
        Resize(target.cx, target.cy, eResizeNearest);
    }
}
