#include <gtest/gtest.h>

#include <vector>

#include "ulogui/Palette.h"

namespace {

// The palette globals in palette order, listed here independently of the library's own table.
CLR* const kGlobals[] = {
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
static_assert(sizeof(kGlobals) / sizeof(kGlobals[0]) == 41, "41 palette entries");

std::vector<CLR> Snapshot() {
    std::vector<CLR> colours;
    for (const CLR* global : kGlobals) {
        colours.push_back(*global);
    }
    return colours;
}

// Taken while the test program starts, before any test can change the palette: the values the
// library's globals hold at load time.
const std::vector<CLR> kAtLoad = Snapshot();
const CLR kDontFillAtLoad = dontFillBackground;

// A different colour for every index.
CLR Distinct(int i, int salt = 0) {
    return CLR(i + 1 + salt, 100 + i, 200 - i);
}

// Restores the palette after each test.
class PaletteTest : public ::testing::Test {
protected:
    void SetUp() override { saved_ = Snapshot(); }
    void TearDown() override {
        for (size_t i = 0; i < saved_.size(); ++i) {
            *kGlobals[i] = saved_[i];
        }
        ulogui::SetHighlightOverflowingTexts(false);
    }
    std::vector<CLR> saved_;
};

TEST(PaletteAtLoad, EveryEntryIsBlackButTextRedWhichIsGrey) {
    ASSERT_EQ(kAtLoad.size(), 41u);
    for (size_t i = 0; i < kAtLoad.size(); ++i) {
        const CLR expected = i == 9 ? CLR(128, 128, 128) : CLR(0, 0, 0);
        EXPECT_EQ(kAtLoad[i], expected) << "palette index " << i;
    }
    EXPECT_EQ(kDontFillAtLoad, CLR(0, 0, 0));
}

TEST_F(PaletteTest, GetULOGUIColorsGivesFortyOneEntriesInPaletteOrderWhateverTheArraySize) {
    for (int i = 0; i < 41; ++i) {
        *kGlobals[i] = Distinct(i);
    }
    for (size_t startSize : {0u, 3u, 41u, 100u}) {
        ULOArray_NOSTL<CLR> colours(startSize, CLR(9, 9, 9));
        ULOGUI_Colors::GetULOGUIColors(colours);
        ASSERT_EQ(colours.GetSize(), 41u);
        for (int i = 0; i < 41; ++i) {
            EXPECT_EQ(colours[i], Distinct(i)) << "index " << i << ", array of " << startSize;
        }
    }
}

TEST_F(PaletteTest, SetULOGUIColorsAssignsInPaletteOrderAndOnlyWhatTheArrayHas) {
    ULOArray_NOSTL<CLR> all;
    for (int i = 0; i < 50; ++i) {
        all.Add(Distinct(i));
    }
    ULOGUI_Colors::SetULOGUIColors(all);  // 41 taken, 9 ignored
    for (int i = 0; i < 41; ++i) {
        EXPECT_EQ(*kGlobals[i], Distinct(i)) << "index " << i;
    }

    ULOArray_NOSTL<CLR> three;
    for (int i = 0; i < 3; ++i) {
        three.Add(Distinct(i, 50));
    }
    ULOGUI_Colors::SetULOGUIColors(three);
    for (int i = 0; i < 41; ++i) {
        EXPECT_EQ(*kGlobals[i], i < 3 ? Distinct(i, 50) : Distinct(i)) << "index " << i;
    }

    ULOGUI_Colors::SetULOGUIColors(ULOArray_NOSTL<CLR>());
    EXPECT_EQ(*kGlobals[0], Distinct(0, 50));
}

TEST(PaletteTextColour, DefaultTextColourIsOneImmutableWhite) {
    const CLR& first = ULOGUI_Colors::GetDefaultTextClr();
    EXPECT_EQ(first, CLR(255, 255, 255));
    EXPECT_EQ(&first, &ULOGUI_Colors::GetDefaultTextClr());
}

TEST(PaletteSentinel, DontFillBackgroundIsRecognisedByAddressNotByValue) {
    const CLR sameValue = dontFillBackground;
    EXPECT_TRUE(ulogui::IsDontFillBackground(dontFillBackground));
    EXPECT_FALSE(ulogui::IsDontFillBackground(sameValue));
    EXPECT_FALSE(ulogui::IsDontFillBackground(CLR_TEXT_BLACK));
}

TEST(PaletteConstants, OpacitiesMarginsAndScrollSteps) {
    using namespace ulogui;
    const float opacities[] = {opa::BUTTON_BACKGROUND,
                               opa::BUTTON_BACKGROUND_SOFT,
                               opa::BUTTON_HIGHLIGHT,
                               opa::BUTTON_HIGHLIGHT_ONGRAD,
                               opa::BUTTON_DOWN,
                               opa::BUTTON_DOWN_ONGRAD,
                               opa::BUTTON_GLOSS_SOFT,
                               opa::BUTTON_GLOSS,
                               opa::BUTTON_GLOSS_HIGHLIGHT,
                               opa::BUTTON_ICON,
                               opa::BUTTON_TOGGLE,
                               opa::BUTTON_TOGGLE_DSB,
                               opa::BUTTON_GLOSS_TOGGLE,
                               opa::GRIP_NORMAL,
                               opa::GRIP_HIGHLIGHTED};
    const float expected[] = {0.3f,  0.15f, 0.85f, 0.6f,  1.0f, 0.8f, 0.04f, 0.0f,
                              0.18f, 1.0f,  0.5f,  0.15f, 0.0f, 0.8f, 1.0f};
    for (size_t i = 0; i < sizeof(expected) / sizeof(expected[0]); ++i) {
        EXPECT_EQ(opacities[i], expected[i]) << "opacity " << i;
    }
    EXPECT_EQ(scroll::LINE_SPACE, 1);
    EXPECT_EQ(scroll::H_INCREMENT, 8);
    EXPECT_EQ(scroll::V_INCREMENT, 8);
    const int margins[] = {margin::MARGIN,   margin::LEFT,       margin::TOP,
                           margin::RIGHT,    margin::BOTTOM,     margin::EDIT_LEFT,
                           margin::EDIT_TOP, margin::EDIT_RIGHT, margin::EDIT_BOTTOM};
    const int expectedMargins[] = {2, 1, 0, 0, 0, 2, 3, 1, 2};
    for (size_t i = 0; i < 9; ++i) {
        EXPECT_EQ(margins[i], expectedMargins[i]) << "margin " << i;
    }
}

TEST_F(PaletteTest, HighlightOverflowingTextsStartsOffAndFollowsItsSetter) {
    EXPECT_FALSE(ulogui::HighlightOverflowingTexts());
    ulogui::SetHighlightOverflowingTexts(true);
    EXPECT_TRUE(ulogui::HighlightOverflowingTexts());
    ulogui::SetHighlightOverflowingTexts(false);
    EXPECT_FALSE(ulogui::HighlightOverflowingTexts());
}

}  // namespace
