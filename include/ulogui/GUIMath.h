#pragma once
// Small stateless helpers of the GUI and drawing code: bit counting for flag masks, clamping a value or
// a box to a maximum, and rotating a point about a centre.
#include "ulogui/Export.h"
#include "ulogui/Geometry.h"

namespace ULOGUIMath {

// Number of set bits. Meant for flag masks, which are never negative; a negative argument is counted
// over its 32-bit two's-complement pattern (-1 gives 32).
ULODRAW_API int CountOneBits(int n);
// Zero-based index of the lowest set bit (8 -> 3, 6 -> 1); -1 for 0.
ULODRAW_API int GetFirstLEOneBit(int n);

// If *v > max, sets *v = max and returns true; otherwise returns false (a NaN is left alone).
ULODRAW_API bool ResizeAccordingMax(int* v, int max);
ULODRAW_API bool ResizeAccordingMax(double* v, double max);
// A test only: whether the box, scaled down to max.cx wide with its aspect kept, would still be too
// tall, or whether it is too wide at all. The size is left unchanged: callers compute a fitted size when
// the answer is true.
ULODRAW_API bool ResizeAccordingMax(ULOSize* s, const ULOSize& max);
// The same test on the rectangle's size; when it answers true, right is set to top + height (the
// rectangle's bottom coordinate) and nothing else changes.
ULODRAW_API bool ResizeAccordingMax(ULORect* r, const ULOSize& max);

// Rotation by `angle` radians about `centre`, with the cosine and sine taken in single precision.
// The double version is sheared: its new y uses the already rotated x.
ULODRAW_API void RotatePoint(double* x, double* y, const ULOPoint& centre, float angle);
// A true rotation, rounded half away from zero; throws boost::math::rounding_error when a coordinate
// does not fit an int.
ULODRAW_API void RotatePoint(ULOPoint* p, const ULOPoint& centre, float angle);

}  // namespace ULOGUIMath
