#pragma once
// The GUI palette: 41 named colours shared by the host's modules and the drawing code, the opacity,
// margin and scroll constants of the controls, and the switch that marks overflowing texts.
//
// The palette globals are plain data, read without locks: the host changes them (by applying a
// colour set or with ULOGUI_Colors::SetULOGUIColors) only from its GUI thread while nothing draws.
// Until the host does so every entry is black, except CLR_TEXT_RED, which starts grey (128, 128, 128).
#include "ulogui/Color.h"
#include "ulogui/Export.h"
#include "ulolib/ArrayNoStl.h"

// The palette, in palette order: the index of each entry in the arrays of GetULOGUIColors and
// SetULOGUIColors, and the field order of a colour set.
ULODRAW_API extern CLR CLR_GRADATION_TOP_LEFT;       // 0
ULODRAW_API extern CLR CLR_GRADATION_BOTTOM_RIGHT;   // 1
ULODRAW_API extern CLR CLR_ACTIVE_FRAME;             // 2
ULODRAW_API extern CLR CLR_ACTIVE_CAPTION;           // 3
ULODRAW_API extern CLR CLR_INACTIVE_CAPTION;         // 4
ULODRAW_API extern CLR CLR_ACTIVE_CAPTION_TITLE;     // 5
ULODRAW_API extern CLR CLR_INACTIVE_CAPTION_TITLE;   // 6
ULODRAW_API extern CLR CLR_TEXT;                     // 7
ULODRAW_API extern CLR CLR_LIGHT_TEXT;               // 8
ULODRAW_API extern CLR CLR_TEXT_RED;                 // 9
ULODRAW_API extern CLR CLR_TEXT_BLACK;               // 10
ULODRAW_API extern CLR CLR_LABEL_TEXT;               // 11
ULODRAW_API extern CLR COLOR_WARN;                   // 12
ULODRAW_API extern CLR COLOR_NOWARN;                 // 13
ULODRAW_API extern CLR CLR_GRADATION_TAB_LEFT;       // 14
ULODRAW_API extern CLR CLR_GRADATION_TAB_RIGHT;      // 15
ULODRAW_API extern CLR CLR_ACTIVE_TAB_TEXT;          // 16
ULODRAW_API extern CLR CLR_INACTIVE_TAB_TEXT;        // 17
ULODRAW_API extern CLR CLR_INACTIVE_TAB_BACK;        // 18
ULODRAW_API extern CLR CLR_EDIT_TEXT;                // 19
ULODRAW_API extern CLR CLR_EDIT_HOVER_TEXT;          // 20
ULODRAW_API extern CLR CLR_EDIT_FOCUS_TEXT;          // 21
ULODRAW_API extern CLR CLR_EDIT_HIGHLIGHTED_TEXT;    // 22
ULODRAW_API extern CLR CLR_EDIT_BACK;                // 23
ULODRAW_API extern CLR CLR_EDIT_FOCUS_BACK;          // 24
ULODRAW_API extern CLR CLR_BUTTON_TEXT;              // 25
ULODRAW_API extern CLR CLR_TOGGLE_BUTTON;            // 26
ULODRAW_API extern CLR CLR_HOVER_BUTTON;             // 27
ULODRAW_API extern CLR CLR_BUTTON_BACK;              // 28
ULODRAW_API extern CLR CLR_LIST_TEXT;                // 29
ULODRAW_API extern CLR CLR_LIST_HOVER_TEXT;          // 30
ULODRAW_API extern CLR CLR_LIST_FOCUS_TEXT;          // 31
ULODRAW_API extern CLR CLR_LIST_BACK;                // 32
ULODRAW_API extern CLR CLR_LIST_FOCUS_BACK;          // 33
ULODRAW_API extern CLR CLR_LIST_SELECTED_ITEM_BACK;  // 34
ULODRAW_API extern CLR CLR_GRADATION_LIST_LEFT;      // 35
ULODRAW_API extern CLR CLR_GRADATION_LIST_RIGHT;     // 36
ULODRAW_API extern CLR CLR_MENU_TEXT;                // 37
ULODRAW_API extern CLR CLR_MENU_SELECTED_TEXT;       // 38
ULODRAW_API extern CLR CLR_MENU_BACK;                // 39
ULODRAW_API extern CLR CLR_MENU_SELECTED;            // 40

