// The device interface, the in-memory framebuffer device, and showing pixels on a device: an HDC is
// a pointer to a Device here.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/DeviceOutput.h"
#include "ulogui/Device.h"

namespace ulogui {
namespace platform {

Device::~Device() = default;

// The framebuffer is the Device that the memory device's handle points to.
struct MemoryDevice::Framebuffer : Device {
    Framebuffer(int w, int h)
        : width(w > 0 && h > 0 ? w : 0),
          height(w > 0 && h > 0 ? h : 0),
          pixels(static_cast<size_t>(width) * static_cast<size_t>(height) * 4) {}

    CLR GetPixel(int x, int y) const override {
        if (x < 0 || y < 0 || x >= width || y >= height) {
            return CLR(255, 255, 255);
        }
        const unsigned char* p = &pixels[(static_cast<size_t>(y) * width + x) * 4];
        return CLR(p[2], p[1], p[0]);
    }

    int CopyBits(int destX, int destY, int w, int h, int srcX, int srcY, int startScan, int scanLines,
                 const void* bits, const BitmapInfoHeader& header, unsigned colorUse) override;

    int width;
    int height;
    std::vector<unsigned char> pixels;
};

int MemoryDevice::Framebuffer::CopyBits(int destX, int destY, int w, int h, int srcX, int srcY, int startScan,
                                        int scanLines, const void* bits, const BitmapInfoHeader& header,
                                        unsigned colorUse) {
    if (bits == nullptr || header.size != sizeof(BitmapInfoHeader) || header.planes != 1 ||
        header.bitCount != 32 || header.compression != kCompressionRGB || colorUse != kColorUseRGB ||
        header.width <= 0 || header.height <= 0 || w <= 0 || h <= 0 || startScan < 0 || scanLines <= 0) {
        return 0;
    }
    const int64_t imageStride = static_cast<int64_t>(header.width) * 4;
    // Image rows (counted from the bottom) that are present in `bits` and in the image.
    const int64_t firstRow = std::max<int64_t>(startScan, 0);
    const int64_t endRow = std::min<int64_t>(static_cast<int64_t>(startScan) + scanLines, header.height);
    const unsigned char* source = static_cast<const unsigned char*>(bits);
    int rowsCopied = 0;
    for (int k = 0; k < h; ++k) {
        // The rectangle's top row is its highest image row.
        const int64_t imageRow = static_cast<int64_t>(srcY) + h - 1 - k;
        const int64_t deviceY = static_cast<int64_t>(destY) + k;
        if (imageRow < firstRow || imageRow >= endRow || deviceY < 0 || deviceY >= height) {
            continue;
        }
        const unsigned char* sourceRow = source + (imageRow - startScan) * imageStride;
        unsigned char* deviceRow = &pixels[static_cast<size_t>(deviceY) * width * 4];
        for (int j = 0; j < w; ++j) {
            const int64_t imageColumn = static_cast<int64_t>(srcX) + j;
            const int64_t deviceX = static_cast<int64_t>(destX) + j;
            if (imageColumn < 0 || imageColumn >= header.width || deviceX < 0 || deviceX >= width) {
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

MemoryDevice::MemoryDevice(int width, int height, const CLR& background)
    : framebuffer_(new Framebuffer(width, height)) {
    Fill(background);
}

MemoryDevice::~MemoryDevice() {
    delete framebuffer_;
}

HDC MemoryDevice::GetHDC() const {
    return framebuffer_;
}

int MemoryDevice::GetWidth() const {
    return framebuffer_->width;
}

int MemoryDevice::GetHeight() const {
    return framebuffer_->height;
}

const unsigned char* MemoryDevice::GetData() const {
    return framebuffer_->pixels.data();
}

CLR MemoryDevice::GetPixel(int x, int y) const {
    return framebuffer_->GetPixel(x, y);
}

void MemoryDevice::SetPixel(int x, int y, const CLR& colour) {
    if (x < 0 || y < 0 || x >= framebuffer_->width || y >= framebuffer_->height) {
        return;
    }
    unsigned char* p = &framebuffer_->pixels[(static_cast<size_t>(y) * framebuffer_->width + x) * 4];
    p[0] = colour.blue;
    p[1] = colour.green;
    p[2] = colour.red;
    p[3] = 0;
}

void MemoryDevice::Fill(const CLR& colour) {
    std::vector<unsigned char>& pixels = framebuffer_->pixels;
    for (size_t i = 0; i < pixels.size(); i += 4) {
        pixels[i] = colour.blue;
        pixels[i + 1] = colour.green;
        pixels[i + 2] = colour.red;
        pixels[i + 3] = 0;
    }
}

int MemoryDevice::CopyBits(int destX, int destY, int width, int height, int srcX, int srcY, int startScan,
                           int scanLines, const void* bits, const BitmapInfoHeader& header,
                           unsigned colorUse) {
    return framebuffer_->CopyBits(destX, destY, width, height, srcX, srcY, startScan, scanLines, bits, header,
                                  colorUse);
}

CLR GetDevicePixel(HDC dc, int x, int y) {
    return dc ? dc->GetPixel(x, y) : CLR(255, 255, 255);
}

int SetBitsToDevice(HDC dc, int destX, int destY, int width, int height, int srcX, int srcY, int startScan,
                    int scanLines, const void* bits, const BitmapInfoHeader& header, unsigned colorUse) {
    return dc ? dc->CopyBits(destX, destY, width, height, srcX, srcY, startScan, scanLines, bits, header,
                             colorUse)
              : 0;
}

}  // namespace platform
}  // namespace ulogui
