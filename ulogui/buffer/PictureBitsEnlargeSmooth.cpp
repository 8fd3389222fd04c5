// EnlargeSmooth: the scale, the centring offsets and the choice of mode; the columns are then computed
// serially for small outputs and on the tools library's worker threads otherwise.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "buffer/SmoothScale.h"
#include "resample/ResampleBlock.h"
#include "resample/SmoothScaler.h"
#include "toolslib/MultiProc.h"
#include "toolslib/Progress.h"
#include "ulogui/PictureBits.h"
#include "ulolib/Interruptor.h"

using namespace ulogui::resample;

namespace {

// Outputs smaller than this in both directions are not worth the threads.
constexpr int kSerialLimit = 40;

// Threads take the columns in groups of neighbours. A group is computed as one strip: row after row,
// each source row read once into the horizontal pass and each target row written as a run of whole
// cache lines. Group edges fall on cache-line boundaries of the target (`phase` is the first column
// that starts a line), so two threads never write into the same line, which would bounce it between
// their caches on every row. Groups shrink along the row: each takes about a 2 * threads-th of the
// columns still left (at most 256), so the first ones are long (long rows are cheaper) and the last
// ones short, and threads claiming groups as they finish end together. Returns, for each column, the
// end of the group it starts, or 0.
std::vector<int> GroupEnds(int columns, int threads, int line, int phase) {
    std::vector<int> ends(static_cast<std::size_t>(columns), 0);
    for (int start = 0; start < columns;) {
        const int left = columns - start;
        const int share = std::min(std::max((left + 2 * threads - 1) / (2 * threads), line), 256);
        // The end moved up to the next line boundary.
        const int end = std::min((start + share + phase + line - 1) / line * line - phase, columns);
        ends[start] = end;
        start = end;
    }
    return ends;
}

// Columns per repeat of the line pattern: 16 four-byte pixels fill a 64-byte line; 64 one- or three-byte
// pixels fill one or three lines.
int LineColumns(int bytesPerPixel) {
    return bytesPerPixel == 4 ? 16 : 64;
}

// The first column whose pixel starts a 64-byte line in the target's first memory row, within one
// repeat of the pattern (0 when none does). Rows whose stride is a multiple of 64 bytes all share it.
int LinePhase(const unsigned char* row, int bytesPerPixel) {
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(row);
    for (int x = 0; x < 64; ++x) {
        if ((address + static_cast<std::uintptr_t>(x) * bytesPerPixel) % 64 == 0) {
            return x % LineColumns(bytesPerPixel);
        }
    }
    return 0;
}

smooth::PixelFormat FormatOf(int bytesPerPixel, int flags) {
    if (bytesPerPixel == 1) {
        return smooth::PixelFormat::kMask;
    }
    if (bytesPerPixel == 3) {
        return smooth::PixelFormat::kRgb24;
    }
    return (flags & PICTBITS_ALPHA) ? smooth::PixelFormat::kRgba32 : smooth::PixelFormat::kRgb32;
}

bool Overlap(const ulogui::raster::RasterView& a, const ulogui::raster::RasterView& b) {
    // As addresses: the blocks are usually unrelated objects, which pointer comparison does not order.
    const std::uintptr_t aStart = reinterpret_cast<std::uintptr_t>(a.Block());
    const std::uintptr_t bStart = reinterpret_cast<std::uintptr_t>(b.Block());
    return aStart < bStart + b.BlockSize() && bStart < aStart + a.BlockSize();
}

}  // namespace

