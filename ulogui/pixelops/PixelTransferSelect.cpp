// Choosing a transfer loop: the instruction-set level, the wrapper and copy-type tables, the picture
// dispatcher and the rectangle walk.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "buffer/BufferView.h"
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

bool Loop::Run(const raster::RasterView& dst, const ULORect& dstRect, const raster::RasterView& src,
               ULOPoint srcOrigin) const {
    if (dst.BytesPerPixel() != 4 || src.BytesPerPixel() != 4 || dst.Block() == nullptr ||
        src.Block() == nullptr) {
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
    const int64_t right = std::min<int64_t>({dstRect.right, dst.Width(), left + src.Width() - sx});
    const int64_t bottom = std::min<int64_t>({dstRect.bottom, dst.Height(), top + src.Height() - sy});
    if (left >= right || top >= bottom || IsEmpty()) {
        return true;
    }
    const int count = static_cast<int>(right - left);
    const int rows = static_cast<int>(bottom - top);
    const raster::RasterView to = dst.Part(ULORect(static_cast<int>(left), static_cast<int>(top),
                                                   static_cast<int>(right), static_cast<int>(bottom)));
    const raster::RasterView from =
        src.Part(ULORect(static_cast<int>(sx), static_cast<int>(sy), static_cast<int>(sx) + count,
                         static_cast<int>(sy) + rows));
    const int64_t run = static_cast<int64_t>(count) * rows;
    if (to.Stride() == -4 * count && from.Stride() == -4 * count && run <= INT32_MAX) {
        // Whole rows of unpadded bottom-up buffers lie end to end from the bottom one: one run, without
        // the per-row start-up.
        RunRow(to.Row(rows - 1), from.Row(rows - 1), static_cast<int>(run));
        return true;
    }
    // Bottom row first, in the order the rows lie in memory.
    for (int row = rows - 1; row >= 0; --row) {
        RunRow(to.Row(row), from.Row(row), count);
    }
    return true;
}

bool Loop::Run(ULOPictureBits& dst, const ULORect& dstRect, const ULOPictureBits& src,
               ULOPoint srcOrigin) const {
    return Run(buffer::ViewOf(dst), dstRect, buffer::ViewOf(src), srcOrigin);
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
