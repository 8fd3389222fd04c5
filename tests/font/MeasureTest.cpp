// What the agreement sweep does not compare, on the known widths (letters 10, space 5, 'i' and 'l' 4;
// see KnownWidthFont.h): tab widths by themselves, rounded widths, heights and wild magnifiers.
#include <gtest/gtest.h>

#include <limits>

#include "KnownWidthFont.h"

using namespace measuretest;

TEST(TabStops, GetTabWidthUsesDeviceOrLogicalIntervals) {
    auto one = KnownFont(1.0f);
    EXPECT_EQ(52.0f, one->GetTabWidth(48.0f, true));
    EXPECT_EQ(5.0f, one->GetTabWidth(45.0f, true));  // exactly a space left: this stop
    EXPECT_EQ(6.0f, one->GetTabWidth(44.0f, false));
    EXPECT_EQ(50.0f, one->GetTabWidth(100.0f, false));
    auto two = KnownFont(2.0f);
    EXPECT_EQ(100.0f, two->GetTabWidth(0.0f, true));
    EXPECT_EQ(4.0f, two->GetTabWidth(96.0f, true));
    EXPECT_EQ(102.0f, two->GetTabWidth(98.0f, true));
    // Unmagnified: a 50-unit interval whose room is divided by m once more.
    EXPECT_EQ(25.0f, two->GetTabWidth(0.0f, false));
    EXPECT_EQ(26.0f, two->GetTabWidth(48.0f, false));  // 2 < 2.5: 52 / 2
    EXPECT_EQ(1.5f, two->GetTabWidth(47.0f, false));   // 3 / 2
}

TEST(LineWidths, RoundedWidthsAndTheWidestLine) {
    auto font = KnownFont(1.0f);
    EXPECT_EQ(font->GetStringRealWidthMultiLine(L"ab\ncde", 3.0f),
              font->GetStringRealWidth(L"ab\ncde", 3.0f));
    EXPECT_EQ(30.0f, font->ComputeMaxStringWidth(L"ab\ncde"));
    EXPECT_EQ(2, KnownFont(2.0f)->GetStringWidth(L"i", 0.0f));
    auto oneAndHalf = KnownFont(1.5f);
    EXPECT_EQ(7, oneAndHalf->GetStringWidth(L"a", 0.0f));       // 6.67
    EXPECT_EQ(14, oneAndHalf->GetStringWidth(L"aa\na", 0.0f));  // 13.33
    EXPECT_EQ(0, oneAndHalf->GetStringWidth(L"", 0.0f));
}

TEST(TextHeights, OnlyLineFeedsAddLines) {
    auto font = KnownFont(2.0f);
    EXPECT_EQ(0u, ULOFont::CountLineFeeds(L""));
    EXPECT_EQ(2u, ULOFont::CountLineFeeds(L"\r\n\n\r"));
    EXPECT_EQ(16, font->ComputeMinStringHeight(L"abc"));
    EXPECT_EQ(32, font->ComputeMinStringHeight(L"a\r\nb"));
    EXPECT_EQ(16, font->ComputeMinStringHeight(L"a\rb"));
    // Logical width (device 30 at m = 2), device height.
    EXPECT_EQ(ULOSize(15, 32), font->ComputeStringBoundingRect(L"abc\nde"));
    EXPECT_EQ(ULOSize(5, 32), font->ComputeStringBoundingRect(L"a\r\nb"));
    EXPECT_EQ(ULOSize(0, 16), font->ComputeStringBoundingRect(L""));
}

// The random sweep of AgreementTest never asks for a zero width.
TEST(TextHeights, AZeroLabelWidthCountsALinePerPiece) {
    EXPECT_EQ(32, KnownFont(1.0f)->ComputeTextLabelHeight(L"hello\nab", 0));
}

TEST(WildInputs, ConversionsSaturateInsteadOfOverflowing) {
    auto font = KnownFont(0.0f);  // every width divides by zero
    EXPECT_EQ(std::numeric_limits<int>::max(), font->GetStringWidth(L"a", 0.0f));
    EXPECT_EQ(0, font->GetStringWidth(L"\t", 0.0f));                  // NaN
    EXPECT_EQ(0.0f, font->GetStringRealWidthMultiLine(L"\n", 0.0f));  // empty lines are 0, not 0 / 0
    EXPECT_EQ(std::numeric_limits<int>::min(), font->ComputeTextLabelHeight(L"a", -1));
    ULOString out;
    EXPECT_TRUE(font->TruncateString(L"abc", out, 10, L"..."));
    EXPECT_TRUE(font->TruncatePath(L"a/b/c", out, 10, L"..."));
    EXPECT_EQ(0, font->GetMaxWordOffset(10, L"abc def", 0.0f));
    // 2^31 lines of 16 pixels.
    EXPECT_EQ(std::numeric_limits<int>::max(), font->ComputeTextLabelHeight(L"a", 1));
}
