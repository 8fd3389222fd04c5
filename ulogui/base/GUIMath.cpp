// Bit counting, clamping to a maximum and point rotation for the GUI and drawing code.
#include <cmath>
#include <cstdint>

#include <boost/math/special_functions/round.hpp>

#include "base/FloatToInteger.h"
#include "ulogui/GUIMath.h"

namespace ULOGUIMath {

namespace {

// Differences of coordinates wrap in 32 bits instead of overflowing.
int WrappingSub(int a, int b) {
    return static_cast<int>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

// The shared test of both box overloads: too wide, or too tall once scaled to the maximum width.
bool ExceedsMax(int w, int h, const ULOSize& max) {
    bool changed = false;
    int newH = h;
    if (w > max.cx) {
        changed = true;
        newH = ulogui::base::SaturatingTruncate(static_cast<float>(max.cx) / static_cast<float>(w) *
                                                static_cast<float>(h));
    }
    return newH > max.cy ? true : changed;
}

}  // namespace

int CountOneBits(int n) {
    // Shifting a negative value right arithmetically never reaches 0, so the bits are counted on the
    // unsigned pattern instead; for every non-negative n that is the same count.
    uint32_t bitsLeft = static_cast<uint32_t>(n);
    int count = 0;
    while (bitsLeft != 0) {
        count += static_cast<int>(bitsLeft & 1u);
        bitsLeft >>= 1;
    }
    return count;
}

int GetFirstLEOneBit(int n) {
    const uint32_t pattern = static_cast<uint32_t>(n);
    for (int bit = 0; bit < 32; ++bit) {
        if (pattern & (1u << bit)) {
            return bit;
        }
    }
    return -1;
}

bool ResizeAccordingMax(int* v, int max) {
    if (*v > max) {
        *v = max;
        return true;
    }
    return false;
}

bool ResizeAccordingMax(double* v, double max) {
    if (*v > max) {
        *v = max;
        return true;
    }
    return false;
}

bool ResizeAccordingMax(ULOSize* s, const ULOSize& max) {
    return ExceedsMax(s->cx, s->cy, max);
}

bool ResizeAccordingMax(ULORect* r, const ULOSize& max) {
    const int h = WrappingSub(r->bottom, r->top);
    const bool result = ExceedsMax(WrappingSub(r->right, r->left), h, max);
    if (result) {
        // top + height is the unchanged bottom edge: the right edge takes it, as callers expect.
        r->right = static_cast<int>(static_cast<uint32_t>(r->top) + static_cast<uint32_t>(h));
    }
    return result;
}

void RotatePoint(double* x, double* y, const ULOPoint& centre, float angle) {
    *x -= centre.x;
    *y -= centre.y;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    *x = c * *x - s * *y;
    // Uses the x just computed: a sheared rotation that callers depend on.
    *y = c * *y + s * *x;
    *x += centre.x;
    *y += centre.y;
}

void RotatePoint(ULOPoint* p, const ULOPoint& centre, float angle) {
    const float dx = static_cast<float>(WrappingSub(p->x, centre.x));
    const float dy = static_cast<float>(WrappingSub(p->y, centre.y));
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    const double x = static_cast<double>(dx * c - dy * s) + centre.x;
    const double y = static_cast<double>(dx * s + dy * c) + centre.y;
    // Both are rounded before either is stored, so a rounding error leaves the point as it was.
    const int rx = boost::math::iround(x);
    const int ry = boost::math::iround(y);
    p->x = rx;
    p->y = ry;
}

}  // namespace ULOGUIMath
