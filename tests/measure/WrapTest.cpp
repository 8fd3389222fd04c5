// Line breaking on the known widths: "hello world" is h10 e10 l4 l4 o10 _5 w10 o10 r10 l4 d10, so its
// prefixes are 10 20 24 28 38 43 53 63 73 77 87 wide.
#include <gtest/gtest.h>

#include "KnownWidthFont.h"

using namespace measuretest;

TEST(WrapOffset, BreaksBeforeTheLastSpaceThatFits) {
    auto font = KnownFont(1.0f);
    EXPECT_EQ(5, font->GetMaxWordOffset(63, L"hello world", 0.0f));  // room for "hello wo"
    EXPECT_EQ(5, font->GetMaxWordOffset(72, L"hello world", 0.0f));
    EXPECT_EQ(5, font->GetMaxWordOffset(86, L"hello world", 0.0f));
    EXPECT_EQ(5, font->GetMaxWordOffset(38, L"hello world", 0.0f));  // the space itself does not fit
    EXPECT_EQ(5, font->GetMaxWordOffset(43, L"hello world", 0.0f));  // the space fits, "w" not
    // Following spaces stay on the first line; the last of them begins the next.
    EXPECT_EQ(7, font->GetMaxWordOffset(38, L"hello   world", 0.0f));
}

TEST(WrapOffset, TextThatFitsGivesZero) {
    auto font = KnownFont(1.0f);
    EXPECT_EQ(0, font->GetMaxWordOffset(87, L"hello world", 0.0f));
    EXPECT_EQ(0, font->GetMaxWordOffset(1000, L"hello world", 0.0f));
    EXPECT_EQ(0, font->GetMaxWordOffset(0, L"", 0.0f));
}

TEST(WrapOffset, LineEndsEndTheFirstLine) {
    auto font = KnownFont(1.0f);
    EXPECT_EQ(2, font->GetMaxWordOffset(100, L"\r\nabc", 0.0f));
    EXPECT_EQ(1, font->GetMaxWordOffset(100, L"\rabc", 0.0f));
    EXPECT_EQ(1, font->GetMaxWordOffset(100, L"\nabc", 0.0f));
    EXPECT_EQ(1, font->GetMaxWordOffset(100, L"\n\rabc", 0.0f));
    EXPECT_EQ(4, font->GetMaxWordOffset(100, L"ab\r\ncd", 0.0f));
    EXPECT_EQ(3, font->GetMaxWordOffset(100, L"ab\rcd", 0.0f));
    EXPECT_EQ(3, font->GetMaxWordOffset(100, L"ab\ncd", 0.0f));
    EXPECT_EQ(3, font->GetMaxWordOffset(100, L"ab\r", 0.0f));
    // A line end after text that does not fit does not matter: the break comes first.
    EXPECT_EQ(1, font->GetMaxWordOffset(25, L"a bcd\r\n", 0.0f));
}

TEST(WrapOffset, WordsWithoutABreakPointBreakWhereTheyStopFitting) {
    auto font = KnownFont(1.0f);
    EXPECT_EQ(3, font->GetMaxWordOffset(35, L"abcdefgh", 0.0f));
    // A break point at the very start does not count.
    EXPECT_EQ(3, font->GetMaxWordOffset(30, L" bcdefgh", 0.0f));
}

TEST(WrapOffset, AHyphenBeginsTheNextLine) {
    // w10 e10 l4 l4 -6 k10 n10 o10: "well-kn" is 54, "well-kno" 64.
    auto font = KnownFont(1.0f);
    EXPECT_EQ(4, font->GetMaxWordOffset(60, L"well-known", 0.0f));
}

TEST(WrapOffset, NegativeWidthsFitNothing) {
    auto font = KnownFont(1.0f);
    EXPECT_EQ(0, font->GetMaxWordOffset(-5, L"abc", 0.0f));
    EXPECT_EQ(1, font->GetMaxWordOffset(-5, L"a bc", 0.0f));
    EXPECT_EQ(1, font->GetMaxWordOffset(5, L"a bc", 0.0f));
}

TEST(WrapOffset, IdeographsAreBreakPointsOnlyWithIdeographWidths) {
    auto latin = KnownFont(1.0f, kLatin);        // ideographs measure as "?": 7
    auto japanese = KnownFont(1.0f, kJapanese);  // ideographs 16
    // a10 _5 b10 then two ideographs.
    EXPECT_EQ(1, latin->GetMaxWordOffset(35, L"a b\u65E5\u672C", 0.0f));     // 10 15 25 32 | 39
    EXPECT_EQ(4, japanese->GetMaxWordOffset(45, L"a b\u65E5\u672C", 0.0f));  // 10 15 25 41 | 57
    // Ideographic punctuation (U+3001..U+300F) never begins a line; U+3000 and U+3010 may.
    EXPECT_EQ(1, japanese->GetMaxWordOffset(40, L"\u65E5\u672C\u3001\u8A9E", 0.0f));
    EXPECT_EQ(1, japanese->GetMaxWordOffset(40, L"\u65E5\u672C\u300F\u8A9E", 0.0f));
    EXPECT_EQ(2, japanese->GetMaxWordOffset(40, L"\u65E5\u672C\u3010\u8A9E", 0.0f));
    EXPECT_EQ(2, japanese->GetMaxWordOffset(40, L"\u65E5\u672C\u3000\u8A9E", 0.0f));
}

TEST(WrapOffset, TheFastPassTabRuleIsLogicalAndOnlyTheExactPassExtendsIt) {
    // m = 1: both passes agree; "\tab" is 50 60 70.
    auto one = KnownFont(1.0f);
    EXPECT_EQ(2, one->GetMaxWordOffset(60, L"\tab", 0.0f));
    // Tab stops from startX: a → 55, the tab to 100 (45), b → 110: "a\t" is 55 wide from 45.
    EXPECT_EQ(1, one->GetMaxWordOffset(60, L"a\tb", 45.0f));

    // m = 2: the fast pass adds a tab as 50 / 2 (then a and b as 5 each: 35) although the line is
    // (100 + 20) / 2 = 60 wide; a fast pass that fits is not checked again.
    auto two = KnownFont(2.0f);
    EXPECT_EQ(60.0f, two->GetStringRealWidthSingleLine(L"\tab", 0.0f));
    EXPECT_EQ(0, two->GetMaxWordOffset(40, L"\tab", 0.0f));

    // m = 0.5: the fast pass takes the tab as 50 / 0.5 = 100 and stops at once; the exact pass
    // measures "\t" as 25 / 0.5 = 50 and "\ta" as 35 / 0.5 = 70, both within 80.
    auto half = KnownFont(0.5f);
    EXPECT_EQ(70.0f, half->GetStringRealWidthSingleLine(L"\ta", 0.0f));
    EXPECT_EQ(0, half->GetMaxWordOffset(80, L"\ta", 0.0f));
    EXPECT_EQ(1, half->GetMaxWordOffset(69, L"\ta", 0.0f));
}
