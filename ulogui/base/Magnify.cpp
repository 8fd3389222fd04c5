// The per-thread magnifier and the logical/device conversions.
#include <optional>

#include "base/MagnifyRounding.h"
#include "ulogui/Magnify.h"

namespace ulogui {
namespace magnify {

float globalMagnifierValue = -2.0f;
bool bPerscreenMagnify = false;
bool bFineRenderOnRetinaScreens = false;

namespace {

constexpr float kUnsetMagnifier = -2.0f;

bool magnifyPhysicalDisplay = false;

struct ToDeviceUnits {
    template <typename V>
    V operator()(const V& v, float m) const {
        return base::ToDevice(v, m);
    }
};

struct ToLogicalUnits {
    template <typename V>
    V operator()(const V& v, float m) const {
        return base::ToLogical(v, m);
    }
};

// Every overload fetches the calling thread's factor first, creating it if needed, and converts its
// arguments in place only when asked to.
template <typename Convert, typename... Values>
void ConvertInPlace(bool apply, Values&... values) {
    const float m = GetMagnifier();
    if (apply) {
        ((values = Convert()(values, m)), ...);
    }
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
    ConvertInPlace<ToDeviceUnits>(apply, a, b);
}
void DoMagnify(int& a, int& b, int& c, int& d, bool apply) {
    ConvertInPlace<ToDeviceUnits>(apply, a, b, c, d);
}
void DoMagnify(ULOPoint& p, bool apply) {
    ConvertInPlace<ToDeviceUnits>(apply, p.x, p.y);
}
void DoMagnify(ULOSize& s, bool apply) {
    ConvertInPlace<ToDeviceUnits>(apply, s.cx, s.cy);
}
void DoMagnify(ULORect& r, bool apply) {
    ConvertInPlace<ToDeviceUnits>(apply, r);
}
void DoMagnify(float& a, bool apply) {
    ConvertInPlace<ToDeviceUnits>(apply, a);
}
void DoMagnify(float& a, float& b, bool apply) {
    ConvertInPlace<ToDeviceUnits>(apply, a, b);
}
void DoMagnify(float& a, float& b, float& c, float& d, bool apply) {
    ConvertInPlace<ToDeviceUnits>(apply, a, b, c, d);
}
void DoMagnify(double& a, bool apply) {
    ConvertInPlace<ToDeviceUnits>(apply, a);
}
void DoMagnify(double& a, double& b, bool apply) {
    ConvertInPlace<ToDeviceUnits>(apply, a, b);
}
void DoMagnify(ULOPointf& p, bool apply) {
    ConvertInPlace<ToDeviceUnits>(apply, p.x, p.y);
}

void UndoMagnify(int& a, int& b, bool apply) {
    ConvertInPlace<ToLogicalUnits>(apply, a, b);
}
void UndoMagnify(int& a, int& b, int& c, int& d, bool apply) {
    ConvertInPlace<ToLogicalUnits>(apply, a, b, c, d);
}
void UndoMagnify(ULOPoint& p, bool apply) {
    ConvertInPlace<ToLogicalUnits>(apply, p.x, p.y);
}
void UndoMagnify(ULOSize& s, bool apply) {
    ConvertInPlace<ToLogicalUnits>(apply, s.cx, s.cy);
}
void UndoMagnify(ULORect& r, bool apply) {
    ConvertInPlace<ToLogicalUnits>(apply, r);
}
void UndoMagnify(float& a, bool apply) {
    ConvertInPlace<ToLogicalUnits>(apply, a);
}
void UndoMagnify(float& a, float& b, bool apply) {
    ConvertInPlace<ToLogicalUnits>(apply, a, b);
}
void UndoMagnify(float& a, float& b, float& c, float& d, bool apply) {
    ConvertInPlace<ToLogicalUnits>(apply, a, b, c, d);
}
void UndoMagnify(double& a, bool apply) {
    ConvertInPlace<ToLogicalUnits>(apply, a);
}
void UndoMagnify(double& a, double& b, bool apply) {
    ConvertInPlace<ToLogicalUnits>(apply, a, b);
}
void UndoMagnify(ULOPointf& p, bool apply) {
    ConvertInPlace<ToLogicalUnits>(apply, p.x, p.y);
}

}  // namespace magnify
}  // namespace ulogui
