// MultiLineTextOut: text wrapped into a rectangle, one TextOutW a line.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "base/MagnifyRounding.h"
#include "surface/TextLines.h"
#include "ulogui/Font.h"
#include "ulogui/Palette.h"
#include "ulogui/TrueColorDC.h"

namespace {

// The line buffer's size: a line of this many characters or more does not fit it (with its NUL),
// and that ends the process.
constexpr size_t kLineBuffer = 5000;

[[noreturn]] void LineTooLong(size_t count) {
    std::fprintf(
        stderr,
        "MultiLineTextOut: a line of %zu characters does not fit the line buffer of 5,000 characters; "
        "ending the process\n",
        count);
    std::fflush(stderr);
    std::abort();
}

bool IsBlank(wchar_t c) {
    return c == L' ' || c == L'\t';
}

}  // namespace

namespace ulogui {
namespace surface {

int FirstLineLength(const ULOFont& font, int maxWidth, const ULOString& text, size_t pos) {
    const size_t rest = text.size() - pos;
    for (size_t window = 1024;; window *= 2) {
        if (window >= rest) {
            return font.GetMaxWordOffset(maxWidth, text.substr(pos), 0.0f);
        }
        const int n = font.GetMaxWordOffset(maxWidth, text.substr(pos, window), 0.0f);
        // The answer depends on nothing past the character after it: 0 says the whole window fits,
        // and an answer at the window's last character may depend on the next one (a CR LF pair,
        // spaces after a break).
        if (n > 0 && static_cast<size_t>(n) + 1 < window) {
            return n;
        }
    }
}

}  // namespace surface
}  // namespace ulogui

int ULOTrueColorDCBase::MultiLineTextOut(const boost::shared_ptr<ULOFont>& font, const ULORect* rect,
                                         const wchar_t* text, int flags, const CLR& colour, float opacity,
                                         int tabStartX, const CLR& backColour) {
    // 1. Narrow rectangles draw nothing; rectangles under two lines tall take one TextOutW.
    if (!font || rect == nullptr || text == nullptr) {
        return 0;
    }
    if (static_cast<int64_t>(rect->right) - rect->left < 2) {
        return 0;
    }
    const int fontHeight = font->GetFontHeight();
    if (static_cast<int64_t>(rect->bottom) - rect->top < 2 * static_cast<int64_t>(fontHeight)) {
        return TextOutW(font, rect, text, flags, colour, opacity, tabStartX, backColour);
    }
    // 2. The first line's box.
    using ulogui::base::ClampToInt;
    ULORect box(rect->left, rect->top, rect->right, ClampToInt(static_cast<int64_t>(rect->top) + fontHeight));
    const ULOString all(text);
    const int maxWidth = ClampToInt(static_cast<int64_t>(rect->right) - rect->left);
    size_t pos = 0;
    int64_t total = 0;
    ULOString lineText;
    bool goOn = true;
    // 3. A line at a time.
    while (goOn && box.bottom < rect->bottom && pos < all.size()) {
        const int n = ulogui::surface::FirstLineLength(*font, maxWidth, all, pos);
        const size_t count = n != 0 ? static_cast<size_t>(n) : all.size() - pos;
        if (count >= kLineBuffer) {
            LineTooLong(count);
        }
        lineText.assign(all, pos, count);
        pos += static_cast<size_t>(n);
        bool skipped = false;
        while (pos < all.size() && IsBlank(all[pos])) {
            ++pos;
            skipped = true;
        }
        goOn = n != 0 || skipped;
        // 4. The last line that has room, with more text to come, shows in red on CLR_EDIT_BACK.
        const bool moreText = goOn && pos < all.size();
        const bool lastRoom = static_cast<int64_t>(box.bottom) + fontHeight >= rect->bottom;
        if (ulogui::HighlightOverflowingTexts() && moreText && lastRoom) {
            total += TextOutW(font, &box, lineText.c_str(), flags, CLR(255, 0, 0), opacity, 0, CLR_EDIT_BACK);
        } else {
            total += TextOutW(font, &box, lineText.c_str(), flags, colour, opacity, tabStartX, backColour);
        }
        // 5. One line down.
        box.top = ClampToInt(static_cast<int64_t>(box.top) + fontHeight);
        box.bottom = ClampToInt(static_cast<int64_t>(box.bottom) + fontHeight);
    }
    return ClampToInt(total);
}
