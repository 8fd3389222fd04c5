// ULOGetGlyphWidth: a glyph's advance plus the kerning to the character after it.
#include "font/GlyphFonts.h"
#include "ulogui/Glyph.h"

int ULOGetGlyphWidth(wchar_t ch, wchar_t next, const ULOString& face, int height, int weightIndex, int italic,
                     int underline) {
    const std::shared_ptr<ulogui::platform::PlatformFont> font =
        ulogui::font::GlyphFont(face, height, weightIndex, italic, underline);
    if (!font) {
        return 0;
    }
    const int32_t kerning =
        font->GetKerningAmount(ulogui::font::CodePointOf(ch), ulogui::font::CodePointOf(next));
    ulogui::platform::GlyphMetrics metrics;
    font->GetGlyphMetrics(ulogui::font::CodePointOf(ch), metrics);  // zeros when the glyph cannot be loaded
    return metrics.cellIncX + kerning;
}
