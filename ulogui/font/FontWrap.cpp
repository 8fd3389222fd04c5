// Where the first line of a text ends when it is wrapped into a width.
#include <cstdint>

#include "font/TextMeasure.h"
#include "ulogui/Font.h"

using namespace ulogui::font;

namespace {

constexpr uint32_t kFirstCjk = 0x3000;
// Ideographic punctuation (comma, full stop, ditto mark, brackets) must not begin a line, so a
// line is never broken before one of these.
constexpr uint32_t kFirstCjkPunctuation = 0x3001;
constexpr uint32_t kLastCjkPunctuation = 0x300F;

// Characters are compared as code points (wchar_t is signed here; a negative one is no character
// and ranks above every real one, as in the width lookup).
bool IsBreakPoint(wchar_t ch, bool cjkFont) {
    const uint32_t c = static_cast<uint32_t>(ch);
    if (c < 33 || c == L'-') {
        return true;
    }
    return cjkFont && c >= kFirstCjk && !(c >= kFirstCjkPunctuation && c <= kLastCjkPunctuation);
}

// Characters that a line end takes at position i: 2 for CR LF, 1 for a lone CR or LF.
size_t LineEndLength(const ULOString& s, size_t i) {
    if (s[i] == kLF) {
        return 1;
    }
    return i + 1 < s.size() && s[i + 1] == kLF ? 2 : 1;
}

}  // namespace

int ULOFont::GetMaxWordOffset(int maxWidth, const ULOString& s, float startX) const {
    const size_t length = s.size();
    if (length == 0) {
        return 0;
    }
    if (IsLineEnd(s[0])) {
        return static_cast<int>(LineEndLength(s, 0));
    }
    const Widths widths(*this);
    const float m = widths.Magnifier();
    const float limit = static_cast<float>(maxWidth);

    // Fast pass: logical advances summed one by one. It may run short of (or, with tabs on a
    // magnified font, past) the exact prefix width; the exact pass only ever goes on from it.
    size_t count = 0;
    float x = 0.0f;
    for (size_t i = 0; i < length && !IsLineEnd(s[i]); ++i) {
        const wchar_t c = s[i];
        x += c == kTab ? widths.LogicalTab(x + startX) / m : widths.Device(c) / m;
        if (x > limit) {
            break;
        }
        count = i + 1;
    }

    // Exact pass: the width of each longer prefix as one measured line. The prefix is measured once
    // and extended a character at a time, which gives the same sums as measuring every prefix anew.
    LineAccumulator line(widths, startX);
    for (size_t i = 0; i < count; ++i) {
        line.Add(s[i]);
    }
    for (; count < length && !IsLineEnd(s[count]); ++count) {
        line.Add(s[count]);
        if (line.Width() > limit) {
            break;
        }
    }

    if (count == length) {
        return 0;  // the whole line fits
    }
    if (IsLineEnd(s[count])) {
        return static_cast<int>(count + LineEndLength(s, count));
    }

    // Back to the last break point; the break character (a space, or the "-" itself) begins the
    // next line.
    const bool cjkFont = widths.HasCjk();
    size_t j = count;
    while (j > 0 && !IsBreakPoint(s[j], cjkFont)) {
        --j;
    }
    size_t breakAt = j > 0 ? j : count;  // no break point: break inside the word
    while (breakAt + 1 < length && s[breakAt + 1] == L' ') {
        ++breakAt;
    }
    return static_cast<int>(breakAt);
}
