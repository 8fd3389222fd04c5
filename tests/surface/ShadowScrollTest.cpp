// DrawShadow on hand-computed weights (unclipped, at clip edges, at the surface's edge) and wild inputs;
// ScrollArea in every direction with overlapping rows, on plain and padded buffers.
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
        std::vector<std::string> rows;  // rows 1 to 7
    };
    const Case cases[] = {
        {rect,
         nullptr,
         2,
         {"........", "....hq..", "....#h..", "....#h..", "....h#..", "....qh..", "........"}},
        {rect,
         &cutAcross,
         2,
         {"........", "....h...", "....#...", "....#...", "....h#..", "....qh..", "........"}},
        {rect,
         &cutCorner,
         2,
         {"........", "........", "........", "....##..", "....h#..", "....qh..", "........"}},
        {ULORect(5, 5, 7, 7),
         nullptr,
         3,
         {"........", "........", "........", "........", "........", ".......a", ".......b"}},
    };
    for (const Case& c : cases) {
        ULOTrueColorDCBase dc(ULORect(0, 0, 8, 8), false, false);
        const ULORect all(0, 0, 8, 8);
        dc.FillRect(&all, CLR(255, 255, 255), 7);
        dc.DrawShadow(&c.rect, c.clip, c.size, 1.0f);
        for (int y = 1; y < 8; ++y) {
            for (int x = 0; x < 8; ++x) {
                const unsigned char v = kShade.at(c.rows[y - 1][x]);
                EXPECT_EQ(PixelAt(dc, x, y), (Pixel{v, v, v, 7}))
                    << "case " << (&c - cases) << " at " << x << ", " << y;
            }
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
                    const ULORect all(0, 0, 8, 8);
                    dc.FillRect(&all, CLR(255, 255, 255), 7);
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
    const Case cases[] = {
        {1, {1, 0}, nullptr, {1, 0}, {0, 0, 4, 4}},
        {1, {-1, 0}, nullptr, {-1, 0}, {0, 0, 4, 4}},
        {1, {0, 1}, nullptr, {0, 1}, {0, 0, 4, 4}},
        {1, {0, -3}, &beyond, {0, -3}, {0, 0, 4, 4}},
        {1, {2, -1}, &inner, {2, -1}, {1, 1, 4, 4}},
        {1, {-1, 2}, &inner, {-1, 2}, {1, 1, 4, 4}},
        {1, {4, 0}, nullptr, {4, 0}, {0, 0, 4, 4}},
        {1, {INT_MIN, INT_MAX}, &beyond, {INT_MIN, INT_MAX}, {0, 0, 4, 4}},
        {2, {1, 0}, &small, {2, 0}, {0, 0, 4, 4}},
        {0.5f, {0, 2}, nullptr, {0, 1}, {0, 0, 2, 2}},
    };
    for (const Case& c : cases) {
        SetMagnifier(c.m);
        std::vector<unsigned char> padded(5 * 4 * 4, 0);
        ULOTrueColorDCBase owned(ULORect(0, 0, 4, 4), false, false);
        BufferSurface view(padded.data(), 4, 4, 20);
        for (ULOTrueColorDCBase* dc :
             {static_cast<ULOTrueColorDCBase*>(&owned), static_cast<ULOTrueColorDCBase*>(&view)}) {
            const auto old = [](int x, int y) {
                return Pixel{static_cast<unsigned char>(16 * y + x + 1), 2, 3, 4};
            };
            for (int y = 0; y < 4; ++y) {
                for (int x = 0; x < 4; ++x) {
                    const Pixel p = old(x, y);
                    std::copy(p.begin(), p.end(), dc->GetBits(x, y));
                }
            }
            if (c.area == nullptr) {
                dc->ScrollArea(c.offset);
            } else {
                dc->ScrollArea(c.offset, *c.area);
            }
            const ULORect& a = c.deviceArea;
            for (int y = 0; y < 4; ++y) {
                for (int x = 0; x < 4; ++x) {
                    const long long fx = x + static_cast<long long>(c.deviceOffset.cx);
                    const long long fy = y + static_cast<long long>(c.deviceOffset.cy);
                    const bool moved = a.Contains(ULOPoint(x, y)) && fx >= a.left && fx < a.right &&
                                       fy >= a.top && fy < a.bottom;
                    EXPECT_EQ(PixelAt(*dc, x, y),
                              moved ? old(static_cast<int>(fx), static_cast<int>(fy)) : old(x, y))
                        << "case " << (&c - cases) << " at " << x << ", " << y;
                }
            }
        }
    }
}

}  // namespace
