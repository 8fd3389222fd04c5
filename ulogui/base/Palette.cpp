// The palette globals, the GUI constants and the overflowing-text switch.
#include "ulogui/Palette.h"

#include <algorithm>
#include <atomic>

#include "base/PaletteEntries.h"

// constexpr construction makes every entry constant-initialised, so the palette holds its load-time
// values before any other module's start-up code can read it.
CLR CLR_GRADATION_TOP_LEFT(0, 0, 0);
CLR CLR_GRADATION_BOTTOM_RIGHT(0, 0, 0);
CLR CLR_ACTIVE_FRAME(0, 0, 0);
CLR CLR_ACTIVE_CAPTION(0, 0, 0);
CLR CLR_INACTIVE_CAPTION(0, 0, 0);
CLR CLR_ACTIVE_CAPTION_TITLE(0, 0, 0);
CLR CLR_INACTIVE_CAPTION_TITLE(0, 0, 0);
CLR CLR_TEXT(0, 0, 0);
CLR CLR_LIGHT_TEXT(0, 0, 0);
CLR CLR_TEXT_RED(128, 128, 128);
CLR CLR_TEXT_BLACK(0, 0, 0);
CLR CLR_LABEL_TEXT(0, 0, 0);
CLR COLOR_WARN(0, 0, 0);
CLR COLOR_NOWARN(0, 0, 0);
CLR CLR_GRADATION_TAB_LEFT(0, 0, 0);
CLR CLR_GRADATION_TAB_RIGHT(0, 0, 0);
CLR CLR_ACTIVE_TAB_TEXT(0, 0, 0);
CLR CLR_INACTIVE_TAB_TEXT(0, 0, 0);
CLR CLR_INACTIVE_TAB_BACK(0, 0, 0);
CLR CLR_EDIT_TEXT(0, 0, 0);
CLR CLR_EDIT_HOVER_TEXT(0, 0, 0);
CLR CLR_EDIT_FOCUS_TEXT(0, 0, 0);
CLR CLR_EDIT_HIGHLIGHTED_TEXT(0, 0, 0);
CLR CLR_EDIT_BACK(0, 0, 0);
CLR CLR_EDIT_FOCUS_BACK(0, 0, 0);
CLR CLR_BUTTON_TEXT(0, 0, 0);
CLR CLR_TOGGLE_BUTTON(0, 0, 0);
CLR CLR_HOVER_BUTTON(0, 0, 0);
CLR CLR_BUTTON_BACK(0, 0, 0);
CLR CLR_LIST_TEXT(0, 0, 0);
CLR CLR_LIST_HOVER_TEXT(0, 0, 0);
CLR CLR_LIST_FOCUS_TEXT(0, 0, 0);
CLR CLR_LIST_BACK(0, 0, 0);
CLR CLR_LIST_FOCUS_BACK(0, 0, 0);
CLR CLR_LIST_SELECTED_ITEM_BACK(0, 0, 0);
CLR CLR_GRADATION_LIST_LEFT(0, 0, 0);
CLR CLR_GRADATION_LIST_RIGHT(0, 0, 0);
CLR CLR_MENU_TEXT(0, 0, 0);
CLR CLR_MENU_SELECTED_TEXT(0, 0, 0);
CLR CLR_MENU_BACK(0, 0, 0);
CLR CLR_MENU_SELECTED(0, 0, 0);

CLR dontFillBackground(0, 0, 0);

