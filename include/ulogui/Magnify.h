#pragma once
// Display magnification: the factor between logical units and device pixels, kept per thread.
// DoMagnify converts logical values to device pixels, UndoMagnify converts back. Every overload first
// fetches the calling thread's factor (creating it if needed) and converts its arguments in place only
// when `apply` is true.
//
// Integers round as floor(v * m + 0.5) in single precision, so halves go upward (2.5 -> 3, -2.5 -> -2);
// UndoMagnify divides by m (never multiplies by 1 / m, which can differ in the last bit). A result that
// does not fit an int saturates at INT_MIN / INT_MAX, and a NaN result (a factor of 0 applied to 0)
// gives 0.
#include "ulogui/Export.h"
#include "ulogui/Geometry.h"

namespace ulogui {
namespace magnify {

// Factor that threads start with; -2.0 means "not set", in which case new threads start with 1.0.
ULODRAW_API extern float globalMagnifierValue;
// Exported for the host, which decides per-screen magnification; the library does not read it.
ULODRAW_API extern bool bPerscreenMagnify;
// Whether high-density screens are rendered at full device resolution.
ULODRAW_API extern bool bFineRenderOnRetinaScreens;

// The calling thread's factor. Created on the thread's first call from globalMagnifierValue (1.0 while
// that is unset) and freed when the thread ends; later changes of globalMagnifierValue do not reach
// threads that already have one. Writing through the reference changes the calling thread only.
ULODRAW_API float& GetMagnifier();

ULODRAW_API void MagnifyPhysicalDisplay(bool magnify);
ULODRAW_API bool MagnifyPhysicalDisplay();
ULODRAW_API bool MagnifyOpenGLDisplay();
ULODRAW_API bool MagnifyRenderOnRetinaScreens();

struct ULODRAW_API ULOPointf {
    float x = 0.0f;
    float y = 0.0f;
    ULOPointf() = default;
    ULOPointf(float px, float py) : x(px), y(py) {}
    ULOPointf(const ULOPoint& p) : x(static_cast<float>(p.x)), y(static_cast<float>(p.y)) {}
};

ULODRAW_API void DoMagnify(int& a, int& b, bool apply);
ULODRAW_API void DoMagnify(int& a, int& b, int& c, int& d, bool apply);
ULODRAW_API void DoMagnify(ULOPoint& p, bool apply);
ULODRAW_API void DoMagnify(ULOSize& s, bool apply);
// The size is scaled on its own and added to the scaled origin, so that rectangles of equal size stay
// of equal size wherever they lie: (1, 1, 4, 4) at 1.5 becomes (2, 2, 7, 7), not (2, 2, 6, 6).
ULODRAW_API void DoMagnify(ULORect& r, bool apply);
ULODRAW_API void DoMagnify(float& a, bool apply);
ULODRAW_API void DoMagnify(float& a, float& b, bool apply);
ULODRAW_API void DoMagnify(float& a, float& b, float& c, float& d, bool apply);
ULODRAW_API void DoMagnify(double& a, bool apply);
ULODRAW_API void DoMagnify(double& a, double& b, bool apply);
ULODRAW_API void DoMagnify(ULOPointf& p, bool apply);

ULODRAW_API void UndoMagnify(int& a, int& b, bool apply);
ULODRAW_API void UndoMagnify(int& a, int& b, int& c, int& d, bool apply);
ULODRAW_API void UndoMagnify(ULOPoint& p, bool apply);
ULODRAW_API void UndoMagnify(ULOSize& s, bool apply);
ULODRAW_API void UndoMagnify(ULORect& r, bool apply);
ULODRAW_API void UndoMagnify(float& a, bool apply);
ULODRAW_API void UndoMagnify(float& a, float& b, bool apply);
ULODRAW_API void UndoMagnify(float& a, float& b, float& c, float& d, bool apply);
ULODRAW_API void UndoMagnify(double& a, bool apply);
ULODRAW_API void UndoMagnify(double& a, double& b, bool apply);
ULODRAW_API void UndoMagnify(ULOPointf& p, bool apply);

}  // namespace magnify
}  // namespace ulogui

// Callers spell it magnify::DoMagnify(...) or ulogui::magnify::DoMagnify(...).
namespace magnify = ulogui::magnify;
