// Push buttons in their five looks, check boxes and radio buttons in every state.
#include "Controls.h"
#include "Sheets.h"

namespace gallery {

void PaintButtonsSheet(Painter& p, const ULORect& sheet) {
    const int right = sheet.right - 12;
    PaintHeading(p, ULORect(12, 38, right, 58), p.Text("button.heading"));
    const char* const captions[] = {"state.normal", "state.hot", "state.pressed", "state.disabled",
                                    "state.default"};
    const State states[] = {State::kNormal, State::kHot, State::kPressed, State::kDisabled, State::kNormal};
    for (int i = 0; i < 5; ++i) {
        const int x = 12 + i * 100;
        PaintPushButton(p, ULORect(x, 66, x + 92, 92), p.Text("button.label"), kIconSave, states[i], i == 4);
        PaintCaption(p, ULORect(x, 96, x + 92, 112), p.Text(captions[i]));
    }

    PaintHeading(p, ULORect(12, 120, 340, 140), p.Text("check.heading"));
    PaintHeading(p, ULORect(352, 120, right, 140), p.Text("radio.heading"));
    const char* const checkLabels[] = {"check.unchecked", "check.checked", "check.mixed"};
    const Check checks[] = {Check::kOff, Check::kOn, Check::kMixed};
    for (int row = 0; row < 4; ++row) {
        const int y = 146 + row * 24;
        PaintCaption(p, ULORect(12, y, 74, y + 22), p.Text(captions[row]), 0);
        for (int column = 0; column < 3; ++column) {
            const int x = 76 + column * 88;
            PaintCheckBox(p, ULORect(x, y, x + 86, y + 22), p.Text(checkLabels[column]), checks[column],
                          states[row]);
        }
        for (int column = 0; column < 2; ++column) {
            const int x = 352 + column * 90;
            PaintRadioButton(p, ULORect(x, y, x + 88, y + 22), p.Text(column ? "radio.on" : "radio.off"),
                             column == 1, states[row]);
        }
    }
}

}  // namespace gallery
