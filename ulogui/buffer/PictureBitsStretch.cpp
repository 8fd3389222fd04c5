// Size changes that stretch one row or column: HResize, HEnlarge, VEnlarge, Enlarge; and
// ClipRectToPictureSize.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "resample/ResampleBlock.h"
#include "ulogui/PictureBits.h"

using namespace ulogui::resample;

namespace {

// Appends bytes one after another to a block, dropping whatever would run past its end.
class ClippedStream {
public:
    ClippedStream(unsigned char* block, std::size_t size) : block_(block), size_(size) {}
    bool Full() const { return position_ >= size_; }
    void Append(const unsigned char* bytes, std::size_t count) {
        const std::size_t room = Full() ? 0 : size_ - position_;
        const std::size_t n = std::min(count, room);
        if (n != 0) {
            std::memcpy(block_ + position_, bytes, n);
        }
        position_ += n;
    }
    void Repeat(const unsigned char* pixel, int bytesPerPixel, std::int64_t times) {
        for (std::int64_t i = 0; i < times && !Full(); ++i) {
            Append(pixel, static_cast<std::size_t>(bytesPerPixel));
        }
    }

private:
    unsigned char* block_;
    std::size_t size_;
    std::size_t position_ = 0;
};

// Writes `times` copies of the pixel at `from` (when it lies inside the old block) from byte `to` on.
void RepeatPixel(const ulogui::raster::RasterView& source, std::int64_t from, unsigned char* to,
                 std::int64_t times) {
    const int bpp = source.BytesPerPixel();
    if (times <= 0 || !source.Holds(from, bpp)) {
        return;
    }
    const unsigned char* pixel = source.Block() + from;
    for (std::int64_t i = 0; i < times; ++i) {
        std::memcpy(to + i * bpp, pixel, static_cast<std::size_t>(bpp));
    }
}

}  // namespace

void ULOPictureBits::HResize(int newWidth) {
    if (width >= newWidth || !IsWellFormed(bits, width, height, lineWidth, bytesPerPixel, flags)) {
        return;
    }
    const BlockPlan plan = PlanBlock(newWidth, height, flags);
    BlockPtr block = AllocateBlock(plan.size, true);
    const std::int64_t before = (static_cast<std::int64_t>(newWidth) - width) / 2;
    const std::int64_t after = static_cast<std::int64_t>(newWidth) - width - before;
    // Transparent padding: black with alpha 255 in 4 bytes, black in 3, 255 in a mask.
    static const unsigned char kPad32[4] = {0, 0, 0, 255};
    static const unsigned char kPad24[3] = {0, 0, 0};
    static const unsigned char kPadMask[1] = {255};
    const unsigned char* pad = bytesPerPixel == 1 ? kPadMask : bytesPerPixel == 3 ? kPad24 : kPad32;
    // Rows follow one another without being realigned to the new stride: with 4-byte pixels they line
    // up exactly; with 1- and 3-byte pixels, whose old rows carry padding, they drift, and what would run
    // past the end of the block is dropped.
    ClippedStream out(block.get(), plan.size);
    for (int row = 0; row < height && !out.Full(); ++row) {
        out.Repeat(pad, bytesPerPixel, before);
        out.Append(bits + static_cast<std::ptrdiff_t>(row) * lineWidth, static_cast<std::size_t>(lineWidth));
        out.Repeat(pad, bytesPerPixel, after);
    }
    AdoptBlock_(block.release(), newWidth, height, plan.lineWidth);
}