// Sentinel for the fill routines: handed this very object (compared by address, not by value) a fill
// skips the background. Its value, black, is never used; a copy of it is an ordinary black.
ULODRAW_API extern CLR dontFillBackground;

namespace ulogui {

constexpr int kPaletteSize = 41;

// Whether `colour` is the dontFillBackground sentinel itself.
inline bool IsDontFillBackground(const CLR& colour) {
    return &colour == &dontFillBackground;
}

// Opacities of the controls' layers, fractions in 0..1 (1.0 opaque) as the alpha drawing calls take them.
namespace opa {
ULODRAW_API extern const float BUTTON_BACKGROUND;        // 0.3
ULODRAW_API extern const float BUTTON_BACKGROUND_SOFT;   // 0.15
ULODRAW_API extern const float BUTTON_HIGHLIGHT;         // 0.85
ULODRAW_API extern const float BUTTON_HIGHLIGHT_ONGRAD;  // 0.6
ULODRAW_API extern const float BUTTON_DOWN;              // 1.0
ULODRAW_API extern const float BUTTON_DOWN_ONGRAD;       // 0.8
ULODRAW_API extern const float BUTTON_GLOSS_SOFT;        // 0.04
ULODRAW_API extern const float BUTTON_GLOSS;             // 0.0
ULODRAW_API extern const float BUTTON_GLOSS_HIGHLIGHT;   // 0.18
ULODRAW_API extern const float BUTTON_ICON;              // 1.0
ULODRAW_API extern const float BUTTON_TOGGLE;            // 0.5
ULODRAW_API extern const float BUTTON_TOGGLE_DSB;        // 0.15
ULODRAW_API extern const float BUTTON_GLOSS_TOGGLE;      // 0.0
ULODRAW_API extern const float GRIP_NORMAL;              // 0.8
ULODRAW_API extern const float GRIP_HIGHLIGHTED;         // 1.0
}  // namespace opa

// Scroll steps, in logical pixels.
namespace scroll {
ULODRAW_API extern const int LINE_SPACE;   // 1
ULODRAW_API extern const int H_INCREMENT;  // 8
ULODRAW_API extern const int V_INCREMENT;  // 8
}  // namespace scroll

// Margins between a control's frame and its content, in logical pixels.
namespace margin {
ULODRAW_API extern const int MARGIN;       // 2
ULODRAW_API extern const int LEFT;         // 1
ULODRAW_API extern const int TOP;          // 0
ULODRAW_API extern const int RIGHT;        // 0
ULODRAW_API extern const int BOTTOM;       // 0
ULODRAW_API extern const int EDIT_LEFT;    // 2
ULODRAW_API extern const int EDIT_TOP;     // 3
ULODRAW_API extern const int EDIT_RIGHT;   // 1
ULODRAW_API extern const int EDIT_BOTTOM;  // 2
}  // namespace margin

// When on, the drawing surface's text output draws texts that do not fit their box in red (the host
// reports them to the overflowing-text log itself). Off at start.
ULODRAW_API bool HighlightOverflowingTexts();
ULODRAW_API void SetHighlightOverflowingTexts(bool on);

}  // namespace ulogui

class ULODRAW_API ULOGUI_Colors {
public:
    ULOGUI_Colors() = delete;

    // `out` becomes exactly the 41 palette colours, in palette order.
    static void GetULOGUIColors(ULOArray_NOSTL<CLR>& out);
    // Assigns the first min(41, size) entries of `in` to the palette in palette order; a shorter array
    // leaves the later entries as they are, entries beyond 41 are ignored.
    static void SetULOGUIColors(const ULOArray_NOSTL<CLR>& in);
    // White, the factory colour of the text entries; one immutable object for the whole process.
    static const CLR& GetDefaultTextClr();
};
