// Widths, tab stops and heights on the known widths (letters 10, space 5, 'i' and 'l' 4; see
// KnownWidthFont.h), every expected number worked out by hand.
#include <gtest/gtest.h>

#include <limits>

#include "KnownWidthFont.h"

using namespace measuretest;

TEST(TabStops, TabsAdvanceToTheNextStopOrOneFurtherWhenTheStopIsCloserThanASpace) {
    auto font = KnownFont(1.0f);
    EXPECT_EQ(0.0f, font->GetStringRealWidthSingleLine(L"", 0.0f));
    EXPECT_EQ(50.0f, font->GetStringRealWidthSingleLine(L"\t", 0.0f));
    EXPECT_EQ(6.0f, font->GetStringRealWidthSingleLine(L"\t", 44.0f));       // 6 left, a space fits
    EXPECT_EQ(5.0f, font->GetStringRealWidthSingleLine(L"\t", 45.0f));       // exactly a space left
    EXPECT_EQ(52.0f, font->GetStringRealWidthSingleLine(L"\t", 48.0f));      // 2 left: the next stop
    EXPECT_EQ(50.0f, font->GetStringRealWidthSingleLine(L"\t", 50.0f));      // on a stop: a whole interval
    EXPECT_EQ(100.0f, font->GetStringRealWidthSingleLine(L"ab\t\t", 0.0f));  // 50 → 100
    EXPECT_EQ(62.0f, font->GetStringRealWidthSingleLine(L"a\ta", 48.0f));    // 58 → 100 → 110

    auto wideSpace = KnownFont(1.0f, kLatin, 30);
    EXPECT_EQ(50.0f, wideSpace->GetStringRealWidthSingleLine(L"a\t", 0.0f));     // 40 left
    EXPECT_EQ(50.0f, wideSpace->GetStringRealWidthSingleLine(L"ab\t", 0.0f));    // 30 left: not closer
    EXPECT_EQ(100.0f, wideSpace->GetStringRealWidthSingleLine(L"abc\t", 0.0f));  // 20 left: skipped
    EXPECT_EQ(70.0f, wideSpace->GetTabWidth(30.0f, true));

    // m = 2: stops every 100 device pixels, the space counts as 5 / 2 = 2.5 against device room.
    auto two = KnownFont(2.0f);
    EXPECT_EQ(50.0f, two->GetStringRealWidthSingleLine(L"\t", 0.0f));
    EXPECT_EQ(2.0f, two->GetStringRealWidthSingleLine(L"\t", 48.0f));   // 4 device pixels left
    EXPECT_EQ(51.0f, two->GetStringRealWidthSingleLine(L"\t", 49.0f));  // 2 left < 2.5: 102
    EXPECT_EQ(15.0f, two->GetStringRealWidthSingleLine(L"aaa", 7.0f));
}

