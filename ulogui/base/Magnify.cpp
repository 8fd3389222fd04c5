// The per-thread magnifier and the logical/device conversions.
#include <cmath>
#include <cstdint>
#include <optional>

#include "base/FloatToInteger.h"
#include "ulogui/Magnify.h"

namespace ulogui {
namespace magnify {

float globalMagnifierValue = -2.0f;
bool bPerscreenMagnify = false;
bool bFineRenderOnRetinaScreens = false;

namespace {

constexpr float kUnsetMagnifier = -2.0f;

bool magnifyPhysicalDisplay = false;

int RoundToDevice(float v) {
    return base::SaturatingTruncate(std::floor(v + 0.5f));
}

int Scale(int v, float m) {
    return RoundToDevice(static_cast<float>(v) * m);
}

int Unscale(int v, float m) {
    return RoundToDevice(static_cast<float>(v) / m);
}

int ClampToInt(int64_t v) {
    return v > INT32_MAX ? INT32_MAX : v < INT32_MIN ? INT32_MIN : static_cast<int>(v);
}

// Scales origin and size separately and rebuilds the far edges from them, so that equal sizes stay
// equal wherever the rectangles lie.
template <typename Convert>
void ConvertRect(ULORect& r, float m, Convert convert) {
    const int64_t w = static_cast<int64_t>(r.right) - r.left;
    const int64_t h = static_cast<int64_t>(r.bottom) - r.top;
    r.left = convert(r.left, m);
    r.top = convert(r.top, m);
    r.right = ClampToInt(static_cast<int64_t>(r.left) + convert(ClampToInt(w), m));
    r.bottom = ClampToInt(static_cast<int64_t>(r.top) + convert(ClampToInt(h), m));
}

}  // namespace

float& GetMagnifier() {
    // Each thread owns its factor, taken from the global value on first use and gone with the thread.
    thread_local std::optional<float> factor;
    if (!factor) {
        const float global = globalMagnifierValue;
        factor = global != kUnsetMagnifier ? global : 1.0f;
    }
    return *factor;
}

void MagnifyPhysicalDisplay(bool magnify) {
    magnifyPhysicalDisplay = magnify;
}

bool MagnifyPhysicalDisplay() {
    return magnifyPhysicalDisplay;
}

bool MagnifyOpenGLDisplay() {
    return true;
}

bool MagnifyRenderOnRetinaScreens() {
    return bFineRenderOnRetinaScreens;
}

void DoMagnify(int& a, int& b, bool apply) {
    const float m = GetMagnifier();
    if (apply) {
        a = Scale(a, m);
        b = Scale(b, m);
    }
}

void DoMagnify(int& a, int& b, int& c, int& d, bool apply) {
    const float m = GetMagnifier();
    if (apply) {
        a = Scale(a, m);
        b = Scale(b, m);
        c = Scale(c, m);
        d = Scale(d, m);
    }
}

void DoMagnify(ULOPoint& p, bool apply) {
    DoMagnify(p.x, p.y, apply);
}

void DoMagnify(ULOSize& s, bool apply) {
    DoMagnify(s.cx, s.cy, apply);
}

void DoMagnify(ULORect& r, bool apply) {
    const float m = GetMagnifier();
    if (apply) {
        ConvertRect(r, m, Scale);
    }
}

void DoMagnify(float& a, bool apply) {
    const float m = GetMagnifier();
    if (apply) {
        a *= m;
    }
}

void DoMagnify(float& a, float& b, bool apply) {
    const float m = GetMagnifier();
    if (apply) {
        a *= m;
        b *= m;
    }
}

void DoMagnify(float& a, float& b, float& c, float& d, bool apply) {
    const float m = GetMagnifier();
    if (apply) {
        a *= m;
        b *= m;
        c *= m;
        d *= m;
    }
}

void DoMagnify(double& a, bool apply) {
    const double m = GetMagnifier();
    if (apply) {
        a *= m;
    }
}

void DoMagnify(double& a, double& b, bool apply) {
    const double m = GetMagnifier();
    if (apply) {
        a *= m;
        b *= m;
    }
}

void DoMagnify(ULOPointf& p, bool apply) {
    DoMagnify(p.x, p.y, apply);
}

void UndoMagnify(int& a, int& b, bool apply) {
    const float m = GetMagnifier();
    if (apply) {
        a = Unscale(a, m);
        b = Unscale(b, m);
    }
}

void UndoMagnify(int& a, int& b, int& c, int& d, bool apply) {
    const float m = GetMagnifier();
    if (apply) {
        a = Unscale(a, m);
        b = Unscale(b, m);
        c = Unscale(c, m);
        d = Unscale(d, m);
    }
}

void UndoMagnify(ULOPoint& p, bool apply) {
    UndoMagnify(p.x, p.y, apply);
}

void UndoMagnify(ULOSize& s, bool apply) {
    UndoMagnify(s.cx, s.cy, apply);
}

void UndoMagnify(ULORect& r, bool apply) {
    const float m = GetMagnifier();
    if (apply) {
        ConvertRect(r, m, Unscale);
    }
}

void UndoMagnify(float& a, bool apply) {
    const float m = GetMagnifier();
    if (apply) {
        a /= m;
    }
}

void UndoMagnify(float& a, float& b, bool apply) {
    const float m = GetMagnifier();
    if (apply) {
        a /= m;
        b /= m;
    }
}

void UndoMagnify(float& a, float& b, float& c, float& d, bool apply) {
    const float m = GetMagnifier();
    if (apply) {
        a /= m;
        b /= m;
        c /= m;
        d /= m;
    }
}

void UndoMagnify(double& a, bool apply) {
    const double m = GetMagnifier();
    if (apply) {
        a /= m;
    }
}

void UndoMagnify(double& a, double& b, bool apply) {
    const double m = GetMagnifier();
    if (apply) {
        a /= m;
        b /= m;
    }
}

void UndoMagnify(ULOPointf& p, bool apply) {
    UndoMagnify(p.x, p.y, apply);
}

}  // namespace magnify
}  // namespace ulogui
