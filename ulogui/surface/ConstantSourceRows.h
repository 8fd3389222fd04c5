#pragma once
// A transfer loop of the pixel transfer layer run with one source pixel for every destination pixel:
// the solid fills mixed by an opacity or added as offsets, and the rows of the vertical gradation.
// The source is a short row of that pixel, reused along longer rows.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "pixelops/PixelTransferLoops.h"
#include "raster/RasterView.h"
#include "ulogui/Geometry.h"

namespace ulogui {
namespace surface {

class ConstantSourceRows {
public:
    // Pixels of the source row: long enough that the loop's start-up is paid rarely, short enough for
    // the stack and the first-level cache.
    static constexpr int kSourcePixels = 256;

    // `functor` under `wrapper` on the current path, for runs of up to `longestRun` pixels (only that
    // much of the source row is ever written).
    ConstantSourceRows(pixelops::Functor functor, pixelops::Wrapper wrapper, const pixelops::CallConstants& c,
                       std::int64_t longestRun)
        : row_(pixelops::FindRow(base::ActiveIsa(), functor, wrapper)),
          constants_(c),
          length_(static_cast<int>(
              std::max<std::int64_t>(1, std::min<std::int64_t>(longestRun, kSourcePixels)))) {}

    void SetPixel(const unsigned char (&pixel)[4]) {
        for (int x = 0; x < length_; ++x) {
            std::memcpy(source_ + 4 * x, pixel, 4);
        }
    }
    // The integer opacity weight k of the opacity wrappers.
    void SetWeight(int k) { constants_.k = k; }

    void RunRow(unsigned char* dst, int count) const {
        for (int done = 0; done < count; done += length_) {
            row_(dst + 4 * static_cast<std::ptrdiff_t>(done), source_, std::min(length_, count - done),
                 constants_);
        }
    }
    // Every pixel of `area`, which lies inside `view`, bottom row first (the order of a bottom-up buffer).
    // Whole rows of an unpadded buffer lie end to end and run as one.
    void Run(const raster::RasterView& view, const ULORect& area) const {
        const int count = area.right - area.left;
        const std::int64_t pixels = static_cast<std::int64_t>(count) * (area.bottom - area.top);
        if (count == view.Width() && view.Stride() == -4 * static_cast<std::ptrdiff_t>(count) &&
            pixels <= INT32_MAX) {
            RunRow(view.Pixel(area.left, area.bottom - 1), static_cast<int>(pixels));
            return;
        }
        for (int y = area.bottom - 1; y >= area.top; --y) {
            RunRow(view.Pixel(area.left, y), count);
        }
    }

private:
    pixelops::RowRoutine row_;
    pixelops::CallConstants constants_;
    int length_;
    unsigned char source_[kSourcePixels * 4];
};

}  // namespace surface
}  // namespace ulogui
