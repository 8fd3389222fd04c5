// Ellipsis truncation of texts and of paths.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "font/TextMeasure.h"
#include "ulogui/Font.h"
#include "ulolib/Path.h"

using namespace ulogui::font;

namespace {

// The room a tab took is found from the widest line of the text before it, which the truncation
// loop asks for tab after tab from the end of the text. One forward pass gives all of them (the
// same sums as measuring each prefix anew); it runs only when the loop reaches a tab.
class TabOrigins {
public:
    TabOrigins(const Widths& widths, const ULOString& s) : widths_(widths), s_(s) {}

    // The multi-line width of the text before the next tab of s, counting from the last tab
    // backwards.
    float NextBackwards() {
        if (!computed_) {
            Compute();
        }
        return origins_[--next_];
    }

private:
    void Compute() {
        LineAccumulator line(widths_, 0.0f);
        bool haveLine = false;
        float widest = 0.0f;
        for (size_t j = 0; j < s_.size(); ++j) {
            const wchar_t c = s_[j];
            if (c == kTab) {
                // Lines are compared in order as the multi-line measurement does; the unfinished
                // line comes last. The empty text before a leading tab is 0.
                const float partial = line.Width();
                origins_.push_back(j == 0 || !haveLine || partial > widest ? partial : widest);
            }
            if (IsLineEnd(c)) {
                const float w = line.Width();
                if (!haveLine || w > widest) {
                    widest = w;
                }
                haveLine = true;
                line.Restart();
            } else {
                line.Add(c);
            }
        }
        next_ = origins_.size();
        computed_ = true;
    }

    const Widths& widths_;
    const ULOString& s_;
    std::vector<float> origins_;
    size_t next_ = 0;
    bool computed_ = false;
};

int CeilWidth(const Widths& widths, const wchar_t* text, size_t length) {
    return CeilToInt(MultiLineWidth(widths, text, length, 0.0f));
}

// Largest magnitude up to which every integer is a float: sums of integer widths that stay below it
// are exact whatever the order of the additions.
constexpr double kExactFloatIntegers = 16777216.0;

bool IsExactInteger(float v) {
    return std::isfinite(v) && v == std::floor(v) && std::fabs(v) <= kExactFloatIntegers;
}

// The first k ≥ 2 for which head + (path from the separator before component k) fits limit, or the
// number of components when none does. starts[k] is where component k begins in path, one character
// after its separator.
//
// Every candidate shares head and ends with a tail of path, so for the usual path (no tab or line
// end after component 1, integer widths, as the platform gives them) each candidate's width is head's
// position plus a suffix sum. Those sums are exact in float, hence equal to measuring the candidate
// character by character, and each try costs O(1). Anything else is measured candidate by candidate.
size_t FirstFittingTail(const Widths& widths, const ULOString& path, const std::vector<size_t>& starts,
                        const ULOString& head, int limit) {
    const size_t parts = starts.size();
    LineAccumulator headLine(widths, 0.0f);
    bool simple = std::none_of(head.begin(), head.end(), IsLineEnd);
    for (size_t i = 0; simple && i < head.size(); ++i) {
        headLine.Add(head[i]);
    }
    simple = simple && IsExactInteger(headLine.X());

    // tailSums[k]: the widths of path from the separator before component k on.
    std::vector<int64_t> tailSums(parts + 1, 0);
    double magnitude = std::fabs(headLine.X());
    for (size_t k = parts; simple && k-- > 2;) {
        const size_t end = k + 1 < parts ? starts[k + 1] - 1 : path.size();
        int64_t sum = tailSums[k + 1];
        for (size_t j = starts[k] - 1; simple && j < end; ++j) {
            const wchar_t c = path[j];
            const float w = widths.Device(c);
            magnitude += std::fabs(w);
            simple = c != kTab && !IsLineEnd(c) && IsExactInteger(w) && magnitude <= kExactFloatIntegers;
            sum += simple ? static_cast<int64_t>(w) : 0;
        }
        tailSums[k] = sum;
    }

    for (size_t k = 2; k < parts; ++k) {
        float width;
        if (simple) {
            const float x = static_cast<float>(static_cast<int64_t>(headLine.X()) + tailSums[k]);
            width = (x - headLine.Origin()) / widths.Magnifier();
        } else {
            const ULOString candidate = head + path.substr(starts[k] - 1);
            width = MultiLineWidth(widths, candidate.data(), candidate.size(), 0.0f);
        }
        if (CeilToInt(width) <= limit) {
            return k;
        }
    }
    return parts;
}

}  // namespace

bool ULOFont::TruncateString(const ULOString& s, ULOString& out, int maxWidth, ULOString ellipsis) const {
    const Widths widths(*this);
    const float m = widths.Magnifier();
    const float width = SingleLineWidth(widths, s.data(), s.size(), 0.0f);
    const float limit = static_cast<float>(std::max(maxWidth, 0));
    if (width <= limit) {
        out = s;
        return false;
    }

    // Take characters off the end until the rest and the ellipsis fit. Removed characters are
    // subtracted in logical units, tabs by the room they took after the text before them.
    float total = width + MultiLineWidth(widths, ellipsis.data(), ellipsis.size(), 0.0f);
    TabOrigins tabOrigins(widths, s);
    ptrdiff_t i = static_cast<ptrdiff_t>(s.size()) - 1;
    for (; total > limit && i >= 0; --i) {
        const wchar_t c = s[static_cast<size_t>(i)];
        if (c == kTab) {
            total -= widths.LogicalTab(tabOrigins.NextBackwards()) / m;
        } else {
            total -= widths.Device(c) / m;
        }
    }

    // Deliberately one character fewer than the loop made room for.
    if (i < 1) {
        out = ellipsis;
    } else {
        ULOString shortened = s.Left(static_cast<int>(std::min<ptrdiff_t>(i, INT32_MAX)));
        shortened += ellipsis;
        out = std::move(shortened);
    }
    return true;
}

bool ULOFont::TruncatePath(const ULOString& path, ULOString& out, int maxWidth, ULOString ellipsis) const {
    const Widths widths(*this);
    const int limit = std::max(maxWidth, 0);
    if (CeilWidth(widths, path.data(), path.size()) <= limit) {
        out = path;
        return false;
    }

    // Components lie between the separators the system reads in a path: "/" on Linux; "\\" and "/"
    // on Windows, as its path-ellipsis text drawing reads them. The candidates keep the path's own
    // separators, so a path written with "/" shortens alike on both systems. Empty components
    // count, so the root of an absolute path survives ("/…/file").
    std::vector<size_t> starts{0};
    for (size_t i = 0; i < path.size(); ++i) {
        if (ULOPath::IsSeparator(path[i])) {
            starts.push_back(i + 1);
        }
    }

    // Replace component 1, then components 1 and 2, and so on, keeping component 0 and the last.
    ULOString candidate;
    bool fits = false;
    if (starts.size() > 2) {
        const ULOString head = path.substr(0, starts[1]) + ellipsis;
        const size_t k = FirstFittingTail(widths, path, starts, head, limit);
        if (k < starts.size()) {
            candidate = head + path.substr(starts[k] - 1);
            fits = true;
        }
    }
    if (!fits) {
        // The ellipsis and the last component, with the separator before it (the system's when the
        // path has none).
        candidate = starts.size() > 1 ? ellipsis + path.substr(starts.back() - 1)
                                      : ellipsis + ULOPath::wSeparator + path;
        fits = CeilWidth(widths, candidate.data(), candidate.size()) <= limit;
    }
    if (fits) {
        out = std::move(candidate);
        return true;
    }
    return TruncateString(path, out, limit, ellipsis);
}
