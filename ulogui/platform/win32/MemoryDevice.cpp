// The in-memory framebuffer device on Windows: a memory device context (CreateCompatibleDC) with a
// 32-bit top-down DIB section selected into it, so that the device calls of the library
// (SetDIBitsToDevice, GetPixel) work on it exactly as on a window's device context.
#include <windows.h>

#include <cstring>

#include "platform/DeviceOutput.h"
#include "ulogui/Device.h"

namespace ulogui {
namespace platform {

struct MemoryDevice::Framebuffer {
    HDC dc = nullptr;
    HBITMAP section = nullptr;
    HGDIOBJ previous = nullptr;  // the context's own bitmap, selected back before the section goes
    unsigned char* bits = nullptr;
    int width = 0;
    int height = 0;

    unsigned char* Pixel(int x, int y) const {
        return bits + (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 4;
    }
    bool Contains(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
};

MemoryDevice::MemoryDevice(int width, int height, const CLR& background) : framebuffer_(new Framebuffer) {
    Framebuffer& fb = *framebuffer_;
    fb.dc = ::CreateCompatibleDC(nullptr);
    if (fb.dc != nullptr && width > 0 && height > 0) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;  // top-down
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        void* bits = nullptr;
        fb.section = ::CreateDIBSection(fb.dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        if (fb.section != nullptr && bits != nullptr) {
            fb.previous = ::SelectObject(fb.dc, fb.section);
            fb.bits = static_cast<unsigned char*>(bits);
            fb.width = width;
            fb.height = height;
        }
    }
    Fill(background);
}

MemoryDevice::~MemoryDevice() {
    Framebuffer& fb = *framebuffer_;
    if (fb.previous != nullptr) {
        ::SelectObject(fb.dc, fb.previous);
    }
    if (fb.section != nullptr) {
        ::DeleteObject(fb.section);
    }
    if (fb.dc != nullptr) {
        ::DeleteDC(fb.dc);
    }
    delete framebuffer_;
}

HDC MemoryDevice::GetHDC() const {
    return framebuffer_->dc;
}

int MemoryDevice::GetWidth() const {
    return framebuffer_->width;
}

int MemoryDevice::GetHeight() const {
    return framebuffer_->height;
}

const unsigned char* MemoryDevice::GetData() const {
    ::GdiFlush();  // drawing calls still queued land in the section first
    return framebuffer_->bits;
}

CLR MemoryDevice::GetPixel(int x, int y) const {
    if (!framebuffer_->Contains(x, y)) {
        return CLR(255, 255, 255);
    }
    return GetDevicePixel(framebuffer_->dc, x, y);
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
    for (int y = 0; y < framebuffer_->height; ++y) {
        for (int x = 0; x < framebuffer_->width; ++x) {
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
        scanLines <= 0 || framebuffer_->bits == nullptr) {
        return 0;
    }
    const int rows = SetBitsToDevice(framebuffer_->dc, destX, destY, width, height, srcX, srcY, startScan,
                                     scanLines, bits, header, colorUse);
    ::GdiFlush();
    return rows;
}

}  // namespace platform
}  // namespace ulogui
