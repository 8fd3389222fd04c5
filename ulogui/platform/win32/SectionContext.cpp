#include "platform/win32/SectionContext.h"

#include <cstdint>

namespace ulogui {
namespace platform {

namespace {

// The largest section made: as many bytes as a 32-bit top-down bitmap can address, as on Linux.
constexpr int64_t kMaxSectionBytes = INT32_MAX;

}  // namespace

SectionContext::SectionContext(HDC reference, int width, int height) : dc_(::CreateCompatibleDC(reference)) {
    if (dc_ == nullptr || width <= 0 || height <= 0 ||
        static_cast<int64_t>(width) * height * 4 > kMaxSectionBytes) {
        return;
    }
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // top-down
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    section_ = ::CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (section_ == nullptr || bits == nullptr) {
        return;
    }
    previous_ = ::SelectObject(dc_, section_);
    bits_ = static_cast<unsigned char*>(bits);
    width_ = width;
    height_ = height;
}

SectionContext::~SectionContext() {
    if (previous_ != nullptr) {
        ::SelectObject(dc_, previous_);
    }
    if (section_ != nullptr) {
        ::DeleteObject(section_);
    }
    if (dc_ != nullptr) {
        ::DeleteDC(dc_);
    }
}

}  // namespace platform
}  // namespace ulogui
