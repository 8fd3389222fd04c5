// Combo boxes closed and open, a list box scrolled with ScrollArea, and tabs.
#include <algorithm>
#include <string>

#include "Controls.h"
#include "Sheets.h"
#include "ulogui/Palette.h"

namespace gallery {

namespace {

constexpr int kRow = 20;  // list row height; scrolling by whole rows keeps rows on whole device pixels
constexpr CLR kBlack(0, 0, 0);

ULOString Month(const Painter& p, int index) {
    return p.Text(("month." + std::to_string(index + 1)).c_str());
}

void PaintCombo(Painter& p, const ULORect& r, const ULOString& text, bool open) {
    PaintEditField(p, ULORect(r.left, r.top, r.right - 18, r.bottom), text, open);
    PaintArrowButton(p, ULORect(r.right - 18, r.top, r.right, r.bottom), kArrowDown,
                     open ? State::kPressed : State::kNormal);
}

void PaintOpenList(Painter& p, const ULORect& sheet, const ULORect& list, int selected, int hot) {
    p.dc.FillRect(&list, CLR_LIST_BACK, 0);
    const ULORect inner(list.left + 1, list.top + 1, list.right - 1, list.bottom - 1);
    for (int i = 0; inner.top + i * kRow < inner.bottom; ++i) {
        const ULORect row(inner.left, inner.top + i * kRow, inner.right, inner.top + (i + 1) * kRow);
        PaintListRow(p, row, inner, Month(p, i), i == selected, i == hot);
    }
    p.dc.DrawRect(list, kBlack);
    p.dc.DrawShadow(&list, &sheet, static_cast<int>(6 * p.Magnifier() + 0.5f), 0.6f);
}

// A list showing rows from `first` on is painted at row 0, then scrolled up by `first` rows with
// ScrollArea; only the rows the scroll uncovered are painted again, clipped to them.
void PaintListBox(Painter& p, const ULORect& box, int total, int first) {
    p.dc.FillRect(&box, CLR_LIST_BACK, 0);
    p.dc.DrawRecessedFrame(box);
    const ULORect area(box.left + 2, box.top + 2, box.right - 16, box.bottom - 2);
    const int selected = 3;
    const auto paintRows = [&](int top, const ULORect& clip) {
        for (int i = 0; i < total; ++i) {
            const ULORect row(area.left, area.top + (i - top) * kRow, area.right,
                              area.top + (i - top + 1) * kRow);
            if (row.bottom > clip.top && row.top < clip.bottom) {
                PaintListRow(p, row, clip, Month(p, i), i == selected, false);
            }
        }
    };
    paintRows(0, area);
    p.dc.ScrollArea(ULOSize(0, first * kRow), area);
    paintRows(first,
              ULORect(area.left, std::max(area.top, area.bottom - first * kRow), area.right, area.bottom));
    const int visible = (area.bottom - area.top) / kRow;
    PaintScrollBar(p, ULORect(area.right, area.top, box.right - 2, area.bottom), total, visible, first);
}

void PaintTabs(Painter& p, const ULORect& r) {
    const char* const keys[] = {"tab.general", "tab.view", "tab.advanced"};
    const int tabBottom = r.top + 22;
    const ULORect page(r.left, tabBottom, r.right, r.bottom);
    p.dc.FillRectHorizontalGradation(&page, &page, CLR_GRADATION_TAB_LEFT, CLR_GRADATION_TAB_RIGHT, 0.0f,
                                     0.0f);
    p.dc.DrawRectAlpha(page, kBlack, 0.6f);
    p.NoteTextLayout(ULORect(r.left, r.top, r.right, tabBottom + 1));
    // The active tab is a row taller and covers the page's top edge beneath it.
    int x = r.left;
    for (int i = 0; i < 3; ++i) {
        const ULOString label = p.Text(keys[i]);
        const int width = std::min(static_cast<int>(p.TextWidth(FontRole::Label, label)) + 20, r.right - x);
        const bool active = i == 0;
        const ULORect tab(x, active ? r.top : r.top + 3, x + width, tabBottom + (active ? 1 : 0));
        if (active) {
            p.dc.FillRectHorizontalGradation(&tab, &tab, CLR_GRADATION_TAB_LEFT, CLR_GRADATION_TAB_RIGHT,
                                             0.0f, 0.0f);
        } else {
            p.dc.FillRect(&tab, CLR_INACTIVE_TAB_BACK, 0);
        }
        p.dc.DrawHorizontalLineRelative(ULOPoint(tab.left, tab.top), width, CLR(40, 40, 40));
        p.dc.DrawVerticalLineRelative(ULOPoint(tab.left, tab.top), tab.bottom - tab.top, CLR(40, 40, 40));
        p.dc.DrawVerticalLineAlpha(ULOPoint(tab.right - 1, tab.top), tab.bottom - tab.top, kBlack, 0.6f);
        p.Label(FontRole::Label, tab, label, active ? CLR_ACTIVE_TAB_TEXT : CLR_INACTIVE_TAB_TEXT,
                kTextCentre);
        x += width;
    }
    TextRun body;
    body.kind = TextRun::kWrapped;
    body.rect = ULORect(page.left + 8, page.top + 6, page.right - 8, page.bottom - 4);
    body.text = p.Text("tab.body");
    body.colour = CLR_ACTIVE_TAB_TEXT;
    p.DrawText(body);
}

}  // namespace

void PaintListsSheet(Painter& p, const ULORect& sheet) {
    PaintHeading(p, ULORect(12, 38, 250, 58), p.Text("combo.heading"));
    PaintCombo(p, ULORect(12, 66, 200, 88), Month(p, 2), false);
    PaintCombo(p, ULORect(12, 100, 200, 122), Month(p, 2), true);
    PaintOpenList(p, sheet, ULORect(12, 122, 182, 124 + 6 * kRow), 2, 4);

    PaintHeading(p, ULORect(270, 38, 508, 58), p.Text("list.heading"));
    PaintListBox(p, ULORect(270, 66, 430, 180), 12, 2);

    PaintHeading(p, ULORect(270, 190, 508, 210), p.Text("tabs.heading"));
    PaintTabs(p, ULORect(270, 216, 508, 290));
}

}  // namespace gallery
