#include "ulolib/String.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <locale.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cwchar>
#include <cwctype>

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kMaxCodePoint = 0x10FFFF;
// Formatting gives up beyond this many characters rather than growing without bound.
constexpr size_t kMaxFormattedLength = size_t(1) << 24;

bool IsSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

// wchar_t holds a whole code point on Linux (UTF-32) and a UTF-16 unit on Windows.
constexpr bool kWideIsUtf16 = sizeof(wchar_t) == 2;

bool IsHighSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}

bool IsLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

char32_t Unit(wchar_t w) {
    // wchar_t is signed on Linux: negative values are not characters either.
    return kWideIsUtf16 ? static_cast<char32_t>(static_cast<char16_t>(w))
                        : static_cast<char32_t>(static_cast<uint32_t>(w));
}

// The code point that starts at s[i], i moved past it: in UTF-16 a surrogate pair is one code point.
// Anything that may not be stored in UTF-8 or UTF-16 (a lone surrogate, a value beyond U+10FFFF)
// reads as U+FFFD.
char32_t NextCodePoint(const std::wstring& s, size_t& i) {
    const char32_t c = Unit(s[i++]);
    if (kWideIsUtf16 && IsHighSurrogate(c) && i < s.size() && IsLowSurrogate(Unit(s[i]))) {
        return 0x10000 + ((c - 0xD800) << 10) + (Unit(s[i++]) - 0xDC00);
    }
    return (c > kMaxCodePoint || IsSurrogate(c)) ? kReplacement : c;
}

// Appends a code point: one wchar_t on Linux, a surrogate pair beyond U+FFFF on Windows.
void AppendCodePoint(std::wstring& out, char32_t c) {
    if (kWideIsUtf16 && c >= 0x10000) {
        out += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
        out += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
        out += static_cast<wchar_t>(c);
    }
}

#if defined(_WIN32)
// Windows folds case with the invariant locale's full Unicode mapping, one UTF-16 unit at a time
// (a surrogate stays as it is).
wchar_t MapCase(wchar_t c, DWORD flags) {
    if (c >= 0xD800 && c <= 0xDFFF) {
        return c;
    }
    wchar_t out = c;
    return ::LCMapStringEx(LOCALE_NAME_INVARIANT, flags, &c, 1, &out, 1, nullptr, nullptr, 0) == 1 ? out : c;
}

wint_t FoldLower(wchar_t c) {
    return static_cast<wint_t>(MapCase(c, LCMAP_LOWERCASE));
}

wint_t FoldUpper(wchar_t c) {
    return static_cast<wint_t>(MapCase(c, LCMAP_UPPERCASE));
}
#else
// Case folding must not depend on whatever locale the host selected: with the process's default
// "C" locale towlower folds ASCII only. A private UTF-8 locale gives the full Unicode mapping; the
// global locale is the fallback where that locale is not installed.
locale_t CaseLocale() {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t(nullptr));
    return locale;
}

wint_t FoldLower(wchar_t c) {
    const locale_t locale = CaseLocale();
    return locale ? towlower_l(static_cast<wint_t>(c), locale) : towlower(static_cast<wint_t>(c));
}

wint_t FoldUpper(wchar_t c) {
    const locale_t locale = CaseLocale();
    return locale ? towupper_l(static_cast<wint_t>(c), locale) : towupper(static_cast<wint_t>(c));
}
#endif

int Sign(long long v) {
    return v < 0 ? -1 : (v > 0 ? 1 : 0);
}

