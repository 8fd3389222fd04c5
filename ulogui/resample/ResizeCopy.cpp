// Unscaled copy of a source rectangle (eResizeCopy, and Crop).
#include <algorithm>
#include <cstdint>

#include "resample/ResizeKernels.h"

namespace ulogui {
namespace resample {

void ResizeCopy(const raster::RasterView& source, const ULORect& rect, const raster::RasterView& target) {
    const std::int64_t bpp = source.BytesPerPixel();
    const std::int64_t columns = static_cast<std::int64_t>(rect.right) - rect.left;
    if (columns <= 0 || target.Block() == nullptr) {
        return;
    }
    // Only the rows that land inside the new picture are visited, so a wild rectangle costs nothing.
    const std::int64_t bytes = std::min<std::int64_t>(columns, target.Width()) * bpp;
    const std::int64_t firstRow =
        std::max<std::int64_t>(rect.top, static_cast<std::int64_t>(rect.bottom) - target.Height());
    for (std::int64_t r = firstRow; r < rect.bottom; ++r) {
        CopyInsideBlocks(source, source.OffsetInBlock(rect.left, r), target.Block(), target.BlockSize(),
                         target.OffsetInBlock(0, target.Height() - (rect.bottom - r)), bytes);
    }
}

}  // namespace resample
}  // namespace ulogui
