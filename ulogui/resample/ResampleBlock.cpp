#include "resample/ResampleBlock.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>

#include "raster/PixelBlock.h"

namespace ulogui {
namespace resample {

bool IsWellFormed(const unsigned char* bits, int width, int height, int lineWidth, int bytesPerPixel,
                  int flags) {
    if (width < 0 || height < 0 || lineWidth < 0 || bytesPerPixel != BytesPerPixelForFlags(flags)) {
        return false;
    }
    if (static_cast<std::int64_t>(lineWidth) < static_cast<std::int64_t>(width) * bytesPerPixel) {
        return false;
    }
    return bits != nullptr || static_cast<std::int64_t>(lineWidth) * height == 0;
}

raster::RasterView ViewOf(unsigned char* bits, int width, int height, int lineWidth, int bytesPerPixel) {
    // A block that holds no bytes is no block: its view has no rows to read.
    if (raster::PixelBlockSize(lineWidth, height) == 0) {
        bits = nullptr;
    }
    return raster::RasterView::BottomUp(bits, width, height, lineWidth, bytesPerPixel);
}

BlockPlan PlanBlock(int width, int height, int flags) {
    const std::int64_t bitsPerPixel = 8 * BytesPerPixelForFlags(flags);
    const std::int64_t lineWidth = (static_cast<std::int64_t>(width) * bitsPerPixel + 31) / 32 * 4;
    if (width < 0 || height < 0 || lineWidth > INT_MAX) {
        throw std::bad_alloc();
    }
    return PlanBlockWithStride(static_cast<int>(lineWidth), height);
}

BlockPlan PlanBlockWithStride(int lineWidth, int height) {
    if (lineWidth < 0 || height < 0) {
        throw std::bad_alloc();
    }
    BlockPlan plan;
    plan.lineWidth = lineWidth;
    plan.size = static_cast<std::size_t>(lineWidth) * static_cast<std::size_t>(height);
    return plan;
}

BlockPtr AllocateBlock(std::size_t size, bool zeroed) {
    return BlockPtr(raster::AllocatePixelBlock(size, zeroed));
}

void CopyInsideBlocks(const raster::RasterView& source, std::int64_t from, unsigned char* destination,
                      std::size_t destinationSize, std::int64_t to, std::int64_t count) {
    if (count <= 0 || source.Block() == nullptr || destination == nullptr) {
        return;
    }
    // The run [0, count) shrinks to the part where both ends are inside their blocks.
    const std::int64_t first = std::max<std::int64_t>({0, -from, -to});
    const std::int64_t last =
        std::min<std::int64_t>({count, static_cast<std::int64_t>(source.BlockSize()) - from,
                                static_cast<std::int64_t>(destinationSize) - to});
    if (first < last) {
        std::memcpy(destination + to + first, source.Block() + from + first,
                    static_cast<std::size_t>(last - first));
    }
}

}  // namespace resample
}  // namespace ulogui
