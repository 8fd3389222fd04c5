// Nearest-neighbour resizing. The source offset of every destination column is computed once per call;
// a destination row whose source row is the same as the previous one is a copy of that row.
#include <cstdint>
#include <cstring>
#include <vector>

#include "resample/ResizeKernels.h"

namespace ulogui {
namespace resample {

namespace {

// Fetches the next source row into the cache a line at a time while the current row is gathered: the
// next row starts on another page, where the processor's own prefetching would start late, and asking
// for all of it at once would stall on the first misses.
class RowPrefetch {
public:
    RowPrefetch(const unsigned char* row, std::ptrdiff_t bytes)
        : row_(row), bytes_(row != nullptr ? bytes : 0) {}
    void Step() {
        if (done_ < bytes_) {
            __builtin_prefetch(row_ + done_);
            done_ += 64;
        }
    }
    void Finish() {
        while (done_ < bytes_) {
            Step();
        }
    }

private:
    const unsigned char* row_;
    std::ptrdiff_t bytes_;
    std::ptrdiff_t done_ = 0;
};

// One destination row of N-byte pixels, gathered from a source row, four pixels per step.
template <int N>
void GatherRow(unsigned char* to, const unsigned char* from, const std::int32_t* offsets, int width,
               RowPrefetch& next) {
    int x = 0;
    for (; x + 4 <= width; x += 4) {
        next.Step();
        // Four independent loads, then the stores (for 4-byte pixels one wide store).
        unsigned char p[4 * N];
        for (int k = 0; k < 4; ++k) {
            std::memcpy(p + k * N, from + offsets[x + k], N);
        }
        std::memcpy(to + static_cast<std::ptrdiff_t>(x) * N, p, sizeof p);
    }
    for (; x < width; ++x) {
        std::memcpy(to + static_cast<std::ptrdiff_t>(x) * N, from + offsets[x], N);
    }
    next.Finish();
}

template <int N>
void NearestRows(const raster::RasterView& source, const raster::RasterView& target,
                 const std::vector<std::int32_t>& offsets) {
    const std::size_t rowBytes = static_cast<std::size_t>(target.Width()) * N;
    const std::size_t padding = static_cast<std::size_t>(-target.Stride()) - rowBytes;
    const auto sourceRow = [&](int y) {
        return source.Row(static_cast<std::int64_t>(source.Height()) * y / target.Height());
    };
    const unsigned char* previousSource = nullptr;
    const unsigned char* previousRow = nullptr;
    // Destination picture rows from the bottom (the first row in memory) upwards.
    for (int y = target.Height() - 1; y >= 0; --y) {
        const unsigned char* from = sourceRow(y);
        unsigned char* to = target.Row(y);
        if (from == previousSource) {
            std::memcpy(to, previousRow, rowBytes);
        } else {
            RowPrefetch next(y > 0 ? sourceRow(y - 1) : nullptr,
                             static_cast<std::ptrdiff_t>(source.Width()) * N);
            GatherRow<N>(to, from, offsets.data(), target.Width(), next);
        }
        // The block was not cleared: the row padding is.
        std::memset(to + rowBytes, 0, padding);
        previousSource = from;
        previousRow = to;
    }
}

}  // namespace

void ResizeNearest(const raster::RasterView& source, const raster::RasterView& target) {
    // A picture without pixels leaves the (then cleared) block as it is.
    if (!source.RowsHoldPixels() || target.IsEmpty()) {
        return;
    }
    // Byte offsets within a source row, which is shorter than 2 GB since its stride is an int.
    std::vector<std::int32_t> offsets(static_cast<std::size_t>(target.Width()));
    for (int x = 0; x < target.Width(); ++x) {
        offsets[x] = static_cast<std::int32_t>(static_cast<std::int64_t>(x) * source.Width() /
                                               target.Width() * source.BytesPerPixel());
    }
    switch (source.BytesPerPixel()) {
        case 1:
            NearestRows<1>(source, target, offsets);
            break;
        case 3:
            NearestRows<3>(source, target, offsets);
            break;
        default:
            NearestRows<4>(source, target, offsets);
            break;
    }
}

}  // namespace resample
}  // namespace ulogui
