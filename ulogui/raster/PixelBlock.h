#pragma once
// Pixel blocks come from the runtime heap, so that the buffer that owns one releases it with free().
#include <cstddef>

namespace ulogui {
namespace raster {

// Bytes of a block of `height` rows of `lineWidth` bytes; 0 when either is not positive.
size_t PixelBlockSize(int lineWidth, int height);

// A block of `size` bytes, or null for 0. A failed allocation follows the rule of operator new: the
// new-handler is called and the allocation retried, and without a handler std::bad_alloc is thrown.
// `zeroed` clears the block.
unsigned char* AllocatePixelBlock(size_t size, bool zeroed = false);

}  // namespace raster
}  // namespace ulogui
