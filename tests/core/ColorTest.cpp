#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "ulogui/Color.h"

namespace {

void ExpectColour(const CLR& c, int r, int g, int b) {
    EXPECT_EQ(c.red, r);
    EXPECT_EQ(c.green, g);
    EXPECT_EQ(c.blue, b);
}

int Channel(const CLR& c, int index) {
    return index == 0 ? c.red : index == 1 ? c.green : c.blue;
}

// Fills the two effect tables for one test and empties them again afterwards, as the host would.
class DerivedColourTest : public ::testing::Test {
protected:
    void TearDown() override {
        std::fill(std::begin(DISABLED_CLR_COMPONENT), std::end(DISABLED_CLR_COMPONENT), 0);
        std::fill(std::begin(HIGHLIGHT_CLR_COMPONENT), std::end(HIGHLIGHT_CLR_COMPONENT), 0);
    }
};

TEST(ColorTest, ConstructionKeepsLowBitsAndLiesBlueGreenRed) {
    ExpectColour(CLR(300, 0, 0), 44, 0, 0);
    ExpectColour(CLR(-1, 256, 511), 255, 0, 255);
    const CLR c(1, 2, 3);
    unsigned char bytes[3];
    std::memcpy(bytes, &c, 3);
    EXPECT_EQ(bytes[0], 3);  // blue first, so a CLR matches the first three bytes of a pixel
    EXPECT_EQ(bytes[1], 2);
    EXPECT_EQ(bytes[2], 1);
    ExpectColour(CLR::CLR_WHITE, 255, 255, 255);
    ExpectColour(CLR::CLR_RED, 255, 0, 0);
    EXPECT_TRUE(CLR(12, 34, 56) == CLR(12, 34, 56));
    EXPECT_FALSE(CLR(12, 34, 56) == CLR(12, 34, 57));
    EXPECT_TRUE(CLR(0, 0, 0).IsValid());
}

// Every pair of component values, with different values in each channel so that a mixed-up channel
// shows.
TEST(ColorTest, WrappingAndSaturatingArithmeticOverAllBytePairs) {
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            const CLR x(a, b, 255 - a);
            const CLR y(b, a, (b * 7) & 255);
            const int xs[3] = {a, b, 255 - a};
            const int ys[3] = {b, a, (b * 7) & 255};
            CLR sum = CLR(x) + y;
            CLR diff = CLR(x) - y;
            CLR sumInPlace = x;
            sumInPlace += y;
            CLR diffInPlace = x;
            diffInPlace -= y;
            CLR safeSum = x;
            safeSum.SafeAdd(y);
            CLR safeDiff = x;
            safeDiff.SafeSubtract(y);
            for (int ch = 0; ch < 3; ++ch) {
                const int s = xs[ch] + ys[ch];
                const int d = xs[ch] - ys[ch];
                ASSERT_EQ(Channel(sum, ch), s & 255) << a << "," << b << " channel " << ch;
                ASSERT_EQ(Channel(diff, ch), d & 255) << a << "," << b << " channel " << ch;
                ASSERT_EQ(Channel(sumInPlace, ch), s & 255);
                ASSERT_EQ(Channel(diffInPlace, ch), d & 255);
                ASSERT_EQ(Channel(safeSum, ch), std::min(s, 255));
                ASSERT_EQ(Channel(safeDiff, ch), std::max(d, 0));
            }
        }
    }
}

TEST(ColorTest, ScalingTruncatesAndWraps) {
    CLR c(200, 100, 3);
    c *= 2.0f;
    ExpectColour(c, 144, 200, 6);  // 400 wraps to 144
    CLR d(3, 10, 255);
    d *= 0.99f;
    ExpectColour(d, 2, 9, 252);  // truncation, not rounding
    CLR e(10, 0, 1);
    e *= -1.0f;
    ExpectColour(e, 246, 0, 255);  // -10 and -1 keep their low 8 bits
    CLR f(10, 20, 30);
    f *= std::numeric_limits<float>::quiet_NaN();
    ExpectColour(f, 0, 0, 0);  // no defined product: 0
}