namespace ulogui {
namespace buffer {

void ScaleSmooth(const ULOPictureBits& from, ULOPictureBits& to, const ULORect* targetRect,
                 ColumnThreads threads) {
    // The stored geometry of both, as the buffer's own fields hold it.
    const ULOPictureBits self = from.GetRawPictureBits();
    ULOPictureBits target = to.GetRawPictureBits();
    const unsigned char* const bits = self.GetBits();
    const int width = self.GetWidth(true);
    const int height = self.GetHeight(true);
    const int lineWidth = self.GetLineWidth(true);
    const int bytesPerPixel = self.GetBytesPerPixel();
    const int flags = self.GetFlags();
    const int dw = targetRect != nullptr
                       ? WrapToInt(static_cast<std::int64_t>(targetRect->right) - targetRect->left)
                       : to.GetWidth(false);
    const int dh = targetRect != nullptr
                       ? WrapToInt(static_cast<std::int64_t>(targetRect->bottom) - targetRect->top)
                       : to.GetHeight(false);
    if (dw <= 0 || dh <= 0 || width <= 0 || height <= 0 || target.GetBytesPerPixel() != bytesPerPixel) {
        return;
    }
    if (!IsWellFormed(bits, width, height, lineWidth, bytesPerPixel, flags) ||
        !IsWellFormed(target.GetBits(), target.GetWidth(true), target.GetHeight(true),
                      target.GetLineWidth(true), target.GetBytesPerPixel(), target.GetFlags())) {
        return;
    }
    const ulogui::raster::RasterView source =
        ViewOf(const_cast<unsigned char*>(bits), width, height, lineWidth, bytesPerPixel);
    const ulogui::raster::RasterView destination =
        ViewOf(target.GetBits(), target.GetWidth(true), target.GetHeight(true), target.GetLineWidth(true),
               target.GetBytesPerPixel());
    // Reading and writing the same memory would make the result depend on the order of the columns.
    if (!destination.RowsHoldPixels() || Overlap(source, destination)) {
        return;
    }

    const float scaleX = static_cast<float>(width) / static_cast<float>(dw);
    const float scaleY = static_cast<float>(height) / static_cast<float>(dh);
    const float scale = std::max(scaleX, scaleY);
    const int offsetX = TruncateSaturated(
        static_cast<double>(static_cast<float>(dw) - static_cast<float>(width) / scale) * 0.5);
    const int offsetY = TruncateSaturated(
        static_cast<double>(static_cast<float>(dh) - static_cast<float>(height) / scale) * 0.5);

    // Output pixels beyond the target are neither computed nor written.
    const int outputColumns = std::min(dw, target.GetWidth(true));
    const int outputRows = std::min(dh, target.GetHeight(true));
    const bool bilinear = dw > width && dh > height;
    const smooth::AxisTaps xs = bilinear ? smooth::BilinearTaps(width, outputColumns, scale, offsetX)
                                         : smooth::AreaTaps(width, outputColumns, scale, offsetX);
    // A square picture scaled into a square has the same taps on both axes (icons mostly are).
    const bool sameTaps = height == width && outputRows == outputColumns && offsetY == offsetX;
    const smooth::AxisTaps ownYs = sameTaps   ? smooth::AxisTaps()
                                   : bilinear ? smooth::BilinearTaps(height, outputRows, scale, offsetY)
                                              : smooth::AreaTaps(height, outputRows, scale, offsetY);
    const smooth::AxisTaps& ys = sameTaps ? xs : ownYs;

    smooth::Job job;
    job.xs = &xs;
    job.ys = &ys;
    job.format = FormatOf(bytesPerPixel, flags);
    job.source = source;
    job.target = destination;
    // Output columns and rows whose window lies wholly outside the picture are left as they are.
    job.rows = ys.usable;
    const int columns = xs.usable;

    if (threads == ColumnThreads::kCallingThreadAtOnce) {
        if (columns > 0) {
            smooth::ScaleColumns(job, 0, columns);
        }
        // What the picture does not reach is cleared, so that the target needs no clearing first.
        for (int y = 0; y < outputRows; ++y) {
            const int first = y < job.rows ? columns : 0;
            if (first < outputColumns) {
                std::memset(destination.Pixel(first, y), 0,
                            static_cast<std::size_t>(outputColumns - first) * bytesPerPixel);
            }
        }
        return;
    }
    const ULONullInterruptor never;
    PIMProgress progress;
    progress.SetSteps(outputColumns);
    if (dw < kSerialLimit && dh < kSerialLimit) {
        for (int x = 0; x < outputColumns; ++x) {
            if (never.IsInterrupted()) {
                break;
            }
            if (x < columns) {
                smooth::ScaleColumns(job, x, x + 1);
            }
            progress.Step();
        }
        return;
    }
    // One loop index per output column; the first column of each group computes the group, the others
    // only count.
    const int workers = tools::multiproc::GetOptimizedMaxJobThreadAllowed();
    const std::vector<int> groupEnds =
        GroupEnds(columns, workers, LineColumns(bytesPerPixel), LinePhase(target.GetBits(), bytesPerPixel));
    tools::multiproc::InterruptibleProgressingLoopIter columnLoop(outputColumns, never, &progress);
    tools::multiproc::ParallelSection section(columnLoop, [&job, &groupEnds, columns](int x) {
        if (x < columns && groupEnds[x] != 0) {
            smooth::ScaleColumns(job, x, groupEnds[x]);
        }
    });
    tools::multiproc::RunParallelSection(section, workers);
}

}  // namespace buffer
}  // namespace ulogui

void ULOPictureBits::EnlargeSmooth(ULOPictureBits& target, const ULORect* targetRect) const {
    ulogui::buffer::ScaleSmooth(*this, target, targetRect, ulogui::buffer::ColumnThreads::kBySize);
}