// Rewrites a format written for the Windows runtime into the one glibc expects. In a wide format
// Windows reads %s and %c as wide and %S, %C, %hs, %hc as narrow; glibc reads %s and %c as narrow
// and %ls, %lc, %S, %C as wide. %I64, %I32 and %I are Windows length prefixes for ll, none and z.
std::wstring TranslateFormat(const wchar_t* format) {
    std::wstring out;
    const wchar_t* p = format;
    while (*p) {
        if (*p != L'%') {
            out += *p++;
            continue;
        }
        out += *p++;
        if (*p == L'%') {
            out += *p++;
            continue;
        }
        // Flags, width and precision pass through unchanged.
        while (*p && std::wcschr(L"-+ #0123456789.*'", *p)) {
            out += *p++;
        }
        std::wstring length;
        if (p[0] == L'I' && p[1] == L'6' && p[2] == L'4') {
            length = L"ll";
            p += 3;
        } else if (p[0] == L'I' && p[1] == L'3' && p[2] == L'2') {
            p += 3;
        } else if (p[0] == L'I') {
            length = L"z";
            p += 1;
        } else {
            while (*p && std::wcschr(L"hlLqjztw", *p)) {
                length += *p++;
            }
        }
        const wchar_t conversion = *p;
        if (conversion == 0) {
            out += length;
            break;
        }
        ++p;
        if (conversion == L's' || conversion == L'c') {
            if (length == L"h") {
                out += conversion;  // narrow
            } else {
                out += L'l';  // %s, %ls, %ws: wide
                out += conversion;
            }
        } else if (conversion == L'S' || conversion == L'C') {
            // Narrow, unless explicitly marked wide with l.
            if (length == L"l") {
                out += L'l';
            }
            out += static_cast<wchar_t>(conversion == L'S' ? L's' : L'c');
        } else {
            for (wchar_t m : length) {
                if (m != L'w') {
                    out += m;
                }
            }
            out += conversion;
        }
    }
    return out;
}

ULOString FormatV(const wchar_t* format, va_list args) {
    if (!format) {
        return ULOString();
    }
    const std::wstring translated = TranslateFormat(format);
    std::wstring buffer(256, L'\0');
    for (;;) {
        va_list copy;
        va_copy(copy, args);
        errno = 0;
        const int n = std::vswprintf(&buffer[0], buffer.size(), translated.c_str(), copy);
        va_end(copy);
        if (n >= 0 && static_cast<size_t>(n) < buffer.size()) {
            buffer.resize(static_cast<size_t>(n));
            return ULOString(std::move(buffer));
        }
        // MinGW-w64's C99 function returns the length the whole text needs, as snprintf does.
        if (n >= 0) {
            if (static_cast<size_t>(n) >= kMaxFormattedLength) {
                return ULOString();
            }
            buffer.resize(static_cast<size_t>(n) + 1);
            continue;
        }
        // glibc reports both a short buffer and a bad argument with -1; only the former is worth
        // another try.
        if (errno == EILSEQ || errno == EINVAL || buffer.size() >= kMaxFormattedLength) {
            return ULOString();
        }
        buffer.resize(buffer.size() * 4);
    }
}

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

}  // namespace

ULOString ULOString::Left(int n) const {
    if (n <= 0) {
        return ULOString();
    }
    return ULOString(substr(0, static_cast<size_t>(n)));
}

ULOString ULOString::Mid(int first, int n) const {
    const size_t start = first < 0 ? 0 : static_cast<size_t>(first);
    if (start >= size()) {
        return ULOString();
    }
    return ULOString(substr(start, n < 0 ? npos : static_cast<size_t>(n)));
}

ULOString ULOString::Right(int n) const {
    if (n <= 0) {
        return ULOString();
    }
    const size_t count = static_cast<size_t>(n);
    return count >= size() ? *this : ULOString(substr(size() - count));
}

ULOString ULOString::Format(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    ULOString result = FormatV(format, args);
    va_end(args);
    return result;
}

void ULOString::FormatInPlace(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    ULOString result = FormatV(format, args);
    va_end(args);
    assign(std::move(result));
}

int ULOString::Compare(const std::wstring& other) const {
    return Sign(compare(other));
}

int ULOString::CompareNoCase(const std::wstring& other) const {
    const size_t n = std::min(size(), other.size());
    for (size_t i = 0; i < n; ++i) {
        const wint_t a = FoldLower((*this)[i]);
        const wint_t b = FoldLower(other[i]);
        if (a != b) {
            return a < b ? -1 : 1;
        }
    }
    return Sign(static_cast<long long>(size()) - static_cast<long long>(other.size()));
}

ULOString ULOString::MakeLower() const {
    ULOString out(*this);
    for (wchar_t& c : out) {
        c = static_cast<wchar_t>(FoldLower(c));
    }
    return out;
}

