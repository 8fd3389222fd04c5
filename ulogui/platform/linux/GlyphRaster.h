#pragma once
// Glyph outlines turned into the coverage text output draws: grey levels 0..16, or 0 and 16 where the
// face's 'gasp' table asks for no grey at a size.
#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdint>
#include <vector>

#include "ulogui/Geometry.h"

namespace ulogui {
namespace platform {
namespace ft {

// The face's wish for grey at a size: true unless its 'gasp' table has a range for ppem without
// the grey bit. A face without the table gets grey.
bool GreyAtSize(FT_Face face, uint32_t ppem);

// The 17 levels from a coverage of 0..255: rounded to the nearest sixteenth.
inline uint8_t LevelOfCoverage(uint8_t coverage) {
    return static_cast<uint8_t>((coverage * 16 + 127) / 255);
}

// An outline's box in whole pixels from its origin, x right and y down (the baseline is row 0): its
// control box rounded outward, empty for an outline without points.
ULORect OutlinePixelBox(const FT_Outline& outline);

// Renders the part `window` (pixels from the origin, y down) of outline into levels, window width x
// height bytes, rows top-down. The outline is moved while rendering and put back. False, with levels
// empty, when FreeType cannot render it.
bool RenderOutlineWindow(FT_Library library, FT_Outline& outline, const ULORect& window, bool grey,
                         std::vector<uint8_t>& levels);

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
