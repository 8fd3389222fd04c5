// The text canvas on Windows: GDI itself. The screen context (GetDC), a memory context compatible
// with it (CreateCompatibleDC), a 32-bit top-down DIB section selected into that, and DrawTextW
// with the font the library's own selection record names for the context.
#include "platform/TextCanvas.h"

#include <windows.h>
#undef DrawText  // the member, not winuser.h's macro for DrawTextW

#include <cstdint>

#include "platform/FontEngine.h"

namespace ulogui {
namespace platform {

namespace {

COLORREF ToColorRef(const CLR& colour) {
    return RGB(colour.red, colour.green, colour.blue);
}

// The largest section made: as many bytes as a 32-bit top-down bitmap can address, as on Linux.
constexpr int64_t kMaxSectionBytes = INT32_MAX;

}  // namespace

struct TextCanvas::State {
    HDC screen = nullptr;
    HDC memory = nullptr;
    HBITMAP section = nullptr;
    HGDIOBJ previousBitmap = nullptr;  // the context's own bitmap, selected back before the section goes
    raster::RasterView pixels;
};

TextCanvas::TextCanvas(int width, int height) : state_(std::make_unique<State>()) {
    State& s = *state_;
    s.screen = ::GetDC(nullptr);
    s.memory = ::CreateCompatibleDC(s.screen);
    if (s.memory == nullptr || width <= 0 || height <= 0 ||
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
    s.section = ::CreateDIBSection(s.memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (s.section == nullptr || bits == nullptr) {
        return;
    }
    s.previousBitmap = ::SelectObject(s.memory, s.section);
    // A new section is zero-filled by the system.
    s.pixels = raster::RasterView::TopDown(static_cast<unsigned char*>(bits), width, height,
                                           static_cast<std::ptrdiff_t>(width) * 4, 4);
}

TextCanvas::~TextCanvas() {
    State& s = *state_;
    // Deleting a context drops what was selected into it, in the library's record too.
    if (s.memory != nullptr) {
        SelectFont(s.memory, nullptr);
    }
    if (s.previousBitmap != nullptr) {
        ::SelectObject(s.memory, s.previousBitmap);
    }
    if (s.section != nullptr) {
        ::DeleteObject(s.section);
    }
    if (s.memory != nullptr) {
        ::DeleteDC(s.memory);
    }
    if (s.screen != nullptr) {
        ::ReleaseDC(nullptr, s.screen);
    }
}

raster::RasterView TextCanvas::Pixels() const {
    ::GdiFlush();  // drawing still queued lands in the section first
    return state_->pixels;
}

HDC TextCanvas::Context() const {
    return state_->memory;
}

void TextCanvas::SetBackgroundMode(BackgroundMode mode) {
    if (state_->memory != nullptr) {
        ::SetBkMode(state_->memory, mode == BackgroundMode::kTransparent ? TRANSPARENT : OPAQUE);
    }
}

void TextCanvas::SetBackgroundColour(const CLR& colour) {
    if (state_->memory != nullptr) {
        ::SetBkColor(state_->memory, ToColorRef(colour));
    }
}

void TextCanvas::SetTextColour(const CLR& colour) {
    if (state_->memory != nullptr) {
        ::SetTextColor(state_->memory, ToColorRef(colour));
    }
}

int TextCanvas::DrawText(const wchar_t* text, int length, const ULORect& rect, unsigned format) {
    const State& s = *state_;
    if (text == nullptr || s.section == nullptr) {
        return 0;
    }
    const std::shared_ptr<PlatformFont> font = ResolveFont(GetSelectedFont(s.memory));
    if (!font) {
        return 0;
    }
    const HGDIOBJ previousFont = ::SelectObject(s.memory, font->Handle());
    if (previousFont == nullptr || previousFont == HGDI_ERROR) {
        return 0;
    }
    RECT area{rect.left, rect.top, rect.right, rect.bottom};
    const int height = ::DrawTextW(s.memory, text, length < 0 ? -1 : length, &area, format);
    ::SelectObject(s.memory, previousFont);
    ::GdiFlush();
    return height;
}

}  // namespace platform
}  // namespace ulogui
