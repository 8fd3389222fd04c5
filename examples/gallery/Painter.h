#pragma once
// What the controls paint with: the sheet's surface, the look (texts, fonts and pictures of one
// language at one magnification) and the gallery's single way of putting text on a surface.
#include <vector>

#include "Resources.h"
#include "ulogui/TrueColorDC.h"

namespace gallery {

struct Look {
    float magnifier = 1.0f;
    const LanguageResources* language = nullptr;
    const FontSet* fonts = nullptr;
    const PictureSet* pictures = nullptr;
};

// The look of language `language` at magnification `magnification` (indices into resources).
Look LookOf(const GalleryResources& resources, size_t language, size_t magnification);

// Text output flags, as the surface's text members take them.
constexpr int kTextCentre = 0x2;
constexpr int kTextRight = 0x4;

// One piece of text. A single line sits on the bottom rows of its rectangle.
struct TextRun {
    enum Kind { kLine, kWrapped, kClipped };
    Kind kind = kLine;
    FontRole font = FontRole::Label;
    ULORect rect;
    ULORect clip;  // kClipped: what may change
    ULOString text;
    int flags = 0;
    CLR colour{255, 255, 255};
    bool markOverflow = false;  // kWrapped: drawn with the overflow highlight switched on
};

class Painter {
public:
    // `textRegions`, when given, collects the device rectangle of every text drawn (the golden
    // comparison holds text to a tolerance there).
    Painter(ULOTrueColorDCBase& surface, const Look& look, std::vector<ULORect>* textRegions)
        : dc(surface), look_(look), textRegions_(textRegions) {}

    ULOTrueColorDCBase& dc;

    ULOString Text(const char* key) const { return look_.language->texts.Get(key); }
    const boost::shared_ptr<ULOFont>& FontPtr(FontRole role) const {
        return (*look_.fonts)[static_cast<int>(role)];
    }
    const ULOFont& Font(FontRole role) const { return *FontPtr(role); }
    const PictureSet& Pictures() const { return *look_.pictures; }
    float Magnifier() const { return look_.magnifier; }
    // Logical width of one line of text.
    float TextWidth(FontRole role, const ULOString& text) const;
    // The font's height in logical units, rounded up.
    int LineHeight(FontRole role) const;

    // One line centred vertically in box (left-aligned unless flags say otherwise).
    void Label(FontRole role, const ULORect& box, const ULOString& text, const CLR& colour, int flags = 0);
    // The one place where text reaches the surface.
    void DrawText(const TextRun& run);
    // Marks a rectangle whose drawing follows measured text (a tab strip, a tooltip, a selection), so
    // that the golden comparison treats it as text.
    void NoteTextLayout(const ULORect& rect);

private:
    const Look& look_;
    std::vector<ULORect>* textRegions_;
};

}  // namespace gallery
