#pragma once
// A memory device context with a 32-bit top-down DIB section selected into it: what the text canvas
// draws text into and what the memory device is, so that GDI's calls work on both as on a window's
// context.
#include <windows.h>

#include <cstddef>

namespace ulogui {
namespace platform {

class SectionContext {
public:
    // A memory context compatible with `reference` (null: the screen), and a section of width x height
    // pixels in it when both are positive and it stays within a 32-bit byte count. The context exists
    // even when the section does not. A new section is zero-filled by the system.
    SectionContext(HDC reference, int width, int height);
    // The section deselected and deleted, then the context.
    ~SectionContext();
    SectionContext(const SectionContext&) = delete;
    SectionContext& operator=(const SectionContext&) = delete;

    HDC Context() const { return dc_; }
    // The top row's first pixel (rows of Width() * 4 bytes, top to bottom); null without a section.
    // Flush GDI (GdiFlush) before reading or writing them.
    unsigned char* Bits() const { return bits_; }
    int Width() const { return width_; }  // 0 without a section, as Height
    int Height() const { return height_; }
    unsigned char* Pixel(int x, int y) const {
        return bits_ + (static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x)) * 4;
    }

private:
    HDC dc_ = nullptr;
    HBITMAP section_ = nullptr;
    HGDIOBJ previous_ = nullptr;  // the context's own bitmap, selected back before the section goes
    unsigned char* bits_ = nullptr;
    int width_ = 0;
    int height_ = 0;
};

}  // namespace platform
}  // namespace ulogui
