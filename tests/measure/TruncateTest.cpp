// Ellipsis truncation on the known widths (letters 10, 'l' 4, '.' 3, '/' 5; "..." is 9 wide).
#include <gtest/gtest.h>

#include "KnownWidthFont.h"

using namespace measuretest;

namespace {

struct Truncated {
    bool shortened;
    ULOString text;
};

Truncated String(const ULOFont& font, const ULOString& s, int maxWidth, const ULOString& ellipsis = L"...") {
    Truncated t{false, L"untouched"};
    t.shortened = font.TruncateString(s, t.text, maxWidth, ellipsis);
    return t;
}

Truncated Path(const ULOFont& font, const ULOString& s, int maxWidth, const ULOString& ellipsis = L"...") {
    Truncated t{false, L"untouched"};
    t.shortened = font.TruncatePath(s, t.text, maxWidth, ellipsis);
    return t;
}

}  // namespace

TEST(TruncateString, TextThatFitsIsKept) {
    auto font = KnownFont(1.0f);
    const Truncated t = String(*font, L"hello", 38);
    EXPECT_FALSE(t.shortened);
    EXPECT_EQ(L"hello", t.text);
    EXPECT_EQ(L"", String(*font, L"", -3).text);
}

TEST(TruncateString, KeepsOneCharacterFewerThanTheRoomMade) {
    auto font = KnownFont(1.0f);
    // "hello..." is 47: taking o, l, l leaves 29 ≤ 30, room for "he...", and one fewer is kept.
    Truncated t = String(*font, L"hello", 30);
    EXPECT_TRUE(t.shortened);
    EXPECT_EQ(L"h...", t.text);
    // Taking o leaves 37: room for "hell...".
    EXPECT_EQ(L"hel...", String(*font, L"hello", 37).text);
    // Room for "a..." gives the ellipsis alone.
    EXPECT_EQ(L"...", String(*font, L"ab", 19).text);
    EXPECT_EQ(L"a-", String(*font, L"abcd", 35, L"-").text);  // 46 → 36 → 26
}

TEST(TruncateString, NegativeAndZeroWidthsGiveTheEllipsisAlone) {
    auto font = KnownFont(1.0f);
    for (int width : {0, -1, -1000}) {
        const Truncated t = String(*font, L"hello", width);
        EXPECT_TRUE(t.shortened);
        EXPECT_EQ(L"...", t.text);
    }
}

TEST(TruncateString, MagnifiedWidthsAreRemovedInLogicalUnits) {
    auto font = KnownFont(2.0f);                              // letters 5, "." 1.5
    EXPECT_EQ(L"a.", String(*font, L"abcd", 12, L".").text);  // 21.5 → 16.5 → 11.5
    EXPECT_FALSE(String(*font, L"abcd", 20, L".").shortened);
}

TEST(TruncateString, TabsAreRemovedByTheRoomTheyTookAfterTheWidestLineBeforeThem) {
    auto font = KnownFont(1.0f);
    // "ab\tcd" is 20 + 30 + 20 = 70; with "..." 79: d → 69, c → 59, the tab after "ab" → 29.
    EXPECT_EQ(L"a...", String(*font, L"ab\tcd", 45).text);
    // The line is measured as one (a, ..., f, CR, a, b: 80, the tab 20 to 100, c: 110) but the tab
    // is removed as the room after "abcdef", the widest line before it (60): 40. 110 → 100 → 60.
    EXPECT_EQ(L"abcdef\ra", String(*font, L"abcdef\rab\tc", 60, L"").text);
}

TEST(TruncatePath, APathThatFitsIsKept) {
    auto font = KnownFont(1.0f);
    const Truncated t = Path(*font, L"abc/defgh", 85);  // 30 + 5 + 50
    EXPECT_FALSE(t.shortened);
    EXPECT_EQ(L"abc/defgh", t.text);
}

TEST(TruncatePath, TwoComponentsGoStraightToEllipsisAndTheLastComponent) {
    auto font = KnownFont(1.0f);
    const Truncated t = Path(*font, L"abc/defgh", 70);
    EXPECT_TRUE(t.shortened);
    EXPECT_EQ(L".../defgh", t.text);  // 9 + 5 + 50
    // Neither fits: the path is truncated as a text (85 + 9 → 84 → 74 → 64 → 54).
    EXPECT_EQ(L"abc/...", Path(*font, L"abc/defgh", 63).text);
}

TEST(TruncatePath, MiddleComponentsGoOneByOne) {
    auto font = KnownFont(1.0f);
    // aa 20, bbbb 40, cccc 40, dd 20: the path is 135; "aa/.../" is 39.
    const ULOString path = L"aa/bbbb/cccc/dd";
    EXPECT_EQ(L"aa/.../cccc/dd", Path(*font, path, 104).text);  // 39 + 65
    EXPECT_EQ(L"aa/.../dd", Path(*font, path, 103).text);       // 39 + 20
    EXPECT_EQ(L"aa/.../dd", Path(*font, path, 59).text);
    EXPECT_EQ(L".../dd", Path(*font, path, 58).text);  // 34
    EXPECT_EQ(L".../dd", Path(*font, path, 34).text);
    // Nothing path-like fits: 144 less everything but "aa/" is 29.
    EXPECT_EQ(L"a...", Path(*font, path, 30).text);
    EXPECT_EQ(L"...", Path(*font, path, -4).text);
}

TEST(TruncatePath, AbsolutePathsKeepTheirRoot) {
    auto font = KnownFont(1.0f);
    // "", usr 30, share 50, fonts 50, x.ttf 43; "/.../" is 19.
    const ULOString path = L"/usr/share/fonts/x.ttf";
    EXPECT_EQ(L"/.../share/fonts/x.ttf", Path(*font, path, 172).text);
    EXPECT_EQ(L"/.../fonts/x.ttf", Path(*font, path, 171).text);
    EXPECT_EQ(L"/.../x.ttf", Path(*font, path, 62).text);
    EXPECT_EQ(L".../x.ttf", Path(*font, path, 61).text);  // 57
}

TEST(TruncatePath, APlainNameIsTruncatedAsText) {
    auto font = KnownFont(1.0f);
    // ".../abcdefgh" is 94; the text: 89 → 79 → 69 → 59 → 49.
    EXPECT_EQ(L"abc...", Path(*font, L"abcdefgh", 50).text);
}

TEST(TruncatePath, WidthsAreRoundedUp) {
    auto font = KnownFont(1.5f);  // "ab/cd" is 45 device pixels: 30 logical; ".../cd" 34 → 22.67
    EXPECT_FALSE(Path(*font, L"ab/cd", 30).shortened);
    EXPECT_EQ(L".../cd", Path(*font, L"ab/cd", 23).text);
    EXPECT_NE(L".../cd", Path(*font, L"ab/cd", 22).text);
}
