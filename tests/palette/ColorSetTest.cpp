#include <gtest/gtest.h>

#include <stdexcept>

#include "ColorSetTestSupport.h"
#include "ulogui/ColorSet.h"
#include "ulogui/Palette.h"

namespace {

using colorset_test::DistinctSet;
using colorset_test::PaletteGuardTest;

void ExpectRgb(const CLR& c, int r, int g, int b, int field) {
    EXPECT_EQ(c, CLR(r, g, b)) << "field " << field << " is " << int(c.red) << ", " << int(c.green) << ", "
                               << int(c.blue);
}

TEST(ColorSet, ConstructedBlackAndCopiedWhole) {
    const ULOGUIColorSet fresh;
    for (int i = 0; i < ULOGUIColorSet::kFieldCount; ++i) {
        ExpectRgb(fresh.Field(i), 0, 0, 0, i);
    }
    const ULOGUIColorSet original = DistinctSet(3);
    ULOGUIColorSet copy(original);
    EXPECT_TRUE(copy == original);
    ULOGUIColorSet assigned;
    assigned = original;
    EXPECT_TRUE(assigned == original);
}

TEST(ColorSet, FieldsAreInPaletteOrder) {
    ULOGUIColorSet set;
    EXPECT_EQ(&set.Field(0), &set.gradationTopLeft);
    EXPECT_EQ(&set.Field(2), &set.activeFrame);
    EXPECT_EQ(&set.Field(9), &set.textRed);
    EXPECT_EQ(&set.Field(12), &set.warn);
    EXPECT_EQ(&set.Field(23), &set.editBack);
    EXPECT_EQ(&set.Field(24), &set.editFocusBack);
    EXPECT_EQ(&set.Field(35), &set.gradationListLeft);
    EXPECT_EQ(&set.Field(40), &set.menuSelected);
    EXPECT_THROW(set.Field(41), std::out_of_range);
    EXPECT_THROW(set.Field(-1), std::out_of_range);
}

TEST(ColorSet, ResetGivesTheFactoryColoursAndLeavesTextRedAndTextBlack) {
    ULOGUIColorSet set = DistinctSet(5);
    const CLR textRed = set.textRed;
    const CLR textBlack = set.textBlack;
    set.Reset();
    const int factory[41][3] = {
        {131, 131, 131}, {65, 65, 65},    {48, 94, 177},   {26, 26, 26},    {104, 104, 104}, {255, 255, 255},
        {172, 172, 172}, {255, 255, 255}, {255, 255, 255}, {-1, -1, -1},    {-1, -1, -1},    {255, 255, 255},
        {255, 0, 0},     {0, 0, 0},       {131, 131, 131}, {131, 131, 131}, {255, 255, 255}, {20, 20, 20},
        {170, 170, 170}, {0, 0, 0},       {0, 0, 0},       {0, 0, 0},       {48, 94, 177},   {163, 163, 165},
        {190, 190, 190}, {255, 255, 255}, {201, 120, 3},   {48, 94, 177},   {175, 175, 175}, {0, 0, 0},
        {15, 15, 15},    {255, 255, 255}, {145, 145, 145}, {168, 168, 168}, {48, 94, 177},   {112, 112, 112},
        {112, 112, 112}, {0, 0, 0},       {255, 255, 255}, {131, 131, 131}, {48, 94, 177},
    };
    for (int i = 0; i < 41; ++i) {
        if (factory[i][0] >= 0) {
            ExpectRgb(set.Field(i), factory[i][0], factory[i][1], factory[i][2], i);
        }
    }
    EXPECT_EQ(set.textRed, textRed);
    EXPECT_EQ(set.textBlack, textBlack);
}

TEST(ColorSet, EqualityLooksAtEveryField) {
    const ULOGUIColorSet a = DistinctSet(1);
    for (int i = 0; i < ULOGUIColorSet::kFieldCount; ++i) {
        ULOGUIColorSet b = a;
        b.Field(i).blue ^= 1;
        EXPECT_FALSE(a == b) << "field " << i;
        EXPECT_TRUE(a != b) << "field " << i;
    }
    EXPECT_TRUE(a == DistinctSet(1));
    EXPECT_FALSE(a != DistinctSet(1));
}

TEST_F(PaletteGuardTest, ApplyToCurrentAndGetCurrentSetAreInverse) {
    const ULOGUIColorSet set = DistinctSet(7);
    set.ApplyToCurrent();
    EXPECT_EQ(CLR_GRADATION_TOP_LEFT, set.gradationTopLeft);
    EXPECT_EQ(COLOR_WARN, set.warn);
    EXPECT_EQ(CLR_EDIT_FOCUS_BACK, set.editFocusBack);
    EXPECT_EQ(CLR_MENU_SELECTED, set.menuSelected);
    ULOGUIColorSet current;
    ULOGUIColorSet::GetCurrentSet(current);
    EXPECT_TRUE(current == set);
}

TEST_F(PaletteGuardTest, DefaultSetIsResetOnceAndApplyingItTurnsTextRedBlack) {
    const ULOGUIColorSet& defaults = ULOGUIColorSet::GetDefaultSet();
    EXPECT_EQ(&defaults, &ULOGUIColorSet::GetDefaultSet());
    ULOGUIColorSet reset;
    reset.Reset();
    EXPECT_TRUE(defaults == reset);

    CLR_TEXT_RED = CLR(128, 128, 128);
    defaults.ApplyToCurrent();
    EXPECT_EQ(CLR_TEXT_RED, CLR(0, 0, 0));
    EXPECT_EQ(CLR_TEXT_BLACK, CLR(0, 0, 0));
    EXPECT_EQ(CLR_ACTIVE_FRAME, CLR(48, 94, 177));
    ULOGUIColorSet current;
    ULOGUIColorSet::GetCurrentSet(current);
    EXPECT_TRUE(current == defaults);
}

}  // namespace
