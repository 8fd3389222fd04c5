// DrawShadow on hand-computed weights (unclipped, at clip edges, at the surface's edge) and wild inputs;
// ScrollArea in every direction with overlapping rows, with the offset and the area converted.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "SurfaceTestSupport.h"
#include "ulogui/TrueColorDC.h"

namespace {

using namespace surfacetest;
using ShadowTest = MagnifierTest;

// White pixels (alpha 7) multiplied by a weight w: (255 * w) >> 8. '.' unchanged, 'h' w = 128,
// 'q' w = trunc(256 / sqrt 2) = 181, '#' w = 0, 'a' w = 170, 'b' w = 85.
const std::map<char, unsigned char> kShade = {{'.', 255}, {'h', 127}, {'q', 180},
                                              {'#', 0},   {'a', 169}, {'b', 84}};

TEST_F(ShadowTest, BandsFadeWithDistanceAndStopAtClipAndSurfaceEdges) {
    const ULORect rect(1, 1, 4, 5);
    const ULORect cutAcross(0, 2, 5, 8);  // the right band's first column and corner cut
    const ULORect cutCorner(0, 4, 8, 8);  // the right band's corner gone: its straight part takes 0
    struct Case {
        ULORect rect;
        const ULORect* clip;
        int size;
        const char* rows;  // rows 1 to 7
    };
    // clang-format off
    const Case cases[] = {
        {rect, nullptr, 2,    "........" "....hq.." "....#h.." "....#h.." "....h#.." "....qh.." "........"},
        {rect, &cutAcross, 2, "........" "....h..." "....#..." "....#..." "....h#.." "....qh.." "........"},
        {rect, &cutCorner, 2, "........" "........" "........" "....##.." "....h#.." "....qh.." "........"},
        {ULORect(5, 5, 7, 7), nullptr, 3,
                              "........" "........" "........" "........" "........" ".......a" ".......b"},
    };
    // clang-format on
    for (const Case& c : cases) {
        ULOTrueColorDCBase dc(ULORect(0, 0, 8, 8), false, false);
        FillAll(dc, CLR(255, 255, 255), 7);
        dc.DrawShadow(&c.rect, c.clip, c.size, 1.0f);
        for (int i = 8; i < 64; ++i) {
            const unsigned char v = kShade.at(c.rows[i - 8]);
            EXPECT_EQ(PixelAt(dc, i % 8, i / 8), (Pixel{v, v, v, 7}))
                << "case " << (&c - cases) << " pixel " << i;
        }
    }
}

TEST_F(ShadowTest, WildSizesStrengthsRectanglesAndClipsStayInsideTheBuffer) {
    const ULORect wide(INT_MIN, INT_MIN, INT_MAX, INT_MAX);
    const ULORect rects[] = {ULORect(1, 1, 4, 5), wide, ULORect(INT_MIN, -3, -1, 2),
                             ULORect(INT_MAX - 1, 0, INT_MAX, 1)};
    const ULORect inverted(6, 6, 1, 1);
    const ULORect* clips[] = {nullptr, &wide, &inverted};
    for (const ULORect& rect : rects) {
        for (const ULORect* clip : clips) {
            for (int size : {0, -3, 1, INT_MAX, INT_MIN}) {
                for (float strength : {std::nanf(""), -1.0f, 2.0f, INFINITY}) {
                    ULOTrueColorDCBase dc(ULORect(0, 0, 8, 8), false, false);
                    FillAll(dc, CLR(255, 255, 255), 7);
                    dc.DrawShadow(&rect, clip, size, strength);
                    if (size <= 0) {
                        ExpectOnly(dc, ULORect(), kClear, Pixel{255, 255, 255, 7});
                    }
                }
            }
        }
    }
}

using ScrollTest = MagnifierTest;

TEST_F(ScrollTest, PixelsTakeTheirSourceInsideTheAreaAndTheRestKeepsItsValue) {
    struct Case {
        float m;
        ULOSize offset;
        const ULORect* area;  // null: the whole surface
        ULOSize deviceOffset;
        ULORect deviceArea;  // clipped
    };
    const ULORect inner(1, 1, 4, 4);
    const ULORect beyond(-2, 0, 9, 9);
    const ULORect small(0, 0, 2, 2);
    // clang-format off
    const Case cases[] = {
        {1, {1, 0}, nullptr, {1, 0}, {0, 0, 4, 4}},  {1, {-1, 0}, nullptr, {-1, 0}, {0, 0, 4, 4}},
        {1, {0, 1}, nullptr, {0, 1}, {0, 0, 4, 4}},  {1, {0, -3}, &beyond, {0, -3}, {0, 0, 4, 4}},
        {1, {2, -1}, &inner, {2, -1}, {1, 1, 4, 4}}, {1, {-1, 2}, &inner, {-1, 2}, {1, 1, 4, 4}},
        {1, {4, 0}, nullptr, {4, 0}, {0, 0, 4, 4}},  {1, {INT_MIN, INT_MAX}, &beyond, {INT_MIN, INT_MAX}, {0, 0, 4, 4}},
        {2, {1, 0}, &small, {2, 0}, {0, 0, 4, 4}},   {0.5f, {0, 2}, nullptr, {0, 1}, {0, 0, 2, 2}},
        {1, {1, -2}, nullptr, {1, -2}, {0, 0, 4, 4}}, {1, {-3, 1}, &beyond, {-3, 1}, {0, 0, 4, 4}},
        {1, {3, 0}, nullptr, {3, 0}, {0, 0, 4, 4}},
    };
    // clang-format on
    const auto old = [](long long x, long long y) {
        return Pixel{static_cast<unsigned char>(16 * y + x + 1), 2, 3};
    };
    for (const Case& c : cases) {
        SetMagnifier(c.m);
        ULOTrueColorDCBase dc(ULORect(0, 0, 4, 4), false, false);
        for (int i = 0; i < 16; ++i) {
            const Pixel p = old(i % 4, i / 4);
            std::copy(p.begin(), p.end(), dc.GetBits(i % 4, i / 4));
        }
        c.area == nullptr ? dc.ScrollArea(c.offset) : dc.ScrollArea(c.offset, *c.area);
        for (int i = 0; i < 16; ++i) {
            const long long x = i % 4, y = i / 4, fx = x + c.deviceOffset.cx, fy = y + c.deviceOffset.cy;
            const ULORect& a = c.deviceArea;
            const bool moved = a.Contains(ULOPoint(i % 4, i / 4)) && fx >= a.left && fx < a.right &&
                               fy >= a.top && fy < a.bottom;
            EXPECT_EQ(PixelAt(dc, i % 4, i / 4), moved ? old(fx, fy) : old(x, y))
                << "case " << (&c - cases) << " " << i;
        }
    }
}

}  // namespace
