#pragma once
// The platform's native outline records (polygon headers, line and spline records) made from a
// hinted FreeType outline, as the Windows outline call delivers them.
#include <ft2build.h>
#include FT_FREETYPE_H

#include "platform/FontEngine.h"

namespace ulogui {
namespace platform {
namespace ft {

// A 26.6 coordinate as a 16.16 fixed-point number; beyond the FIXED range (about ±32768 pixels,
// reached only by glyphs of enormous sizes) it saturates.
FIXED FixedFrom26Dot6(FT_Pos value);

// Replaces out's content with the records of outline:
// - one polygon per contour, starting at its first point; contours of a single point are dropped;
// - consecutive on-curve points form one line record;
// - a run of quadratic control points forms one spline record that ends with the on-curve point
//   after the run (the implied midpoints between controls are not emitted); cubic control points
//   form records of two controls and their end point;
// - a contour that ends off-curve closes its last spline on its start point; no closing line is
//   added otherwise.
// Contour ends that do not increase or lie past the points end the walk (FreeType's loaders never
// give such outlines).
void NativeOutlineRecords(const FT_Outline& outline, GlyphOutline& out);

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
