// The outline members on hand-computed pixels: one table of drawings on plain and magnified surfaces
// (m = 1.5 and 2.0, guard down and raised), each checked against a map of the whole device buffer; the
// smooth ring against the exact coverage of the ring; and one sweep of bad inputs, which must finish
// without touching memory outside the buffer (the sanitizer build sees every write).
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "SurfaceTestSupport.h"
#include "ulogui/TrueColorDC.h"

namespace {

using namespace surfacetest;
using DC = ULOTrueColorDCBase;

const float kNaN = std::numeric_limits<float>::quiet_NaN();
const float kInf = std::numeric_limits<float>::infinity();
const float kPi = 3.1415927f;
const CLR kWhite(255, 255, 255);
const Pixel kBlack{0, 0, 0, 0};

Pixel Grey(int v, int alpha = 0) {
    return Pixel{static_cast<unsigned char>(v), static_cast<unsigned char>(v), static_cast<unsigned char>(v),
                 static_cast<unsigned char>(alpha)};
}

// A drawing on a surface of w x h logical units whose every device pixel starts as `background`, and the
// expected device buffer: one string per row, one character per pixel, read through `legend` ('.' is
// the background).
struct Drawing {
    const char* what;
    float m;
    bool magnified, guard;
    int w, h;
    Pixel background;
    std::function<void(DC&)> draw;
    std::vector<std::string> rows;
    std::map<char, Pixel> legend;
};

void Check(const Drawing& d) {
    SCOPED_TRACE(d.what);
    magnify::GetMagnifier() = d.m;
    DC dc(ULORect(0, 0, d.w, d.h), true, d.magnified);
    dc.SetWorkingOnScreenSize(true);
    const ULORect all = dc.GetRect(true);
    dc.FillRect(&all, CLR(d.background[2], d.background[1], d.background[0]), d.background[3]);
    dc.SetWorkingOnScreenSize(d.guard);
    d.draw(dc);
    EXPECT_EQ(dc.GetWorkingOnScreenSize(), d.guard);
    ASSERT_EQ(static_cast<int>(d.rows.size()), dc.GetHeight(true));
    for (int y = 0; y < dc.GetHeight(true); ++y) {
        ASSERT_EQ(static_cast<int>(d.rows[y].size()), dc.GetWidth(true));
        for (int x = 0; x < dc.GetWidth(true); ++x) {
            const char key = d.rows[y][x];
            const Pixel expected = key == '.' ? d.background : d.legend.at(key);
            ASSERT_EQ(PixelAt(dc, x, y), expected) << "at (" << x << ", " << y << ")";
        }
    }
}

using LinesTest = MagnifierTest;

TEST_F(LinesTest, PixelsAndAxisLines) {
    const Pixel bg = Grey(100, 7);
    const CLR ink(200, 50, 0);          // bytes 0, 50, 200
    const Pixel mixed{50, 75, 149, 7};  // (c * 127 + 100 * 128) / 255 per byte
    const CLR offset(-10, 20, 127);     // red -10, green +20, blue +127
    const Pixel moved{227, 120, 90, 7};
    const Pixel white = Grey(255);
    const Drawing cases[] = {
        {"alpha pixel, clamped",
         1,
         false,
         false,
         3,
         2,
         bg,
         [&](DC& dc) {
             dc.DrawPixelAlpha({-4, 9}, ink, 0.5f);
         },
         {"...", "m.."},
         {{'m', mixed}}},
        {"relative pixel",
         1,
         false,
         false,
         3,
         2,
         bg,
         [&](DC& dc) {
             dc.DrawPixelRelative({2, 0}, offset);
         },
         {"..o", "..."},
         {{'o', moved}}},
        {"opacity NaN, negative, above 1, infinite",
         1,
         false,
         false,
         3,
         1,
         bg,
         [&](DC& dc) {
             dc.DrawPixelAlpha({0, 0}, ink, kNaN);
             dc.DrawPixelAlpha({0, 0}, ink, -1.0f);
             dc.DrawPixelAlpha({1, 0}, ink, 7.0f);
             dc.DrawPixelAlpha({2, 0}, ink, kInf);
         },
         {".cc"},
         {{'c', Bgra(ink, 7)}}},
        {"alpha pixel block at 2.0, alpha byte kept",
         2,
         true,
         false,
         2,
         2,
         bg,
         [&](DC& dc) {
             dc.DrawPixelAlpha({1, 0}, ink, 0.5f);
         },
         {"..mm", "..mm", "....", "...."},
         {{'m', mixed}}},
        {"relative pixel at 1.5 is the block (2, 2, 4, 4)",
         1.5f,
         true,
         false,
         3,
         3,
         bg,
         [&](DC& dc) {
             dc.DrawPixelRelative({1, 1}, offset);
         },
         {".....", ".....", "..oo.", "..oo.", "....."},
         {{'o', moved}}},
        {"line from a point to itself at 2.0, guard raised",
         2,
         true,
         true,
         2,
         2,
         bg,
         [&](DC& dc) {
             dc.DrawLine({1, 1}, {1, 1}, ink);
         },
         {"....", ".i..", "....", "...."},
         {{'i', Bgra(ink, 7)}}},
        {"a span past the right edge stops one short of it; negative lengths end before the start",
         1,
         false,
         false,
         8,
         2,
         kBlack,
         [](DC& dc) {
             dc.DrawHorizontalLine({3, 0}, 10, kWhite);
             dc.DrawLine({5, 1}, {2, 1}, kWhite);
         },
         {"...####.", "..###..."},
         {{'#', white}}},
        {"start clamped, length kept; dashes from the clamped start; rows outside skipped",
         1,
         false,
         false,
         9,
         2,
         kBlack,
         [](DC& dc) {
             dc.DrawHorizontalLine({-3, 0}, 4, kWhite);
             dc.DrawHorizontalLine({-2, 1}, 9, kWhite, 3, 0);
             dc.DrawHorizontalLine({0, 2}, 4, kWhite);
             dc.DrawHorizontalLine({0, -1}, 4, kWhite);
         },
         {"####.....", "###...###"},
         {{'#', white}}},
        {"whole int range: saturated length, one short of the edge",
         1,
         false,
         false,
         5,
         1,
         kBlack,
         [](DC& dc) {
             dc.DrawLine({INT_MIN, 0}, {INT_MAX, 0}, kWhite, -5, INT_MAX);
         },
         {"####."},
         {{'#', white}}},
        {"vertical dashes 1 on 2 off; wild counts; zero length",
         1,
         false,
         false,
         3,
         7,
         kBlack,
         [](DC& dc) {
             dc.DrawVerticalLine({0, 0}, 7, kWhite, 1, 2);
             dc.DrawVerticalLine({2, 0}, 6, kWhite, INT_MAX, INT_MAX);
             dc.DrawVerticalLine({1, 0}, 0, kWhite);
         },
         {"#.#", "..#", "..#", "#.#", "..#", "..#", "#.."},
         {{'#', white}}},
        {"1.5: y 1.5 and thickness 1.5 cover row 1 by half (127) and row 2 whole",
         1.5f,
         true,
         false,
         6,
         3,
         kBlack,
         [](DC& dc) {
             dc.DrawHorizontalLine({1, 1}, 4, kWhite);
         },
         {".........", ".hhhhhh..", ".######..", ".........", "........."},
         {{'h', Grey(127)}, {'#', white}}},
        {"2.0: two whole columns; then with the guard raised, device pixels",
         2,
         true,
         false,
         3,
         3,
         kBlack,
         [](DC& dc) {
             dc.DrawVerticalLine({1, 0}, 2, kWhite);
             dc.SetWorkingOnScreenSize(true);
             dc.DrawVerticalLine({5, 5}, -2, kWhite);
             dc.SetWorkingOnScreenSize(false);
         },
         {"..##..", "..##..", "..##..", "..##.#", ".....#", "......"},
         {{'#', white}}},
        {"1.5: alpha then coverage, relative then coverage",
         1.5f,
         true,
         false,
         2,
         2,
         Grey(100),
         [](DC& dc) {
             dc.DrawVerticalLineAlpha({0, 0}, 1, kWhite, 0.5f);
             dc.DrawHorizontalLineRelative({1, 0}, 1, CLR(-1, 5, 0));
         },
         // t = (255 * 127 + 100 * 128) / 255 = 177; at half coverage (177 * 127 + 100 * 128) / 255 = 138
         {"tR.", ".h.", "..."},
         {{'t', Grey(177)}, {'R', Pixel{138, 143, 137, 0}}, {'h', Pixel{100, 102, 99, 0}}}},
    };
    for (const Drawing& d : cases) {
        Check(d);
    }
}

}  // namespace
