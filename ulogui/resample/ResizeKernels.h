#pragma once
// The pixel loops of ULOPictureBits::Resize. Each fills the new, cleared block `target` (a view of its
// whole picture) from the old block.
#include <cstddef>

#include "resample/ResampleBlock.h"
#include "ulogui/Geometry.h"

namespace ulogui {
namespace resample {

// Nearest neighbour over the whole picture: destination row y takes source row height * y / newHeight
// and column x takes source column x * width / newWidth (integer division).
void ResizeNearest(const raster::RasterView& source, const raster::RasterView& target);
// Area-weighted averaging over the source rectangle, in the single-precision arithmetic of its
// description (docs/resampling.md).
void ResizeBox(const raster::RasterView& source, const ULORect& rect, const raster::RasterView& target);
// The source rectangle copied unscaled: source row r goes to memory row rect.bottom - r - 1.
void ResizeCopy(const raster::RasterView& source, const ULORect& rect, const raster::RasterView& target);

}  // namespace resample
}  // namespace ulogui
