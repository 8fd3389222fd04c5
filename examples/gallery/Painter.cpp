#include "Painter.h"

#include <algorithm>
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
    const boost::shared_ptr<ULOFont>& font = FontPtr(run.font);
    const CLR back = CLR_EDIT_BACK;
    switch (run.kind) {
        case TextRun::kLine:
            dc.TextOutW(font, &run.rect, run.text.c_str(), run.flags, run.colour, 1.0f, 0, back);
            break;
        case TextRun::kClipped:
            dc.TextOutClipped(font, &run.rect, &run.clip, run.text.c_str(), run.flags, run.colour, 1.0f, 0,
                              back);
            break;
        case TextRun::kWrapped: {
            // Wrapped lines step by the font's height, which is in device pixels: the rectangle is
            // given in device pixels too, with the guard raised, so that lines and box agree at every
            // magnification.
            ULORect device = run.rect;
            magnify::DoMagnify(device, dc.IsMagnified());
            const bool guard = dc.GetWorkingOnScreenSize();
            dc.SetWorkingOnScreenSize(true);
            // The switch is the host's; it is on only for the labels that show it.
            const bool was = ulogui::HighlightOverflowingTexts();
            ulogui::SetHighlightOverflowingTexts(run.markOverflow);
            dc.MultiLineTextOut(font, &device, run.text.c_str(), run.flags, run.colour, 1.0f, 0, back);
            ulogui::SetHighlightOverflowingTexts(was);
            dc.SetWorkingOnScreenSize(guard);
            break;
        }
    }
}

}  // namespace gallery
