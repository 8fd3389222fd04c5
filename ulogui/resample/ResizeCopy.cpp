// Unscaled copy of a source rectangle (eResizeCopy, and Crop).
#include <algorithm>
#include <cstdint>

#include "resample/ResizeKernels.h"

namespace ulogui {
namespace resample {

void ResizeCopy(const BlockView& source, const ULORect& rect, const NewBlock& target) {
    const std::int64_t bpp = source.bytesPerPixel;
    const std::int64_t columns = static_cast<std::int64_t>(rect.right) - rect.left;
    if (columns <= 0 || target.bits == nullptr) {
        return;
    }
    // Only the rows that land inside the new picture are visited, so a wild rectangle costs nothing.
    const std::int64_t bytes = std::min<std::int64_t>(columns, target.width) * bpp;
    const std::int64_t firstRow =
        std::max<std::int64_t>(rect.top, static_cast<std::int64_t>(rect.bottom) - target.height);
    for (std::int64_t r = firstRow; r < rect.bottom; ++r) {
        const std::int64_t destinationRow = rect.bottom - r - 1;
        CopyInsideBlocks(source, source.OffsetOf(rect.left, r), target.bits, target.size,
                         destinationRow * target.lineWidth, bytes);
    }
}

}  // namespace resample
}  // namespace ulogui