ULOString ULOString::MakeUpper() const {
    ULOString out(*this);
    for (wchar_t& c : out) {
        c = static_cast<wchar_t>(FoldUpper(c));
    }
    return out;
}

std::vector<ULOString> ULOString::Split(wchar_t separator) const {
    std::vector<ULOString> pieces;
    size_t start = 0;
    for (;;) {
        const size_t at = find(separator, start);
        if (at == npos) {
            pieces.emplace_back(substr(start));
            return pieces;
        }
        pieces.emplace_back(substr(start, at - start));
        start = at + 1;
    }
}

std::vector<ULOString> ULOString::Tokenize(wchar_t separator) const {
    std::vector<ULOString> tokens;
    for (ULOString& piece : Split(separator)) {
        if (!piece.empty()) {
            tokens.push_back(std::move(piece));
        }
    }
    return tokens;
}

ULOString ULOString::FromUtf8(const std::string& utf8) {
    // Decodes by the Unicode "maximal subpart" rule: each ill-formed sequence becomes one U+FFFD,
    // and a byte that cannot continue the current sequence starts the next one.
    ULOString out;
    out.reserve(utf8.size());
    const auto* s = reinterpret_cast<const unsigned char*>(utf8.data());
    const size_t n = utf8.size();
    size_t i = 0;
    while (i < n) {
        const unsigned char b = s[i];
        if (b < 0x80) {
            out += static_cast<wchar_t>(b);
            ++i;
            continue;
        }
        int extra = 0;
        char32_t c = 0;
        // Valid range of the second byte: excludes overlong forms, surrogates and > U+10FFFF.
        unsigned char low = 0x80, high = 0xBF;
        if (b >= 0xC2 && b <= 0xDF) {
            extra = 1;
            c = b & 0x1F;
        } else if (b >= 0xE0 && b <= 0xEF) {
            extra = 2;
            c = b & 0x0F;
            low = b == 0xE0 ? 0xA0 : 0x80;
            high = b == 0xED ? 0x9F : 0xBF;
        } else if (b >= 0xF0 && b <= 0xF4) {
            extra = 3;
            c = b & 0x07;
            low = b == 0xF0 ? 0x90 : 0x80;
            high = b == 0xF4 ? 0x8F : 0xBF;
        } else {
            out += static_cast<wchar_t>(kReplacement);
            ++i;
            continue;
        }
        ++i;
        bool complete = true;
        for (int k = 0; k < extra; ++k, ++i) {
            const unsigned char lo = k == 0 ? low : 0x80;
            const unsigned char hi = k == 0 ? high : 0xBF;
            if (i >= n || s[i] < lo || s[i] > hi) {
                complete = false;
                break;
            }
            c = (c << 6) | (s[i] & 0x3F);
        }
        AppendCodePoint(out, complete ? c : kReplacement);
    }
    return out;
}

std::string ULOString::ToUtf8() const {
    std::string out;
    out.reserve(size());
    for (size_t i = 0; i < size();) {
        AppendUtf8(out, NextCodePoint(*this, i));
    }
    return out;
}

ULOString ULOString::FromUtf16(const std::u16string& utf16) {
    return FromUtf16(reinterpret_cast<const uint16_t*>(utf16.data()), utf16.size());
}

ULOString ULOString::FromUtf16(const uint16_t* units, size_t count) {
    ULOString out;
    if (!units) {
        return out;
    }
    out.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        const char32_t u = units[i];
        if (IsHighSurrogate(u) && i + 1 < count && IsLowSurrogate(units[i + 1])) {
            AppendCodePoint(out, 0x10000 + ((u - 0xD800) << 10) + (units[i + 1] - 0xDC00));
            ++i;
        } else {
            AppendCodePoint(out, IsSurrogate(u) ? kReplacement : u);  // a lone surrogate
        }
    }
    return out;
}

std::u16string ULOString::ToUtf16() const {
    std::u16string out;
    out.reserve(size());
    for (size_t i = 0; i < size();) {
        const char32_t c = NextCodePoint(*this, i);
        if (c < 0x10000) {
            out += static_cast<char16_t>(c);
        } else {
            out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
    }
    return out;
}