namespace ulogui {

namespace base {

CLR* const kPaletteEntries[kPaletteSize] = {
    &CLR_GRADATION_TOP_LEFT,
    &CLR_GRADATION_BOTTOM_RIGHT,
    &CLR_ACTIVE_FRAME,
    &CLR_ACTIVE_CAPTION,
    &CLR_INACTIVE_CAPTION,
    &CLR_ACTIVE_CAPTION_TITLE,
    &CLR_INACTIVE_CAPTION_TITLE,
    &CLR_TEXT,
    &CLR_LIGHT_TEXT,
    &CLR_TEXT_RED,
    &CLR_TEXT_BLACK,
    &CLR_LABEL_TEXT,
    &COLOR_WARN,
    &COLOR_NOWARN,
    &CLR_GRADATION_TAB_LEFT,
    &CLR_GRADATION_TAB_RIGHT,
    &CLR_ACTIVE_TAB_TEXT,
    &CLR_INACTIVE_TAB_TEXT,
    &CLR_INACTIVE_TAB_BACK,
    &CLR_EDIT_TEXT,
    &CLR_EDIT_HOVER_TEXT,
    &CLR_EDIT_FOCUS_TEXT,
    &CLR_EDIT_HIGHLIGHTED_TEXT,
    &CLR_EDIT_BACK,
    &CLR_EDIT_FOCUS_BACK,
    &CLR_BUTTON_TEXT,
    &CLR_TOGGLE_BUTTON,
    &CLR_HOVER_BUTTON,
    &CLR_BUTTON_BACK,
    &CLR_LIST_TEXT,
    &CLR_LIST_HOVER_TEXT,
    &CLR_LIST_FOCUS_TEXT,
    &CLR_LIST_BACK,
    &CLR_LIST_FOCUS_BACK,
    &CLR_LIST_SELECTED_ITEM_BACK,
    &CLR_GRADATION_LIST_LEFT,
    &CLR_GRADATION_LIST_RIGHT,
    &CLR_MENU_TEXT,
    &CLR_MENU_SELECTED_TEXT,
    &CLR_MENU_BACK,
    &CLR_MENU_SELECTED,
};

}  // namespace base

namespace opa {
const float BUTTON_BACKGROUND = 0.3f;
const float BUTTON_BACKGROUND_SOFT = 0.15f;
const float BUTTON_HIGHLIGHT = 0.85f;
const float BUTTON_HIGHLIGHT_ONGRAD = 0.6f;
const float BUTTON_DOWN = 1.0f;
const float BUTTON_DOWN_ONGRAD = 0.8f;
const float BUTTON_GLOSS_SOFT = 0.04f;
const float BUTTON_GLOSS = 0.0f;
const float BUTTON_GLOSS_HIGHLIGHT = 0.18f;
const float BUTTON_ICON = 1.0f;
const float BUTTON_TOGGLE = 0.5f;
const float BUTTON_TOGGLE_DSB = 0.15f;
const float BUTTON_GLOSS_TOGGLE = 0.0f;
const float GRIP_NORMAL = 0.8f;
const float GRIP_HIGHLIGHTED = 1.0f;
}  // namespace opa

namespace scroll {
const int LINE_SPACE = 1;
const int H_INCREMENT = 8;
const int V_INCREMENT = 8;
}  // namespace scroll

namespace margin {
const int MARGIN = 2;
const int LEFT = 1;
const int TOP = 0;
const int RIGHT = 0;
const int BOTTOM = 0;
const int EDIT_LEFT = 2;
const int EDIT_TOP = 3;
const int EDIT_RIGHT = 1;
const int EDIT_BOTTOM = 2;
}  // namespace margin

namespace {
// Atomic only so that a host flipping it while another thread draws is not a data race; the drawing
// code reads it once per text.
std::atomic<bool> highlightOverflowingTexts{false};
}  // namespace

bool HighlightOverflowingTexts() {
    return highlightOverflowingTexts.load(std::memory_order_relaxed);
}

void SetHighlightOverflowingTexts(bool on) {
    highlightOverflowingTexts.store(on, std::memory_order_relaxed);
}

}  // namespace ulogui

void ULOGUI_Colors::GetULOGUIColors(ULOArray_NOSTL<CLR>& out) {
    out.SetSize(ulogui::kPaletteSize);
    for (int i = 0; i < ulogui::kPaletteSize; ++i) {
        out[i] = *ulogui::base::kPaletteEntries[i];
    }
}

void ULOGUI_Colors::SetULOGUIColors(const ULOArray_NOSTL<CLR>& in) {
    const size_t count = std::min<size_t>(ulogui::kPaletteSize, in.GetSize());
    for (size_t i = 0; i < count; ++i) {
        *ulogui::base::kPaletteEntries[i] = in[i];
    }
}

const CLR& ULOGUI_Colors::GetDefaultTextClr() {
    static const CLR defaultText(255, 255, 255);
    return defaultText;
}
