// The text canvas on Linux: the section is memory of the canvas, the memory context a device of the
// platform layer that fonts are selected into, and the draw-text call is drawn with the selected
// font's glyph images (SectionText.cpp).
#include "platform/TextCanvas.h"

#include <cstdint>
#include <cwchar>
#include <new>

#include "platform/FontEngine.h"
#include "platform/linux/SectionText.h"
#include "ulogui/Device.h"

namespace ulogui {
namespace platform {

namespace {

// The memory context: a device showing the section, so that it has an identity to select fonts
// into. Device copies onto it are not offered (text output makes none).
class SectionContext : public Device {
public:
    explicit SectionContext(const raster::RasterView& section) : section_(section) {}

    CLR GetPixel(int x, int y) const override {
        if (section_.IsEmpty() || !section_.Bounds().Contains(ULOPoint(x, y))) {
            return CLR(255, 255, 255);
        }
        const unsigned char* p = section_.Pixel(x, y);
        return CLR(p[2], p[1], p[0]);
    }
    int CopyBits(int, int, int, int, int, int, int, int, const void*, const BitmapInfoHeader&,
                 unsigned) override {
        return 0;
    }

private:
    const raster::RasterView& section_;
};

// The largest section made: as many bytes as a 32-bit top-down bitmap can address.
constexpr int64_t kMaxSectionBytes = INT32_MAX;

}  // namespace

struct TextCanvas::State {
    std::unique_ptr<unsigned char[]> bits;
    raster::RasterView section;
    SectionContext context{section};
    ft::TextPaint paint;
};

TextCanvas::TextCanvas(int width, int height) : state_(std::make_unique<State>()) {
    if (width <= 0 || height <= 0 || static_cast<int64_t>(width) * height * 4 > kMaxSectionBytes) {
        return;
    }
    const size_t bytes = static_cast<size_t>(width) * static_cast<size_t>(height) * 4;
    state_->bits.reset(new (std::nothrow) unsigned char[bytes]());
    if (state_->bits) {
        state_->section = raster::RasterView::TopDown(state_->bits.get(), width, height,
                                                      static_cast<std::ptrdiff_t>(width) * 4, 4);
    }
}

TextCanvas::~TextCanvas() {
    // Deleting a context drops what was selected into it.
    SelectFont(Context(), nullptr);
}

raster::RasterView TextCanvas::Pixels() const {
    return state_->section;
}

HDC TextCanvas::Context() const {
    return &state_->context;
}

void TextCanvas::SetBackgroundMode(BackgroundMode mode) {
    state_->paint.mode = mode;
}

void TextCanvas::SetBackgroundColour(const CLR& colour) {
    state_->paint.background = colour;
}

void TextCanvas::SetTextColour(const CLR& colour) {
    state_->paint.text = colour;
}

int TextCanvas::DrawText(const wchar_t* text, int length, const ULORect& rect, unsigned format) {
    if (text == nullptr) {
        return 0;
    }
    const std::shared_ptr<PlatformFont> font = ResolveFont(GetSelectedFont(Context()));
    if (!font) {
        return 0;
    }
    const size_t count = length < 0 ? std::wcslen(text) : static_cast<size_t>(length);
    return ft::DrawTextOnSection(state_->section, *font, state_->paint, text, count, rect, format);
}

}  // namespace platform
}  // namespace ulogui