TEST(TabStops, GetTabWidthUsesDeviceOrLogicalIntervals) {
    auto one = KnownFont(1.0f);
    EXPECT_EQ(52.0f, one->GetTabWidth(48.0f, true));
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

TEST(LineWidths, LinesSplitAtEveryLineEndAndWidthsAreLogicalAndRoundUp) {
    auto font = KnownFont(1.0f);
    EXPECT_EQ(38.0f, font->GetStringRealWidthSingleLine(L"hello", 0.0f));
    EXPECT_EQ(30.0f, font->GetStringRealWidthMultiLine(L"ab\ncde\r\nf", 0.0f));
    EXPECT_EQ(30.0f, font->GetStringRealWidthMultiLine(L"f\rcde\n", 0.0f));
    EXPECT_EQ(0.0f, font->GetStringRealWidthMultiLine(L"\r\n", 0.0f));
    // A single line counts line ends as characters without width.
    EXPECT_EQ(60.0f, font->GetStringRealWidthSingleLine(L"ab\ncde\r\nf", 0.0f));
    // Each line counts its tabs from the same origin.
    EXPECT_EQ(52.0f, font->GetStringRealWidthMultiLine(L"\t\n\t", 48.0f));
    EXPECT_EQ(62.0f, font->GetStringRealWidthMultiLine(L"\t\na\ta", 48.0f));
    EXPECT_EQ(font->GetStringRealWidthMultiLine(L"ab\ncde", 3.0f),
              font->GetStringRealWidth(L"ab\ncde", 3.0f));
    EXPECT_EQ(30.0f, font->ComputeMaxStringWidth(L"ab\ncde"));

    auto two = KnownFont(2.0f);
    EXPECT_EQ(14.0f, two->GetStringRealWidthMultiLine(L"abil", 0.0f));  // (10 + 10 + 4 + 4) / 2
    EXPECT_EQ(2, two->GetStringWidth(L"i", 0.0f));
    auto oneAndHalf = KnownFont(1.5f);
    EXPECT_EQ(7, oneAndHalf->GetStringWidth(L"a", 0.0f));       // 6.67
    EXPECT_EQ(14, oneAndHalf->GetStringWidth(L"aa\na", 0.0f));  // 13.33
    EXPECT_EQ(0, oneAndHalf->GetStringWidth(L"", 0.0f));

    // Characters without a cached width measure as a question mark: an ideograph, a full-width "!"
    // and a Latin letter are 7 each without the double-byte tables, 16 + 12 + 7 with them.
    const ULOString text = L"\u65E5\uFF01\u0100";
    EXPECT_EQ(21.0f, KnownFont(1.0f, kLatin)->GetStringRealWidthSingleLine(text, 0.0f));
    EXPECT_EQ(35.0f, KnownFont(1.0f, kJapanese)->GetStringRealWidthSingleLine(text, 0.0f));
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

TEST(TextHeights, LabelsTakeALinePerStartedWidthAndOneMoreForExactMultiples) {
    auto font = KnownFont(1.0f);  // "hello" is 38 wide
    EXPECT_EQ(16, font->ComputeTextLabelHeight(L"", 40));
    EXPECT_EQ(16, font->ComputeTextLabelHeight(L"hello", 40));
    EXPECT_EQ(32, font->ComputeTextLabelHeight(L"hello", 38));  // exactly one width: two lines
    EXPECT_EQ(48, font->ComputeTextLabelHeight(L"hello", 19));
    EXPECT_EQ(48, font->ComputeTextLabelHeight(L"hello", 18));        // 38 / 18 = 2, + 1
    EXPECT_EQ(48, font->ComputeTextLabelHeight(L"hello\n\nab", 40));  // an empty piece is a line
    EXPECT_EQ(32, font->ComputeTextLabelHeight(L"hello\n", 40));
    // Carriage returns do not end pieces here, but a piece is as wide as its widest line.
    EXPECT_EQ(32, font->ComputeTextLabelHeight(L"ab\r\ncd", 40));
    EXPECT_EQ(32, font->ComputeTextLabelHeight(L"ab\rhello", 30));
    // A zero width counts a line per piece instead of dividing by zero.
    EXPECT_EQ(32, font->ComputeTextLabelHeight(L"hello\nab", 0));
    // Widths are rounded-up logical widths: "aa" at m = 1.5 is 13.33, 14.
    EXPECT_EQ(32, KnownFont(1.5f)->ComputeTextLabelHeight(L"aa", 14));
    EXPECT_EQ(16, KnownFont(1.5f)->ComputeTextLabelHeight(L"aa", 15));
}

TEST(WildInputs, ConversionsSaturateInsteadOfOverflowing) {
    auto font = KnownFont(0.0f);  // every width divides by zero
    EXPECT_EQ(std::numeric_limits<int>::max(), font->GetStringWidth(L"a", 0.0f));
    EXPECT_EQ(0, font->GetStringWidth(L"\t", 0.0f));  // NaN
    EXPECT_EQ(std::numeric_limits<int>::min(), font->ComputeTextLabelHeight(L"a", -1));
    ULOString out;
    EXPECT_TRUE(font->TruncateString(L"abc", out, 10, L"..."));
    EXPECT_TRUE(font->TruncatePath(L"a/b/c", out, 10, L"..."));
    EXPECT_EQ(0, font->GetMaxWordOffset(10, L"abc def", 0.0f));
    // 2^31 lines of 16 pixels.
    EXPECT_EQ(std::numeric_limits<int>::max(), font->ComputeTextLabelHeight(L"a", 1));
}