void ULOPictureBits::HEnlarge(int newWidth, int splitX) {
    if (newWidth == width || newWidth < 0 ||
        !IsWellFormed(bits, width, height, lineWidth, bytesPerPixel, flags)) {
        return;
    }
    const std::int64_t split = splitX < 0 ? width / 2 : splitX;
    const BlockPlan plan = PlanBlock(newWidth, height, flags);
    BlockPtr block = AllocateBlock(plan.size, true);
    const ulogui::raster::RasterView source = ViewOf(bits, width, height, lineWidth, bytesPerPixel);
    const std::int64_t bpp = bytesPerPixel;
    unsigned char* const out = block.get();
    for (std::int64_t row = 0; row < height; ++row) {
        // Memory rows: the same row of the old and the new block.
        const std::int64_t from = row * lineWidth;
        const std::int64_t to = row * plan.lineWidth;
        if (newWidth > width) {
            const std::int64_t extra = static_cast<std::int64_t>(newWidth) - width;
            const std::int64_t kept = std::min<std::int64_t>(split, newWidth);
            CopyInsideBlocks(source, from, out, plan.size, to, kept * bpp);
            const std::int64_t repeats = std::min(split + extra, static_cast<std::int64_t>(newWidth)) - kept;
            RepeatPixel(source, from + split * bpp, out + to + kept * bpp, repeats);
            const std::int64_t tail = newWidth - (split + extra);
            if (tail > 0) {
                CopyInsideBlocks(source, from + split * bpp, out, plan.size, to + (split + extra) * bpp,
                                 tail * bpp);
            }
        } else {
            // The columns [start, start + remove) are dropped.
            const std::int64_t remove = static_cast<std::int64_t>(width) - newWidth;
            const std::int64_t start = std::max<std::int64_t>(split - remove / 2, 0);
            const std::int64_t kept = std::min<std::int64_t>(start, newWidth);
            CopyInsideBlocks(source, from, out, plan.size, to, kept * bpp);
            if (start < newWidth) {
                CopyInsideBlocks(source, from + (start + remove) * bpp, out, plan.size, to + start * bpp,
                                 (newWidth - start) * bpp);
            }
        }
    }
    AdoptBlock_(block.release(), newWidth, height, plan.lineWidth);
}

void ULOPictureBits::VEnlarge(int newHeight, int splitY) {
    if (newHeight <= height || !IsWellFormed(bits, width, height, lineWidth, bytesPerPixel, flags)) {
        return;
    }
    const std::int64_t split = splitY < 0 ? height / 2 : splitY;
    const std::int64_t extra = static_cast<std::int64_t>(newHeight) - height;
    // Width and stride stay; only rows are added.
    const BlockPlan plan = PlanBlockWithStride(lineWidth, newHeight);
    BlockPtr block = AllocateBlock(plan.size, true);
    const ulogui::raster::RasterView source = ViewOf(bits, width, height, lineWidth, bytesPerPixel);
    for (std::int64_t row = 0; row < newHeight; ++row) {
        // Memory rows, so the split counts from the bottom of the picture.
        const std::int64_t sourceRow = row < split ? row : row < split + extra ? split : row - extra;
        CopyInsideBlocks(source, sourceRow * lineWidth, block.get(), plan.size, row * lineWidth, lineWidth);
    }
    AdoptBlock_(block.release(), width, newHeight, plan.lineWidth);
}

void ULOPictureBits::Enlarge(const ULORect& target, const ULOPoint& split) {
    const int targetWidth = WrapToInt(static_cast<std::int64_t>(target.right) - target.left);
    const int targetHeight = WrapToInt(static_cast<std::int64_t>(target.bottom) - target.top);
    if (width < targetWidth) {
        HEnlarge(targetWidth, split.x);
    }
    if (height < targetHeight) {
        VEnlarge(targetHeight, split.y);
    }
}

void ULOPictureBits::ClipRectToPictureSize(ULORect* r, int which) const {
    if (r == nullptr) {
        return;
    }
    if (which & 1) {
        const std::int64_t w = static_cast<std::int64_t>(r->right) - r->left;
        r->right = WrapToInt(r->left + std::min<std::int64_t>(width, w));
    }
    if (which & 2) {
        const std::int64_t h = static_cast<std::int64_t>(r->bottom) - r->top;
        r->bottom = WrapToInt(r->top + std::min<std::int64_t>(height, h));
    }
}
