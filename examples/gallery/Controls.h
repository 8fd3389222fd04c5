#pragma once
// The controls the sheets are made of, painted as a control toolkit would paint them: fills and
// frames from the palette, pictures from the catalogue, text through Painter::DrawText. Rectangles
// are logical.
#include "Painter.h"

namespace gallery {

enum class State { kNormal, kHot, kPressed, kDisabled };
enum class Check { kOff, kOn, kMixed };

// The sheet's ground (a diagonal gradation) and its title.
void PaintSheetGround(Painter& p, const ULORect& sheet, const ULOString& title);
// A section heading: bold text over a thin light line.
void PaintHeading(Painter& p, const ULORect& box, const ULOString& text);
// A small caption, centred in box unless `flags` says otherwise.
void PaintCaption(Painter& p, const ULORect& box, const ULOString& text, int flags = kTextCentre);

void PaintPushButton(Painter& p, const ULORect& r, const ULOString& label, int icon, State state,
                     bool isDefault);
// Check box or radio button with its label; box is the row the control takes.
void PaintCheckBox(Painter& p, const ULORect& box, const ULOString& label, Check check, State state);
void PaintRadioButton(Painter& p, const ULORect& box, const ULOString& label, bool on, State state);

// A one-line edit field. Characters [selFirst, selEnd) are shown selected; the caret, when
// `focused`, follows the selection.
void PaintEditField(Painter& p, const ULORect& r, const ULOString& text, bool focused, int selFirst = 0,
                    int selEnd = 0);
// The small square button with an arrow of combo boxes and scroll bars.
void PaintArrowButton(Painter& p, const ULORect& r, int arrow, State state);
// A vertical scroll bar for `total` rows of which `visible` show, the first being `first`.
void PaintScrollBar(Painter& p, const ULORect& r, int total, int visible, int first);
// A list row: the ground (selected, hot or none) and its text, drawn clipped to `clip`.
void PaintListRow(Painter& p, const ULORect& row, const ULORect& clip, const ULOString& text, bool selected,
                  bool hot);

}  // namespace gallery
