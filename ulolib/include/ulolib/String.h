#pragma once
// ULOString: the wide string of the base library. On Linux wchar_t holds UTF-32 code points, on
// Windows UTF-16 units (a character beyond U+FFFF is a surrogate pair); files exchanged with other
// platforms use UTF-8 or UTF-16, converted here.
#include <cstdint>
#include <string>
#include <vector>

#include "ulolib/Export.h"

class ULOLIB_API ULOString : public std::wstring {
public:
    ULOString() = default;
    ULOString(const wchar_t* s) : std::wstring(s ? s : L"") {}
    ULOString(const wchar_t* s, size_t n) : std::wstring(s, n) {}
    ULOString(size_t n, wchar_t c) : std::wstring(n, c) {}
    ULOString(const std::wstring& s) : std::wstring(s) {}
    ULOString(std::wstring&& s) : std::wstring(std::move(s)) {}

    // The first n characters (all of them when n exceeds the length; none when n <= 0).
    ULOString Left(int n) const;
    // n characters from position first (to the end when n < 0); empty when first is past the end.
    ULOString Mid(int first, int n = -1) const;
    // The last n characters.
    ULOString Right(int n) const;

    // printf-style formatting where %s and %c take wide arguments, as in the Windows runtime:
    // %s, %ls, %ws, %c, %lc take wchar_t strings and characters; %hs, %S, %hc, %C take narrow ones
    // (converted by the C runtime's locale: keep them ASCII unless the host chose a UTF-8 locale);
    // %I64d, %I32d and %Id are read as %lld, %d and %zd. Everything else is C99 printf. A format
    // that cannot be produced (bad narrow argument, over 16M characters) gives an empty string.
    static ULOString Format(const wchar_t* format, ...);
    void FormatInPlace(const wchar_t* format, ...);

    // Ordinal comparisons returning -1, 0 or 1; the NoCase forms fold each character to lower case
    // with the full Unicode mapping whatever locale the host selected (on Linux towlower in the
    // C.UTF-8 locale, which Debian always installs, else the host's locale; on Windows the
    // invariant locale's mapping, one UTF-16 unit at a time).
    int Compare(const std::wstring& other) const;
    int CompareNoCase(const std::wstring& other) const;
    bool EqualsNoCase(const std::wstring& other) const { return CompareNoCase(other) == 0; }
    ULOString MakeLower() const;
    ULOString MakeUpper() const;

    // Splits at every separator; empty pieces are kept, so "a//b" gives "a", "", "b" and n
    // separators always give n + 1 pieces ("" gives one empty piece).
    std::vector<ULOString> Split(wchar_t separator) const;
    // Like Split but drops empty pieces (a tokenizer).
    std::vector<ULOString> Tokenize(wchar_t separator) const;

    // Encodings. Malformed input is replaced by U+FFFD, never rejected: one U+FFFD per maximal
    // ill-formed UTF-8 subsequence, per lone UTF-16 surrogate, and per wchar_t that is no Unicode
    // scalar value (a surrogate, negative or above U+10FFFF) on output.
    static ULOString FromUtf8(const std::string& utf8);
    std::string ToUtf8() const;
    static ULOString FromUtf16(const std::u16string& utf16);
    static ULOString FromUtf16(const uint16_t* units, size_t count);
    std::u16string ToUtf16() const;
};
