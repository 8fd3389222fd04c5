#include "ReferenceMeasure.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "ulolib/Path.h"

namespace measuretest {
namespace reference {

namespace {

float W(const ULOFont& font, wchar_t c) {
    return font.GetCharWidthW(c, true);
}

float Space(const ULOFont& font) {
    return font.GetCharWidthW(L' ', true);
}

std::vector<ULOString> SplitLines(const ULOString& s) {
    std::vector<ULOString> lines(1);
    for (wchar_t c : s) {
        if (c == L'\r' || c == L'\n') {
            lines.emplace_back();
        } else {
            lines.back() += c;
        }
    }
    return lines;
}

bool Wider(const ULOFont& font, const ULOString& s, int limit) {
    return static_cast<int>(std::ceil(MultiLine(font, s, 0.0f))) > limit;
}

}  // namespace

float SingleLine(const ULOFont& font, const ULOString& s, float startX) {
    if (s.empty()) {
        return 0.0f;
    }
    const float m = font.GetMagnifier();
    float x = startX * m;
    for (wchar_t c : s) {
        if (c == L'\t') {
            const float y = 50.0f * m;
            float r = y - std::fmod(x, y);
            if (Space(font) / m > r) {
                r += y;
            }
            x += r;
        } else {
            x += W(font, c);
        }
    }
    return (x - m * startX) / m;
}

float MultiLine(const ULOFont& font, const ULOString& s, float startX) {
    if (s.empty()) {
        return 0.0f;
    }
    const std::vector<ULOString> lines = SplitLines(s);
    float widest = SingleLine(font, lines[0], startX);
    for (size_t i = 1; i < lines.size(); ++i) {
        const float w = SingleLine(font, lines[i], startX);
        if (w > widest) {
            widest = w;
        }
    }
    return widest;
}

int TextLabelHeight(const ULOFont& font, const ULOString& s, int width) {
    int lines = 0;
    size_t start = 0;
    for (size_t i = 0; i <= s.size(); ++i) {
        if (i == s.size() || s[i] == L'\n') {
            const ULOString piece = s.substr(start, i - start);
            lines += static_cast<int>(std::ceil(MultiLine(font, piece, 0.0f))) / width + 1;
            start = i + 1;
        }
    }
    return font.GetFontHeight() * lines;
}

int MaxWordOffset(const ULOFont& font, int maxWidth, const ULOString& s, float startX) {
    const size_t n = s.size();
    auto lineEnd = [&](size_t i) { return s[i] == L'\r' || s[i] == L'\n'; };
    auto endLength = [&](size_t i) { return s[i] == L'\r' && i + 1 < n && s[i + 1] == L'\n' ? 2 : 1; };
    if (n == 0) {
        return 0;
    }
    if (lineEnd(0)) {
        return endLength(0);
    }
    const float m = font.GetMagnifier();
    const float limit = static_cast<float>(maxWidth);
    size_t count = 0;
    float x = 0.0f;
    for (size_t i = 0; i < n && !lineEnd(i); ++i) {
        if (s[i] == L'\t') {
            float r = 50.0f - std::fmod(x + startX, 50.0f);
            if (Space(font) / m > r) {
                r += 50.0f;
            }
            x += r / m;
        } else {
            x += W(font, s[i]) / m;
        }
        if (x > limit) {
            break;
        }
        count = i + 1;
    }
    while (count < n && !lineEnd(count) && SingleLine(font, s.substr(0, count + 1), startX) <= limit) {
        ++count;
    }
    if (count == n) {
        return 0;
    }
    if (lineEnd(count)) {
        return static_cast<int>(count) + endLength(count);
    }
    size_t j = count;
    while (j > 0) {
        const uint32_t c = static_cast<uint32_t>(s[j]);
        if (c < 33 || c == L'-') {
            break;
        }
        if (font.HasUnicodeExtraWidths() && c >= 0x3000 && !(c >= 0x3001 && c <= 0x300F)) {
            break;
        }
        --j;
    }
    size_t b = j == 0 ? count : j;
    while (b + 1 < n && s[b + 1] == L' ') {
        ++b;
    }
    return static_cast<int>(b);
}

bool TruncateString(const ULOFont& font, const ULOString& s, ULOString& out, int maxWidth,
                    const ULOString& ellipsis) {
    const float m = font.GetMagnifier();
    const float w = SingleLine(font, s, 0.0f);
    const float limit = static_cast<float>(std::max(maxWidth, 0));
    if (w <= limit) {
        out = s;
        return false;
    }
    float total = w + MultiLine(font, ellipsis, 0.0f);
    int i = static_cast<int>(s.size()) - 1;
    while (total > limit && i >= 0) {
        if (s[i] == L'\t') {
            const float x = MultiLine(font, s.Left(i), 0.0f);
            float r = 50.0f - std::fmod(x, 50.0f);
            if (Space(font) / m > r) {
                r += 50.0f;
            }
            total -= r / m;
        } else {
            total -= W(font, s[i]) / m;
        }
        i -= 1;
    }
    out = i < 1 ? ellipsis : ULOString(s.Mid(0, i) + ellipsis);
    return true;
}

bool TruncatePath(const ULOFont& font, const ULOString& path, ULOString& out, int maxWidth,
                  const ULOString& ellipsis) {
    const int limit = std::max(maxWidth, 0);
    if (!Wider(font, path, limit)) {
        out = path;
        return false;
    }
    // Split at the separators the system reads, each kept with the component after it.
    std::vector<ULOString> parts{L""}, seps{ULOString(1, ULOPath::wSeparator)};
    for (wchar_t c : path) {
        if (ULOPath::IsSeparator(c)) {
            parts.emplace_back();
            seps.emplace_back(1, c);
        } else {
            parts.back() += c;
        }
    }
    ULOString candidate = path;
    for (size_t k = 2; k < parts.size() && Wider(font, candidate, limit); ++k) {
        candidate = parts[0] + seps[1] + ellipsis;
        for (size_t j = k; j < parts.size(); ++j) {
            candidate += seps[j];
            candidate += parts[j];
        }
    }
    if (Wider(font, candidate, limit)) {
        candidate = ellipsis + seps.back() + parts.back();
    }
    if (!Wider(font, candidate, limit)) {
        out = candidate;
        return true;
    }
    return TruncateString(font, path, out, limit, ellipsis);
}

}  // namespace reference
}  // namespace measuretest