TEST(ColorTest, LerpHonoursSignedDifferenceAndDoesNotClamp) {
    const CLR a(200, 0, 100);
    const CLR b(100, 255, 150);
    ExpectColour(CLR::Lerp(a, b, 0.0f), 200, 0, 100);
    ExpectColour(CLR::Lerp(a, b, 1.0f), 100, 255, 150);
    ExpectColour(CLR::Lerp(a, b, 0.5f), 150, 127, 125);
    ExpectColour(CLR::Lerp(a, b, 2.0f), 0, 254, 200);      // 200 - 200, 510 wraps, 100 + 100
    ExpectColour(CLR::Lerp(a, b, -1.0f), 44, 1, 50);       // 300 wraps, -255 wraps, 100 - 50
    ExpectColour(CLR::Lerp(a, b, 0.999f), 100, 254, 149);  // truncated
}

TEST(ColorTest, ToHLSOfGreysPrimariesAndMixedHues) {
    float h, l, s;
    for (int v : {0, 1, 128, 254, 255}) {
        CLR(v, v, v).ToHLS(h, l, s);
        EXPECT_EQ(h, 0.0f) << v;
        EXPECT_EQ(s, 0.0f) << v;
        EXPECT_FLOAT_EQ(l, v / 255.0f) << v;
    }
    CLR(255, 0, 0).ToHLS(h, l, s);
    EXPECT_EQ(h, 1.0f);  // exactly 1, not wrapped to 0
    EXPECT_EQ(l, 0.5f);
    EXPECT_EQ(s, 1.0f);
    CLR(128, 64, 64).ToHLS(h, l, s);
    EXPECT_EQ(h, 1.0f);  // any red maximum with equal green and blue
    CLR(0, 255, 0).ToHLS(h, l, s);
    EXPECT_FLOAT_EQ(h, 1.0f / 3.0f);
    CLR(0, 0, 255).ToHLS(h, l, s);
    EXPECT_FLOAT_EQ(h, 2.0f / 3.0f);
    // Red maximum with green above blue passes 1 and is brought back once.
    CLR(255, 128, 0).ToHLS(h, l, s);
    EXPECT_NEAR(h, 128.0 / 255.0 / 6.0, 1e-6);
    // Lightness above one half uses the other saturation formula.
    CLR(200, 100, 100).ToHLS(h, l, s);
    EXPECT_FLOAT_EQ(l, 300.0f / 510.0f);
    EXPECT_FLOAT_EQ(s, 100.0f / 210.0f);
    CLR(100, 50, 50).ToHLS(h, l, s);
    EXPECT_FLOAT_EQ(s, 50.0f / 150.0f);
}

TEST(ColorTest, FromHLSKnownPointsAndRoundTrip) {
    CLR c(1, 2, 3);
    c.FromHLS(0.3f, 1.0f, 0.0f);
    ExpectColour(c, 255, 255, 255);
    c.FromHLS(0.0f, 0.5f, 1.0f);
    ExpectColour(c, 255, 0, 0);
    c.FromHLS(1.0f, 0.5f, 1.0f);  // the hue of pure red comes back as red
    ExpectColour(c, 255, 0, 0);
    c.FromHLS(1.0f / 3.0f, 0.5f, 1.0f);
    ExpectColour(c, 0, 255, 0);
    c.FromHLS(0.0f, 0.5f, 0.5f);  // m2 = 0.75, m1 = 0.25
    ExpectColour(c, 191, 63, 63);
    c.FromHLS(0.0f, 0.75f, 0.5f);  // m2 = 0.875, m1 = 0.625
    ExpectColour(c, 223, 159, 159);
    // Through HLS and back loses at most the truncation of one step.
    for (int r = 0; r < 256; r += 17) {
        for (int g = 0; g < 256; g += 17) {
            for (int b = 0; b < 256; b += 17) {
                float h, l, s;
                CLR(r, g, b).ToHLS(h, l, s);
                CLR back;
                back.FromHLS(h, l, s);
                ASSERT_NEAR(back.red, r, 1) << r << "," << g << "," << b;
                ASSERT_NEAR(back.green, g, 1) << r << "," << g << "," << b;
                ASSERT_NEAR(back.blue, b, 1) << r << "," << g << "," << b;
            }
        }
    }
}

