// The text canvas on Windows: GDI itself. The screen context (GetDC), a memory context compatible
// with it with a 32-bit top-down DIB section selected into that (SectionContext), and DrawTextW
// with the font the library's own selection record names for the context.
#include "platform/TextCanvas.h"

#include <windows.h>
#undef DrawText  // the member, not winuser.h's macro for DrawTextW

#include <cstdint>

#include "platform/FontEngine.h"
#include "platform/win32/SectionContext.h"

namespace ulogui {
namespace platform {

namespace {

COLORREF ToColorRef(const CLR& colour) {
    return RGB(colour.red, colour.green, colour.blue);
}

}  // namespace

struct TextCanvas::State {
    explicit State(int width, int height) : screen(::GetDC(nullptr)), target(screen, width, height) {}
    ~State() {
        // Deleting a context drops what was selected into it, in the library's record too.
        if (target.Context() != nullptr) {
            SelectFont(target.Context(), nullptr);
        }
    }

    HDC screen;
    SectionContext target;  // released before the screen context
};

TextCanvas::TextCanvas(int width, int height) : state_(std::make_unique<State>(width, height)) {}

TextCanvas::~TextCanvas() {
    const HDC screen = state_->screen;
    state_.reset();
    if (screen != nullptr) {
        ::ReleaseDC(nullptr, screen);
    }
}

raster::RasterView TextCanvas::Pixels() const {
    ::GdiFlush();  // drawing still queued lands in the section first
    const SectionContext& target = state_->target;
    if (target.Bits() == nullptr) {
        return raster::RasterView();
    }
    return raster::RasterView::TopDown(target.Bits(), target.Width(), target.Height(),
                                       static_cast<std::ptrdiff_t>(target.Width()) * 4, 4);
}

HDC TextCanvas::Context() const {
    return state_->target.Context();
}

void TextCanvas::SetBackgroundMode(BackgroundMode mode) {
    if (state_->target.Context() != nullptr) {
        ::SetBkMode(state_->target.Context(), mode == BackgroundMode::kTransparent ? TRANSPARENT : OPAQUE);
    }
}

void TextCanvas::SetBackgroundColour(const CLR& colour) {
    if (state_->target.Context() != nullptr) {
        ::SetBkColor(state_->target.Context(), ToColorRef(colour));
    }
}

void TextCanvas::SetTextColour(const CLR& colour) {
    if (state_->target.Context() != nullptr) {
        ::SetTextColor(state_->target.Context(), ToColorRef(colour));
    }
}

int TextCanvas::DrawText(const wchar_t* text, int length, const ULORect& rect, unsigned format) {
    const HDC memory = state_->target.Context();
    if (text == nullptr || state_->target.Bits() == nullptr) {
        return 0;
    }
    const std::shared_ptr<PlatformFont> font = ResolveFont(GetSelectedFont(memory));
    if (!font) {
        return 0;
    }
    const HGDIOBJ previousFont = ::SelectObject(memory, font->Handle());
    if (previousFont == nullptr || previousFont == HGDI_ERROR) {
        return 0;
    }
    RECT area{rect.left, rect.top, rect.right, rect.bottom};
    const int height = ::DrawTextW(memory, text, length < 0 ? -1 : length, &area, format);
    ::SelectObject(memory, previousFont);
    ::GdiFlush();
    return height;
}

}  // namespace platform
}  // namespace ulogui
