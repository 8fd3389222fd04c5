// The device interface and the in-memory framebuffer device.
#include "platform/DeviceCopy.h"
#include "ulogui/Device.h"

namespace ulogui {
namespace platform {

Device::~Device() = default;

void Device::ReadAhead(const ULORect&) {}

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
    const DeviceCopy copy = PlanDeviceCopy(
        {destX, destY, width, height, srcX, srcY, startScan, scanLines, bits, header, colorUse}, width_,
        height_);
    for (int k = 0; k < copy.height; ++k) {
        const unsigned char* s = copy.Row(k);
        unsigned char* d = &pixels_[(static_cast<size_t>(copy.destY + k) * width_ + copy.destX) * 4];
        for (int j = 0; j < copy.width; ++j, s += 4, d += 4) {
            d[0] = s[0];
            d[1] = s[1];
            d[2] = s[2];
            d[3] = 0;
        }
    }
    return copy.height;
}

}  // namespace platform
}  // namespace ulogui
