#pragma once
// A rectangle of pixels in memory, in the manner of a pixmap: the address of its top row, its size, the
// signed distance in bytes from one row to the row below it on screen, and the bytes of a pixel. Every
// pixel loop of the library addresses rows through a view.
//
// The library's buffers store their rows bottom-up, as device-independent bitmaps do: the first row in
// memory is the bottom row of the picture. Their views have a negative stride, so that row y (y = 0 the
// top row) is simply Row(y); a top-down block (a platform's drawing section) has a positive one. A view
// never owns its memory.
#include <cstddef>
#include <cstdint>

#include "ulogui/Geometry.h"

namespace ulogui {
namespace raster {

class RasterView {
public:
    RasterView() = default;

    // `height` rows of `lineWidth` bytes stored bottom-up from `bits`, the layout of ULOPictureBits.
    static RasterView BottomUp(unsigned char* bits, int width, int height, std::ptrdiff_t lineWidth,
                               int bytesPerPixel) {
        // The one place that knows where a bottom-up row lies: row y is memory row height - 1 - y.
        unsigned char* top =
            bits != nullptr ? bits + (static_cast<std::ptrdiff_t>(height) - 1) * lineWidth : bits;
        return RasterView(top, width, height, -lineWidth, bytesPerPixel);
    }
    // `height` rows of `lineWidth` bytes stored top-down from `bits`.
    static RasterView TopDown(unsigned char* bits, int width, int height, std::ptrdiff_t lineWidth,
                              int bytesPerPixel) {
        return RasterView(bits, width, height, lineWidth, bytesPerPixel);
    }

    int Width() const { return width_; }
    int Height() const { return height_; }
    int BytesPerPixel() const { return bytesPerPixel_; }
    // Bytes from row y to row y + 1: negative for bottom-up storage.
    std::ptrdiff_t Stride() const { return stride_; }
    bool IsEmpty() const { return top_ == nullptr || width_ <= 0 || height_ <= 0; }
    ULORect Bounds() const { return ULORect(0, 0, width_, height_); }

    // First byte of row y (y = 0 the top row) and of pixel (x, y). No bounds are checked.
    unsigned char* Row(std::ptrdiff_t y) const { return top_ + y * stride_; }
    unsigned char* Pixel(std::ptrdiff_t x, std::ptrdiff_t y) const { return Row(y) + x * bytesPerPixel_; }

    // The memory block the rows lie in: its lowest address and its size in bytes.
    unsigned char* Block() const { return top_ != nullptr && stride_ < 0 ? Row(height_ - 1) : top_; }
    std::size_t BlockSize() const {
        return top_ == nullptr || height_ <= 0 ? 0
                                               : static_cast<std::size_t>(stride_ < 0 ? -stride_ : stride_) *
                                                     static_cast<std::size_t>(height_);
    }
    // Byte offset of pixel (x, y) from Block(), which may lie outside the block; and whether `count` bytes
    // from such an offset lie inside it. For reading pictures whose geometry cannot be trusted.
    std::int64_t OffsetInBlock(std::int64_t x, std::int64_t y) const {
        return (top_ - Block()) + y * static_cast<std::int64_t>(stride_) + x * bytesPerPixel_;
    }
    bool Holds(std::int64_t offset, std::int64_t count) const {
        return offset >= 0 && count >= 0 && offset <= static_cast<std::int64_t>(BlockSize()) - count;
    }
    // Whether every pixel of every row lies inside the block, so that loops need no per-pixel checks.
    bool RowsHoldPixels() const {
        const std::ptrdiff_t rowBytes = stride_ < 0 ? -stride_ : stride_;
        return !IsEmpty() && rowBytes >= static_cast<std::ptrdiff_t>(width_) * bytesPerPixel_;
    }

    // Rectangle operations: intersects `r` with the bounds; false (and `r` unusable) when nothing is left.
    bool Clip(ULORect& r) const {
        r.left = r.left > 0 ? r.left : 0;
        r.top = r.top > 0 ? r.top : 0;
        r.right = r.right < width_ ? r.right : width_;
        r.bottom = r.bottom < height_ ? r.bottom : height_;
        return r.left < r.right && r.top < r.bottom;
    }
    // Point operations: each coordinate clamped into the bounds, so an outside point lands on the nearest
    // border. Only for a view that is not empty.
    ULOPoint Clamp(ULOPoint p) const { return ULOPoint(ClampTo(p.x, width_), ClampTo(p.y, height_)); }

    // The pixels of `r`, which must lie inside the bounds.
    RasterView Part(const ULORect& r) const {
        return RasterView(Pixel(r.left, r.top), r.right - r.left, r.bottom - r.top, stride_, bytesPerPixel_);
    }

private:
    RasterView(unsigned char* top, int width, int height, std::ptrdiff_t stride, int bytesPerPixel)
        : top_(top), width_(width), height_(height), stride_(stride), bytesPerPixel_(bytesPerPixel) {}

    static int ClampTo(int v, int size) { return v < 0 ? 0 : v >= size ? size - 1 : v; }

    unsigned char* top_ = nullptr;
    int width_ = 0;
    int height_ = 0;
    std::ptrdiff_t stride_ = 0;
    int bytesPerPixel_ = 4;
};

}  // namespace raster
}  // namespace ulogui
