// The device interface and the in-memory framebuffer device.
#include <algorithm>
#include <cstdint>

#include "ulogui/Device.h"

namespace ulogui {
namespace platform {

Device::~Device() = default;

MemoryDevice::MemoryDevice(int width, int height, const CLR& background)
    : width_(width > 0 && height > 0 ? width : 0), height_(width > 0 && height > 0 ? height : 0) {
    pixels_.resize(static_cast<size_t>(width_) * static_cast<size_t>(height_) * 4);
    Fill(background);
}

MemoryDevice::~MemoryDevice() = default;

CLR MemoryDevice::GetPixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        return CLR(255, 255, 255);
    }
    const unsigned char* p = &pixels_[(static_cast<size_t>(y) * width_ + x) * 4];
    return CLR(p[2], p[1], p[0]);
}

void MemoryDevice::SetPixel(int x, int y, const CLR& colour) {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        return;
    }
    unsigned char* p = &pixels_[(static_cast<size_t>(y) * width_ + x) * 4];
    p[0] = colour.blue;
    p[1] = colour.green;
    p[2] = colour.red;
    p[3] = 0;
}

void MemoryDevice::Fill(const CLR& colour) {
    for (size_t i = 0; i < pixels_.size(); i += 4) {
        pixels_[i] = colour.blue;
        pixels_[i + 1] = colour.green;
        pixels_[i + 2] = colour.red;
        pixels_[i + 3] = 0;
    }
}

int MemoryDevice::CopyBits(int destX, int destY, int width, int height, int srcX, int srcY, int startScan,
                           int scanLines, const void* bits, const BitmapInfoHeader& header,
                           unsigned colorUse) {
    if (bits == nullptr || header.size != sizeof(BitmapInfoHeader) || header.planes != 1 ||
        header.bitCount != 32 || header.compression != kCompressionRGB || colorUse != kColorUseRGB ||
        header.width <= 0 || header.height <= 0 || width <= 0 || height <= 0 || startScan < 0 ||
        scanLines <= 0) {
        return 0;
    }
    const int64_t imageStride = static_cast<int64_t>(header.width) * 4;
    // Image rows (counted from the bottom) that are present in `bits` and in the image.
    const int64_t firstRow = std::max<int64_t>(startScan, 0);
    const int64_t endRow = std::min<int64_t>(static_cast<int64_t>(startScan) + scanLines, header.height);
    const unsigned char* source = static_cast<const unsigned char*>(bits);
    int rowsCopied = 0;
    for (int k = 0; k < height; ++k) {
        // The rectangle's top row is its highest image row.
        const int64_t imageRow = static_cast<int64_t>(srcY) + height - 1 - k;
        const int64_t deviceY = static_cast<int64_t>(destY) + k;
        if (imageRow < firstRow || imageRow >= endRow || deviceY < 0 || deviceY >= height_) {
            continue;
        }
        const unsigned char* sourceRow = source + (imageRow - startScan) * imageStride;
        unsigned char* deviceRow = &pixels_[static_cast<size_t>(deviceY) * width_ * 4];
        for (int j = 0; j < width; ++j) {
            const int64_t imageColumn = static_cast<int64_t>(srcX) + j;
            const int64_t deviceX = static_cast<int64_t>(destX) + j;
            if (imageColumn < 0 || imageColumn >= header.width || deviceX < 0 || deviceX >= width_) {
                continue;
            }
            const unsigned char* s = sourceRow + imageColumn * 4;
            unsigned char* d = deviceRow + deviceX * 4;
            d[0] = s[0];
            d[1] = s[1];
            d[2] = s[2];
            d[3] = 0;
        }
        ++rowsCopied;
    }
    return rowsCopied;
}

}  // namespace platform
}  // namespace ulogui
