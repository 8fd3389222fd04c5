// The palette globals: their order (listed here by hand, independently of the library's own table),
// their load-time values, the whole-palette copies, and the switches beside them.
#include <gtest/gtest.h>

#include <vector>

#include "ulogui/ColorSet.h"
#include "ulogui/Palette.h"

namespace {

// clang-format off
CLR* const kGlobals[] = {
    &CLR_GRADATION_TOP_LEFT, &CLR_GRADATION_BOTTOM_RIGHT, &CLR_ACTIVE_FRAME, &CLR_ACTIVE_CAPTION,
    &CLR_INACTIVE_CAPTION, &CLR_ACTIVE_CAPTION_TITLE, &CLR_INACTIVE_CAPTION_TITLE, &CLR_TEXT, &CLR_LIGHT_TEXT,
    &CLR_TEXT_RED, &CLR_TEXT_BLACK, &CLR_LABEL_TEXT, &COLOR_WARN, &COLOR_NOWARN, &CLR_GRADATION_TAB_LEFT,
    &CLR_GRADATION_TAB_RIGHT, &CLR_ACTIVE_TAB_TEXT, &CLR_INACTIVE_TAB_TEXT, &CLR_INACTIVE_TAB_BACK,
    &CLR_EDIT_TEXT, &CLR_EDIT_HOVER_TEXT, &CLR_EDIT_FOCUS_TEXT, &CLR_EDIT_HIGHLIGHTED_TEXT, &CLR_EDIT_BACK,
    &CLR_EDIT_FOCUS_BACK, &CLR_BUTTON_TEXT, &CLR_TOGGLE_BUTTON, &CLR_HOVER_BUTTON, &CLR_BUTTON_BACK,
    &CLR_LIST_TEXT, &CLR_LIST_HOVER_TEXT, &CLR_LIST_FOCUS_TEXT, &CLR_LIST_BACK, &CLR_LIST_FOCUS_BACK,
    &CLR_LIST_SELECTED_ITEM_BACK, &CLR_GRADATION_LIST_LEFT, &CLR_GRADATION_LIST_RIGHT, &CLR_MENU_TEXT,
    &CLR_MENU_SELECTED_TEXT, &CLR_MENU_BACK, &CLR_MENU_SELECTED
};
// clang-format on
constexpr int kCount = 41;
static_assert(sizeof(kGlobals) / sizeof(kGlobals[0]) == kCount, "41 palette entries");

std::vector<CLR> Snapshot() {
    std::vector<CLR> colours;
    for (const CLR* global : kGlobals) {
        colours.push_back(*global);
    }
    return colours;
}

// Taken while the test program starts, before any test can change the palette.
const std::vector<CLR> kAtLoad = Snapshot();
const CLR kDontFillAtLoad = dontFillBackground;
const bool kHighlightAtLoad = ulogui::HighlightOverflowingTexts();

// A different colour for every index.
CLR Distinct(int i, int salt = 0) {
    return CLR(i + 1 + salt, 100 + i, 200 - i);
}

class PaletteTest : public ::testing::Test {
protected:
    void TearDown() override {
        for (int i = 0; i < kCount; ++i) {
            *kGlobals[i] = saved_[i];
        }
        ulogui::SetHighlightOverflowingTexts(false);
    }
    const std::vector<CLR> saved_ = Snapshot();
};

TEST(PaletteAtLoad, EveryEntryIsBlackButTextRedWhichIsGreyAndOverflowsAreNotHighlighted) {
    for (int i = 0; i < kCount; ++i) {
        EXPECT_EQ(kAtLoad[i], i == 9 ? CLR(128, 128, 128) : CLR(0, 0, 0)) << "palette index " << i;
    }
    EXPECT_EQ(kDontFillAtLoad, CLR(0, 0, 0));
    EXPECT_FALSE(kHighlightAtLoad);
}

TEST_F(PaletteTest, ArraysCarryTheEntriesInPaletteOrder) {
    for (int i = 0; i < kCount; ++i) {
        *kGlobals[i] = Distinct(i);
    }
    for (size_t startSize : {0u, 41u, 100u}) {
        ULOArray_NOSTL<CLR> colours(startSize, CLR(9, 9, 9));
        ULOGUI_Colors::GetULOGUIColors(colours);
        ASSERT_EQ(colours.GetSize(), 41u);
        for (int i = 0; i < kCount; ++i) {
            EXPECT_EQ(colours[i], Distinct(i)) << "index " << i << ", array of " << startSize;
        }
    }

    // Setting takes what the array has, at most 41 entries.
    for (int size : {50, 3, 0}) {
        ULOArray_NOSTL<CLR> in;
        for (int i = 0; i < size; ++i) {
            in.Add(Distinct(i, size));
        }
        ULOGUI_Colors::SetULOGUIColors(in);
    }
    for (int i = 0; i < kCount; ++i) {
        EXPECT_EQ(*kGlobals[i], Distinct(i, i < 3 ? 3 : 50)) << "index " << i;
    }
}

TEST_F(PaletteTest, ColourSetFieldIsThePaletteEntryOfTheSameIndex) {
    ULOGUIColorSet set;
    for (int i = 0; i < kCount; ++i) {
        set.Field(i) = Distinct(i);
    }
    set.ApplyToCurrent();
    for (int i = 0; i < kCount; ++i) {
        EXPECT_EQ(*kGlobals[i], Distinct(i)) << "index " << i;
        *kGlobals[i] = Distinct(i, 7);
    }
    ULOGUIColorSet::GetCurrentSet(set);
    for (int i = 0; i < kCount; ++i) {
        EXPECT_EQ(set.Field(i), Distinct(i, 7)) << "index " << i;
    }
}

TEST_F(PaletteTest, DefaultTextColourSentinelAndOverflowSwitch) {
    const CLR& white = ULOGUI_Colors::GetDefaultTextClr();
    EXPECT_EQ(white, CLR(255, 255, 255));
    EXPECT_EQ(&white, &ULOGUI_Colors::GetDefaultTextClr());

    // The "don't fill" colour is recognised by its address, not by its value.
    const CLR sameValue = dontFillBackground;
    EXPECT_TRUE(ulogui::IsDontFillBackground(dontFillBackground));
    EXPECT_FALSE(ulogui::IsDontFillBackground(sameValue));

    ulogui::SetHighlightOverflowingTexts(true);
    EXPECT_TRUE(ulogui::HighlightOverflowingTexts());
}

}  // namespace
