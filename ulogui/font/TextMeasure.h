#pragma once
// The arithmetic shared by the measuring members of ULOFont. Every loop here accumulates widths in
// the same order as measuring the text from its first character would, so that a width taken
// incrementally (one more character, one more line) is bit-identical to a width measured again
// from scratch. That is what lets wrapping and truncation stay linear in the text length.
#include <cmath>
#include <cstddef>
#include <limits>

#include "ulogui/Font.h"

namespace ulogui {
namespace font {

constexpr float kTabInterval = 50.0f;
constexpr wchar_t kTab = L'\t';
constexpr wchar_t kCR = L'\r';
constexpr wchar_t kLF = L'\n';

inline bool IsLineEnd(wchar_t c) {
    return c == kCR || c == kLF;
}

// ceilf converted to int; out-of-range values saturate and NaN gives 0, so that a wild magnifier
// cannot make the conversion undefined.
inline int CeilToInt(float v) {
    const float up = std::ceil(v);
    if (std::isnan(up)) {
        return 0;
    }
    if (up >= 2147483648.0f) {
        return std::numeric_limits<int>::max();
    }
    if (up < -2147483648.0f) {
        return std::numeric_limits<int>::min();
    }
    return static_cast<int>(up);
}

// The font's widths and the two quantities every tab rule needs, read once per call.
class Widths {
public:
    explicit Widths(const ULOFont& font)
        : font_(font),
          m_(font.GetMagnifier()),
          spaceLogical_(font.GetCharWidthW(L' ', true) / font.GetMagnifier()),
          hasCjk_(font.HasUnicodeExtraWidths()) {}

    // w(c): the cached device width.
    float Device(wchar_t c) const { return font_.GetCharWidthW(c, true); }
    float Magnifier() const { return m_; }
    // space / m, the least room a tab leaves before its stop.
    float SpaceLogical() const { return spaceLogical_; }
    bool HasCjk() const { return hasCjk_; }

    // Tab at device position x of a line: to the next stop 50 × m further on, skipping a stop
    // closer than a space. The closeness test deliberately compares logical space with device room.
    float DeviceTab(float x) const {
        const float y = kTabInterval * m_;
        float r = y - std::fmod(x, y);
        if (spaceLogical_ > r) {
            r += y;
        }
        return r;
    }

    // Tab at logical position x: the room in logical units (the callers divide it by m once more).
    float LogicalTab(float x) const {
        float r = kTabInterval - std::fmod(x, kTabInterval);
        if (spaceLogical_ > r) {
            r += kTabInterval;
        }
        return r;
    }

private:
    const ULOFont& font_;
    float m_;
    float spaceLogical_;
    bool hasCjk_;
};

// One line measured a character at a time: x starts at startX × m in device pixels and each
// character adds its advance; the width so far is (x − m × startX) / m.
class LineAccumulator {
public:
    LineAccumulator(const Widths& widths, float startX)
        : widths_(widths), origin_(startX * widths.Magnifier()), x_(origin_) {}

    void Add(wchar_t c) {
        x_ += c == kTab ? widths_.DeviceTab(x_) : widths_.Device(c);
        ++count_;
    }
    // Back to an empty line at the same origin.
    void Restart() {
        x_ = origin_;
        count_ = 0;
    }
    // An empty line is 0 whatever the origin.
    float Width() const { return count_ == 0 ? 0.0f : (x_ - origin_) / widths_.Magnifier(); }
    size_t Count() const { return count_; }
    // The device position reached (the line's origin plus its advances).
    float X() const { return x_; }
    float Origin() const { return origin_; }

private:
    const Widths& widths_;
    float origin_;
    float x_;
    size_t count_ = 0;
};

inline float SingleLineWidth(const Widths& widths, const wchar_t* text, size_t length, float startX) {
    LineAccumulator line(widths, startX);
    for (size_t i = 0; i < length; ++i) {
        line.Add(text[i]);
    }
    return line.Width();
}

// The widest of the lines split at every CR and every LF (CR LF leaves an empty line between),
// each measured from startX. Lines are compared in order, the first one setting the start value.
inline float MultiLineWidth(const Widths& widths, const wchar_t* text, size_t length, float startX) {
    if (length == 0) {
        return 0.0f;
    }
    LineAccumulator line(widths, startX);
    bool haveLine = false;
    float widest = 0.0f;
    auto endLine = [&] {
        const float w = line.Width();
        if (!haveLine || w > widest) {
            widest = w;
        }
        haveLine = true;
        line.Restart();
    };
    for (size_t i = 0; i < length; ++i) {
        if (IsLineEnd(text[i])) {
            endLine();
        } else {
            line.Add(text[i]);
        }
    }
    endLine();
    return widest;
}

}  // namespace font
}  // namespace ulogui
