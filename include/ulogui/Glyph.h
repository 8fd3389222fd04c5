#pragma once
// Glyph outlines, glyph widths with kerning, and the list of installed faces: free functions that
// work on the platform's font engine with a font made for the call from a face name, independent of
// ULOFont and of the font resource file.
#include <vector>

#include "ulogui/Export.h"
#include "ulogui/PlatformTypes.h"
#include "ulolib/ArrayNoStl.h"
#include "ulolib/String.h"

// One point of a glyph contour, in device pixels of the font, y pointing up as in the platform's
// outline data.
class ULODRAW_API ULOGlyphVertex {
public:
    double x = 0.0;
    double y = 0.0;
    bool onCurve = false;  // false for a control point of a quadratic or cubic spline

    ULOGlyphVertex() = default;
    ULOGlyphVertex(double xValue, double yValue, bool onCurveValue)
        : x(xValue), y(yValue), onCurve(onCurveValue) {}
    ULOGlyphVertex(const ULOGlyphVertex&) = default;
    ULOGlyphVertex(ULOGlyphVertex&&) = default;
    ULOGlyphVertex& operator=(const ULOGlyphVertex&) = default;
    ULOGlyphVertex& operator=(ULOGlyphVertex&&) = default;
    // x and y from the platform's 16.16 fixed-point pair (value + fract / 65536); onCurve unchanged.
    ULOGlyphVertex& operator=(const tagPOINTFX& point);
};

// One closed contour per inner array, in the platform's order.
using ULOGlyphOutline = ULOArray_NOSTL<ULOArray_NOSTL<ULOGlyphVertex>>;

// The font weight of a weight index of the glyph functions: 0 → 200, 1 → 400, 2 → 700, 3 → 900;
// every other index (4, which the range test of the original accepts, included) → 200.
ULODRAW_API int ULOGlyphWeight(int weightIndex);

// The outline of ch in face at a character height of height pixels: one contour per polygon of the
// platform's native outline, starting with its on-curve start point; points of line records are
// on-curve, points of spline records off-curve but the last. outline is emptied first. Returns 1
// when an outline was produced, 0 when the platform has no outline data for ch (a space) or
// outline is null.
ULODRAW_API int ULOGetGlyphOutline(ULOGlyphOutline* outline, wchar_t ch, const ULOString& face, int height,
                                   int weightIndex, int italic, int underline);

// The advance of ch in device pixels plus the kerning amount of the pair (ch, next).
ULODRAW_API int ULOGetGlyphWidth(wchar_t ch, wchar_t next, const ULOString& face, int height, int weightIndex,
                                 int italic, int underline);

// Appends the face names of the installed TrueType faces, each once (names already in the list
// included), in the platform's enumeration order; neither sorts nor clears. Null: nothing happens.
ULODRAW_API void ULOGetFontList(std::vector<ULOString>* names);
