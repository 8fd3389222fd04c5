// Resize by its three methods, the aspect-keeping variants, ResizeLazy and Crop.
#include <cstdint>
#include <cstdlib>

#include "base/FloatToInteger.h"
#include "resample/ResampleBlock.h"
#include "resample/ResizeKernels.h"
#include "ulogui/PictureBits.h"

using namespace ulogui::resample;

void ULOPictureBits::AdoptBlock_(unsigned char* newBits, int newWidth, int newHeight, int newLineWidth) {
    // Only a block the buffer owned is freed: a view's memory belongs to someone else, who frees it.
    if (ownsBits && bits != nullptr && bits != newBits) {
        std::free(bits);
    }
    Reset(newBits, newWidth, newHeight, newLineWidth, flags);
}

void ULOPictureBits::Resize(int newWidth, int newHeight, const ULORect& source, EResizeMethod method) {
    if (width == newWidth && height == newHeight) {
        return;
    }
    if (newWidth < 0 || newHeight < 0 ||
        !IsWellFormed(bits, width, height, lineWidth, bytesPerPixel, flags)) {
        return;
    }
    const BlockPlan plan = PlanBlock(newWidth, newHeight, flags);
    const ulogui::raster::RasterView from = ViewOf(bits, width, height, lineWidth, bytesPerPixel);
    // Cleared, so that what the method does not write (parts of the source rectangle outside the
    // picture) reads as zeros. Nearest neighbour writes every pixel of a picture that has any, and
    // clears the row padding itself.
    const bool writesEverything = method == eResizeNearest && from.RowsHoldPixels();
    BlockPtr block = AllocateBlock(plan.size, !writesEverything);
    const ulogui::raster::RasterView to =
        ulogui::raster::RasterView::BottomUp(block.get(), newWidth, newHeight, plan.lineWidth, bytesPerPixel);
    switch (method) {
        case eResizeNearest:
            ResizeNearest(from, to);
            break;
        case eResizeBox:
            ResizeBox(from, source, to);
            break;
        default:
            ResizeCopy(from, source, to);
            break;
    }
    AdoptBlock_(block.release(), newWidth, newHeight, plan.lineWidth);
}

void ULOPictureBits::Resize(int newWidth, int newHeight, EResizeMethod method) {
    Resize(newWidth, newHeight, ULORect(0, 0, width, height), method);
}

void ULOPictureBits::ResizeToWidth(int newWidth, EResizeMethod method) {
    if (width <= 0) {
        return;  // no aspect ratio to keep
    }
    const float newHeight =
        (static_cast<float>(height) + 0.9f) * static_cast<float>(newWidth) / static_cast<float>(width);
    Resize(newWidth, ulogui::base::SaturatingTruncate(newHeight), method);
}

void ULOPictureBits::ResizeToHeight(int newHeight, EResizeMethod method) {
    if (height <= 0) {
        return;
    }
    const float newWidth =
        (static_cast<float>(width) + 0.9f) * static_cast<float>(newHeight) / static_cast<float>(height);
    Resize(ulogui::base::SaturatingTruncate(newWidth), newHeight, method);
}

void ULOPictureBits::ResizeLazy(int newWidth, int newHeight) {
    if ((width == newWidth && height == newHeight) || newWidth < 0 || newHeight < 0) {
        return;
    }
    const BlockPlan plan = PlanBlock(newWidth, newHeight, flags);
    BlockPtr block = AllocateBlock(plan.size, false);
    AdoptBlock_(block.release(), newWidth, newHeight, plan.lineWidth);
}

void ULOPictureBits::Crop(int newWidth, int newHeight, ECropPosition position) {
    const std::int64_t W = width;
    const std::int64_t H = height;
    const std::int64_t w = newWidth;
    const std::int64_t h = newHeight;
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int64_t right = w;
    std::int64_t bottom = h;
    switch (position) {
        case eCropTop:
            left = (W - w) / 2;
            right = left + w;
            break;
        case eCropTopRight:
            // The width difference as the top edge, the left edge at 0: the anchor callers rely on.
            top = W - w;
            bottom = W - w + h;
            break;
        case eCropLeft:
            top = (H - h) / 2;
            bottom = top + h;
            break;
        case eCropCenter:
            left = (W - w) / 2;
            top = (H - h) / 2;
            right = left + w;
            bottom = top + h;
            break;
        case eCropRight:
            left = W - w;
            top = (H - h) / 2;
            right = W;
            bottom = top + h;
            break;
        case eCropBottomLeft:
            top = H - h;
            bottom = top + h;
            break;
        case eCropBottom:
            left = (W - w) / 2;
            top = H - h;
            right = left + w;
            bottom = top + h;
            break;
        case eCropBottomRight:
            left = W - w;
            top = H - h;
            right = left + w;
            bottom = top + h;
            break;
        default:
            break;  // eCropTopLeft and any value outside 0..8
    }
    Resize(newWidth, newHeight, ULORect(WrapToInt(left), WrapToInt(top), WrapToInt(right), WrapToInt(bottom)),
           eResizeCopy);
}

void ULOPictureBits::Crop(ULORect rect) {
    Resize(WrapToInt(static_cast<std::int64_t>(rect.right) - rect.left),
           WrapToInt(static_cast<std::int64_t>(rect.bottom) - rect.top), rect, eResizeCopy);
}
