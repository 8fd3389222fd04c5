#include "ulogui/Magnify.h"

#include <gtest/gtest.h>

#include <climits>
#include <future>
#include <thread>
#include <tuple>

namespace {

// Sets the calling thread's factor for one test and puts 1.0 back afterwards.
class MagnifyTest : public ::testing::Test {
protected:
    void Use(float m) { magnify::GetMagnifier() = m; }
    void TearDown() override { magnify::GetMagnifier() = 1.0f; }
};

// Every integer overload rounds floor(v * m + 0.5) (Undo: floor(v / m + 0.5)), saturates, and leaves
// the value alone when told not to apply the factor.
TEST_F(MagnifyTest, IntegersRoundHalvesUpwardSaturateAndApplyOnlyWhenTold) {
    struct Case {
        float m;
        int v, magnified, unmagnified;
    };
    // 4.5 -> 5 and -4.5 -> -4; 3.33 -> 3; 2.5 -> 3 and -0.5 -> 0; 18 / 2.4f lies just below 7.5, while
    // 18 * (1 / 2.4f) would round to 7.5; 5 / 0 is +infinity and 0 / 0 has no value, which gives 0.
    const int big = 1000000000, max = INT_MAX, min = INT_MIN;
    const Case cases[] = {{1.5f, 3, 5, 2},      {1.5f, -3, -4, -2},    {1.5f, 5, 8, 3},
                          {1.5f, -5, -7, -3},   {0.5f, 5, 3, 10},      {0.5f, -1, 0, -2},
                          {2.4f, 18, 43, 7},    {2.4f, -18, -43, -7},  {2.4f, 24, 58, 10},
                          {1e10f, big, max, 0}, {1e10f, -big, min, 0}, {0.0f, 5, 0, max},
                          {0.0f, -5, 0, min},   {0.0f, 0, 0, 0}};
    for (const Case& c : cases) {
        Use(c.m);
        for (auto [undo, apply] : {std::pair(false, true), {true, true}, {false, false}, {true, false}}) {
            SCOPED_TRACE(testing::Message()
                         << c.v << (undo ? " / " : " * ") << c.m << (apply ? "" : " not applied"));
            int a = c.v, b = c.v, p = c.v, q = c.v, r = c.v, s = c.v;
            ULOPoint point(c.v, c.v);
            ULOSize size(c.v, c.v);
            auto convert = [&](auto&... v) {
                undo ? magnify::UndoMagnify(v..., apply) : magnify::DoMagnify(v..., apply);
            };
            convert(a, b);
            convert(p, q, r, s);
            convert(point);
            convert(size);
            for (int result : {a, b, p, q, r, s, point.x, point.y, size.cx, size.cy}) {
                EXPECT_EQ(result, !apply ? c.v : undo ? c.unmagnified : c.magnified);
            }
        }
    }
}

TEST_F(MagnifyTest, FloatsAreScaledWithoutRoundingAndUndoDivides) {
    Use(1.5f);
    float f1 = 1.0f, f2 = -2.0f, f3 = 0.5f, f4 = 3.0f, g = 5.0f;
    magnify::DoMagnify(f1, f2, f3, f4, true);
    EXPECT_EQ(f1 + f2 + f3 + f4, 1.5f * 2.5f);
    magnify::UndoMagnify(f3, f4, true);
    EXPECT_EQ(f3, 0.5f);
    magnify::UndoMagnify(g, true);
    EXPECT_EQ(g, 5.0f / 1.5f);  // the correctly rounded quotient, one ulp from 5 * (1 / 1.5f)
    magnify::UndoMagnify(g, g, false);
    EXPECT_EQ(g, 5.0f / 1.5f);
    double d = 0.1;
    magnify::DoMagnify(d, true);
    EXPECT_EQ(d, 0.1 * 1.5);
    magnify::ULOPointf pf(ULOPoint(2, -3));
    magnify::DoMagnify(pf, true);
    EXPECT_EQ(std::make_pair(pf.x, pf.y), std::make_pair(3.0f, -4.5f));
}

TEST_F(MagnifyTest, RectangleScalesOriginAndSizeSeparately) {
    Use(1.5f);
    ULORect r(1, 1, 4, 4), other(0, 0, 3, 3), negative(-3, -1, 0, 2);
    magnify::DoMagnify(r, false);
    EXPECT_EQ(r, ULORect(1, 1, 4, 4));
    magnify::DoMagnify(r, true);
    EXPECT_EQ(r, ULORect(2, 2, 7, 7));  // origin 1.5 -> 2, size 4.5 -> 5; edges directly would give 6
    magnify::DoMagnify(other, true);
    EXPECT_EQ(other.Width(), r.Width());  // equal sizes stay equal wherever they lie
    magnify::DoMagnify(negative, true);
    EXPECT_EQ(negative, ULORect(-4, -1, 1, 4));
    magnify::UndoMagnify(r, true);
    EXPECT_EQ(r, ULORect(1, 1, 4, 4));  // 1.33 and a size of 3.33
    Use(2.4f);
    ULORect u(18, 0, 36, 18);
    magnify::UndoMagnify(u, true);
    EXPECT_EQ(u, ULORect(7, 0, 14, 7));
    Use(2.0f);
    ULORect wide(INT_MIN, 0, INT_MAX, 1);
    magnify::DoMagnify(wide, true);
    EXPECT_EQ(wide.left, INT_MIN);
    EXPECT_EQ(wide.right, INT_MIN + INT_MAX);  // the saturated origin plus the saturated size
}

TEST(MagnifySettingsTest, DefaultsAndTheRetinaFlag) {
    EXPECT_EQ(std::make_tuple(false, true, false, false),
              std::make_tuple(magnify::MagnifyPhysicalDisplay(), magnify::MagnifyOpenGLDisplay(),
                              magnify::bPerscreenMagnify, magnify::MagnifyRenderOnRetinaScreens()));
    magnify::bFineRenderOnRetinaScreens = true;
    EXPECT_TRUE(magnify::MagnifyRenderOnRetinaScreens());
    magnify::bFineRenderOnRetinaScreens = false;
}

TEST(MagnifierThreadsTest, EachThreadKeepsTheFactorItStartedWith) {
    ASSERT_EQ(magnify::globalMagnifierValue, -2.0f);
    std::promise<float> earlyFirst, earlyLast;
    std::promise<void> lateDone;
    std::thread early([&] {
        earlyFirst.set_value(magnify::GetMagnifier());
        lateDone.get_future().wait();
        earlyLast.set_value(magnify::GetMagnifier());
    });
    EXPECT_EQ(earlyFirst.get_future().get(), 1.0f);  // nothing set yet
    magnify::globalMagnifierValue = 2.0f;
    std::thread late([] {
        EXPECT_EQ(magnify::GetMagnifier(), 2.0f);
        magnify::GetMagnifier() = 3.0f;  // writing through the reference ...
        EXPECT_EQ(magnify::GetMagnifier(), 3.0f);
    });
    late.join();
    lateDone.set_value();
    EXPECT_EQ(earlyLast.get_future().get(), 1.0f);  // ... changes that thread only, and the global neither
    early.join();
    EXPECT_NE(magnify::GetMagnifier(), 3.0f);

    // A thread's factor is made on its first call, even by a conversion that applies nothing.
    std::thread quiet([] {
        int a = 1, b = 1;
        magnify::DoMagnify(a, b, false);
        magnify::globalMagnifierValue = 4.0f;
        EXPECT_EQ(magnify::GetMagnifier(), 2.0f);
    });
    quiet.join();
    magnify::globalMagnifierValue = -2.0f;
    // Factors of finished threads are freed with them (the sanitizer build reports a leak otherwise).
}

}  // namespace
