#pragma once
// The rounding of every conversion between logical units and device pixels, for a given factor m.
// magnify::DoMagnify and UndoMagnify apply it with the calling thread's factor; the drawing surface and
// the pictures apply it with the factor they read once when a call starts.
//
// Integers round as floor(v * m + 0.5) in single precision, so halves go upward (2.5 -> 3, -2.5 -> -2);
// the way back divides by m (never multiplies by 1 / m, which can differ in the last bit). A result that
// does not fit an int saturates at INT_MIN / INT_MAX, and a NaN result (a factor of 0 applied to 0)
// gives 0.
#include <cmath>
#include <cstdint>

#include "base/FloatToInteger.h"
#include "ulogui/Geometry.h"

namespace ulogui {
namespace base {

inline int RoundToPixel(float v) {
    return SaturatingTruncate(std::floor(v + 0.5f));
}
inline int ToDevice(int v, float m) {
    return RoundToPixel(static_cast<float>(v) * m);
}
inline int ToLogical(int v, float m) {
    return RoundToPixel(static_cast<float>(v) / m);
}
inline float ToDevice(float v, float m) {
    return v * m;
}
inline float ToLogical(float v, float m) {
    return v / m;
}
inline double ToDevice(double v, float m) {
    return v * static_cast<double>(m);
}
inline double ToLogical(double v, float m) {
    return v / static_cast<double>(m);
}

inline int ClampToInt(std::int64_t v) {
    return v > INT32_MAX ? INT32_MAX : v < INT32_MIN ? INT32_MIN : static_cast<int>(v);
}
// Scales origin and size separately and rebuilds the far edges from them, so that rectangles of equal
// size stay of equal size wherever they lie: (1, 1, 4, 4) at 1.5 becomes (2, 2, 7, 7), not (2, 2, 6, 6).
template <int (*Convert)(int, float)>
ULORect ConvertRectBySize(ULORect r, float m) {
    const std::int64_t w = static_cast<std::int64_t>(r.right) - r.left;
    const std::int64_t h = static_cast<std::int64_t>(r.bottom) - r.top;
    r.left = Convert(r.left, m);
    r.top = Convert(r.top, m);
    r.right = ClampToInt(static_cast<std::int64_t>(r.left) + Convert(ClampToInt(w), m));
    r.bottom = ClampToInt(static_cast<std::int64_t>(r.top) + Convert(ClampToInt(h), m));
    return r;
}

inline ULORect ToDevice(const ULORect& r, float m) {
    return ConvertRectBySize<static_cast<int (*)(int, float)>(ToDevice)>(r, m);
}
inline ULORect ToLogical(const ULORect& r, float m) {
    return ConvertRectBySize<static_cast<int (*)(int, float)>(ToLogical)>(r, m);
}

}  // namespace base
}  // namespace ulogui
