// TextOutW: one line of text at the bottom of a rectangle, rasterised by the platform into a band
// and composited into the surface.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cwchar>

#include "base/FloatToInteger.h"
#include "base/MagnifyRounding.h"
#include "platform/TextCanvas.h"
#include "surface/DrawingFrame.h"
#include "surface/TextBand.h"
#include "ulogui/Font.h"
#include "ulogui/Palette.h"
#include "ulogui/TrueColorDC.h"
#include "ulolib/CriticalSection.h"

namespace drawtext = ulogui::platform::drawtext;
using ulogui::platform::BackgroundMode;
using ulogui::platform::TextCanvas;
using ulogui::surface::DrawingFrame;
using ulogui::surface::TextBandMode;

namespace {

// The flags of text output.
constexpr int kCentre = 0x2;
constexpr int kRight = 0x4;
constexpr int kOpaque = 0x8;
constexpr int kItalic = 0x20;
constexpr int kUnderline = 0x180;

}  // namespace

int ULOTrueColorDCBase::TextOutW(const boost::shared_ptr<ULOFont>& font, const ULORect* rect,
                                 const wchar_t* text, int flags, const CLR& colour, float opacity,
                                 int tabStartX, const CLR& backColour) {
    // 1. Nothing to draw.
    if (text == nullptr || text[0] == L'\0' || rect == nullptr || !font) {
        return 0;
    }
    if (static_cast<int64_t>(rect->right) - rect->left < 2) {
        return 0;
    }
    // 2, 3. Device pixels, guard raised.
    const DrawingFrame frame(*this);
    ULORect area = frame.ToDevice(*rect);
    if (tabStartX != 0) {
        tabStartX = frame.ToDevice(tabStartX);
    }
    const ulogui::raster::RasterView& canvas = frame.Canvas();
    if (canvas.IsEmpty()) {
        return 0;
    }
    // 4. The clip: right and bottom go one pixel inside, and only when they lie beyond the surface.
    area.left = std::max(area.left, 0);
    area.top = std::max(area.top, 0);
    if (canvas.Width() < area.right) {
        area.right = canvas.Width() - 1;
    }
    if (canvas.Height() < area.bottom) {
        area.bottom = canvas.Height() - 1;
    }
    if (static_cast<int64_t>(area.right) - area.left <= 0 ||
        static_cast<int64_t>(area.bottom) - area.top <= 0) {
        return 0;
    }
    // 5. The font's height is in device pixels, but a surface that is not magnified takes it as logical.
    int fontHeight = font->GetFontHeight();
    if (!GetWorkingOnScreenSize()) {
        fontHeight = ulogui::base::ToDevice(fontHeight, frame.Conversion().Magnifier());
    }
    if ((flags & kItalic) != 0) {
        area.right = ulogui::base::ClampToInt(static_cast<int64_t>(area.right) - (fontHeight >> 2));
    }
    // 6. Text that does not fit shows in red.
    const ULOString line(text);
    CLR ink = colour;
    if (ulogui::HighlightOverflowingTexts()) {
        const int n = font->GetMaxWordOffset(area.right - area.left, line, static_cast<float>(tabStartX));
        if (n > 0 && static_cast<size_t>(n) <= line.size() && text[n - 1] != L'\n') {
            ink = CLR(255, 0, 0);
        }
    }
    // 7. The band: the rectangle's bottom rows, one font height at most.
    const int bandHeight = std::min(area.bottom - area.top, fontHeight);
    const int width = area.right - area.left;
    const ULOPoint origin(area.left, area.bottom - bandHeight);
    // 8. Alpha surfaces: dark text is drawn on white, light text on black.
    const TextBandMode mode = TextBandMode::For((GetFlags() & PICTBITS_ALPHA) != 0, ink, opacity);
    {
        // 9. The platform part, under the lock.
        ulo::SingleLock lock(csFontTextOut);
        HDC memoryDC = nullptr;
        {
            TextCanvas section(width, bandHeight);
            memoryDC = section.Context();
            // 10. The background the text is drawn on.
            ulogui::surface::FillTextBand(section.Pixels(), canvas, origin, mode);
            // 11. The font, with the styles asked for.
            font->SelectWindowsFont(memoryDC, (flags & kItalic) != 0, (flags & kUnderline) != 0);
            // 12. Colours: flag 0x8 draws the text in the second colour on a box of the first.
            if ((flags & kOpaque) == 0) {
                section.SetBackgroundMode(BackgroundMode::kTransparent);
                section.SetTextColour(ink);
            } else {
                section.SetBackgroundMode(BackgroundMode::kOpaque);
                section.SetBackgroundColour(ink);
                section.SetTextColour(backColour);
            }
            // 13. Alignment and prefixes, nothing else.
            unsigned format = (flags & kRight) != 0    ? drawtext::kRight
                              : (flags & kCentre) != 0 ? drawtext::kCenter
                                                       : drawtext::kLeft;
            if (!GetEnableMnemonic()) {
                format |= drawtext::kNoPrefix;
            }
            const int length = static_cast<int>(std::min<size_t>(line.size(), INT32_MAX));
            section.DrawText(text, length, ULORect(0, 0, width, bandHeight), format);
            // 14. The band goes back.
            ulogui::surface::PutTextBandBack(section.Pixels(), canvas, origin, mode);
        }  // 15. Section, memory context and screen context released ...
        // ... and then the font's record of the former selection reset.
        font->RestoreOldWindowsFont(memoryDC);
    }
    // 16. The width drawn.
    const float realWidth = font->GetStringRealWidth(line, static_cast<float>(tabStartX));
    return std::min(width, ulogui::base::SaturatingTruncate(std::ceil(realWidth)));
}
