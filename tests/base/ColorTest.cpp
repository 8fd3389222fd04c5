#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <tuple>

#include "ulogui/Color.h"

namespace {

using Triple = std::tuple<int, int, int>;

Triple Rgb(const CLR& c) {
    return Triple(c.red, c.green, c.blue);
}

TEST(ColorTest, ConstructionKeepsLowBitsAndLiesBlueGreenRed) {
    EXPECT_EQ(Rgb(CLR(300, 0, 0)), Triple(44, 0, 0));
    EXPECT_EQ(Rgb(CLR(-1, 256, 511)), Triple(255, 0, 255));
    const CLR c(1, 2, 3);
    unsigned char bytes[3];
    std::memcpy(bytes, &c, 3);
    EXPECT_EQ(Triple(bytes[2], bytes[1], bytes[0]), Triple(1, 2, 3));  // blue first, like a pixel
    EXPECT_EQ(Rgb(CLR::CLR_RED), Triple(255, 0, 0));
    EXPECT_FALSE(CLR(12, 34, 56) == CLR(12, 34, 57));
}

// Every pair of component values, with different values in each channel so that a mixed-up channel
// shows.
TEST(ColorTest, WrappingAndSaturatingArithmeticOverAllBytePairs) {
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            const CLR x(a, b, 255 - a), y(b, a, (b * 7) & 255);
            const int s[3] = {a + b, b + a, 255 - a + ((b * 7) & 255)};
            const int d[3] = {a - b, b - a, 255 - a - ((b * 7) & 255)};
            CLR sumInPlace = x, diffInPlace = x, safeSum = x, safeDiff = x;
            sumInPlace += y;
            diffInPlace -= y;
            safeSum.SafeAdd(y);
            safeDiff.SafeSubtract(y);
            ASSERT_EQ(Rgb(CLR(x) + y), Triple(s[0] & 255, s[1] & 255, s[2] & 255)) << a << "," << b;
            ASSERT_EQ(Rgb(CLR(x) - y), Triple(d[0] & 255, d[1] & 255, d[2] & 255)) << a << "," << b;
            ASSERT_EQ(Rgb(sumInPlace), Rgb(CLR(x) + y));
            ASSERT_EQ(Rgb(diffInPlace), Rgb(CLR(x) - y));
            ASSERT_EQ(Rgb(safeSum), Triple(std::min(s[0], 255), std::min(s[1], 255), std::min(s[2], 255)));
            ASSERT_EQ(Rgb(safeDiff), Triple(std::max(d[0], 0), std::max(d[1], 0), std::max(d[2], 0)));
        }
    }
}

TEST(ColorTest, ScalingAndLerpTruncateAndWrap) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::tuple<CLR, float, Triple> scaled[] = {
        {CLR(200, 100, 3), 2.0f, {144, 200, 6}},  // 400 wraps to 144
        {CLR(3, 10, 255), 0.99f, {2, 9, 252}},    // truncation, not rounding
        {CLR(10, 0, 1), -1.0f, {246, 0, 255}},    // -10 and -1 keep their low 8 bits
        {CLR(10, 20, 30), nan, {0, 0, 0}},        // no defined product: 0
    };
    for (auto [c, factor, expected] : scaled) {
        c *= factor;
        EXPECT_EQ(Rgb(c), expected) << factor;
    }
    // The signed difference, not clamped.
    const CLR a(200, 0, 100), b(100, 255, 150);
    const std::pair<float, Triple> lerped[] = {{0.0f, {200, 0, 100}},   {1.0f, {100, 255, 150}},
                                               {0.5f, {150, 127, 125}}, {0.999f, {100, 254, 149}},
                                               {2.0f, {0, 254, 200}},  // 200 - 200, 510 wraps, 100 + 100
                                               {-1.0f, {44, 1, 50}}};  // 300 wraps, -255 wraps, 100 - 50
    for (const auto& [t, expected] : lerped) {
        EXPECT_EQ(Rgb(CLR::Lerp(a, b, t)), expected) << t;
    }
}

