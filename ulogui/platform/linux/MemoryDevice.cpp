// The device interface, the in-memory framebuffer device, and showing pixels on a device: an HDC is
// a pointer to a Device here.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/DeviceCopy.h"
#include "platform/DeviceOutput.h"
#include "ulogui/Device.h"

namespace ulogui {
namespace platform {

Device::~Device() = default;

void Device::ReadAhead(const ULORect&) {}

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
    const DeviceCopy copy = PlanDeviceCopy(
        {destX, destY, w, h, srcX, srcY, startScan, scanLines, bits, header, colorUse}, width, height);
    for (int k = 0; k < copy.height; ++k) {
        const unsigned char* s = copy.Row(k);
        unsigned char* d = &pixels[(static_cast<size_t>(copy.destY + k) * width + copy.destX) * 4];
        for (int j = 0; j < copy.width; ++j, s += 4, d += 4) {
            d[0] = s[0];
            d[1] = s[1];
            d[2] = s[2];
            d[3] = 0;
        }
    }
    return copy.height;
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

void ReadAheadOnDevice(HDC dc, const ULORect& area) {
    if (dc != nullptr) {
        dc->ReadAhead(area);
    }
}

int SetBitsToDevice(HDC dc, int destX, int destY, int width, int height, int srcX, int srcY, int startScan,
                    int scanLines, const void* bits, const BitmapInfoHeader& header, unsigned colorUse) {
    return dc ? dc->CopyBits(destX, destY, width, height, srcX, srcY, startScan, scanLines, bits, header,
                             colorUse)
              : 0;
}

}  // namespace platform
}  // namespace ulogui
