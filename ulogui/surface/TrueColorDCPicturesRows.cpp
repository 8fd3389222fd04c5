// The row walk of picture drawing: a source read in place by the transfer loop, or expanded a chunk at a
// time into 4-byte pixels first. One walk is stamped per reading; the reading and the loop are chosen
// once per call.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "surface/PictureDrawing.h"

namespace ulogui {
namespace surface {

namespace {

using raster::RasterView;
using Byte = unsigned char;

// Pixels expanded per chunk: 1 KiB of scratch, which stays in the first-level cache with the rows.
constexpr int kChunk = 256;

// The expansions, each called as read(source pixels, count, out) with out 4 bytes a pixel.
struct CopyPixels {
    static constexpr int kBytes = 4;
    void operator()(const Byte* s, int n, Byte* out) const {
        std::memcpy(out, s, static_cast<size_t>(n) * 4);
    }
};

template <int Bytes>
struct ReadColours {
    static constexpr int kBytes = Bytes;
    explicit ReadColours(const SourceReading& r) : alpha(r.alpha) {}
    void operator()(const Byte* s, int n, Byte* out) const {
        for (int i = 0; i < n; ++i, s += Bytes, out += 4) {
            out[0] = s[0];
            out[1] = s[1];
            out[2] = s[2];
            out[3] = alpha;
        }
    }
    Byte alpha;
};

// Byte `Bytes - 1` of each source pixel is its alpha: byte 3 of a 4-byte pixel, the byte of a mask.
template <int Bytes>
struct ReadColourAlpha {
    static constexpr int kBytes = Bytes;
    explicit ReadColourAlpha(const SourceReading& r)
        : colour{r.colour[0], r.colour[1], r.colour[2]}, flip(r.alpha) {}
    void operator()(const Byte* s, int n, Byte* out) const {
        for (int i = 0; i < n; ++i, s += Bytes, out += 4) {
            out[0] = colour[0];
            out[1] = colour[1];
            out[2] = colour[2];
            out[3] = static_cast<Byte>(s[Bytes - 1] ^ flip);
        }
    }
    Byte colour[3];
    Byte flip;
};

struct ReadSolid {
    static constexpr int kBytes = 0;
    explicit ReadSolid(const SourceReading& r) : pixel{r.colour[0], r.colour[1], r.colour[2], r.alpha} {}
    void operator()(const Byte*, int n, Byte* out) const {
        for (int i = 0; i < n; ++i, out += 4) {
            std::memcpy(out, pixel, 4);
        }
    }
    Byte pixel[4];
};

// Destination rows in the order they lie in memory.
template <typename Row>
void ForEachRowInMemoryOrder(const RasterView& canvas, const AxisPlan& y, Row row) {
    if (canvas.Stride() < 0) {
        for (int line = y.last - 1; line >= y.first; --line) {
            row(line);
        }
    } else {
        for (int line = y.first; line < y.last; ++line) {
            row(line);
        }
    }
}

int SourceRowOf(const AxisPlan& y, int line) {
    return y.repeat ? y.sourceFirst : y.sourceFirst + (line - y.first);
}

template <class Read>
void WalkExpanded(const RasterView& canvas, const TransferPlan& plan, const RasterView& source,
                  const Read& read, const pixelops::Loop& loop) {
    Byte scratch[kChunk * 4];
    const int count = plan.x.last - plan.x.first;
    const int first = std::min(count, kChunk);
    ForEachRowInMemoryOrder(canvas, plan.y, [&](int line) {
        const Byte* from = source.Pixel(plan.x.sourceFirst, SourceRowOf(plan.y, line));
        Byte* to = canvas.Pixel(plan.x.first, line);
        if (plan.x.repeat) {
            // One source pixel for the whole row: expanded once, copied across the scratch.
            read(from, 1, scratch);
            for (int i = 1; i < first; ++i) {
                std::memcpy(scratch + 4 * i, scratch, 4);
            }
            for (int done = 0; done < count; done += kChunk) {
                loop.RunRow(to + 4 * static_cast<std::ptrdiff_t>(done), scratch,
                            std::min(kChunk, count - done));
            }
            return;
        }
        for (int done = 0; done < count; done += kChunk) {
            const int n = std::min(kChunk, count - done);
            read(from + static_cast<std::ptrdiff_t>(Read::kBytes) * done, n, scratch);
            loop.RunRow(to + 4 * static_cast<std::ptrdiff_t>(done), scratch, n);
        }
    });
}

void WalkInPlace(const RasterView& canvas, const TransferPlan& plan, const RasterView& source,
                 const pixelops::Loop& loop) {
    if (plan.x.repeat) {
        WalkExpanded(canvas, plan, source, CopyPixels(), loop);
        return;
    }
    if (!plan.y.repeat) {
        // The transfer loop's own walk, which hands whole unpadded bands to the loop as one run.
        loop.Run(canvas, plan.Area(), source, ULOPoint(plan.x.sourceFirst, plan.y.sourceFirst));
        return;
    }
    const int count = plan.x.last - plan.x.first;
    ForEachRowInMemoryOrder(canvas, plan.y, [&](int line) {
        loop.RunRow(canvas.Pixel(plan.x.first, line), source.Pixel(plan.x.sourceFirst, plan.y.sourceFirst),
                    count);
    });
}

bool SharesMemory(const RasterView& a, const RasterView& b) {
    // As addresses: the blocks are usually unrelated objects, which pointer comparison does not order.
    const std::uintptr_t aStart = reinterpret_cast<std::uintptr_t>(a.Block());
    const std::uintptr_t bStart = reinterpret_cast<std::uintptr_t>(b.Block());
    return aStart < bStart + b.BlockSize() && bStart < aStart + a.BlockSize();
}

void Walk(const RasterView& canvas, const TransferPlan& plan, const RasterView& source,
          const PictureRoutine& routine) {
    const SourceReading& reading = routine.reading;
    switch (reading.kind) {
        case SourceReading::Kind::kInPlace:
            WalkInPlace(canvas, plan, source, routine.loop);
            return;
        case SourceReading::Kind::kColours4:
            WalkExpanded(canvas, plan, source, ReadColours<4>(reading), routine.loop);
            return;
        case SourceReading::Kind::kColours3:
            WalkExpanded(canvas, plan, source, ReadColours<3>(reading), routine.loop);
            return;
        case SourceReading::Kind::kColourAlpha4:
            WalkExpanded(canvas, plan, source, ReadColourAlpha<4>(reading), routine.loop);
            return;
        case SourceReading::Kind::kColourAlpha1:
            WalkExpanded(canvas, plan, source, ReadColourAlpha<1>(reading), routine.loop);
            return;
        case SourceReading::Kind::kSolid:
            WalkExpanded(canvas, plan, source, ReadSolid(reading), routine.loop);
            return;
    }
}

}  // namespace

int SourceReading::SourceBytesPerPixel() const {
    switch (kind) {
        case Kind::kInPlace:
        case Kind::kColours4:
        case Kind::kColourAlpha4:
            return 4;
        case Kind::kColours3:
            return 3;
        case Kind::kColourAlpha1:
            return 1;
        case Kind::kSolid:
            return 0;
    }
    return 0;
}

void TransferRows(const RasterView& canvas, const TransferPlan& plan, const RasterView& source,
                  const PictureRoutine& routine) {
    if (!routine.draws || plan.IsEmpty() || routine.loop.IsEmpty() || canvas.BytesPerPixel() != 4 ||
        (routine.reading.SourceBytesPerPixel() != 0 &&
         routine.reading.SourceBytesPerPixel() != source.BytesPerPixel())) {
        return;
    }
    if (!SharesMemory(canvas, source)) {
        Walk(canvas, plan, source, routine);
        return;
    }
    // The source lies in the canvas's memory (a surface drawn onto itself): the pixels the plan reads
    // are copied out first, so every pixel is read as it was before the call.
    const int bytes = source.BytesPerPixel();
    const int columns = plan.x.repeat ? 1 : plan.x.last - plan.x.first;
    const int rows = plan.y.repeat ? 1 : plan.y.last - plan.y.first;
    const std::size_t rowBytes = static_cast<std::size_t>(columns) * bytes;
    std::vector<Byte> copy(rowBytes * rows);
    for (int r = 0; r < rows; ++r) {
        std::memcpy(copy.data() + rowBytes * r, source.Pixel(plan.x.sourceFirst, plan.y.sourceFirst + r),
                    rowBytes);
    }
    const RasterView copied =
        RasterView::TopDown(copy.data(), columns, rows, static_cast<std::ptrdiff_t>(rowBytes), bytes);
    TransferPlan moved = plan;
    moved.x.sourceFirst = 0;
    moved.y.sourceFirst = 0;
    Walk(canvas, moved, copied, routine);
}

}  // namespace surface
}  // namespace ulogui
