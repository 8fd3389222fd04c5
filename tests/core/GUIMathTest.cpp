#include <gtest/gtest.h>

#include <boost/math/policies/error_handling.hpp>
#include <climits>
#include <cmath>
#include <limits>

#include "ulogui/GUIMath.h"

namespace {

const float kHalfPi = 1.57079637f;

TEST(GUIMathTest, BitCounting) {
    EXPECT_EQ(ULOGUIMath::CountOneBits(0), 0);
    EXPECT_EQ(ULOGUIMath::CountOneBits(1), 1);
    EXPECT_EQ(ULOGUIMath::CountOneBits(0x55), 4);
    EXPECT_EQ(ULOGUIMath::CountOneBits(0x7FFFFFFF), 31);
    // Negative values: the bits of the 32-bit pattern (and the call returns).
    EXPECT_EQ(ULOGUIMath::CountOneBits(-1), 32);
    EXPECT_EQ(ULOGUIMath::CountOneBits(INT_MIN), 1);

    EXPECT_EQ(ULOGUIMath::GetFirstLEOneBit(0), -1);
    EXPECT_EQ(ULOGUIMath::GetFirstLEOneBit(1), 0);
    EXPECT_EQ(ULOGUIMath::GetFirstLEOneBit(6), 1);
    EXPECT_EQ(ULOGUIMath::GetFirstLEOneBit(8), 3);
    EXPECT_EQ(ULOGUIMath::GetFirstLEOneBit(0x40000000), 30);
    EXPECT_EQ(ULOGUIMath::GetFirstLEOneBit(INT_MIN), 31);
    EXPECT_EQ(ULOGUIMath::GetFirstLEOneBit(-2), 1);
}

TEST(GUIMathTest, ClampingValues) {
    int v = 5;
    EXPECT_TRUE(ULOGUIMath::ResizeAccordingMax(&v, 3));
    EXPECT_EQ(v, 3);
    EXPECT_FALSE(ULOGUIMath::ResizeAccordingMax(&v, 3));  // equal is not above
    EXPECT_FALSE(ULOGUIMath::ResizeAccordingMax(&v, 10));
    EXPECT_EQ(v, 3);
    double d = 2.5;
    EXPECT_TRUE(ULOGUIMath::ResizeAccordingMax(&d, 1.25));
    EXPECT_EQ(d, 1.25);
    double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(ULOGUIMath::ResizeAccordingMax(&nan, 1.0));
    EXPECT_TRUE(std::isnan(nan));
}

TEST(GUIMathTest, SizeTestLeavesTheSize) {
    const ULOSize max(100, 100);
    ULOSize wide(200, 100);
    EXPECT_TRUE(ULOGUIMath::ResizeAccordingMax(&wide, max));
    EXPECT_EQ(wide, ULOSize(200, 100));
    ULOSize tall(50, 150);
    EXPECT_TRUE(ULOGUIMath::ResizeAccordingMax(&tall, max));
    EXPECT_EQ(tall, ULOSize(50, 150));
    ULOSize fits(100, 100);
    EXPECT_FALSE(ULOGUIMath::ResizeAccordingMax(&fits, max));
    ULOSize both(200, 300);  // scaled to 100 wide it is still 150 tall
    EXPECT_TRUE(ULOGUIMath::ResizeAccordingMax(&both, max));
    ULOSize zeroWidth(0, 5);  // a negative maximum width divides by zero: an answer, no trap
    EXPECT_TRUE(ULOGUIMath::ResizeAccordingMax(&zeroWidth, ULOSize(-1, 100)));
}

TEST(GUIMathTest, RectangleTestMovesRightToBottom) {
    const ULOSize max(100, 100);
    ULORect r(10, 20, 210, 120);
    EXPECT_TRUE(ULOGUIMath::ResizeAccordingMax(&r, max));
    EXPECT_EQ(r, ULORect(10, 20, 120, 120));  // right takes top + height
    ULORect tall(0, 5, 50, 155);
    EXPECT_TRUE(ULOGUIMath::ResizeAccordingMax(&tall, max));
    EXPECT_EQ(tall, ULORect(0, 5, 155, 155));
    ULORect fits(-50, -50, 50, 50);
    EXPECT_FALSE(ULOGUIMath::ResizeAccordingMax(&fits, max));
    EXPECT_EQ(fits, ULORect(-50, -50, 50, 50));
}

TEST(GUIMathTest, IntegerRotationIsATrueRotation) {
    ULOPoint p(1, 0);
    ULOGUIMath::RotatePoint(&p, ULOPoint(0, 0), kHalfPi);
    EXPECT_EQ(p, ULOPoint(0, 1));
    ULOPoint q(13, 21);
    ULOGUIMath::RotatePoint(&q, ULOPoint(10, 20), kHalfPi);  // (3, 1) about the centre -> (-1, 3)
    EXPECT_EQ(q, ULOPoint(9, 23));
    ULOPoint r(3, 2);
    ULOGUIMath::RotatePoint(&r, ULOPoint(1, 1), 3.14159274f);
    EXPECT_EQ(r, ULOPoint(-1, 0));
    ULOPoint s(7, -4);
    ULOGUIMath::RotatePoint(&s, ULOPoint(100, 100), 0.0f);
    EXPECT_EQ(s, ULOPoint(7, -4));
}

TEST(GUIMathTest, IntegerRotationOutOfRangeRaisesRoundingError) {
    ULOPoint p(INT_MAX, 5);  // INT_MAX becomes 2^31 in single precision
    EXPECT_THROW(ULOGUIMath::RotatePoint(&p, ULOPoint(0, 0), 0.0f), boost::math::rounding_error);
    EXPECT_EQ(p, ULOPoint(INT_MAX, 5));
}

TEST(GUIMathTest, DoubleRotationIsSheared) {
    double x = 1.0, y = 0.0;
    ULOGUIMath::RotatePoint(&x, &y, ULOPoint(0, 0), kHalfPi);
    EXPECT_NEAR(x, 0.0, 1e-6);  // cos(pi/2)
    EXPECT_NEAR(y, 0.0, 1e-6);  // sin(pi/2) * the new x, not 1
    x = 0.0;
    y = 1.0;
    ULOGUIMath::RotatePoint(&x, &y, ULOPoint(0, 0), kHalfPi);
    EXPECT_NEAR(x, -1.0, 1e-6);
    EXPECT_NEAR(y, -1.0, 1e-6);  // a true rotation would give 0
    x = 11.0;
    y = 21.0;
    ULOGUIMath::RotatePoint(&x, &y, ULOPoint(10, 20), kHalfPi);
    EXPECT_NEAR(x, 9.0, 1e-6);
    EXPECT_NEAR(y, 19.0, 1e-6);
    // The cosine and sine are single precision: cosf of the float nearest pi/2 is -4.371139e-8.
    x = 1e8;
    y = 0.0;
    ULOGUIMath::RotatePoint(&x, &y, ULOPoint(0, 0), kHalfPi);
    EXPECT_NEAR(x, static_cast<double>(std::cos(kHalfPi)) * 1e8, 1e-9);
}

}  // namespace
