#pragma once
// Helpers shared by the resampling operations of ULOPictureBits: planning and allocating the new block,
// and reading the old one safely.
//
// The operations address pixels by the bottom-up rule, exactly where their description puts them. A
// pixel that the rule places outside its row but still inside the block (a crop rectangle that reaches
// past the right edge, say) is read from there, as it always was; whatever would fall outside the block
// is not read, and the new block, which starts cleared, keeps its zeros there.
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "raster/RasterView.h"

namespace ulogui {
namespace resample {

inline int BytesPerPixelForFlags(int flags) {
    // Matches ULOPictureBits::InitBytesPerPixels: the mask flag wins over the 24-bit flag.
    if (flags & 0x4) {
        return 1;
    }
    return (flags & 0x8) ? 3 : 4;
}

// Whether a buffer is fit for pixel work: non-negative sizes and stride, a pixel size that matches the
// flags (a buffer filled by Read may disagree), rows long enough for their pixels, and a block whenever
// the block size is not zero. Operations leave a buffer that is not fit unchanged.
bool IsWellFormed(const unsigned char* bits, int width, int height, int lineWidth, int bytesPerPixel,
                  int flags);
// The view of a buffer's existing block, as far as it can be trusted: its rows may be shorter than
// their pixels, which is why readers check offsets with Holds.
raster::RasterView ViewOf(unsigned char* bits, int width, int height, int lineWidth, int bytesPerPixel);

// The geometry of a block to be built.
struct BlockPlan {
    int lineWidth = 0;
    std::size_t size = 0;
};
// Stride by ULOPictureUtil::ComputeLineWidth and the byte count of width x height pixels. A size whose
// stride does not fit the 32-bit arithmetic of that rule (or is negative) cannot be allocated:
// std::bad_alloc, before anything has changed.
BlockPlan PlanBlock(int width, int height, int flags);
// The same with a stride that is kept as it is.
BlockPlan PlanBlockWithStride(int lineWidth, int height);

// Truncation toward zero that saturates at the int range (NaN gives 0): where a float or double from a
// size computation would not fit, the plain conversion is undefined.
inline int TruncateSaturated(double v) {
    if (!(v == v)) {
        return 0;
    }
    if (v >= 2147483647.0) {
        return INT_MAX;
    }
    if (v <= -2147483648.0) {
        return INT_MIN;
    }
    return static_cast<int>(v);
}

// Wraps a 64-bit coordinate to 32 bits, as 32-bit arithmetic would have.
inline int WrapToInt(std::int64_t v) {
    return static_cast<int>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(v)));
}

struct FreeBlock {
    void operator()(unsigned char* p) const { std::free(p); }
};
using BlockPtr = std::unique_ptr<unsigned char, FreeBlock>;
// A block from the runtime heap (null for 0 bytes); failure follows the rule of operator new.
BlockPtr AllocateBlock(std::size_t size, bool zeroed);

// Copies `count` bytes from source offset `from` to destination offset `to`, leaving out every byte
// whose source or destination lies outside its block.
void CopyInsideBlocks(const raster::RasterView& source, std::int64_t from, unsigned char* destination,
                      std::size_t destinationSize, std::int64_t to, std::int64_t count);

}  // namespace resample
}  // namespace ulogui
