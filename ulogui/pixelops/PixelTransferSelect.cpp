// Choosing a transfer loop: the instruction-set level, the wrapper and copy-type tables, the picture
// dispatcher and the rectangle walk.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "pixelops/PixelTransferLoops.h"
#include "ulogui/PictureBits.h"

namespace ulogui {
namespace pixelops {

namespace {

// [source has alpha][destination has alpha][opacity exactly 1.0]
constexpr Wrapper kWrapperTable[2][2][2] = {
    {{Wrapper::kOpacity, Wrapper::kPlain}, {Wrapper::kOpacity, Wrapper::kPlain}},
    {{Wrapper::kSourceAlphaOpacity, Wrapper::kSourceAlpha}, {Wrapper::kOntoAlpha, Wrapper::kOntoAlpha}},
};

// Indexed by ECopyPictureType.
constexpr Functor kCopyTypeFunctors[] = {Functor::kCopy, Functor::kHighlight, Functor::kDisabled,
                                         Functor::kDarken};
constexpr int kCopyTypeCount = sizeof(kCopyTypeFunctors) / sizeof(kCopyTypeFunctors[0]);

}  // namespace

int OpacityWeight(float opacity) {
    const float scaled = opacity * 255.0f;
    if (!(scaled > 0.0f)) {
        return 0;
    }
    return scaled >= 255.0f ? 255 : static_cast<int>(scaled);
}

Loop::Loop(Functor functor, Wrapper wrapper, float opacity, float relativeOpacity)
    : Loop(functor, wrapper, opacity, relativeOpacity, base::ActiveIsa()) {}

Loop::Loop(Functor functor, Wrapper wrapper, float opacity, float relativeOpacity, Isa isa)
    : functor_(functor), wrapper_(wrapper), isa_(base::IsIsaAvailable(isa) ? isa : base::BestIsa()) {
    constants_.k = OpacityWeight(opacity);
    constants_.relativeOpacity = relativeOpacity;
    row_ = FindRow(isa_, functor_, wrapper_);
}

bool Loop::Run(ULOPictureBits& dst, const ULORect& dstRect, const ULOPictureBits& src,
               ULOPoint srcOrigin) const {
    if (dst.GetBytesPerPixel() != 4 || src.GetBytesPerPixel() != 4 || dst.GetBits() == nullptr ||
        src.GetBits() == nullptr) {
        return false;
    }
    // 64-bit so that no rectangle, however wild, overflows on the way.
    int64_t left = dstRect.left;
    int64_t top = dstRect.top;
    int64_t sx = srcOrigin.x;
    int64_t sy = srcOrigin.y;
    const int64_t shiftX = std::max<int64_t>({0, -left, -sx});
    const int64_t shiftY = std::max<int64_t>({0, -top, -sy});
    left += shiftX;
    sx += shiftX;
    top += shiftY;
    sy += shiftY;
    const int64_t right =
        std::min<int64_t>({dstRect.right, dst.GetWidth(true), left + src.GetWidth(true) - sx});
    const int64_t bottom =
        std::min<int64_t>({dstRect.bottom, dst.GetHeight(true), top + src.GetHeight(true) - sy});
    if (left >= right || top >= bottom || IsEmpty()) {
        return true;
    }
    const int count = static_cast<int>(right - left);
    const int rows = static_cast<int>(bottom - top);
    // Bottom-up storage: the last row of the rectangle comes first in memory.
    unsigned char* dstRow = dst.GetBits(static_cast<int>(left), static_cast<int>(bottom - 1));
    const unsigned char* srcRow = src.GetBits(static_cast<int>(sx), static_cast<int>(sy + rows - 1));
    const std::ptrdiff_t dstStride = dst.GetLineWidth(true);
    const std::ptrdiff_t srcStride = src.GetLineWidth(true);
    const int64_t run = static_cast<int64_t>(count) * rows;
    if (dstStride == 4 * count && srcStride == 4 * count && run <= INT32_MAX) {
        // Whole rows of unpadded buffers lie end to end: one run, without the per-row start-up.
        RunRow(dstRow, srcRow, static_cast<int>(run));
        return true;
    }
    for (int row = 0; row < rows; ++row) {
        RunRow(dstRow + row * dstStride, srcRow + row * srcStride, count);
    }
    return true;
}

Wrapper SelectWrapper(bool sourceAlpha, bool destinationAlpha, float opacity) {
    return kWrapperTable[sourceAlpha][destinationAlpha][opacity == 1.0f];
}

Loop SelectLoop(Functor functor, bool sourceAlpha, bool destinationAlpha, float opacity,
                float relativeOpacity) {
    return Loop(functor, SelectWrapper(sourceAlpha, destinationAlpha, opacity), opacity, relativeOpacity);
}

PictureTransfer SelectPictureTransfer(int sourceFlags, bool destinationAlpha, float opacity, int copyType) {
    PictureTransfer transfer;
    if (sourceFlags & kFullCopySourceFlag) {
        transfer.route = PictureTransfer::Route::kFullCopy;
        transfer.loop =
            Loop(Functor::kFullCopy, opacity == 1.0f ? Wrapper::kPlain : Wrapper::kOpacityAllBytes, opacity);
    } else if (sourceFlags & PICTBITS_MASK8) {
        transfer.route = PictureTransfer::Route::kMask;
    } else if (copyType >= 0 && copyType < kCopyTypeCount) {
        transfer.route = PictureTransfer::Route::kLoop;
        transfer.loop = SelectLoop(kCopyTypeFunctors[copyType], (sourceFlags & PICTBITS_ALPHA) != 0,
                                   destinationAlpha, opacity);
    }
    return transfer;
}

}  // namespace pixelops
}  // namespace ulogui