TEST_F(DerivedColourTest, EmptyTablesGiveBlackHighlightAndScaledDisabled) {
    ExpectColour(CLR::MakeHighlightedColor(CLR(100, 200, 50)), 0, 0, 0);
    ExpectColour(CLR::MakeDisabledColor(CLR(100, 200, 50)), 40, 80, 20);
}

TEST_F(DerivedColourTest, DisabledFollowsTheGreenEntry) {
    for (int i = 0; i < 256; ++i) {
        DISABLED_CLR_COMPONENT[i] = static_cast<unsigned char>(255 - i);
    }
    const CLR original(100, 200, 50);
    const CLR disabled = CLR::MakeDisabledColor(original);
    ExpectColour(original, 100, 200, 50);  // the static form works on a copy
    // red: T[200] * 0.6 + 40 = 73; green: T[200] * 0.6 + 80 = 113;
    // blue: T[113] (the new green) * 0.6 + 20 = 105.2. Own entries would give 133 and 143.
    ExpectColour(disabled, 73, 113, 105);
    CLR inPlace = original;
    inPlace.MakeDisabledColor();
    EXPECT_TRUE(inPlace == disabled);
}

TEST_F(DerivedColourTest, HighlightReplacesEachComponent) {
    for (int i = 0; i < 256; ++i) {
        HIGHLIGHT_CLR_COMPONENT[i] = static_cast<unsigned char>(i / 2 + 1);
    }
    ExpectColour(CLR::MakeHighlightedColor(CLR(100, 200, 50)), 51, 101, 26);
    CLR c(0, 255, 7);
    c.MakeHighlightedColor();
    ExpectColour(c, 1, 128, 4);
}

TEST(ColorTest, IntensityCurveOnHLS) {
    float h = 0.3f, l = 0.4f, s = 0.5f;
    CLR::MakeMoreIntenseColor(h, l, s);
    EXPECT_NEAR(s, 0.7f, 1e-5);
    EXPECT_EQ(h, 0.3f);
    EXPECT_EQ(l, 0.4f);
    s = 0.25f;  // on the parabola: -4/3 * 0.0625 + 31/15 * 0.25
    CLR::MakeMoreIntenseColor(h, l, s);
    EXPECT_NEAR(s, 0.43333333f, 1e-5);
    s = 0.0f;
    CLR::MakeMoreIntenseColor(h, l, s);
    EXPECT_EQ(s, 0.0f);
    for (float kept : {0.8f, 0.9f, 1.0f}) {
        s = kept;
        CLR::MakeMoreIntenseColor(h, l, s);
        EXPECT_EQ(s, kept);
    }
    float zeroL = 0.0f;
    s = 0.5f;
    CLR::MakeMoreIntenseColor(h, zeroL, s);
    EXPECT_EQ(s, 0.5f);  // lightness 0: untouched
}

TEST(ColorTest, MoreIntenseColour) {
    ExpectColour(CLR::MakeMoreIntenseColor(CLR(255, 0, 0)), 255, 0, 0);          // saturation 1 stays
    ExpectColour(CLR::MakeMoreIntenseColor(CLR(0, 0, 0)), 0, 0, 0);              // lightness 0 stays
    ExpectColour(CLR::MakeMoreIntenseColor(CLR(128, 128, 128)), 128, 128, 128);  // grey has nothing to raise
    // (191, 63, 63): l = 254/510, s = 128/254 -> f(s) = 0.70283; rebuilt with hue 1.0 as (216, 37, 37).
    CLR c(191, 63, 63);
    c.MakeMoreIntenseColor();
    EXPECT_NEAR(c.red, 216, 1);
    EXPECT_NEAR(c.green, 37, 1);
    EXPECT_NEAR(c.blue, 37, 1);
    EXPECT_GT(c.red - c.green, 191 - 63);
}

}  // namespace
