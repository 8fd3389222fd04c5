#include "ulogui/GUIMath.h"

#include <gtest/gtest.h>

#include <boost/math/policies/error_handling.hpp>
#include <climits>
#include <cmath>
#include <limits>
#include <tuple>

namespace {

const float kHalfPi = 1.57079637f;

TEST(GUIMathTest, BitCounting) {
    // Negative values count the bits of their 32-bit pattern (and the calls return).
    const std::tuple<int, int, int> cases[] = {
        {0, 0, -1},  {1, 1, 0},   {0x55, 4, 0},     {6, 2, 1},           {8, 1, 3},
        {-2, 31, 1}, {-1, 32, 0}, {INT_MIN, 1, 31}, {0x7FFFFFFF, 31, 0}, {0x40000000, 1, 30}};
    for (auto [value, ones, lowest] : cases) {
        EXPECT_EQ(ULOGUIMath::CountOneBits(value), ones) << value;
        EXPECT_EQ(ULOGUIMath::GetFirstLEOneBit(value), lowest) << value;
    }
}

TEST(GUIMathTest, ClampingValuesSizesAndRectangles) {
    int v = 5;
    EXPECT_TRUE(ULOGUIMath::ResizeAccordingMax(&v, 3));
    EXPECT_FALSE(ULOGUIMath::ResizeAccordingMax(&v, 3));  // equal is not above
    EXPECT_EQ(v, 3);
    double d = 2.5, nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(ULOGUIMath::ResizeAccordingMax(&d, 1.25));
    EXPECT_EQ(d, 1.25);
    EXPECT_FALSE(ULOGUIMath::ResizeAccordingMax(&nan, 1.0));

    // A size is only tested, never changed; a rectangle's right edge takes top + height.
    const ULOSize max(100, 100);
    const std::tuple<ULOSize, bool> sizes[] = {{ULOSize(200, 100), true},
                                               {ULOSize(50, 150), true},
                                               {ULOSize(100, 100), false},
                                               {ULOSize(200, 300), true}};
    for (auto [size, over] : sizes) {
        const ULOSize before = size;
        EXPECT_EQ(ULOGUIMath::ResizeAccordingMax(&size, max), over) << size.cx << "x" << size.cy;
        EXPECT_EQ(size, before);
    }
    ULOSize zeroWidth(0, 5);  // a negative maximum width divides by zero: an answer, no trap
    EXPECT_TRUE(ULOGUIMath::ResizeAccordingMax(&zeroWidth, ULOSize(-1, 100)));
    const std::tuple<ULORect, bool, ULORect> rects[] = {
        {ULORect(10, 20, 210, 120), true, ULORect(10, 20, 120, 120)},
        {ULORect(0, 5, 50, 155), true, ULORect(0, 5, 155, 155)},
        {ULORect(-50, -50, 50, 50), false, ULORect(-50, -50, 50, 50)}};
    for (auto [r, over, expected] : rects) {
        EXPECT_EQ(ULOGUIMath::ResizeAccordingMax(&r, max), over);
        EXPECT_EQ(r, expected) << r.left << "," << r.top << "," << r.right << "," << r.bottom;
    }
}

TEST(GUIMathTest, IntegerRotationIsATrueRotationAndDoubleRotationIsSheared) {
    const std::tuple<ULOPoint, ULOPoint, float, ULOPoint> cases[] = {
        {ULOPoint(1, 0), ULOPoint(0, 0), kHalfPi, ULOPoint(0, 1)},
        {ULOPoint(13, 21), ULOPoint(10, 20), kHalfPi, ULOPoint(9, 23)},  // (3, 1) about the centre -> (-1, 3)
        {ULOPoint(3, 2), ULOPoint(1, 1), 3.14159274f, ULOPoint(-1, 0)},
        {ULOPoint(7, -4), ULOPoint(100, 100), 0.0f, ULOPoint(7, -4)}};
    for (auto [p, centre, angle, expected] : cases) {
        ULOGUIMath::RotatePoint(&p, centre, angle);
        EXPECT_EQ(p, expected) << p.x << "," << p.y;
    }
    ULOPoint huge(INT_MAX, 5);  // INT_MAX becomes 2^31 in single precision
    EXPECT_THROW(ULOGUIMath::RotatePoint(&huge, ULOPoint(0, 0), 0.0f), boost::math::rounding_error);
    EXPECT_EQ(huge, ULOPoint(INT_MAX, 5));
    // The new y is computed from the new x, not the old one; cos and sin are single precision:
    // cosf of the float nearest pi/2 is -4.371139e-8.
    const std::tuple<double, double, ULOPoint, double, double> sheared[] = {
        {1.0, 0.0, ULOPoint(0, 0), 0.0, 0.0},  // a true rotation would give y = 1
        {0.0, 1.0, ULOPoint(0, 0), -1.0, -1.0},
        {11.0, 21.0, ULOPoint(10, 20), 9.0, 19.0}};
    for (auto [x, y, centre, ex, ey] : sheared) {
        ULOGUIMath::RotatePoint(&x, &y, centre, kHalfPi);
        EXPECT_NEAR(x, ex, 1e-6) << ex;
        EXPECT_NEAR(y, ey, 1e-6) << ey;
    }
    double x = 1e8, y = 0.0;
    ULOGUIMath::RotatePoint(&x, &y, ULOPoint(0, 0), kHalfPi);
    EXPECT_NEAR(x, static_cast<double>(std::cos(kHalfPi)) * 1e8, 1e-9);
}

}  // namespace
