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

// Every signature exists twice over the same values: DoMagnify to device pixels, UndoMagnify back.
#define ULO_MAGNIFY_BOTH_WAYS(Parameters, Values) \
    void DoMagnify Parameters {                   \
        ConvertInPlace<ToDeviceUnits> Values;     \
    }                                             \
    void UndoMagnify Parameters {                 \
        ConvertInPlace<ToLogicalUnits> Values;    \
    }

ULO_MAGNIFY_BOTH_WAYS((int& a, int& b, bool apply), (apply, a, b))
ULO_MAGNIFY_BOTH_WAYS((int& a, int& b, int& c, int& d, bool apply), (apply, a, b, c, d))
ULO_MAGNIFY_BOTH_WAYS((ULOPoint & p, bool apply), (apply, p.x, p.y))
ULO_MAGNIFY_BOTH_WAYS((ULOSize & s, bool apply), (apply, s.cx, s.cy))
ULO_MAGNIFY_BOTH_WAYS((ULORect & r, bool apply), (apply, r))
ULO_MAGNIFY_BOTH_WAYS((float& a, bool apply), (apply, a))
ULO_MAGNIFY_BOTH_WAYS((float& a, float& b, bool apply), (apply, a, b))
ULO_MAGNIFY_BOTH_WAYS((float& a, float& b, float& c, float& d, bool apply), (apply, a, b, c, d))
ULO_MAGNIFY_BOTH_WAYS((double& a, bool apply), (apply, a))
ULO_MAGNIFY_BOTH_WAYS((double& a, double& b, bool apply), (apply, a, b))
ULO_MAGNIFY_BOTH_WAYS((ULOPointf & p, bool apply), (apply, p.x, p.y))

#undef ULO_MAGNIFY_BOTH_WAYS

}  // namespace magnify
}  // namespace ulogui
