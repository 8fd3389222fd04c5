#pragma once
// The per-pixel writes of the drawing members, each a small functor applied to one 4-byte pixel in
// place, and the loops that stamp a write over a span or a rectangle of a view. A member chooses its
// write once per call; the loops carry no branch on the mode.
//
// Colour writes touch bytes 0 to 2 (blue, green, red) and leave byte 3 (alpha) alone unless a write
// says otherwise. Opacities become integer weights once per call (pixelops::OpacityWeight).
#include <cstddef>
#include <cstring>

#include "raster/RasterView.h"
#include "ulogui/Color.h"
#include "ulogui/Geometry.h"
#include "ulogui/PixelTransfer.h"

namespace ulogui {
namespace surface {

// The colour replaces the colour bytes.
struct SetColour {
    explicit SetColour(const CLR& c) : colour{c.blue, c.green, c.red} {}
    void operator()(unsigned char* p) const { std::memcpy(p, colour, 3); }
    unsigned char colour[3];
};

// The alpha colour write: out = (c * a + dst * (255 - a)) / 255 per colour byte, truncating.
struct MixColour {
    MixColour(const CLR& c, int weight) : colour{c.blue, c.green, c.red}, a(weight) {}
    void operator()(unsigned char* p) const {
        for (int i = 0; i < 3; ++i) {
            p[i] = static_cast<unsigned char>((colour[i] * a + p[i] * (255 - a)) / 255);
        }
    }
    unsigned char colour[3];
    int a;
};

// The colour's bytes are signed offsets added to the background and clamped (PixelCopyRelative).
struct AddOffset {
    explicit AddOffset(const CLR& c) : offset{c.blue, c.green, c.red, 0} {}
    void operator()(unsigned char* p) const { ULOPixelTransfer::PixelCopyRelative()(p, offset, p); }
    unsigned char offset[4];
};

// Applies `write` to `count` consecutive pixels from `first`.
template <typename Write>
inline void WriteSpan(unsigned char* first, std::ptrdiff_t count, const Write& write) {
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        write(first + 4 * x);
    }
}

// Applies `write` to every pixel of `area`, which lies inside `view`; rows in memory order.
template <typename Write>
inline void WriteRect(const raster::RasterView& view, const ULORect& area, const Write& write) {
    const std::ptrdiff_t count = area.right - area.left;
    if (view.Stride() < 0) {
        for (int y = area.bottom - 1; y >= area.top; --y) {
            WriteSpan(view.Pixel(area.left, y), count, write);
        }
    } else {
        for (int y = area.top; y < area.bottom; ++y) {
            WriteSpan(view.Pixel(area.left, y), count, write);
        }
    }
}

}  // namespace surface
}  // namespace ulogui
