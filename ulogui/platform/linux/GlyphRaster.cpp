#include "platform/linux/GlyphRaster.h"

#include FT_BITMAP_H
#include FT_GASP_H
#include FT_OUTLINE_H

#include <algorithm>
#include <climits>

namespace ulogui {
namespace platform {
namespace ft {

namespace {

int32_t FloorPixel(FT_Pos v) {
    const int64_t p = v >= 0 ? v / 64 : -((-static_cast<int64_t>(v) + 63) / 64);
    return static_cast<int32_t>(std::clamp<int64_t>(p, INT32_MIN / 2, INT32_MAX / 2));
}

int32_t CeilPixel(FT_Pos v) {
    return -FloorPixel(-v);
}

}  // namespace

bool GreyAtSize(FT_Face face, uint32_t ppem) {
    const FT_Int flags = FT_Get_Gasp(face, ppem);
    return flags == FT_GASP_NO_TABLE || (flags & FT_GASP_DO_GRAY) != 0;
}

ULORect OutlinePixelBox(const FT_Outline& outline) {
    if (outline.n_points <= 0) {
        return ULORect();
    }
    FT_BBox box;
    FT_Outline_Get_CBox(&outline, &box);
    // y up in the outline, y down in the box.
    return ULORect(FloorPixel(box.xMin), -CeilPixel(box.yMax), CeilPixel(box.xMax), -FloorPixel(box.yMin));
}

bool RenderOutlineWindow(FT_Library library, FT_Outline& outline, const ULORect& window, bool grey,
                         std::vector<uint8_t>& levels) {
    levels.clear();
    if (window.IsEmpty()) {
        return true;
    }
    const unsigned width = static_cast<unsigned>(window.right - window.left);
    const unsigned rows = static_cast<unsigned>(window.bottom - window.top);
    const unsigned monoPitch = (width + 7) / 8;
    std::vector<uint8_t> mono;
    FT_Bitmap bitmap;
    FT_Bitmap_Init(&bitmap);
    bitmap.width = width;
    bitmap.rows = rows;
    levels.assign(static_cast<size_t>(width) * rows, 0);
    if (grey) {
        bitmap.pitch = static_cast<int>(width);
        bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
        bitmap.num_grays = 256;
        bitmap.buffer = levels.data();
    } else {
        mono.assign(static_cast<size_t>(monoPitch) * rows, 0);
        bitmap.pitch = static_cast<int>(monoPitch);
        bitmap.pixel_mode = FT_PIXEL_MODE_MONO;
        bitmap.num_grays = 2;
        bitmap.buffer = mono.data();
    }
    // The bitmap covers outline x in [0, width) and y in [0, rows), its first row on top: move the
    // window's lower-left corner to the origin.
    const FT_Pos dx = -static_cast<FT_Pos>(window.left) * 64;
    const FT_Pos dy = static_cast<FT_Pos>(window.bottom) * 64;
    FT_Outline_Translate(&outline, dx, dy);
    const FT_Error error = FT_Outline_Get_Bitmap(library, &outline, &bitmap);
    FT_Outline_Translate(&outline, -dx, -dy);
    if (error != 0) {
        levels.clear();
        return false;
    }
    if (grey) {
        for (uint8_t& level : levels) {
            level = LevelOfCoverage(level);
        }
        return true;
    }
    for (unsigned y = 0; y < rows; ++y) {
        const uint8_t* bits = &mono[static_cast<size_t>(y) * monoPitch];
        uint8_t* row = &levels[static_cast<size_t>(y) * width];
        for (unsigned x = 0; x < width; ++x) {
            row[x] = (bits[x >> 3] & (0x80 >> (x & 7))) != 0 ? 16 : 0;
        }
    }
    return true;
}

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
