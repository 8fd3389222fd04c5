// ScrollArea: moves the pixels of an area by an offset, row by row, in the order that reads every
// source row before it is overwritten.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "surface/AreaFrame.h"
#include "ulogui/TrueColorDC.h"

using ulogui::surface::AreaFrame;

void ULOTrueColorDCBase::ScrollArea(const ULOSize& offset) {
    ScrollArea(offset, ULORect(0, 0, GetWidth(false), GetHeight(false)));
}

void ULOTrueColorDCBase::ScrollArea(const ULOSize& offset, const ULORect& area) {
    const AreaFrame frame(*this, AreaFrame::Guard::kAlways);
    const ulogui::raster::RasterView& canvas = frame.Canvas();
    ULORect bounds = frame.ToDevice(area);
    const std::int64_t dx = frame.ToDevice(offset.cx);
    const std::int64_t dy = frame.ToDevice(offset.cy);
    if (!canvas.Clip(bounds)) {
        return;
    }
    // The destination: the part of the area whose source, offset by (dx, dy), lies in the area too.
    // 64-bit, so that offsets at the ends of the int range leave nothing rather than wrap.
    std::int64_t left = bounds.left;
    std::int64_t right = bounds.right;
    if (dx > 0) {
        right -= dx;
    } else {
        left -= dx;
    }
    const std::int64_t top = bounds.top - std::min<std::int64_t>(dy, 0);
    const std::int64_t bottom = bounds.bottom - std::max<std::int64_t>(dy, 0);
    if (bottom <= top || right <= left) {
        return;
    }
    const std::size_t bytes = static_cast<std::size_t>(right - left) * 4;
    const auto move = [&](std::int64_t y) {
        std::memmove(canvas.Pixel(left, y), canvas.Pixel(left + dx, y + dy), bytes);
    };
    if (dx == 0 && dy != 0 && right - left == canvas.Width() && -canvas.Stride() == canvas.Width() * 4) {
        // Whole rows of an unpadded buffer lie end to end: all of them move as one block, which is
        // what the row moves in either order amount to.
        const std::int64_t last = bottom - 1;
        std::memmove(canvas.Pixel(0, last), canvas.Pixel(0, last + dy), bytes * (bottom - top));
    } else if (dy > 0) {
        // Sources lie below their destinations: top to bottom.
        for (std::int64_t y = top; y < bottom; ++y) {
            move(y);
        }
    } else {
        // Sources lie above (or on) their destinations: bottom to top.
        for (std::int64_t y = bottom - 1; y >= top; --y) {
            move(y);
        }
    }
}
