#include "Painter.h"

#include <cmath>

#include "ulogui/Magnify.h"
#include "ulogui/Palette.h"

namespace gallery {

Look LookOf(const GalleryResources& resources, size_t language, size_t magnification) {
    Look look;
    look.magnifier = resources.magnifications.at(magnification);
    look.language = &resources.languages.at(language);
    look.fonts = &look.language->fonts.at(magnification);
    look.pictures = &resources.pictures.at(magnification);
    return look;
}

float Painter::TextWidth(FontRole role, const ULOString& text) const {
    return Font(role).GetStringRealWidth(text, 0.0f);
}

int Painter::LineHeight(FontRole role) const {
    return static_cast<int>(std::ceil(Font(role).GetFontHeight() / look_.magnifier));
}

void Painter::Label(FontRole role, const ULORect& box, const ULOString& text, const CLR& colour, int flags) {
    TextRun run;
    run.font = role;
    const int height = LineHeight(role);
    const int bottom = box.top + (box.bottom - box.top + height + 1) / 2;
    run.rect = ULORect(box.left, bottom - height, box.right, bottom);
    run.text = text;
    run.flags = flags;
    run.colour = colour;
    DrawText(run);
}

void Painter::NoteTextLayout(const ULORect& rect) {
    if (textRegions_ != nullptr) {
        ULORect region = rect;
        magnify::DoMagnify(region, dc.IsMagnified());
        textRegions_->push_back(region);
    }
}

void Painter::DrawText(const TextRun& run) {
    if (run.text.empty()) {
        return;
    }
    ULORect region = run.rect;
    if (run.kind == TextRun::kClipped) {
        region =
            ULORect(std::max(run.clip.left, run.rect.left), std::max(run.clip.top, run.rect.top),
                    std::min(run.clip.right, run.rect.right), std::min(run.clip.bottom, run.rect.bottom));
    }
    NoteTextLayout(region);
    // Until text output lands: a bar as wide as each line, where the line will be.
    const ULOFont& font = Font(run.font);
    const int lineHeight = LineHeight(run.font);
    CLR colour = run.colour;
    const int width = run.rect.right - run.rect.left;
    if (run.markOverflow && font.GetMaxWordOffset(width, run.text, 0.0f) != 0) {
        colour = CLR(255, 0, 0);
    }
    ULOString rest = run.text;
    for (int top = run.rect.top; !rest.empty() && top + lineHeight <= run.rect.bottom; top += lineHeight) {
        const int n = run.kind == TextRun::kWrapped ? font.GetMaxWordOffset(width, rest, 0.0f) : 0;
        const ULOString line = n == 0 ? rest : rest.Left(n);
        rest = n == 0 ? ULOString() : rest.Mid(n);
        while (!rest.empty() && (rest[0] == L' ' || rest[0] == L'\n')) {
            rest.erase(0, 1);
        }
        const int w = std::min(width, static_cast<int>(std::ceil(font.GetStringRealWidth(line, 0.0f))));
        const int left = (run.flags & kTextRight)    ? run.rect.right - w
                         : (run.flags & kTextCentre) ? run.rect.left + (width - w) / 2
                                                     : run.rect.left;
        const int y = run.kind == TextRun::kWrapped ? top : run.rect.bottom - lineHeight;
        ULORect bar(left, y + lineHeight / 3, left + w, y + lineHeight - lineHeight / 4);
        if (run.kind == TextRun::kClipped) {
            bar.top = std::max(bar.top, run.clip.top);
            bar.bottom = std::min(bar.bottom, run.clip.bottom);
        }
        dc.FillRectAlpha(&bar, colour, 0.6f);
        if (run.kind != TextRun::kWrapped) {
            break;
        }
    }
}

}  // namespace gallery
