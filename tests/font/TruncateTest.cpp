// Ellipsis truncation on the known widths (letters 10, 'l' 4, '.' 3, '/' 5; "..." is 9 wide). The
// result "=" means the text was kept as it was (false returned); anything else was shortened.
#include <gtest/gtest.h>

#include <algorithm>

#include "KnownWidthFont.h"
#include "ulolib/Path.h"

using namespace measuretest;

namespace {

struct Case {
    const wchar_t* text;
    int maxWidth;
    const wchar_t* expected;
    const wchar_t* ellipsis = L"...";
};

void ExpectTruncated(const ULOFont& font, bool path, const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "width " << c.maxWidth << " case " << &c - cases.data());
        // Paths are written with "/" and split at the system's separator ("\\", as wide, on Windows).
        const auto native = [path](std::wstring s) {
            std::replace(s.begin(), s.end(), path ? L'/' : L'\0', path ? ULOPath::wSeparator : L'\0');
            return s;
        };
        ULOString out = L"untouched";
        const bool shortened = path ? font.TruncatePath(native(c.text), out, c.maxWidth, c.ellipsis)
                                    : font.TruncateString(c.text, out, c.maxWidth, c.ellipsis);
        const bool kept = std::wstring(c.expected) == L"=";
        EXPECT_EQ(!kept, shortened);
        EXPECT_EQ(native(kept ? c.text : c.expected), out);
    }
}

}  // namespace

TEST(TruncateString, KeepsOneCharacterFewerThanTheRoomMade) {
    ExpectTruncated(
        *KnownFont(1.0f), false,
        {
            {L"hello", 38, L"="},
            {L"", -3, L"="},
            // "hello..." is 47: taking o, l, l leaves 29 ≤ 30, room for "he...", one fewer is kept.
            {L"hello", 30, L"h..."},
            {L"hello", 37, L"hel..."},   // taking o leaves 37: room for "hell..."
            {L"ab", 19, L"..."},         // room for "a..." gives the ellipsis alone
            {L"abcd", 35, L"a-", L"-"},  // 46 → 36 → 26
            {L"hello", 0, L"..."},
            {L"hello", -1, L"..."},
            {L"hello", -1000, L"..."},
            // "ab\tcd" is 20 + 30 + 20 = 70; with "..." 79: d → 69, c → 59, the tab after "ab" → 29.
            {L"ab\tcd", 45, L"a..."},
            // The line is measured as one (a, ..., f, CR, a, b: 80, the tab 20 to 100, c: 110) but
            // the tab is removed as the room after "abcdef", the widest line before it (60): 40.
            // 110 → 100 → 60.
            {L"abcdef\rab\tc", 60, L"abcdef\ra", L""},
        });
    // m = 2: letters 5, "." 1.5; widths are removed in logical units: 21.5 → 16.5 → 11.5.
    ExpectTruncated(*KnownFont(2.0f), false, {{L"abcd", 12, L"a.", L"."}, {L"abcd", 20, L"=", L"."}});
}

TEST(TruncatePath, MiddleComponentsGoOneByOneThenTheTextIsTruncated) {
    ExpectTruncated(*KnownFont(1.0f), true,
                    {
                        {L"abc/defgh", 85, L"="},  // 30 + 5 + 50
                        // Two components go straight to the ellipsis and the last component (9 + 5 + 50);
                        // when neither fits the path is truncated as a text (85 + 9 → 84 → 74 → 64 → 54).
                        {L"abc/defgh", 70, L".../defgh"},
                        {L"abc/defgh", 63, L"abc/..."},
                        // aa 20, bbbb 40, cccc 40, dd 20: the path is 135; "aa/.../" is 39.
                        {L"aa/bbbb/cccc/dd", 104, L"aa/.../cccc/dd"},  // 39 + 65
                        {L"aa/bbbb/cccc/dd", 103, L"aa/.../dd"},       // 39 + 20
                        {L"aa/bbbb/cccc/dd", 59, L"aa/.../dd"},
                        {L"aa/bbbb/cccc/dd", 58, L".../dd"},  // 34
                        {L"aa/bbbb/cccc/dd", 34, L".../dd"},
                        {L"aa/bbbb/cccc/dd", 30, L"a..."},  // nothing path-like: 144 less all but "aa/" is 29
                        {L"aa/bbbb/cccc/dd", -4, L"..."},
                        // "", usr 30, share 50, fonts 50, x.ttf 43; "/.../" is 19: the root is kept.
                        {L"/usr/share/fonts/x.ttf", 172, L"/.../share/fonts/x.ttf"},
                        {L"/usr/share/fonts/x.ttf", 171, L"/.../fonts/x.ttf"},
                        {L"/usr/share/fonts/x.ttf", 62, L"/.../x.ttf"},
                        {L"/usr/share/fonts/x.ttf", 61, L".../x.ttf"},  // 57
                        // A plain name: ".../abcdefgh" is 94; the text: 89 → 79 → 69 → 59 → 49.
                        {L"abcdefgh", 50, L"abc..."},
                    });
    // Widths are rounded up: "ab/cd" is 45 device pixels at m = 1.5, 30 logical; ".../cd" 34 → 22.67.
    ExpectTruncated(*KnownFont(1.5f), true,
                    {{L"ab/cd", 30, L"="}, {L"ab/cd", 23, L".../cd"}, {L"ab/cd", 22, L"a..."}});
}
