#pragma once
// The pixel loops of ULOPictureBits::Resize. Each fills a new, cleared block of newWidth x newHeight
// pixels (stride `lineWidth`) from the old block.
#include <cstddef>

#include "resample/ResampleBlock.h"
#include "ulogui/Geometry.h"

namespace ulogui {
namespace resample {

struct NewBlock {
    unsigned char* bits;
    std::size_t size;
    int width;
    int height;
    int lineWidth;
};

// Nearest neighbour over the whole picture: destination row y takes source row height * y / newHeight
// and column x takes source column x * width / newWidth (integer division).
void ResizeNearest(const BlockView& source, const NewBlock& target);
// Area-weighted averaging over the source rectangle, in the single-precision arithmetic of its
// description (docs/resampling.md).
void ResizeBox(const BlockView& source, const ULORect& rect, const NewBlock& target);
// The source rectangle copied unscaled: source row r goes to memory row rect.bottom - r - 1.
void ResizeCopy(const BlockView& source, const ULORect& rect, const NewBlock& target);

}  // namespace resample
}  // namespace ulogui
