// Edit fields (text, selection, a path shortened in its middle), labels that wrap and overflow, a
// group box and a tooltip.
#include <algorithm>

#include "Controls.h"
#include "Sheets.h"
#include "ulogui/Palette.h"

namespace gallery {

namespace {

// The selection is marked in the text with [ and ].
void PaintSelectedField(Painter& p, const ULORect& r, ULOString text) {
    const size_t open = text.find(L'[');
    const size_t close = text.find(L']');
    int first = 0, end = 0;
    if (open != ULOString::npos && close != ULOString::npos && open < close) {
        text.erase(close, 1);
        text.erase(open, 1);
        first = static_cast<int>(open);
        end = static_cast<int>(close) - 1;
    }
    PaintEditField(p, r, text, true, first, end);
}

void PaintGroupBox(Painter& p, const ULORect& sheet, const ULORect& r) {
    const ULOString caption = p.Text("group.caption");
    const int height = p.LineHeight(FontRole::Bold);
    const int captionWidth = static_cast<int>(p.TextWidth(FontRole::Bold, caption)) + 8;
    p.dc.DrawRecessedFrame(ULORect(r.left, r.top + height / 2, r.right, r.bottom));
    // The caption interrupts the frame: the ground's own gradation is painted again beneath it.
    const ULORect gap(r.left + 6, r.top, std::min(r.left + 6 + captionWidth, r.right - 6),
                      r.top + height + 1);
    p.NoteTextLayout(ULORect(gap.left, gap.top, r.right - 6, gap.bottom));
    p.dc.FillRectTopLeftToBottomRightGradation(&sheet, &gap, CLR_GRADATION_TOP_LEFT,
                                               CLR_GRADATION_BOTTOM_RIGHT, 0.0f, 0.0f);
    p.Label(FontRole::Bold, ULORect(gap.left + 4, gap.top, gap.right, gap.bottom), caption, CLR_LABEL_TEXT);
    PaintCheckBox(p, ULORect(r.left + 12, r.top + 20, r.right - 8, r.top + 42), p.Text("group.first"),
                  Check::kOn, State::kNormal);
    PaintCheckBox(p, ULORect(r.left + 12, r.top + 44, r.right - 8, r.top + 66), p.Text("group.second"),
                  Check::kOff, State::kNormal);
}

void PaintTooltip(Painter& p, const ULORect& sheet, ULOPoint at) {
    const ULOString text = p.Text("tooltip.text");
    const int width =
        std::min(static_cast<int>(p.TextWidth(FontRole::Small, text)) + 30, sheet.right - 16 - at.x);
    const ULORect tip(at.x, at.y, at.x + width, at.y + 22);
    p.NoteTextLayout(ULORect(tip.left, tip.top, sheet.right - 8, tip.bottom + 6));
    p.dc.FillRect(&tip, CLR(255, 250, 215), 0);
    p.dc.DrawRect(tip, CLR(80, 80, 70));
    // The shadow's size is in device pixels.
    const int size = static_cast<int>(5 * p.Magnifier() + 0.5f);
    p.dc.DrawShadow(&tip, &sheet, size, 0.55f);
    p.dc.DrawPicture(p.Pictures().icons[kIconInfo], ULOPoint(tip.left + 4, tip.top + 3), ulogui::eCopyNormal,
                     1.0f);
    p.Label(FontRole::Small, ULORect(tip.left + 24, tip.top, tip.right - 4, tip.bottom), text,
            CLR(20, 20, 20));
}

}  // namespace

void PaintTextSheet(Painter& p, const ULORect& sheet) {
    PaintHeading(p, ULORect(12, 38, 250, 58), p.Text("edit.heading"));
    PaintEditField(p, ULORect(12, 66, 250, 88), p.Text("edit.text"), false);
    PaintSelectedField(p, ULORect(12, 96, 250, 118), p.Text("edit.selection"));
    const ULORect pathField(12, 126, 250, 148);
    ULOString path;
    const int room =
        pathField.right - pathField.left - 4 - ulogui::margin::EDIT_LEFT - ulogui::margin::EDIT_RIGHT;
    p.Font(FontRole::Label).TruncatePath(p.Text("edit.path"), path, room, L"\u2026");
    PaintEditField(p, pathField, path, false);

    PaintHeading(p, ULORect(270, 38, 508, 58), p.Text("label.heading"));
    const int line = p.LineHeight(FontRole::Label);
    TextRun run;
    run.kind = TextRun::kWrapped;
    run.text = p.Text("label.wrap");
    run.colour = CLR_LABEL_TEXT;
    run.rect = ULORect(270, 64, 508, 64 + 4 * line);
    p.dc.DrawRectAlpha(ULORect(run.rect.left - 2, run.rect.top - 1, run.rect.right + 2, run.rect.bottom + 1),
                       CLR(255, 255, 255), 0.2f);
    p.DrawText(run);
    // The same kind of text in a box too small for it: with the switch on, the line after which text
    // is left over turns red.
    run.text = p.Text("label.overflow");
    // Two lines and a little: the second is the last that fits, so it is the one drawn red.
    run.rect = ULORect(270, 74 + 4 * line, 508, 78 + 6 * line);
    run.markOverflow = true;
    p.dc.DrawRectAlpha(ULORect(run.rect.left - 2, run.rect.top - 1, run.rect.right + 2, run.rect.bottom + 1),
                       CLR(255, 255, 255), 0.2f);
    p.DrawText(run);

    PaintGroupBox(p, sheet, ULORect(12, 160, 250, 250));
    PaintHeading(p, ULORect(270, 168, 508, 188), p.Text("tooltip.heading"));
    PaintPushButton(p, ULORect(270, 194, 300, 218), ULOString(), kIconSave, State::kHot, false);
    PaintTooltip(p, sheet, ULOPoint(290, 224));
}

}  // namespace gallery
