#pragma once
// The points of DrawArc's circles, a run of indices at a time. A circle of radius r around (cx, cy)
// sampled at n points has point k at the single-precision angle a = k / n * 2pi (2pi = 6.2831855) and
// coordinates floor(cos(a) * r + cx + 0.5), floor(sin(a) * r + cy + 0.5) in single precision; point 0
// is (floor(cx + r + 0.5), cy).
//
// cos and sin of the single-precision angle are evaluated in double precision and rounded to single,
// which gives the correctly rounded value but in the rarest ties, with no branch and no library call,
// so that the loop over a run is vectorised.
#include <cmath>
#include <cstdint>

#include "base/MagnifyRounding.h"
#include "ulogui/Geometry.h"

namespace ulogui {
namespace surface {

constexpr float kArcTwoPi = 6.2831855f;

// floor(v + 0.5) as base::RoundToPixel gives it (saturating, NaN 0), without a branch.
inline int RoundHalfUp(float v) {
    const float f = v + 0.5f;
    const float held = f > -2147483648.0f ? (f < 2147483520.0f ? f : 2147483520.0f) : -2147483648.0f;
    const int t = static_cast<int>(held);
    const int floored = t - (static_cast<float>(t) > held ? 1 : 0);
    const int saturated = f >= 2147483648.0f ? 2147483647 : floored;
    return f == f ? saturated : 0;
}

// sin and cos of a in 0 .. 2pi. The angle is reduced by a multiple q of pi/2 (pi/2 in two parts, so the
// reduction is exact to double precision) to |r| <= pi/4, where Taylor polynomials up to r^15 and r^16
// are accurate to about 1e-16; the quadrant q then swaps and negates them. Comparisons instead of
// integer arithmetic keep the whole of it in vector lanes of doubles.
inline void SinCos(float angle, float& sine, float& cosine) {
    const double x = angle;
    // Rounded to the nearest integer by the 1.5 * 2^52 trick (exact below 2^51), without a library call.
    const double q = (x * 0.63661977236758134308 + 6755399441055744.0) - 6755399441055744.0;
    const double r = (x - q * 1.5707963267948966) - q * 6.123233995736766e-17;
    const double r2 = r * r;
    const double s =
        r + r * r2 *
                (-1.0 / 6 +
                 r2 * (1.0 / 120 +
                       r2 * (-1.0 / 5040 + r2 * (1.0 / 362880 + r2 * (-1.0 / 39916800 +
                                                                      r2 * (1.0 / 6227020800 +
                                                                            r2 * (-1.0 / 1307674368000)))))));
    const double c =
        1.0 +
        r2 * (-1.0 / 2 +
              r2 * (1.0 / 24 + r2 * (-1.0 / 720 +
                                     r2 * (1.0 / 40320 + r2 * (-1.0 / 3628800 +
                                                               r2 * (1.0 / 479001600 +
                                                                     r2 * (-1.0 / 87178291200 +
                                                                           r2 * (1.0 / 20922789888000))))))));
    // q is 0 .. 4 here (4 is a full turn, quadrant 0).
    const bool odd = q == 1.0 || q == 3.0;
    const double sinA = odd ? c : s;
    const double cosA = odd ? s : c;
    sine = static_cast<float>(q == 2.0 || q == 3.0 ? -sinA : sinA);
    cosine = static_cast<float>(q == 1.0 || q == 2.0 ? -cosA : cosA);
}

// Up to kRun + 1 consecutive points of one circle, with their angles.
class CircleSamples {
public:
    static constexpr int kRun = 128;

    CircleSamples(ULOPoint centre, float r, std::int64_t n)
        : cx_(static_cast<float>(centre.x)),
          cy_(static_cast<float>(centre.y)),
          cy0_(centre.y),
          r_(r),
          n_(n) {}

    // Points first .. first + count - 1 (count at most kRun + 1), for first + count up to n + 1.
    void Sample(std::int64_t first, int count) {
        const float n = static_cast<float>(n_);
        const double base = static_cast<double>(first);  // indices stay exact in doubles
        for (int j = 0; j < count; ++j) {
            const float a = static_cast<float>(base + j) / n * kArcTwoPi;
            float s;
            float c;
            SinCos(a, s, c);
            angle[j] = a;
            x[j] = RoundHalfUp(c * r_ + cx_);
            y[j] = RoundHalfUp(s * r_ + cy_);
        }
        if (first == 0 && count > 0) {
            x[0] = RoundHalfUp(cx_ + r_);
            y[0] = cy0_;
        }
    }

    // The smallest rectangle holding the first `count` points.
    ULORect Bounds(int count) const {
        int left = x[0], right = x[0], top = y[0], bottom = y[0];
        for (int j = 1; j < count; ++j) {
            left = x[j] < left ? x[j] : left;
            right = x[j] > right ? x[j] : right;
            top = y[j] < top ? y[j] : top;
            bottom = y[j] > bottom ? y[j] : bottom;
        }
        return ULORect(left, top, right + (right < INT32_MAX ? 1 : 0), bottom + (bottom < INT32_MAX ? 1 : 0));
    }

    float angle[kRun + 1];
    int x[kRun + 1];
    int y[kRun + 1];

private:
    float cx_;
    float cy_;
    int cy0_;
    float r_;
    std::int64_t n_;
};

}  // namespace surface
}  // namespace ulogui
