#include "Controls.h"

#include <algorithm>

#include "ulogui/Palette.h"

namespace gallery {

namespace {

constexpr CLR kBlack(0, 0, 0);
constexpr CLR kWhite(255, 255, 255);

CLR Disabled(const CLR& c) {
    return CLR::MakeDisabledColor(c);
}

// The face of a push button or of the small arrow buttons.
void PaintFace(Painter& p, const ULORect& r, State state) {
    const CLR light = CLR::Lerp(CLR_BUTTON_BACK, kWhite, 0.25f);
    const bool down = state == State::kPressed;
    const float opacity = state == State::kDisabled ? ulogui::opa::BUTTON_BACKGROUND : 1.0f;
    p.dc.FillRectVerticalGradation(&r, &r, down ? CLR_GRADATION_TOP_LEFT : light,
                                   down ? light : CLR_GRADATION_TOP_LEFT, opacity, opacity);
    if (state == State::kHot) {
        p.dc.FillRectAlpha(&r, CLR_HOVER_BUTTON, ulogui::opa::BUTTON_HIGHLIGHT_ONGRAD);
    } else if (down) {
        p.dc.FillRectAlpha(&r, CLR_HOVER_BUTTON, ulogui::opa::BUTTON_DOWN_ONGRAD);
    }
    const ULORect gloss(r.left + 1, r.top + 1, r.right - 1, (r.top + r.bottom) / 2);
    p.dc.FillRectAlpha(
        &gloss, kWhite,
        state == State::kHot ? ulogui::opa::BUTTON_GLOSS_HIGHLIGHT : ulogui::opa::BUTTON_GLOSS_SOFT);
}

ulogui::ECopyPictureType CopyTypeOf(State state) {
    return state == State::kHot        ? ulogui::eCopyHighlight
           : state == State::kDisabled ? ulogui::eCopyDisabled
                                       : ulogui::eCopyNormal;
}

}  // namespace

void PaintSheetGround(Painter& p, const ULORect& sheet, const ULOString& title) {
    p.dc.FillRectTopLeftToBottomRightGradation(&sheet, &sheet, CLR_GRADATION_TOP_LEFT,
                                               CLR_GRADATION_BOTTOM_RIGHT, 0.0f, 0.0f);
    const ULORect band(sheet.left, sheet.top, sheet.right, sheet.top + 30);
    p.dc.FillRectVerticalGradation(&band, &band, kBlack, kBlack, 0.35f, 0.0f);
    p.Label(FontRole::Title, ULORect(12, 0, sheet.right - 12, 30), title, CLR_ACTIVE_CAPTION_TITLE);
    p.dc.DrawHorizontalLineRelative(ULOPoint(0, 30), sheet.right, CLR(40, 40, 40));
}

void PaintHeading(Painter& p, const ULORect& box, const ULOString& text) {
    p.Label(FontRole::Bold, ULORect(box.left, box.top, box.right, box.bottom - 2), text, CLR_LABEL_TEXT);
    p.dc.DrawHorizontalLineAlpha(ULOPoint(box.left, box.bottom - 1), box.right - box.left, kWhite, 0.35f);
}

void PaintCaption(Painter& p, const ULORect& box, const ULOString& text, int flags) {
    p.Label(FontRole::Small, box, text, CLR::Lerp(CLR_LABEL_TEXT, CLR_GRADATION_TOP_LEFT, 0.25f), flags);
}

void PaintPushButton(Painter& p, const ULORect& r, const ULOString& label, int icon, State state,
                     bool isDefault) {
    PaintFace(p, r, state);
    if (isDefault) {
        p.dc.DrawRect(ULORect(r.left - 1, r.top - 1, r.right + 1, r.bottom + 1), kBlack);
        p.dc.Draw3DRect(r, true);
    } else if (state == State::kPressed) {
        p.dc.Draw3DRect(r, false);
    } else {
        p.dc.DrawRectAlpha(r, kBlack, 0.55f);
    }
    // Pressed contents move down and right by a pixel, as if pushed in.
    const int shift = state == State::kPressed ? 1 : 0;
    const ULOPicture& picture = p.Pictures().icons[static_cast<size_t>(icon)];
    const int iconTop = (r.top + r.bottom - 16) / 2 + shift;
    p.dc.DrawPicture(picture, ULOPoint(r.left + 6 + shift, iconTop), CopyTypeOf(state),
                     ulogui::opa::BUTTON_ICON);
    const ULORect text(r.left + 24 + shift, r.top + shift, r.right - 4 + shift, r.bottom + shift);
    p.Label(FontRole::Label, text, label,
            state == State::kDisabled ? Disabled(CLR_BUTTON_TEXT) : CLR_BUTTON_TEXT, kTextCentre);
}

void PaintCheckBox(Painter& p, const ULORect& box, const ULOString& label, Check check, State state) {
    const int top = (box.top + box.bottom - 13) / 2;
    const ULORect square(box.left, top, box.left + 13, top + 13);
    const CLR& back = state == State::kHot       ? CLR_EDIT_FOCUS_BACK
                      : state == State::kPressed ? CLR_LIST_BACK
                                                 : CLR_EDIT_BACK;
    if (state == State::kDisabled) {
        p.dc.FillRectAlpha(&square, back, 0.35f);
    } else {
        p.dc.FillRect(&square, back, 0);
    }
    p.dc.DrawRecessedFrame(square);
    if (state == State::kHot) {
        p.dc.DrawRectAlpha(square, CLR_HOVER_BUTTON, 0.8f);
    }
    if (check != Check::kOff) {
        const ULOPicture& mark = p.Pictures().marks[check == Check::kOn ? kMarkCheck : kMarkDash];
        p.dc.DrawMask(mark, state == State::kDisabled ? CLR_GRADATION_BOTTOM_RIGHT : CLR_EDIT_TEXT,
                      ULOPoint(square.left + 2, square.top + 2), square, 1.0f);
    }
    const CLR& text = state == State::kDisabled ? Disabled(CLR_LABEL_TEXT) : CLR_LABEL_TEXT;
    p.Label(FontRole::Label, ULORect(square.right + 5, box.top, box.right, box.bottom), label, text);
}

void PaintRadioButton(Painter& p, const ULORect& box, const ULOString& label, bool on, State state) {
    const ULOPoint at(box.left, (box.top + box.bottom - 13) / 2);
    const ULORect square(at.x, at.y, at.x + 13, at.y + 13);
    const std::vector<ULOPicture>& layers = p.Pictures().radio;
    const CLR& back = state == State::kHot       ? CLR_EDIT_FOCUS_BACK
                      : state == State::kPressed ? CLR_LIST_BACK
                                                 : CLR_EDIT_BACK;
    p.dc.DrawMask(layers[kRadioDisc], back, at, square, state == State::kDisabled ? 0.35f : 1.0f);
    p.dc.DrawMask(layers[kRadioRing], state == State::kHot ? CLR_HOVER_BUTTON : CLR(60, 60, 60), at, square,
                  1.0f);
    if (on) {
        p.dc.DrawMask(layers[kRadioDot],
                      state == State::kDisabled ? CLR_GRADATION_BOTTOM_RIGHT : CLR_EDIT_TEXT, at, square,
                      1.0f);
    }
    const CLR& text = state == State::kDisabled ? Disabled(CLR_LABEL_TEXT) : CLR_LABEL_TEXT;
    p.Label(FontRole::Label, ULORect(box.left + 18, box.top, box.right, box.bottom), label, text);
}

void PaintEditField(Painter& p, const ULORect& r, const ULOString& text, bool focused, int selFirst,
                    int selEnd) {
    p.dc.FillRect(&r, focused ? CLR_EDIT_FOCUS_BACK : CLR_EDIT_BACK, 0);
    p.dc.DrawRecessedFrame(r);
    const ULORect inner(r.left + 2 + ulogui::margin::EDIT_LEFT, r.top + ulogui::margin::EDIT_TOP,
                        r.right - 2 - ulogui::margin::EDIT_RIGHT, r.bottom - ulogui::margin::EDIT_BOTTOM);
    p.NoteTextLayout(inner);
    const int length = static_cast<int>(text.size());
    selFirst = std::clamp(selFirst, 0, length);
    selEnd = std::clamp(selEnd, selFirst, length);
    // Three pieces: before, inside and after the selection, each where the text before it ends.
    const int cuts[] = {0, selFirst, selEnd, length};
    int caretX = inner.left;
    for (int piece = 0; piece < 3; ++piece) {
        const int x =
            inner.left + static_cast<int>(p.TextWidth(FontRole::Label, text.Left(cuts[piece])) + 0.5f);
        const int end =
            inner.left + static_cast<int>(p.TextWidth(FontRole::Label, text.Left(cuts[piece + 1])) + 0.5f);
        if (cuts[piece] == cuts[piece + 1] || x >= inner.right) {
            continue;
        }
        const ULORect box(x, inner.top, std::min(end + 1, inner.right), inner.bottom);
        const bool selected = piece == 1;
        if (selected) {
            p.dc.FillRect(&box, CLR_EDIT_HIGHLIGHTED_TEXT, 0);
            caretX = std::min(end, inner.right - 1);
        }
        p.Label(FontRole::Label, box, text.Mid(cuts[piece], cuts[piece + 1] - cuts[piece]),
                selected ? kWhite : (focused ? CLR_EDIT_FOCUS_TEXT : CLR_EDIT_TEXT));
    }
    if (focused) {
        p.dc.DrawVerticalLine(ULOPoint(caretX, inner.top + 1), inner.bottom - inner.top - 2,
                              CLR_EDIT_FOCUS_TEXT);
    }
}

void PaintArrowButton(Painter& p, const ULORect& r, int arrow, State state) {
    PaintFace(p, r, state);
    p.dc.DrawRectAlpha(r, kBlack, 0.45f);
    const ULOPicture& mask = p.Pictures().arrows[static_cast<size_t>(arrow)];
    const ULOPoint at((r.left + r.right - 8) / 2, (r.top + r.bottom - 8) / 2);
    p.dc.DrawMask(mask, state == State::kDisabled ? CLR_GRADATION_BOTTOM_RIGHT : CLR_EDIT_TEXT, at, r, 1.0f);
}

void PaintScrollBar(Painter& p, const ULORect& r, int total, int visible, int first) {
    const int w = r.right - r.left;
    p.dc.FillRect(&r, CLR_GRADATION_LIST_LEFT, 0);
    PaintArrowButton(p, ULORect(r.left, r.top, r.right, r.top + w), kArrowUp, State::kNormal);
    PaintArrowButton(p, ULORect(r.left, r.bottom - w, r.right, r.bottom), kArrowDown, State::kNormal);
    const int track = r.bottom - r.top - 2 * w;
    const int length = std::max(w, track * visible / std::max(total, 1));
    const int top = r.top + w + (track - length) * first / std::max(total - visible, 1);
    const ULORect thumb(r.left + 1, top, r.right - 1, top + length);
    p.dc.FillRectHorizontalGradation(&thumb, &thumb, CLR_BUTTON_BACK, CLR_GRADATION_TOP_LEFT, 0.0f, 0.0f);
    p.dc.Draw3DRect(thumb, true);
    for (int k = -1; k <= 1; ++k) {
        const int y = (thumb.top + thumb.bottom) / 2 + 3 * k;
        p.dc.DrawHorizontalLineAlpha(ULOPoint(thumb.left + 3, y), w - 8, kBlack, ulogui::opa::GRIP_NORMAL);
    }
}

void PaintListRow(Painter& p, const ULORect& row, const ULORect& clip, const ULOString& text, bool selected,
                  bool hot) {
    const ULORect ground(std::max(row.left, clip.left), std::max(row.top, clip.top),
                         std::min(row.right, clip.right), std::min(row.bottom, clip.bottom));
    if (selected || hot) {
        p.dc.FillRect(&ground, selected ? CLR_LIST_SELECTED_ITEM_BACK : CLR_LIST_FOCUS_BACK, 0);
    } else {
        p.dc.FillRect(&ground, CLR_LIST_BACK, 0);
    }
    TextRun run;
    run.kind = TextRun::kClipped;
    const int height = p.LineHeight(FontRole::Label);
    const int bottom = row.top + (row.bottom - row.top + height + 1) / 2;
    run.rect = ULORect(row.left + 6, bottom - height, row.right - 4, bottom);
    run.clip = clip;
    run.text = text;
    run.colour = selected ? CLR_LIST_FOCUS_TEXT : hot ? CLR_LIST_HOVER_TEXT : CLR_LIST_TEXT;
    p.DrawText(run);
}

}  // namespace gallery
