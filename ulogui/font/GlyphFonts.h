#pragma once
// The font the glyph functions make for a call: a character height, a weight from the weight
// table, italic and underline, any character set, outline faces only.
#include <memory>

#include "platform/FontEngine.h"
#include "ulolib/String.h"

namespace ulogui {
namespace font {

// The font for face at a character height of height pixels; null when the platform makes none.
// The fonts of the most recent requests are kept for reuse (see docs/fonts.md): making one sizes a
// face and runs its hinting program, which would cost more than the glyph that is asked for.
std::shared_ptr<platform::PlatformFont> GlyphFont(const ULOString& face, int height, int weightIndex,
                                                  int italic, int underline);

// A wchar_t as a code point for the platform: negative values become code points no face has.
inline uint32_t CodePointOf(wchar_t ch) {
    return static_cast<uint32_t>(ch);
}

}  // namespace font
}  // namespace ulogui
