// TextOutClipped: TextOutW through a temporary surface, put back within a clipping rectangle.
#include <cstdint>
#include <memory>
#include <new>

#include "base/MagnifyRounding.h"
#include "ulogui/Font.h"
#include "ulogui/TrueColorDC.h"

namespace {

// The pixels of src in `from` become those of dst in `to` at full opacity, with the copy that fits the
// pixel format of `from`: all four bytes (CopyOnlyPicture), or for a one-byte mask the master's mask
// painting (CopyAlphaOnlyColors in CLR_LABEL_TEXT).
void CopyAtFullOpacity(ULOTrueColorDCBase& to, const ULOPictureBits& from, const ULORect& dst,
                       const ULORect& src, const ULORect& clip) {
    if ((from.GetFlags() & PICTBITS_MASK8) != 0) {
        to.DrawPicture(from, dst, src, clip, ULOTrueColorDCBase::eCopyNormal, 1.0f);
    } else {
        to.CopyOnlyPicture(from, dst, src, clip);
    }
}

}  // namespace

int ULOTrueColorDCBase::TextOutClipped(const boost::shared_ptr<ULOFont>& font, const ULORect* rect,
                                       const ULORect* clip, const wchar_t* text, int flags, const CLR& colour,
                                       float opacity, int tabStartX, const CLR& backColour) {
    if (rect == nullptr || clip == nullptr) {
        return 0;
    }
    // 1. A surface of rect's size, with this surface's alpha, magnified.
    using ulogui::base::ClampToInt;
    const int w = ClampToInt(static_cast<int64_t>(rect->right) - rect->left);
    const int h = ClampToInt(static_cast<int64_t>(rect->bottom) - rect->top);
    const ULORect whole(0, 0, w, h);
    std::unique_ptr<ULOTrueColorDCBase> made;
    try {
        made = std::make_unique<ULOTrueColorDCBase>(whole, (GetFlags() & PICTBITS_ALPHA) != 0, true);
    } catch (const std::bad_alloc&) {
        return 0;  // drawing reports no errors: a surface that cannot be made draws nothing
    }
    ULOTrueColorDCBase& temporary = *made;
    // 2. What lies under rect, copied in.
    CopyAtFullOpacity(temporary, *this, whole, *rect, whole);
    // 3. The text.
    const int result = temporary.TextOutW(font, &whole, text, flags, colour, opacity, tabStartX, backColour);
    // 4. Copied back onto rect, within clip.
    CopyAtFullOpacity(*this, temporary, *rect, whole, *clip);
    return result;
}
