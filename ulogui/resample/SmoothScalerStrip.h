#pragma once
// The walk shared by the smooth scaler's kernels. A group of neighbouring output columns is computed as
// a strip, row after row: the horizontal pass of every source row the strip needs goes into a small
// ring of rows (as many as one output row's taps span, since the rows needed only move forward), and
// each output row is then a weighted sum of ring rows.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "resample/SmoothScaler.h"

namespace ulogui {
namespace resample {
namespace smooth {

template <typename Element>
class StripRing {
public:
    // Output columns [first, last) with `channels` elements per column in every ring row.
    StripRing(const Job& job, int first, int last, int channels)
        : job_(job),
          first_(first),
          stride_(static_cast<std::size_t>(last - first) * channels),
          rows_(job.ys->maxSpan),
          ring_(static_cast<std::size_t>(rows_) * stride_),
          held_(static_cast<std::size_t>(rows_), -1) {}

    // Source row r, y = 0 being the top of the picture.
    const unsigned char* SourceRow(std::int32_t r) const { return job_.source.Row(r); }
    // Output row y of the target, from the strip's first column.
    unsigned char* TargetRow(int y, int bytesPerPixel) const {
        return job_.target.Row(y) + static_cast<std::ptrdiff_t>(first_) * bytesPerPixel;
    }
    // The horizontal pass of source row r; valid for the rows of the current output row's taps.
    const Element* Row(std::int32_t r) const { return &ring_[static_cast<std::size_t>(r % rows_) * stride_]; }

    // Makes the ring hold every source row that output row y's taps read, computing the missing ones
    // with filter(r, ringRow).
    template <typename Filter>
    void Prepare(int y, Filter&& filter) {
        const AxisTaps& ys = *job_.ys;
        const std::int32_t last = ys.index[ys.start[y + 1] - 1];
        for (std::int32_t r = ys.index[ys.start[y]]; r <= last; ++r) {
            const int slot = r % rows_;
            if (held_[slot] != r) {
                filter(r, &ring_[static_cast<std::size_t>(slot) * stride_]);
                held_[slot] = r;
            }
        }
    }

private:
    const Job& job_;
    int first_;
    std::size_t stride_;
    int rows_;
    std::vector<Element> ring_;
    std::vector<std::int32_t> held_;
};

}  // namespace smooth
}  // namespace resample
}  // namespace ulogui
