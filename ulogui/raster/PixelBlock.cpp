#include "raster/PixelBlock.h"

#include <cstdlib>
#include <new>

namespace ulogui {
namespace raster {

size_t PixelBlockSize(int lineWidth, int height) {
    if (lineWidth <= 0 || height <= 0) {
        return 0;
    }
    return static_cast<size_t>(lineWidth) * static_cast<size_t>(height);
}

unsigned char* AllocatePixelBlock(size_t size, bool zeroed) {
    if (size == 0) {
        return nullptr;
    }
    for (;;) {
        void* block = zeroed ? std::calloc(size, 1) : std::malloc(size);
        if (block != nullptr) {
            return static_cast<unsigned char*>(block);
        }
        std::new_handler handler = std::get_new_handler();
        if (handler == nullptr) {
            throw std::bad_alloc();
        }
        handler();
    }
}

}  // namespace raster
}  // namespace ulogui
