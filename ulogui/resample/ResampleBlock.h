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

namespace ulogui {
namespace resample {

inline int BytesPerPixelForFlags(int flags) {
    // Matches ULOPictureBits::InitBytesPerPixels: the mask flag wins over the 24-bit flag.
    if (flags & 0x4) {
        return 1;
    }
    return (flags & 0x8) ? 3 : 4;
}

// The existing block of a buffer, as far as it can be trusted.
struct BlockView {
    unsigned char* bits = nullptr;
    int width = 0;
    int height = 0;
    std::ptrdiff_t lineWidth = 0;
    int bytesPerPixel = 4;
    // Bytes that may be touched from `bits`: lineWidth * height, or 0 without a block.
    std::ptrdiff_t size = 0;

    // True when every pixel of the picture lies inside the block, so loops over the picture need no
    // per-pixel checks.
    bool CoversPicture() const {
        return bits != nullptr && width > 0 && height > 0 &&
               lineWidth >= static_cast<std::ptrdiff_t>(width) * bytesPerPixel;
    }
    // Byte offset of pixel (x, y) by the bottom-up rule (may lie outside the block).
    std::ptrdiff_t OffsetOf(std::int64_t x, std::int64_t y) const {
        return static_cast<std::ptrdiff_t>((height - 1 - y) * lineWidth + x * bytesPerPixel);
    }
    // Whether `count` bytes from `offset` lie inside the block.
    bool Holds(std::int64_t offset, std::int64_t count) const {
        return offset >= 0 && count >= 0 && offset <= static_cast<std::int64_t>(size) - count;
    }
};

// Whether a buffer is fit for pixel work: non-negative sizes and stride, a pixel size that matches the
// flags (a buffer filled by Read may disagree), rows long enough for their pixels, and a block whenever
// the block size is not zero. Operations leave a buffer that is not fit unchanged.
bool IsWellFormed(const unsigned char* bits, int width, int height, int lineWidth, int bytesPerPixel,
                  int flags);
BlockView ViewOf(unsigned char* bits, int width, int height, int lineWidth, int bytesPerPixel);

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
void CopyInsideBlocks(const BlockView& source, std::int64_t from, unsigned char* destination,
                      std::size_t destinationSize, std::int64_t to, std::int64_t count);

}  // namespace resample
}  // namespace ulogui
