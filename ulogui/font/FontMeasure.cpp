// Widths and heights of text from the font's cached advances.
#include <algorithm>
#include <cstdint>
#include <limits>

#include "font/TextMeasure.h"
#include "ulogui/Font.h"

using namespace ulogui::font;

namespace {

int SaturateToInt(int64_t v) {
    return static_cast<int>(
        std::clamp<int64_t>(v, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

// height × lines without overflow: line counts of huge texts saturate.
int LinesTimesHeight(int64_t lines, int height) {
    const int64_t cap = std::numeric_limits<int>::max();
    lines = std::clamp(lines, -cap, cap);
    return SaturateToInt(lines * static_cast<int64_t>(height));
}

// Lines that one LF-separated piece takes when wrapped into width: a line per started width, and
// deliberately one more when the width is an exact multiple (a piece exactly width wide counts 2,
// an empty piece 1). A zero width would divide by zero: such a box counts one line per piece.
int64_t PieceLines(const Widths& widths, const wchar_t* piece, size_t length, int width) {
    if (width == 0) {
        return 1;
    }
    const int64_t pixels = CeilToInt(MultiLineWidth(widths, piece, length, 0.0f));
    return pixels / width + 1;
}

}  // namespace

float ULOFont::GetStringRealWidthSingleLine(const ULOString& s, float startX) const {
    return SingleLineWidth(Widths(*this), s.data(), s.size(), startX);
}

float ULOFont::GetStringRealWidthMultiLine(const ULOString& s, float startX) const {
    return MultiLineWidth(Widths(*this), s.data(), s.size(), startX);
}

float ULOFont::GetStringRealWidth(const ULOString& s, float startX) const {
    return GetStringRealWidthMultiLine(s, startX);
}

int ULOFont::GetStringWidth(const ULOString& s, float startX) const {
    return CeilToInt(GetStringRealWidthMultiLine(s, startX));
}

float ULOFont::GetTabWidth(float x, bool magnified) const {
    // Unlike the line measurement, the unmagnified form works in logical units from the start and
    // still divides its result by the magnifier.
    const float y = kTabInterval * (magnified ? magnifier : 1.0f);
    float r = y - std::fmod(x, y);
    if (charWidths[0x20] / magnifier > r) {
        r += y;
    }
    return magnified ? r : r / magnifier;
}

float ULOFont::ComputeMaxStringWidth(const ULOString& s) const {
    return GetStringRealWidthMultiLine(s, 0.0f);
}

size_t ULOFont::CountLineFeeds(const ULOString& s) {
    return static_cast<size_t>(std::count(s.begin(), s.end(), kLF));
}

int ULOFont::ComputeMinStringHeight(const ULOString& s) const {
    return LinesTimesHeight(static_cast<int64_t>(std::min<size_t>(CountLineFeeds(s), INT32_MAX)) + 1, height);
}

ULOSize ULOFont::ComputeStringBoundingRect(const ULOString& s) const {
    // Deliberately a logical width with a device height, as the callers expect.
    return ULOSize(CeilToInt(GetStringRealWidthMultiLine(s, 0.0f)), ComputeMinStringHeight(s));
}

int ULOFont::ComputeTextLabelHeight(const ULOString& s, int width) const {
    const Widths widths(*this);
    int64_t lines = 0;
    size_t pieceStart = 0;
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] == kLF) {
            lines += PieceLines(widths, s.data() + pieceStart, i - pieceStart, width);
            pieceStart = i + 1;
        }
    }
    lines += PieceLines(widths, s.data() + pieceStart, s.size() - pieceStart, width);
    return LinesTimesHeight(lines, height);
}
