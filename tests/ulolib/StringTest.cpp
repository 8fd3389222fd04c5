#include <gtest/gtest.h>

#include "ulolib/String.h"

namespace {

TEST(ULOStringTest, LeftMidRightClampToTheString) {
    const ULOString s = L"abcdef";
    EXPECT_EQ(s.Left(2), L"ab");
    EXPECT_EQ(s.Left(99), L"abcdef");
    EXPECT_EQ(s.Left(0), L"");
    EXPECT_EQ(s.Left(-3), L"");
    EXPECT_EQ(s.Mid(2), L"cdef");
    EXPECT_EQ(s.Mid(2, 3), L"cde");
    EXPECT_EQ(s.Mid(4, 99), L"ef");
    EXPECT_EQ(s.Mid(6), L"");
    EXPECT_EQ(s.Mid(60, 1), L"");
    EXPECT_EQ(s.Mid(-2, 2), L"ab");
    EXPECT_EQ(s.Right(2), L"ef");
    EXPECT_EQ(s.Right(99), L"abcdef");
    EXPECT_EQ(s.Right(-1), L"");
}

TEST(ULOStringTest, FormatReadsPercentSAndPercentCAsWide) {
    EXPECT_EQ(ULOString::Format(L"%s.%s", L"Main", L"ura"), L"Main.ura");
    EXPECT_EQ(ULOString::Format(L"%d-%5.2f-%c", 42, 1.5, L'\x00e9'), L"42- 1.50-\x00e9");
    EXPECT_EQ(ULOString::Format(L"%ls|%hs|%S|%C", L"w\x4e2d", "narrow", "N", 'x'), L"w\x4e2d|narrow|N|x");
    EXPECT_EQ(ULOString::Format(L"%-4s|%I64d|%Iu|100%%", L"ab", 1LL << 40, size_t(7)),
              L"ab  |1099511627776|7|100%");
    // Characters beyond the BMP pass through a wide argument untouched.
    EXPECT_EQ(ULOString::Format(L"<%s>", L"\U0001F600"), L"<\U0001F600>");
}

TEST(ULOStringTest, FormatGrowsBeyondItsFirstBuffer) {
    const ULOString longText(5000, L'x');
    const ULOString out = ULOString::Format(L"[%s]", longText.c_str());
    ASSERT_EQ(out.size(), 5002u);
    EXPECT_EQ(out.front(), L'[');
    EXPECT_EQ(out.back(), L']');

    ULOString inPlace = L"old";
    inPlace.FormatInPlace(L"%d/%d", 3, 4);
    EXPECT_EQ(inPlace, L"3/4");
}

TEST(ULOStringTest, CompareIsOrdinalAndCompareNoCaseFolds) {
    EXPECT_EQ(ULOString(L"abc").Compare(L"abd"), -1);
    EXPECT_EQ(ULOString(L"abd").Compare(L"abc"), 1);
    EXPECT_EQ(ULOString(L"abc").Compare(L"abc"), 0);
    EXPECT_EQ(ULOString(L"B").Compare(L"a"), -1);  // ordinal: upper case sorts first
    EXPECT_EQ(ULOString(L"ab").Compare(L"abc"), -1);

    EXPECT_EQ(ULOString(L"Arial Bold").CompareNoCase(L"aRIAL bOLD"), 0);
    EXPECT_EQ(ULOString(L"B").CompareNoCase(L"a"), 1);
    EXPECT_EQ(ULOString(L"abc").CompareNoCase(L"ABCD"), -1);
    EXPECT_TRUE(ULOString(L"\x00c4rger").EqualsNoCase(L"\x00e4RGER"));  // not only ASCII
    EXPECT_FALSE(ULOString(L"a").EqualsNoCase(L"b"));
    EXPECT_EQ(ULOString(L"MiXed \x00c9").MakeLower(), L"mixed \x00e9");
    EXPECT_EQ(ULOString(L"MiXed \x00e9").MakeUpper(), L"MIXED \x00c9");
}

TEST(ULOStringTest, SplitKeepsEmptyPiecesAndTokenizeDropsThem) {
    using V = std::vector<ULOString>;
    EXPECT_EQ(ULOString(L"a//b").Split(L'/'), (V{L"a", L"", L"b"}));
    EXPECT_EQ(ULOString(L"/usr/share/").Split(L'/'), (V{L"", L"usr", L"share", L""}));
    EXPECT_EQ(ULOString(L"").Split(L'/'), (V{L""}));
    EXPECT_EQ(ULOString(L"abc").Split(L'/'), (V{L"abc"}));
    EXPECT_EQ(ULOString(L"/usr//share/").Tokenize(L'/'), (V{L"usr", L"share"}));
    EXPECT_TRUE(ULOString(L"///").Tokenize(L'/').empty());
}

TEST(ULOStringTest, Utf8RoundTripsEveryPlane) {
    const ULOString text = L"A\x00e9\x4e2d\U0001F600\U0010FFFF";
    const std::string utf8 = text.ToUtf8();
    EXPECT_EQ(utf8, "A\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF");
    EXPECT_EQ(ULOString::FromUtf8(utf8), text);
}

TEST(ULOStringTest, MalformedUtf8BecomesReplacementCharacters) {
    const wchar_t r = 0xFFFD;
    struct Case {
        const char* bytes;
        std::wstring expected;
    };
    const Case cases[] = {
        {"a\x80z", {L'a', r, L'z'}},           // lone continuation byte
        {"\xC0\xAF", {r, r}},                  // overlong '/' (C0 never starts a sequence)
        {"\xE0\x80\xAF", {r, r, r}},           // overlong three-byte form
        {"\xED\xA0\x80", {r, r, r}},           // encoded surrogate
        {"\xF4\x90\x80\x80", {r, r, r, r}},    // above U+10FFFF
        {"\xE4\xB8z", {r, L'z'}},              // truncated sequence: one replacement
        {"\xF0\x9F\x98", {r}},                 // truncated at the end
        {"\xFF\xFE", {r, r}},                  // bytes that never occur
        {"\xC3\xA9\xC3", {L'\x00e9', r}},      // good, then cut short
        {"\xE4\xB8\xC3\xA9", {r, L'\x00e9'}},  // a new lead byte ends the broken sequence
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ULOString::FromUtf8(c.bytes), c.expected) << "input " << testing::PrintToString(c.bytes);
    }
}

