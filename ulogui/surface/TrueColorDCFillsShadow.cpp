// DrawShadow: two bands beside a rectangle whose colour bytes are multiplied by a weight that fades
// with the distance from the rectangle. docs/fills-and-scrolling.md gives the bounds of both bands.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "surface/AreaFrame.h"
#include "ulogui/TrueColorDC.h"

using ulogui::surface::AreaFrame;

namespace {

// The bounds of one band, as positions across it (away from the rectangle) and along it. 64-bit, so
// that no rectangle, size or clip overflows on the way.
struct Band {
    std::int64_t acrossStart;  // first line of the band, next to the rectangle; distances count from it
    std::int64_t acrossEnd;    // exclusive
    std::int64_t cornerStart;  // first position of the corner along the band
    std::int64_t cornerEnd;    // last position of the corner, inclusive; the corner is darkest there
    std::int64_t straight;     // positions after the corner that take its last weight
};

// The multiplier of a pixel at distance d from the band's darkest point:
// trunc((1 - max(0, 1 - d / size) * strength) * 256) in single precision. 256 (also for a NaN strength)
// leaves the pixel as it is; a weight below 0 (strength above 1) is taken as 0.
int Weight(std::int64_t i, std::int64_t j, float size, float strength) {
    const float d = std::sqrt(static_cast<float>(static_cast<double>(i) * i + static_cast<double>(j) * j));
    const float w = (1.0f - std::max(0.0f, 1.0f - d / size) * strength) * 256.0f;
    if (!(w < 256.0f)) {
        return 256;
    }
    return w > 0.0f ? static_cast<int>(w) : 0;
}

void Darken(unsigned char* p, int w) {
    unsigned char v[3];
    std::memcpy(v, p, 3);
    for (unsigned char& c : v) {
        c = static_cast<unsigned char>((c * w) >> 8);
    }
    std::memcpy(p, v, 3);
}

// Walks one band: each line across has its corner (from the corner's start to its end) and then its
// straight part with the weight of the corner's last pixel, or 0 when the corner has no pixels.
// `transposed` runs the band's lines along rows instead of columns. Only what lies on the canvas is
// visited. Every pixel is visited once, so the order is free: the corners line by line from the last,
// then the straight parts in the order of memory.
void WalkBand(const ulogui::raster::RasterView& canvas, const Band& band, bool transposed, int size,
              float strength) {
    const std::int64_t acrossLimit = transposed ? canvas.Height() : canvas.Width();
    const std::int64_t alongLimit = transposed ? canvas.Width() : canvas.Height();
    const auto pixel = [&](std::int64_t across, std::int64_t along) {
        return transposed ? canvas.Pixel(along, across) : canvas.Pixel(across, along);
    };
    const float fsize = static_cast<float>(size);
    const std::int64_t firstLine = std::max<std::int64_t>(band.acrossStart, 0);
    const std::int64_t cornerFirst = std::max<std::int64_t>(band.cornerStart, 0);
    const std::int64_t cornerLast = std::min(band.cornerEnd, alongLimit - 1);
    const std::int64_t straightFirst = std::max<std::int64_t>(band.cornerEnd + 1, 0);
    const std::int64_t straightLast = std::min(band.cornerEnd + band.straight, alongLimit - 1);
    const std::int64_t lastLine = std::min(band.acrossEnd, acrossLimit) - 1;
    if (lastLine < firstLine) {
        return;
    }
    std::vector<int> straightWeights(static_cast<std::size_t>(lastLine - firstLine + 1));
    for (std::int64_t line = lastLine; line >= firstLine; --line) {
        // Deliberately measured from the band's (clipped) first line.
        const std::int64_t i = line - band.acrossStart;
        for (std::int64_t along = cornerFirst; along <= cornerLast; ++along) {
            const int w = Weight(i, band.cornerEnd - along, fsize, strength);
            if (w < 256) {
                Darken(pixel(line, along), w);
            }
        }
        straightWeights[line - firstLine] =
            band.cornerEnd >= band.cornerStart ? Weight(i, 0, fsize, strength) : 0;
    }
    // The straight parts are walked in the order of memory, along rows, through pointers held in
    // locals (the pixel stores could otherwise alias the view and the weights).
    if (straightFirst > straightLast) {
        return;
    }
    const int* weights = straightWeights.data();
    const std::int64_t lines = lastLine - firstLine + 1;
    if (transposed) {
        for (std::int64_t k = 0; k < lines; ++k) {
            unsigned char* p = canvas.Pixel(straightFirst, firstLine + k);
            for (std::int64_t along = straightFirst; weights[k] < 256 && along <= straightLast;
                 ++along, p += 4) {
                Darken(p, weights[k]);
            }
        }
    } else {
        for (std::int64_t along = straightFirst; along <= straightLast; ++along) {
            unsigned char* p = canvas.Pixel(firstLine, along);
            for (std::int64_t k = 0; k < lines; ++k, p += 4) {
                if (weights[k] < 256) {
                    Darken(p, weights[k]);
                }
            }
        }
    }
}

// An absent clip: bounds that no max or min with them changes.
constexpr std::int64_t kUnbounded = INT64_C(1) << 40;

}  // namespace

void ULOTrueColorDCBase::DrawShadow(const ULORect* rect, const ULORect* clip, int size, float strength) {
    if (rect == nullptr || rect->IsEmpty()) {
        return;
    }
    const AreaFrame frame(*this, AreaFrame::Guard::kAlways);
    const ULORect r = frame.ToDevice(*rect);
    std::int64_t clipLeft = -kUnbounded;
    std::int64_t clipTop = -kUnbounded;
    std::int64_t clipRight = kUnbounded;
    std::int64_t clipBottom = kUnbounded;
    if (clip != nullptr) {
        const ULORect c = frame.ToDevice(*clip);
        clipLeft = c.left;
        clipTop = c.top;
        clipRight = c.right;
        clipBottom = c.bottom;
    }
    const ulogui::raster::RasterView& canvas = frame.Canvas();
    if (canvas.IsEmpty()) {
        return;
    }
    const std::int64_t left = r.left;
    const std::int64_t top = r.top;
    const std::int64_t right = r.right;
    const std::int64_t bottom = r.bottom;

    // Right of the rectangle: columns across, rows along; the corner fades in as a quarter circle
    // around (right, top + size), then the band runs down the rectangle's edge.
    Band band;
    band.acrossStart = std::max(right, clipLeft);
    band.acrossEnd = std::min(clipRight, right + size);
    band.cornerStart = std::max(top, clipTop);
    band.cornerEnd = std::min(clipBottom, top + size);
    band.straight = std::min(clipBottom - band.cornerEnd, bottom - top - size) - 1;
    WalkBand(canvas, band, false, size, strength);

    // Below it: the same profile with rows across and columns along, moved right by size, so that it
    // fades in around (left + 2 * size, bottom) and ends under the right band's last column.
    band.acrossStart = std::max(bottom, clipTop);
    band.acrossEnd = std::min(clipBottom, bottom + size);
    band.cornerStart = std::max(left, clipLeft) + size;
    band.cornerEnd = std::min(clipRight, left + 2 * static_cast<std::int64_t>(size));
    band.straight = std::min(clipRight - band.cornerEnd, right - left - size) - 1;
    WalkBand(canvas, band, true, size, strength);
}
