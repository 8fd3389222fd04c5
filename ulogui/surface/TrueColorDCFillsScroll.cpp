// ScrollArea: moves the pixels of an area by an offset, row by row, in the order that reads every
// source row before it is overwritten.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "surface/AreaFrame.h"
#include "ulogui/TrueColorDC.h"

using ulogui::surface::AreaFrame;

namespace {

// Pixels kept aside when whole rows move as one block (8 KB of stack).
constexpr std::int64_t kKeptPixels = 2048;

}  // namespace

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
    const int width = canvas.Width();
    const std::int64_t rows = bottom - top;
    const std::int64_t wrapped = dx < 0 ? -dx : dx;  // pixels at one end of each row that keep their values
    if (bounds.left == 0 && bounds.right == width &&
        -canvas.Stride() == static_cast<std::ptrdiff_t>(width) * 4 && wrapped * (rows - 1) <= kKeptPixels) {
        // Whole rows of an unpadded buffer lie end to end from the bottom one, so the row moves amount
        // to one block move, except that the pixels at one end of each row would take those at the other
        // end of the next row in memory: they are kept aside and put back.
        std::uint32_t kept[kKeptPixels];
        const std::int64_t keptLeft = dx > 0 ? width - dx : 0;
        const std::int64_t keptTop = dx > 0 ? top + 1 : top;  // the rows whose end the block reaches
        const std::int64_t keptBottom = dx > 0 ? bottom : bottom - 1;
        // Column by column down the rows: one or two pixels a row, where a call per row would cost more.
        const auto keep = [&](bool back) {
            std::uint32_t* k = kept;
            for (std::int64_t x = keptLeft; x < keptLeft + wrapped; ++x) {
                for (std::int64_t y = keptTop; y < keptBottom; ++y, ++k) {
                    unsigned char* p = canvas.Pixel(x, y);
                    back ? std::memcpy(p, k, 4) : std::memcpy(k, p, 4);
                }
            }
        };
        // Scrolling sideways only, the old values of those pixels are moved within their own row too,
        // dx pixels away, unless the offset exceeds half the row: they are taken back from there.
        const bool movedInRow = dy == 0 && 2 * wrapped <= width;
        if (!movedInRow) {
            keep(false);
        }
        std::memmove(canvas.Pixel(left, bottom - 1), canvas.Pixel(left + dx, bottom - 1 + dy),
                     static_cast<std::size_t>(rows * width - wrapped) * 4);
        if (!movedInRow) {
            keep(true);
            return;
        }
        for (std::int64_t x = keptLeft; x < keptLeft + wrapped; ++x) {
            for (std::int64_t y = keptTop; y < keptBottom; ++y) {
                std::memcpy(canvas.Pixel(x, y), canvas.Pixel(x - dx, y), 4);
            }
        }
        return;
    }
    const std::size_t bytes = static_cast<std::size_t>(right - left) * 4;
    const auto move = [&](std::int64_t y) {
        std::memmove(canvas.Pixel(left, y), canvas.Pixel(left + dx, y + dy), bytes);
    };
    if (dy > 0) {
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