TEST(ULOStringTest, Utf16RoundTripsOutsideTheBmp) {
    const ULOString text = L"x\x00e9\xffff\U00010000\U0001F600\U0010FFFF";
    const std::u16string utf16 = text.ToUtf16();
    EXPECT_EQ(utf16, (std::u16string{u'x', 0x00e9, 0xffff, 0xD800, 0xDC00, 0xD83D, 0xDE00, 0xDBFF, 0xDFFF}));
    EXPECT_EQ(ULOString::FromUtf16(utf16), text);

    const uint16_t units[] = {0xD83D, 0xDE00, 'a'};
    EXPECT_EQ(ULOString::FromUtf16(units, 3), L"\U0001F600a");
    EXPECT_EQ(ULOString::FromUtf16(units, 1), L"\xFFFD");  // the pair cut in half
    EXPECT_EQ(ULOString::FromUtf16(nullptr, 5), L"");
}

TEST(ULOStringTest, LoneSurrogatesBecomeReplacementCharacters) {
    // High without low, low without high, two highs, and a low then a high (wrong order).
    const std::u16string broken = {0xD800, u'a', 0xDC00, 0xD800, 0xD801, 0xDC01, 0xDC02, 0xD803};
    EXPECT_EQ(ULOString::FromUtf16(broken),
              (std::wstring{0xFFFD, L'a', 0xFFFD, 0xFFFD, 0x10401, 0xFFFD, 0xFFFD}));

    // A wide string may hold values that are no characters; they are never written as such.
    const std::wstring invalid = {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x110000),
                                  static_cast<wchar_t>(-1), L'k'};
    EXPECT_EQ(ULOString(invalid).ToUtf16(), (std::u16string{0xFFFD, 0xFFFD, 0xFFFD, u'k'}));
    EXPECT_EQ(ULOString(invalid).ToUtf8(), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDk");
}

}  // namespace
