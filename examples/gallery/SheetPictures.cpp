// A toolbar drawn under every copy type at two opacities, and a panel picture stretched sideways and
// downward at its marked columns and rows.
#include "Controls.h"
#include "Sheets.h"
#include "ulogui/Palette.h"

namespace gallery {

void PaintPicturesSheet(Painter& p, const ULORect& sheet) {
    const int right = sheet.right - 12;
    PaintHeading(p, ULORect(12, 38, right, 58), p.Text("toolbar.heading"));
    // The icons' size is the catalogue's choice: 16 up to 1.5, the larger version from 2.0 on.
    const std::vector<ULOPicture>& icons = p.Pictures().toolbar;
    const int size = icons[0].GetWidth(false);
    const int barWidth = kToolbarIconCount * (size + 3) + 9;
    const float opacities[] = {1.0f, 0.5f};
    const char* const opacityKeys[] = {"opacity.full", "opacity.half"};
    const char* const names[] = {"copy.normal", "copy.highlight", "copy.disabled", "copy.darken"};
    const ulogui::ECopyPictureType types[] = {ulogui::eCopyNormal, ulogui::eCopyHighlight,
                                              ulogui::eCopyDisabled, ulogui::eCopyDarken};
    for (int column = 0; column < 2; ++column) {
        const int x = 110 + column * (barWidth + 12);
        PaintCaption(p, ULORect(x, 62, x + barWidth, 78), p.Text(opacityKeys[column]));
        for (int row = 0; row < 4; ++row) {
            const int y = 82 + row * (size + 14);
            if (column == 0) {
                PaintCaption(p, ULORect(12, y, 106, y + size + 10), p.Text(names[row]), 0);
            }
            const ULORect bar(x, y, x + barWidth, y + size + 10);
            p.dc.FillRectVerticalGradation(&bar, &bar, CLR_MENU_BACK, CLR_GRADATION_BOTTOM_RIGHT, 1.0f, 1.0f);
            p.dc.DrawRectAlpha(bar, CLR(0, 0, 0), 0.5f);
            for (int icon = 0; icon < kToolbarIconCount; ++icon) {
                p.dc.DrawPicture(icons[static_cast<size_t>(icon)],
                                 ULOPoint(bar.left + 6 + icon * (size + 3), y + 5), types[row],
                                 opacities[column]);
            }
        }
    }

    PaintHeading(p, ULORect(12, 250, right, 270), p.Text("panel.heading"));
    const ULOPicture& panel = p.Pictures().panel;
    const ULORect wide(12, 278, 400, 310);
    p.dc.DrawHEnlargedPicture(panel, wide, -1, 1.0f);
    p.Label(FontRole::Bold, wide, p.Text("panel.label"), CLR(255, 255, 255), kTextCentre);
    // Narrower than the picture: columns around its middle are dropped.
    p.dc.DrawHEnlargedPicture(panel, ULORect(12, 320, 36, 352), -1, 1.0f);
    p.dc.DrawHEnlargedPicture(panel, ULORect(46, 320, 400, 352), -1, 0.5f);
    p.dc.DrawVEnlargedPicture(panel, ULORect(420, 278, 468, 362), -1, 1.0f);
    // Two stretch rows: the rows between them keep their height in the middle.
    int rows[] = {10, 22};
    p.dc.DrawVEnlargedPicture(panel, ULORect(480, 278, 528, 362), rows, 2, 1.0f);
}

}  // namespace gallery
