// Line breaking on the known widths: "hello world" is h10 e10 l4 l4 o10 _5 w10 o10 r10 l4 d10, so its
// prefixes are 10 20 24 28 38 43 53 63 73 77 87 wide.
#include <gtest/gtest.h>

#include "KnownWidthFont.h"

using namespace measuretest;

namespace {

struct Case {
    int maxWidth;
    const wchar_t* text;
    int expected;
    float startX = 0.0f;
};

void ExpectOffsets(const ULOFont& font, const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        EXPECT_EQ(c.expected, font.GetMaxWordOffset(c.maxWidth, c.text, c.startX))
            << "width " << c.maxWidth << " case " << &c - cases.data();
    }
}

}  // namespace

TEST(WrapOffset, BreaksBeforeTheLastBreakPointThatFitsOrAtALineEnd) {
    ExpectOffsets(
        *KnownFont(1.0f),
        {
            {63, L"hello world", 5},  // room for "hello wo"
            {86, L"hello world", 5},
            {38, L"hello world", 5},    // the space itself does not fit
            {43, L"hello world", 5},    // the space fits, "w" not
            {38, L"hello   world", 7},  // following spaces stay; the last of them begins the next line
            // Text that fits gives 0.
            {87, L"hello world", 0},
            {0, L"", 0},
            // Line ends end the first line, after text that fits.
            {100, L"\r\nabc", 2},
            {100, L"\rabc", 1},
            {100, L"\nabc", 1},
            {100, L"\n\rabc", 1},
            {100, L"ab\r\ncd", 4},
            {100, L"ab\rcd", 3},
            {100, L"ab\ncd", 3},
            {100, L"ab\r", 3},
            {25, L"a bcd\r\n", 1},
            // Words without a break point break where they stop fitting; one at the start does not count.
            {35, L"abcdefgh", 3},
            {30, L" bcdefgh", 3},
            {60, L"well-known", 4},  // a hyphen begins the next line: "well-kn" is 54, "well-kno" 64
            // Negative widths fit nothing.
            {-5, L"abc", 0},
            {-5, L"a bc", 1},
            {5, L"a bc", 1},
        });
}

TEST(WrapOffset, IdeographsAreBreakPointsOnlyWithIdeographWidths) {
    // a10 _5 b10 then two ideographs: "?" 7 wide without the tables (10 15 25 32 | 39), 16 with them
    // (10 15 25 41 | 57).
    ExpectOffsets(*KnownFont(1.0f, kLatin), {{35, L"a b\u65E5\u672C", 1}});
    ExpectOffsets(*KnownFont(1.0f, kJapanese),
                  {
                      {45, L"a b\u65E5\u672C", 4},
                      // Ideographic punctuation (U+3001..U+300F) never begins a line; U+3000 and U+3010 may.
                      {40, L"\u65E5\u672C\u3001\u8A9E", 1},
                      {40, L"\u65E5\u672C\u300F\u8A9E", 1},
                      {40, L"\u65E5\u672C\u3010\u8A9E", 2},
                      {40, L"\u65E5\u672C\u3000\u8A9E", 2},
                  });
}

TEST(WrapOffset, TheFastPassTabRuleIsLogicalAndOnlyTheExactPassExtendsIt) {
    // m = 1: both passes agree; "\tab" is 50 60 70. From startX 45: a → 55, the tab to 100 (45),
    // b → 110: "a\t" is 55 wide.
    ExpectOffsets(*KnownFont(1.0f), {{60, L"\tab", 2}, {60, L"a\tb", 1, 45.0f}});
    // m = 2: the fast pass adds a tab as 50 / 2 (then a and b as 5 each: 35) although the line is
    // (100 + 20) / 2 = 60 wide; a fast pass that fits is not checked again.
    auto two = KnownFont(2.0f);
    EXPECT_EQ(60.0f, two->GetStringRealWidthSingleLine(L"\tab", 0.0f));
    ExpectOffsets(*two, {{40, L"\tab", 0}});
    // m = 0.5: the fast pass takes the tab as 50 / 0.5 = 100 and stops at once; the exact pass
    // measures "\t" as 25 / 0.5 = 50 and "\ta" as 35 / 0.5 = 70, both within 80.
    auto half = KnownFont(0.5f);
    EXPECT_EQ(70.0f, half->GetStringRealWidthSingleLine(L"\ta", 0.0f));
    ExpectOffsets(*half, {{80, L"\ta", 0}, {69, L"\ta", 1}});
}