// Pure red gets hue exactly 1, not 0; (255, 128, 0) passes 1 and is brought back once; a lightness
// above one half takes the other saturation formula.
TEST(ColorTest, HLSOfGreysPrimariesAndMixedHuesAndBack) {
    const std::tuple<CLR, float, float, float> cases[] = {
        {CLR(0, 0, 0), 0, 0, 0},
        {CLR(128, 128, 128), 0, 128 / 255.0f, 0},
        {CLR(255, 255, 255), 0, 1, 0},
        {CLR(255, 0, 0), 1, 0.5f, 1},
        {CLR(0, 255, 0), 1 / 3.0f, 0.5f, 1},
        {CLR(0, 0, 255), 2 / 3.0f, 0.5f, 1},
        {CLR(255, 128, 0), 128 / 255.0f / 6, 0.5f, 1},
        {CLR(128, 64, 64), 1, 192 / 510.0f, 64 / 192.0f},
        {CLR(200, 100, 100), 1, 300 / 510.0f, 100 / 210.0f}};
    for (const auto& [c, h, l, s] : cases) {
        float gotH = -1, gotL = -1, gotS = -1;
        c.ToHLS(gotH, gotL, gotS);
        EXPECT_LT(std::max({std::abs(gotH - h), std::abs(gotL - l), std::abs(gotS - s)}), 1e-6)
            << gotH << " " << gotL << " " << gotS << " for " << testing::PrintToString(Rgb(c));
    }
    const std::tuple<float, float, float, Triple> fromHls[] = {
        {0.3f, 1.0f, 0.0f, {255, 255, 255}},  {0.0f, 0.5f, 1.0f, {255, 0, 0}},
        {1.0f, 0.5f, 1.0f, {255, 0, 0}},      {1 / 3.0f, 0.5f, 1.0f, {0, 255, 0}},
        {0.0f, 0.5f, 0.5f, {191, 63, 63}},     // m2 = 0.75, m1 = 0.25
        {0.0f, 0.75f, 0.5f, {223, 159, 159}},  // m2 = 0.875, m1 = 0.625
    };
    for (const auto& [h, l, s, expected] : fromHls) {
        CLR c(1, 2, 3);
        c.FromHLS(h, l, s);
        EXPECT_EQ(Rgb(c), expected) << h << " " << l << " " << s;
    }
    // Through HLS and back loses at most the truncation of one step.
    for (int i = 0; i < 16 * 16 * 16; ++i) {
        const int r = i / 256 * 17, g = i / 16 % 16 * 17, b = i % 16 * 17;
        float h, l, s;
        CLR(r, g, b).ToHLS(h, l, s);
        CLR back;
        back.FromHLS(h, l, s);
        ASSERT_LE(std::max({std::abs(back.red - r), std::abs(back.green - g), std::abs(back.blue - b)}), 1)
            << r << "," << g << "," << b;
    }
}

TEST(ColorTest, DisabledAndHighlightedFollowTheirTables) {
    // Empty tables (as before the host fills them): black highlight, scaled disabled.
    EXPECT_EQ(Rgb(CLR::MakeHighlightedColor(CLR(100, 200, 50))), Triple(0, 0, 0));
    EXPECT_EQ(Rgb(CLR::MakeDisabledColor(CLR(100, 200, 50))), Triple(40, 80, 20));
    for (int i = 0; i < 256; ++i) {
        DISABLED_CLR_COMPONENT[i] = static_cast<unsigned char>(255 - i);
        HIGHLIGHT_CLR_COMPONENT[i] = static_cast<unsigned char>(i / 2 + 1);
    }
    // red: T[200] * 0.6 + 40 = 73; green: T[200] * 0.6 + 80 = 113; blue: T[113] (the new green)
    // * 0.6 + 20 = 105.2. Own entries would give 133 and 143.
    EXPECT_EQ(Rgb(CLR::MakeDisabledColor(CLR(100, 200, 50))), Triple(73, 113, 105));
    EXPECT_EQ(Rgb(CLR::MakeHighlightedColor(CLR(100, 200, 50))), Triple(51, 101, 26));
    std::fill(std::begin(DISABLED_CLR_COMPONENT), std::end(DISABLED_CLR_COMPONENT), 0);
    std::fill(std::begin(HIGHLIGHT_CLR_COMPONENT), std::end(HIGHLIGHT_CLR_COMPONENT), 0);
}

TEST(ColorTest, MoreIntenseRaisesLowSaturationsAlongTheCurve) {
    // s below the limit 0.8 follows -4/3 s^2 + 31/15 s; lightness 0 is left alone.
    const std::tuple<float, float, float> curve[] = {
        {0.4f, 0.5f, 0.7f}, {0.4f, 0.25f, 0.43333333f}, {0.4f, 0.0f, 0.0f}, {0.4f, 0.8f, 0.8f},
        {0.4f, 0.9f, 0.9f}, {0.4f, 1.0f, 1.0f},         {0.0f, 0.5f, 0.5f}};
    for (auto [l, s, expected] : curve) {
        float h = 0.3f;
        CLR::MakeMoreIntenseColor(h, l, s);
        EXPECT_NEAR(s, expected, 1e-5) << "l " << l << " expected " << expected;
    }
    // Saturation 1, lightness 0 and a grey stay as they are.
    for (const CLR& c : {CLR(255, 0, 0), CLR(0, 0, 0), CLR(128, 128, 128)}) {
        EXPECT_EQ(Rgb(CLR::MakeMoreIntenseColor(c)), Rgb(c));
    }
    // (191, 63, 63): l = 254/510, s = 128/254 -> f(s) = 0.70283; rebuilt with hue 1.0 as (216, 37, 37).
    const CLR c = CLR::MakeMoreIntenseColor(CLR(191, 63, 63));
    EXPECT_LE(std::max({std::abs(c.red - 216), std::abs(c.green - 37), std::abs(c.blue - 37)}), 1);
}

}  // namespace
