#include <gtest/gtest.h>

#include <cwchar>
#include <vector>

#include "ulolib/String.h"

namespace {

const wchar_t r = 0xFFFD;  // the replacement character

TEST(ULOStringTest, PiecesSplitCompareFormatAndUtfRoundTripsWithReplacementCharactersForBadInput) {
    const ULOString s = L"abcdef";
    const std::pair<ULOString, const wchar_t*> cases[] = {
        {s.Left(2), L"ab"},    {s.Left(99), L"abcdef"}, {s.Left(-3), L""},        {s.Mid(2), L"cdef"},
        {s.Mid(2, 3), L"cde"}, {s.Mid(4, 99), L"ef"},   {s.Mid(6), L""},          {s.Mid(60, 1), L""},
        {s.Mid(-2, 2), L"ab"}, {s.Right(2), L"ef"},     {s.Right(99), L"abcdef"}, {s.Right(-1), L""}};
    for (size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(cases[i].first, cases[i].second) << "case " << i;
    }
    using V = std::vector<ULOString>;
    EXPECT_EQ(ULOString(L"a//b").Split(L'/'), (V{L"a", L"", L"b"}));
    EXPECT_EQ(ULOString(L"/usr/share/").Split(L'/'), (V{L"", L"usr", L"share", L""}));
    EXPECT_EQ(ULOString(L"").Split(L'/'), (V{L""}));
    EXPECT_EQ(ULOString(L"/usr//share/").Tokenize(L'/'), (V{L"usr", L"share"}));
    EXPECT_TRUE(ULOString(L"///").Tokenize(L'/').empty());
    // Both give the sign only, also for lengths that differ by more than one.
    struct Case {
        const wchar_t *a, *b;
        int ordinal, noCase;
    };
    const Case comparisons[] = {{L"abc", L"abd", -1, -1},       {L"abd", L"abc", 1, 1},
                                {L"abc", L"abc", 0, 0},         {L"B", L"a", -1, 1},
                                {L"a", L"abc", -1, -1},         {L"ab", L"ABCD", 1, -1},
                                {L"\x00c4X", L"\x00e4x", -1, 0}};
    for (const Case& c : comparisons) {
        EXPECT_EQ(ULOString(c.a).Compare(c.b), c.ordinal) << c.a << " " << c.b;
        EXPECT_EQ(ULOString(c.a).CompareNoCase(c.b), c.noCase) << c.a << " " << c.b;
        EXPECT_EQ(ULOString(c.a).EqualsNoCase(c.b), c.noCase == 0);
    }
    EXPECT_EQ(ULOString(L"MiXed \x00c9").MakeLower(), L"mixed \x00e9");
    EXPECT_EQ(ULOString(L"MiXed \x00e9").MakeUpper(), L"MIXED \x00c9");
    EXPECT_EQ(ULOString::Format(L"%s.%s", L"Main", L"ura"), L"Main.ura");
    EXPECT_EQ(ULOString::Format(L"%d-%5.2f-%c", 42, 1.5, L'\x00e9'), L"42- 1.50-\x00e9");
    EXPECT_EQ(ULOString::Format(L"%ls|%hs|%S|%C", L"w\x4e2d", "narrow", "N", 'x'), L"w\x4e2d|narrow|N|x");
    EXPECT_EQ(ULOString::Format(L"%-4s|%I64d|%Iu|100%%", L"ab", 1LL << 40, size_t(7)),
              L"ab  |1099511627776|7|100%");
    EXPECT_EQ(ULOString::Format(L"<%s>", L"\U0001F600"), L"<\U0001F600>");  // beyond the BMP, untouched
    const std::wstring longText(5000, L'x');
    EXPECT_EQ(ULOString::Format(L"[%s]", longText.c_str()), L"[" + longText + L"]");
    ULOString inPlace = L"old";
    inPlace.FormatInPlace(L"%d/%d", 3, 4);
    EXPECT_EQ(inPlace, L"3/4");
    const ULOString text = L"A\x00e9\x4e2d\xffff\U00010000\U0001F600\U0010FFFF";
    const std::string utf8 = text.ToUtf8();
    EXPECT_EQ(utf8, "A\xC3\xA9\xE4\xB8\xAD\xEF\xBF\xBF\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF");
    EXPECT_EQ(ULOString::FromUtf8(utf8), text);
    const std::u16string utf16 = text.ToUtf16();
    EXPECT_EQ(utf16,
              (std::u16string{u'A', 0x00e9, 0x4e2d, 0xffff, 0xD800, 0xDC00, 0xD83D, 0xDE00, 0xDBFF, 0xDFFF}));
    EXPECT_EQ(ULOString::FromUtf16(utf16), text);
    const uint16_t units[] = {0xD83D, 0xDE00, 'a'};
    EXPECT_EQ(ULOString::FromUtf16(units, 3), L"\U0001F600a");
    EXPECT_EQ(ULOString::FromUtf16(units, 1), L"\xFFFD");  // the pair cut in half
    EXPECT_EQ(ULOString::FromUtf16(nullptr, 5), L"");
    const std::pair<const char*, std::wstring> malformed[] = {
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
    for (const auto& c : malformed) {
        EXPECT_EQ(ULOString::FromUtf8(c.first), c.second) << "input " << testing::PrintToString(c.first);
    }
    // High without low, low without high, two highs, and a low then a high (wrong order).
    const std::u16string broken = {0xD800, u'a', 0xDC00, 0xD800, 0xD801, 0xDC01, 0xDC02, 0xD803};
    EXPECT_EQ(ULOString::FromUtf16(broken),
              L"\xFFFD"
              L"a\xFFFD\xFFFD" +
                  ULOString::FromUtf8("\xF0\x90\x90\x81") +
                  L"\xFFFD\xFFFD");  // U+10401 whole, one or two wchar_t
    // A wide string may hold values that are no characters; they are never written as such.
#if WCHAR_MAX > 0xFFFF
    const std::vector<uint32_t> wide = {0xD800, 0x110000, 0xFFFFFFFF, L'k'};
#else  // UTF-16 units: lone surrogates are the only units that are no characters
    const std::vector<uint32_t> wide = {0xDFFF, 0xDC00, 0xD800, L'k'};
#endif
    ULOString invalid;
    for (uint32_t u : wide) {
        invalid += static_cast<wchar_t>(u);
    }
    EXPECT_EQ(invalid.ToUtf16(), (std::u16string{r, r, r, u'k'}));
    EXPECT_EQ(invalid.ToUtf8(), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDk");
}

}  // namespace
