// Box resizing: area-weighted averaging over the source rectangle in single precision.
//
// The weight of a source cell is the product of a horizontal and a vertical part, and both parts depend
// only on the output column or row. They are computed once per call into tables, with exactly the
// operations of the per-pixel description: the horizontal part is (1 - fx) or 1, times (fx + scaleX)
// when that is below 1; a cell's weight is that times (1 - fy) or 1, times (fy + scaleY) or 1, in this
// order. A factor that does not apply is stored as 1, and multiplying by 1 is exact, so the table
// products equal the step-by-step ones bit for bit. Cells are summed column by column and, within a
// column, row by row, as described, because the float sum of the weights depends on that order.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "base/FloatToInteger.h"
#include "resample/ResizeKernels.h"

namespace ulogui {
namespace resample {

namespace {

// The cells of each output column (or row) along one axis.
struct BoxAxis {
    std::vector<std::size_t> start;   // cells of output i: [start[i], start[i + 1])
    std::vector<std::int64_t> index;  // source column (row) of each cell
    std::vector<float> factorA;       // x: the whole horizontal weight; y: (1 - fy) or 1
    std::vector<float> factorB;       // y: (fy + scaleY) or 1
    std::size_t maxCells = 0;
};

BoxAxis BuildAxis(int count, float scale, int origin, std::int64_t limit) {
    BoxAxis axis;
    axis.start.reserve(static_cast<std::size_t>(count) + 1);
    axis.start.push_back(0);
    for (int i = 0; i < count; ++i) {
        const float s = static_cast<float>(i) * scale + static_cast<float>(origin);
        const float end = s + scale;
        for (std::int64_t cell = static_cast<std::int64_t>(s); static_cast<float>(cell) <= end; ++cell) {
            if (cell >= limit) {
                break;  // every later cell is past the rectangle too
            }
            const float f = s - static_cast<float>(cell);
            const float a = f > 0 ? 1 - f : 1.0f;
            const float b = f + scale < 1 ? f + scale : 1.0f;
            axis.index.push_back(cell);
            axis.factorA.push_back(a);
            axis.factorB.push_back(b);
        }
        axis.start.push_back(axis.index.size());
        axis.maxCells = std::max(axis.maxCells, axis.start[i + 1] - axis.start[i]);
    }
    return axis;
}

bool InsideRange(const std::vector<std::int64_t>& index, std::int64_t size) {
    for (std::int64_t i : index) {
        if (i < 0 || i >= size) {
            return false;
        }
    }
    return true;
}

// One output pixel of N channels. Checked: cells whose pixel is not inside the old block are left out
// (no colour, no weight); otherwise every cell is known to lie inside the picture.
template <int N, typename Sum, bool Checked>
void BoxPixel(const raster::RasterView& source, const BoxAxis& xs, std::size_t column, const BoxAxis& ys,
              std::size_t row, const std::vector<float>& xWeight, unsigned char* out) {
    Sum sum[N] = {};
    float weightSum = 0;
    for (std::size_t cx = xs.start[column]; cx < xs.start[column + 1]; ++cx) {
        const float wx = xWeight[cx];
        for (std::size_t cy = ys.start[row]; cy < ys.start[row + 1]; ++cy) {
            const float w = wx * ys.factorA[cy] * ys.factorB[cy];
            const std::int64_t offset = source.OffsetInBlock(xs.index[cx], ys.index[cy]);
            if (Checked && !source.Holds(offset, N)) {
                continue;
            }
            const unsigned char* p = source.Block() + offset;
            for (int c = 0; c < N; ++c) {
                sum[c] += static_cast<int>(static_cast<float>(p[c]) * w);
            }
            weightSum += w;
        }
    }
    if (weightSum == 0) {
        for (int c = 0; c < N; ++c) {
            out[c] = static_cast<unsigned char>(sum[c]);
        }
        return;
    }
    const float scale = 1.0f / weightSum;
    for (int c = 0; c < N; ++c) {
        out[c] = base::TruncateToByte(static_cast<float>(sum[c]) * scale);
    }
}

template <int N, typename Sum, bool Checked>
void BoxRows(const raster::RasterView& source, const BoxAxis& xs, const BoxAxis& ys,
             const std::vector<float>& xWeight, const raster::RasterView& target, int columns, int rows) {
    // Output rows from the top of the picture down, each from column 0.
    for (int i = 0; i < rows; ++i) {
        unsigned char* to = target.Row(i);
        for (int j = 0; j < columns; ++j) {
            BoxPixel<N, Sum, Checked>(source, xs, static_cast<std::size_t>(j), ys,
                                      static_cast<std::size_t>(i), xWeight,
                                      to + static_cast<std::ptrdiff_t>(j) * N);
        }
    }
}

template <int N>
void BoxFormat(const raster::RasterView& source, const BoxAxis& xs, const BoxAxis& ys,
               const raster::RasterView& target, int columns, int rows, bool checked) {
    // 255 per channel and cell, each cell's weight at most 1: 32-bit sums are enough unless a pixel
    // averages millions of cells.
    const bool narrow = static_cast<double>(xs.maxCells) * static_cast<double>(ys.maxCells) * 255.0 < 2.0e9;
    const std::vector<float>& xWeight = xs.factorA;
    if (checked) {
        BoxRows<N, std::int64_t, true>(source, xs, ys, xWeight, target, columns, rows);
    } else if (narrow) {
        BoxRows<N, std::int32_t, false>(source, xs, ys, xWeight, target, columns, rows);
    } else {
        BoxRows<N, std::int64_t, false>(source, xs, ys, xWeight, target, columns, rows);
    }
}

}  // namespace

void ResizeBox(const raster::RasterView& source, const ULORect& rect, const raster::RasterView& target) {
    if (source.IsEmpty() || target.IsEmpty()) {
        return;  // nothing to average: the cleared block stays
    }
    const float scaleX = static_cast<float>(source.Width()) / static_cast<float>(target.Width());
    const float scaleY = static_cast<float>(source.Height()) / static_cast<float>(target.Height());
    const float spanX = static_cast<float>(static_cast<std::int64_t>(rect.right) - rect.left);
    const float spanY = static_cast<float>(static_cast<std::int64_t>(rect.bottom) - rect.top);
    // The 0.1 is a double, as is the sum it is added to.
    const int columns = TruncateSaturated(static_cast<double>(spanX / scaleX) + 0.1);
    const int rows = TruncateSaturated(static_cast<double>(spanY / scaleY) + 0.1);
    // The window origin in output units, used as a source coordinate: kept as it always was.
    const int x0 = TruncateSaturated(static_cast<double>(static_cast<float>(rect.left) / scaleX) + 0.1);
    const int y0 = TruncateSaturated(static_cast<double>(static_cast<float>(rect.top) / scaleY) + 0.1);
    // Pixels that would land outside the new picture are not computed.
    const int usedColumns = std::min(columns, target.Width());
    const int usedRows = std::min(rows, target.Height());
    if (usedColumns <= 0 || usedRows <= 0) {
        return;
    }
    BoxAxis xs = BuildAxis(usedColumns, scaleX, x0, rect.right);
    BoxAxis ys = BuildAxis(usedRows, scaleY, y0, rect.bottom);
    // The horizontal weight is the product of its two factors, taken once per cell.
    for (std::size_t i = 0; i < xs.factorA.size(); ++i) {
        xs.factorA[i] *= xs.factorB[i];
    }
    const bool checked = !(source.RowsHoldPixels() && InsideRange(xs.index, source.Width()) &&
                           InsideRange(ys.index, source.Height()));
    switch (source.BytesPerPixel()) {
        case 1:
            BoxFormat<1>(source, xs, ys, target, usedColumns, usedRows, checked);
            break;
        case 3:
            BoxFormat<3>(source, xs, ys, target, usedColumns, usedRows, checked);
            break;
        default:
            BoxFormat<4>(source, xs, ys, target, usedColumns, usedRows, checked);
            break;
    }
}

}  // namespace resample
}  // namespace ulogui
