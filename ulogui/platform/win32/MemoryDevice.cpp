// The in-memory framebuffer device on Windows: a memory device context with a 32-bit top-down DIB
// section selected into it (SectionContext), so that the device calls of the library
// (SetDIBitsToDevice, GetPixel) work on it exactly as on a window's device context.
#include <windows.h>

#include "platform/DeviceOutput.h"
#include "platform/win32/SectionContext.h"
#include "ulogui/Device.h"

namespace ulogui {
namespace platform {

struct MemoryDevice::Framebuffer : SectionContext {
    Framebuffer(int width, int height) : SectionContext(nullptr, width, height) {}

    bool Contains(int x, int y) const { return x >= 0 && y >= 0 && x < Width() && y < Height(); }
};

MemoryDevice::MemoryDevice(int width, int height, const CLR& background)
    : framebuffer_(new Framebuffer(width, height)) {
    Fill(background);
}

MemoryDevice::~MemoryDevice() {
    delete framebuffer_;
}

HDC MemoryDevice::GetHDC() const {
    return framebuffer_->Context();
}

int MemoryDevice::GetWidth() const {
    return framebuffer_->Width();
}

int MemoryDevice::GetHeight() const {
    return framebuffer_->Height();
}

const unsigned char* MemoryDevice::GetData() const {
    ::GdiFlush();  // drawing calls still queued land in the section first
    // A device pixel has no transparency: the fourth byte of every pixel is 0. GDI's copy into a
    // 32-bit section brings the image's fourth byte along (SetDIBitsToDevice here or on the context
    // by its handle), so it is cleared when the bytes are read.
    for (int y = 0; y < framebuffer_->Height(); ++y) {
        for (int x = 0; x < framebuffer_->Width(); ++x) {
            framebuffer_->Pixel(x, y)[3] = 0;
        }
    }
    return framebuffer_->Bits();
}

CLR MemoryDevice::GetPixel(int x, int y) const {
    if (!framebuffer_->Contains(x, y)) {
        return CLR(255, 255, 255);
    }
    return GetDevicePixel(framebuffer_->Context(), x, y);
}

void MemoryDevice::SetPixel(int x, int y, const CLR& colour) {
    if (!framebuffer_->Contains(x, y)) {
        return;
    }
    ::GdiFlush();
    unsigned char* p = framebuffer_->Pixel(x, y);
    p[0] = colour.blue;
    p[1] = colour.green;
    p[2] = colour.red;
    p[3] = 0;
}

void MemoryDevice::Fill(const CLR& colour) {
    ::GdiFlush();
    for (int y = 0; y < framebuffer_->Height(); ++y) {
        for (int x = 0; x < framebuffer_->Width(); ++x) {
            unsigned char* p = framebuffer_->Pixel(x, y);
            p[0] = colour.blue;
            p[1] = colour.green;
            p[2] = colour.red;
            p[3] = 0;
        }
    }
}

int MemoryDevice::CopyBits(int destX, int destY, int width, int height, int srcX, int srcY, int startScan,
                           int scanLines, const void* bits, const BitmapInfoHeader& header,
                           unsigned colorUse) {
    // The images this framebuffer takes, as on the other platforms; GDI itself would take more.
    if (bits == nullptr || header.size != sizeof(BitmapInfoHeader) || header.planes != 1 ||
        header.bitCount != 32 || header.compression != kCompressionRGB || colorUse != kColorUseRGB ||
        header.width <= 0 || header.height <= 0 || width <= 0 || height <= 0 || startScan < 0 ||
        scanLines <= 0 || framebuffer_->Bits() == nullptr) {
        return 0;
    }
    const int rows = SetBitsToDevice(framebuffer_->Context(), destX, destY, width, height, srcX, srcY,
                                     startScan, scanLines, bits, header, colorUse);
    ::GdiFlush();
    return rows;
}

}  // namespace platform
}  // namespace ulogui
