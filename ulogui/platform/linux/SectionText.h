#pragma once
// The platform's draw-text call on a 32-bit section, with the font's glyph images: lines, alignment,
// the opaque background, glyphs in grey coverage, the font's underline and strike-out, and the
// mnemonic underline. Every pixel it touches gets alpha 0; no other pixel changes.
#include <cstddef>
#include <cstdint>

#include "platform/FontEngine.h"
#include "platform/TextCanvas.h"
#include "raster/RasterView.h"
#include "ulogui/Color.h"
#include "ulogui/Geometry.h"

namespace ulogui {
namespace platform {
namespace ft {

struct TextPaint {
    BackgroundMode mode = BackgroundMode::kOpaque;  // a new context's mode
    CLR background = CLR(255, 255, 255);            // a new context's colours
    CLR text = CLR(0, 0, 0);
};

// Draws length characters of text into rect (clipped to the section) with format's alignment and
// prefix bits. Returns the height of the lines laid out (lines x the font's height).
int DrawTextOnSection(const raster::RasterView& section, const PlatformFont& font, const TextPaint& paint,
                      const wchar_t* text, size_t length, const ULORect& rect, unsigned format);

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
