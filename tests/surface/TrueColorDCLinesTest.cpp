// The outline members: pixels, lines, outlines, bevels and chart curves as golden scenes, arcs on hand-drawn
// maps, smooth rings against their exact coverage, and a sweep of bad inputs that must stay in the buffer.
#include <initializer_list>
#include <iterator>
#include <limits>

#include "SurfaceTestSupport.h"

namespace {

using namespace surfacetest;
using DC = ULOTrueColorDCBase;

const float kNaN = std::numeric_limits<float>::quiet_NaN();
const float kInf = std::numeric_limits<float>::infinity();
const float kPi = 3.1415927f;
const CLR kWhite(255, 255, 255);

using LinesTest = MagnifierTest;

ULOArray_NOSTL<double> Samples(std::initializer_list<double> values) {
    ULOArray_NOSTL<double> array;
    for (const double v : values) {
        array.Add(v);
    }
    return array;
}

// The pixel, straight-line, outline and bevel members as golden scenes, at 1.0, 1.5 and 2.0 with the
// guard down and raised, with clamped ends, dashes, wild counts and opacities outside 0..1.
TEST_F(LinesTest, GoldenScenesOfLinesOutlinesAndChartCurvesAndBadInputsInsideTheBuffer) {
    const CLR ink(200, 50, 0), offset(-10, 20, 127), ten(10, 10, 10);
    // clang-format off
    ExpectScenes("surface/lines", {
        {"alpha pixel, clamped", 1, true, false, false, 3, 2, [&](DC& dc) { dc.DrawPixelAlpha({-4, 9}, ink, 0.5f); }},
        {"relative pixel", 1, true, false, false, 3, 2, [&](DC& dc) { dc.DrawPixelRelative({2, 0}, offset); }},
        {"opacity NaN, negative, above 1, infinite", 1, true, false, false, 3, 1, [&](DC& dc) {
             dc.DrawPixelAlpha({0, 0}, ink, kNaN); dc.DrawPixelAlpha({0, 0}, ink, -1.0f);
             dc.DrawPixelAlpha({1, 0}, ink, 7.0f); dc.DrawPixelAlpha({2, 0}, ink, kInf); }},
        {"alpha pixel block at 2.0", 2, true, true, false, 2, 2, [&](DC& dc) { dc.DrawPixelAlpha({1, 0}, ink, 0.5f); }},
        {"relative pixel at 1.5", 1.5f, true, true, false, 3, 3, [&](DC& dc) { dc.DrawPixelRelative({1, 1}, offset); }},
        {"point line at 2.0, guard raised", 2, true, true, true, 2, 2, [&](DC& dc) { dc.DrawLine({1, 1}, {1, 1}, ink); }},
        {"span past the right edge; negative length", 1, true, false, false, 8, 2, [](DC& dc) {
             dc.DrawHorizontalLine({3, 0}, 10, kWhite); dc.DrawLine({5, 1}, {2, 1}, kWhite); }},
        {"start clamped; dashes; rows outside", 1, true, false, false, 9, 2, [](DC& dc) {
             dc.DrawHorizontalLine({-3, 0}, 4, kWhite); dc.DrawHorizontalLine({-2, 1}, 9, kWhite, 3, 0);
             dc.DrawHorizontalLine({0, 2}, 4, kWhite); dc.DrawHorizontalLine({0, -1}, 4, kWhite); }},
        {"whole int range", 1, true, false, false, 5, 1, [](DC& dc) { dc.DrawLine({INT_MIN, 0}, {INT_MAX, 0}, kWhite, -5, INT_MAX); }},
        {"vertical dashes; wild counts; zero length", 1, true, false, false, 3, 7, [](DC& dc) {
             dc.DrawVerticalLine({0, 0}, 7, kWhite, 1, 2); dc.DrawVerticalLine({2, 0}, 6, kWhite, INT_MAX, INT_MAX);
             dc.DrawVerticalLine({1, 0}, 0, kWhite); }},
        {"1.5: half-covered row", 1.5f, true, true, false, 6, 3, [](DC& dc) { dc.DrawHorizontalLine({1, 1}, 4, kWhite); }},
        {"2.0: two columns, then device pixels", 2, true, true, false, 3, 3, [](DC& dc) {
             dc.DrawVerticalLine({1, 0}, 2, kWhite); dc.SetWorkingOnScreenSize(true);
             dc.DrawVerticalLine({5, 5}, -2, kWhite); dc.SetWorkingOnScreenSize(false); }},
        {"1.5: alpha and relative with coverage", 1.5f, true, true, false, 2, 2, [](DC& dc) {
             dc.DrawVerticalLineAlpha({0, 0}, 1, kWhite, 0.5f); dc.DrawHorizontalLineRelative({1, 0}, 1, CLR(-1, 5, 0)); }},
        {"shallow", 1, true, false, false, 6, 4, [](DC& dc) { dc.DrawLine({0, 0}, {4, 2}, kWhite); }},
        {"ends clamped separately", 1, true, false, false, 6, 4, [](DC& dc) { dc.DrawLine({-3, 0}, {4, 2}, kWhite); }},
        {"backwards", 1, true, false, false, 6, 4, [](DC& dc) { dc.DrawLine({4, 2}, {0, 0}, kWhite); }},
        {"dashes by step", 1, true, false, false, 6, 4, [](DC& dc) { dc.DrawLine({0, 0}, {4, 2}, kWhite, 1, 1); }},
        {"2.0: ends rounded", 2, true, true, false, 3, 2, [](DC& dc) { dc.DrawLine({0, 0}, {2, 1}, kWhite); }},
        {"1.5: g = 102", 1.5f, true, true, false, 4, 2, [](DC& dc) { dc.DrawLine({0, 0}, {3, 1}, kWhite); }},
        {"1.5, guard raised", 1.5f, true, true, true, 4, 3, [](DC& dc) { dc.DrawLine({0, 0}, {4, 2}, kWhite); }},
        {"diagonal", 1, true, false, false, 6, 6, [](DC& dc) { dc.DrawLine({0, 0}, {4, 4}, kWhite); }},
        {"diagonal alpha", 1, true, false, false, 6, 6, [](DC& dc) { dc.DrawLineAlpha({0, 0}, {4, 4}, kWhite, 0.5f); }},
        {"diagonal relative", 1, true, false, false, 6, 6, [&](DC& dc) { dc.DrawLineRelative({0, 0}, {4, 4}, ten); }},
        {"onto alpha", 1, true, false, false, 6, 6, [](DC& dc) {
             dc.DrawLineOnAlpha({0, 0}, {4, 4}, kWhite, 1.0f); dc.DrawLineOnAlpha({2, 5}, {5, 5}, kWhite, 1.0f); }},
        {"onto alpha, half opacity", 1, true, false, false, 3, 3, [](DC& dc) { dc.DrawLineOnAlpha({0, 0}, {2, 0}, kWhite, 0.5f); }},
        {"rectangle", 1, true, false, false, 6, 5, [](DC& dc) { dc.DrawRect({1, 1, 5, 4}, kWhite); }},
        {"one-pixel and empty rectangles", 1, true, false, false, 2, 1, [&](DC& dc) {
             dc.DrawRectRelative({0, 0, 1, 1}, ten); dc.DrawRectRelative({1, 0, 1, 1}, ten);
             dc.DrawRect({INT_MIN, INT_MIN, INT_MAX, INT_MIN}, kWhite); }},
        {"dashed alpha rectangle", 1, true, false, false, 6, 4, [](DC& dc) { dc.DrawRectAlpha({0, 0, 6, 4}, kWhite, 0.6f, 2, 1); }},
        {"1.5: rectangle", 1.5f, true, true, false, 4, 4, [](DC& dc) { dc.DrawRect({0, 0, 3, 3}, kWhite); }},
        {"raised and sunken bevels", 1, true, false, false, 4, 6, [](DC& dc) {
             dc.Draw3DRect({0, 0, 4, 3}, true); dc.Draw3DRect({0, 3, 4, 6}, false); }},
        {"recessed frame", 1, true, false, false, 6, 5, [](DC& dc) { dc.DrawRecessedFrame({0, 0, 6, 5}); }},
        {"recessed frame at 2.0, guard raised", 2, true, true, true, 3, 3, [](DC& dc) { dc.DrawRecessedFrame({0, 0, 6, 5}); }},
        {"2.0: raised bevel", 2, true, true, false, 3, 3, [](DC& dc) { dc.Draw3DRect({0, 0, 2, 2}, true); }},
    });
    // clang-format on
    // Chart curves (second family of scenes) join (i, values[i]) (or (values[i], i)) with a NaN as a gap and
    // each run's last sample drawn, at 2.0 a sample every two device pixels; fills run between pixel centres
    // above and below the baseline, then draw the baseline (two thick at 2.0, cut at the edge).
    const ULOArray_NOSTL<double> curve = Samples({1.0, 1.0, 3.0, std::nan(""), 2.0, 2.0});
    const ULOArray_NOSTL<double> fill = Samples({0.0, 3.0, 2.5});
    const std::pair<int, int> middle(1, 3), inverted(5, 2), early(-10, 1);
    const CLR red(255, 0, 0), green(0, 255, 0), blue(0, 0, 255);
    // clang-format off
    ExpectScenes("surface/chart", {
        {"curve", 1, true, false, false, 8, 5, [&](DC& dc) { dc.TraceCurvefX(6, curve, kWhite, 1.0f); }},
        {"a range, and a count beyond the array", 1, true, false, false, 8, 5, [&](DC& dc) { dc.TraceCurvefX(100, curve, kWhite, 1.0f, &middle); }},
        {"a negative count and an inverted range draw nothing; a lone sample is a pixel", 1, true, false, false, 8, 5, [&](DC& dc) {
             dc.TraceCurvefX(-1, curve, kWhite, 1.0f); dc.TraceCurvefX(6, curve, kWhite, 1.0f, &inverted);
             dc.TraceCurvefX(6, curve, kWhite, 1.0f, &early); }},
        {"(values[i], i)", 1, true, false, false, 4, 3, [&](DC& dc) { dc.TraceCurvefY(2, fill, kWhite, 1.0f); }},
        {"curve at 2.0", 2, true, true, false, 3, 3, [&](DC& dc) { dc.TraceCurvefX(2, curve, kWhite, 1.0f); }},
        {"fill", 1, true, false, false, 6, 5, [&](DC& dc) { dc.FillBackGroundfX(3, fill, {1, 2}, red, green, blue); }},
        {"fill at 2.0", 2, true, true, false, 3, 3, [&](DC& dc) { dc.FillBackGroundfX(3, fill, {1, 2}, red, green, blue); }},
    });
    // clang-format on
    // Every member with inputs from the ends of their ranges, on plain, magnified and padded surfaces: each
    // call returns, restores the guard and writes nothing outside the rows (the padding keeps its bytes).
    const int ints[] = {INT_MIN, INT_MIN + 1, -100000, -3, -1, 0, 1, 2, 5, 100000, INT_MAX - 1, INT_MAX};
    const float floats[] = {kNaN, kInf, -kInf, -1e30f, -2.0f, -0.5f, 0.0f,
                            0.3f, 1.0f, 2.5f,  7.0f,   1e9f,  1e30f};
    std::mt19937 rng(14);
    const auto i = [&] { return ints[rng() % std::size(ints)]; };
    const auto f = [&] { return floats[rng() % std::size(floats)]; };
    const auto p = [&] { return ULOPoint(rng() % 2 ? i() : static_cast<int>(rng() % 9) - 1, i()); };
    ULOArray_NOSTL<double> values;
    for (int k = 0; k < 40; ++k) {
        values.Add(rng() % 4 ? static_cast<double>(f()) : static_cast<double>(rng() % 9));
    }
    std::vector<unsigned char> memory(5 * 40, 0xA5);
    BufferSurface padded(memory.data(), 7, 5, 40);  // 28 bytes of pixels, 12 of padding a row
    for (int round = 0; round < 3000; ++round) {
        const float m = round % 3 == 0 ? 1.0f : round % 3 == 1 ? 1.5f : 2.0f;
        SetMagnifier(m);
        DC magnified(ULORect(0, 0, 5, 4), true, true);
        DC& dc = round % 2 ? static_cast<DC&>(padded) : magnified;
        const bool guard = rng() % 2;
        dc.SetWorkingOnScreenSize(guard);
        const CLR c(i(), i(), i());
        const std::pair<int, int> range(i(), i());
        const std::pair<int, int>* r = rng() % 2 ? &range : nullptr;
        // clang-format off
        switch (rng() % 12) {
            case 0: dc.DrawPixelAlpha(p(), c, f()); break;
            case 1: dc.DrawLine(p(), p(), c, i(), i()); break;
            case 2: dc.DrawLineAlpha(p(), p(), c, f(), i(), i()); break;
            case 3: dc.DrawLineOnAlpha(p(), p(), c, f(), i(), i()); break;
            case 4: dc.DrawLineRelative(p(), p(), c, i(), i()); break;
            case 5: dc.DrawHorizontalLineAlpha(p(), i(), c, f(), i(), i()); break;
            case 6: dc.DrawVerticalLineRelative(p(), i(), c, i(), i()); break;
            case 7: dc.DrawRectAlpha(ULORect(i(), i(), i(), i()), c, f(), i(), i()); break;
            case 8: dc.DrawRecessedFrame(ULORect(i(), i(), i(), i())); break;
            case 9: dc.DrawArc(c, rng() % 2 ? ULORect() : ULORect(i(), i(), i(), i()), p(), f(), f(), f(), f(),
                               static_cast<DC::ERadiusThicknessRelation>(rng() % 4), rng() % 2); break;
            case 10: dc.TraceCurvefY(i(), values, c, f(), r); break;
            default: dc.FillBackGroundfX(i(), values, p(), c, c, c, f(), r);
        }
        // clang-format on
        ASSERT_EQ(dc.GetWorkingOnScreenSize(), guard) << "round " << round;
    }
    for (int row = 0; row < 5; ++row) {
        for (int b = 28; b < 40; ++b) {
            ASSERT_EQ(memory[row * 40 + b], 0xA5) << "row " << row << " byte " << b;
        }
    }
}

// Radius 2 around (3, 3): 12 points, k at k / 12 * 2pi. Each segment draws its start pixel; the angle
// test is strict, so a full turn from 0 leaves out the segments ending at 0 and at 2pi, (5, 2) and (5, 3).
TEST_F(LinesTest, ArcsOnHandComputedMapsAndSmoothRingsFollowTheExactCoverage) {
    const DC::ERadiusThicknessRelation middle = DC::eRadiusIsMiddle;
    const auto arc = [middle](ULORect clip, float start, float sweep) {
        return [=](DC& dc) { dc.DrawArc(kWhite, clip, {3, 3}, 2.0f, start, sweep, 0.0f, middle, false); };
    };
    const std::vector<std::string> none(7, ".......");
    // A drawing in white on a cleared surface and its device buffer, one string a row, '#' for white.
    // clang-format off
    const struct {
        const char* what;
        float m;
        bool magnified, guard;
        int w, h;
        std::function<void(DC&)> draw;
        std::vector<std::string> rows;
    } maps[] = {
        {"full turn", 1, false, false, 7, 7, arc(ULORect(), 0.0f, 2 * kPi),
         {".......", "..###..", ".#.....", ".#.....", ".#...#.", "..###..", "......."}},
        {"a quarter from pi/2 holds one segment whole", 1, false, false, 7, 7, arc(ULORect(), kPi / 2, kPi / 2),
         {".......", ".......", ".......", ".......", ".......", "..#....", "......."}},
        {"the same quarter swept backwards from pi", 1, false, false, 7, 7, arc(ULORect(), kPi, -kPi / 2),
         {".......", ".......", ".......", ".......", ".......", "..#....", "......."}},
        {"past a full turn the range wraps to 7.5 - 2pi", 1, false, false, 7, 7, arc(ULORect(), 5.0f, 2.5f),
         {".......", "....#..", ".......", ".......", ".....#.", ".......", "......."}},
        {"both ends inside the clip", 1, false, false, 7, 7, arc(ULORect(0, 0, 3, 7), 0.0f, 7.0f),
         {".......", ".......", ".#.....", ".#.....", ".#.....", "..#....", "......."}},
        {"2.0: centre, radius and thickness to device pixels", 2, true, false, 4, 4,
         [middle](DC& dc) { dc.DrawArc(kWhite, {}, {2, 2}, 1.0f, 0.0f, 7.0f, 0.0f, middle, false); },
         {"........", "........", "...###..", "..#.....", "..#.....", "..#...#.", "...###..", "........"}},
        {"1.5: radius 4/3 around (2, 2) is radius 2 around (3, 3)", 1.5f, true, false, 5, 5,
         [middle](DC& dc) { dc.DrawArc(kWhite, {}, {2, 2}, 4.0f / 3, 0.0f, 2 * kPi, 0.0f, middle, false); },
         {"........", "..###...", ".#......", ".#......", ".#...#..", "..###...", "........", "........"}},
        {"1.5, guard raised", 1.5f, true, true, 5, 5, arc(ULORect(), 0.0f, 2 * kPi),
         {"........", "..###...", ".#......", ".#......", ".#...#..", "..###...", "........", "........"}},
        {"nothing: radius 0, negative or NaN, NaN thickness or angle, empty sweep, clip off the surface", 1, false,
         false, 7, 7, [middle](DC& dc) {
             for (const float radius : {0.0f, -3.0f, kNaN}) {
                 dc.DrawArc(kWhite, {}, {3, 3}, radius, 0.0f, 7.0f, 2.0f, middle, true);
             }
             dc.DrawArc(kWhite, {}, {3, 3}, 2.0f, 0.0f, 7.0f, kNaN, middle, true);
             dc.DrawArc(kWhite, {}, {3, 3}, 2.0f, kNaN, 7.0f, 1.0f, middle, true);
             dc.DrawArc(kWhite, {}, {3, 3}, 2.0f, 1.0f, 0.0f, 1.0f, middle, true);
             dc.DrawArc(kWhite, {20, 0, 30, 7}, {3, 3}, 2.0f, 0.0f, 7.0f, 1.0f, middle, true); },
         none},
    };
    // clang-format on
    for (const auto& d : maps) {
        SetMagnifier(d.m);
        DC dc(ULORect(0, 0, d.w, d.h), true, d.magnified);
        dc.SetWorkingOnScreenSize(d.guard);
        d.draw(dc);
        EXPECT_EQ(dc.GetWorkingOnScreenSize(), d.guard) << d.what;
        std::string drawn, want;
        for (int y = 0; y < dc.GetHeight(true); ++y, drawn += '\n') {
            for (int x = 0; x < dc.GetWidth(true); ++x) {
                drawn += PixelAt(dc, x, y) == kClear                    ? '.'
                         : PixelAt(dc, x, y) == Pixel{255, 255, 255, 0} ? '#'
                                                                        : '?';
            }
        }
        for (const std::string& row : d.rows) {
            want += row + '\n';
        }
        EXPECT_EQ(drawn, want) << d.what;
    }
    // A smooth ring's edge pixels are covered by about the share of them that lies inside the ring, checked
    // against the exact coverage (8 x 8 samples a pixel); without smoothing the ring is a pixel thicker. With
    // the radius at an edge (relations 1 and 2) that edge stays solid and the far one is smooth.
    struct Ring {
        DC::ERadiusThicknessRelation relation;
        bool smooth;
        float inner, outer;  // offsets of the ring's edges from the radius
    };
    const Ring rings[] = {{DC::eRadiusIsMiddle, true, -2, 2},
                          {DC::eRadiusIsMiddle, false, -2, 2},
                          {DC::eRadiusIsInner, true, 0, 4},
                          {DC::eRadiusIsOuter, true, -4, 0}};
    for (const Ring& ring : rings) {
        DC dc(ULORect(0, 0, 40, 40), false, false);
        dc.DrawArc(kWhite, ULORect(), {20, 20}, 12.0f, -1.0f, 8.0f, 4.0f, ring.relation, ring.smooth);
        double ink = 0, area = 0, innerError = 0, outerError = 0;
        int innerCount = 0, outerCount = 0;
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 40; ++x) {
                int inside = 0;
                for (int i = 0; i < 64; ++i) {
                    const double d =
                        std::hypot(x - 20 + (i % 8 + 0.5) / 8 - 0.5, y - 20 + (i / 8 + 0.5) / 8 - 0.5);
                    inside += d >= 12 + ring.inner && d <= 12 + ring.outer;
                }
                const double got = PixelAt(dc, x, y)[0] / 255.0, want = inside / 64.0;
                ink += got, area += want;
                if (want < 1 && (got > 0 || want > 0)) {  // an edge pixel
                    const bool inner = std::hypot(x - 20, y - 20) < 12 + (ring.inner + ring.outer) / 2;
                    (inner ? innerError : outerError) += got - want;
                    ++(inner ? innerCount : outerCount);
                }
            }
        }
        SCOPED_TRACE(::testing::Message() << "relation " << ring.relation << " smooth " << ring.smooth);
        const double inner = innerError / innerCount, outer = outerError / outerCount;
        if (!ring.smooth) {
            EXPECT_GT(ink / area, 1.15);
            EXPECT_GT(std::min(inner, outer), 0.3);
            continue;
        }
        EXPECT_LT(ring.relation == DC::eRadiusIsInner ? outer : std::fabs(inner), 0.08);
        EXPECT_LT(ring.relation == DC::eRadiusIsOuter ? inner : std::fabs(outer), 0.08);
        if (ring.relation == DC::eRadiusIsMiddle) {
            EXPECT_NEAR(ink / area, 1.0, 0.05);
        }
    }
}

}  // namespace
