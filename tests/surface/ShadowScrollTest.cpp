// DrawShadow and ScrollArea as golden scenes: shadow bands unclipped, cut by clip edges and by the
// surface's edge; scrolls in every direction with overlapping rows, the offset and the area converted.
// Wild shadow inputs must stay inside the buffer.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "GoldenScene.h"
#include "ulogui/TrueColorDC.h"

namespace {

using namespace surfacetest;
using DC = ULOTrueColorDCBase;
using ShadowTest = MagnifierTest;

TEST_F(ShadowTest, ShadowsAndScrollsMatchTheirGoldenScenes) {
    const auto shadow = [](ULORect rect, const ULORect* clip, int size, float strength) {
        return [=](DC& dc) { dc.DrawShadow(&rect, clip, size, strength); };
    };
    const auto scroll = [](ULOSize offset, const ULORect* area) {
        return [=](DC& dc) { area == nullptr ? dc.ScrollArea(offset) : dc.ScrollArea(offset, *area); };
    };
    const ULORect rect(1, 1, 4, 5), cutAcross(0, 2, 5, 8), cutCorner(0, 4, 8, 8);
    const ULORect inner(1, 1, 4, 4), beyond(-2, 0, 9, 9), small(0, 0, 2, 2);
    // clang-format off
    ExpectScenes("surface/shadow-scroll", {
        {"shadow", 1, false, false, false, 8, 8, shadow(rect, nullptr, 2, 1.0f)},
        {"shadow, half strength", 1, false, false, false, 8, 8, shadow(rect, nullptr, 2, 0.5f)},
        {"shadow cut across", 1, false, false, false, 8, 8, shadow(rect, &cutAcross, 2, 1.0f)},
        {"shadow, corner cut", 1, false, false, false, 8, 8, shadow(rect, &cutCorner, 2, 1.0f)},
        {"shadow at the surface's edge", 1, false, false, false, 8, 8, shadow({5, 5, 7, 7}, nullptr, 3, 1.0f)},
        {"scroll right", 1, false, false, false, 4, 4, scroll({1, 0}, nullptr)},
        {"scroll left", 1, false, false, false, 4, 4, scroll({-1, 0}, nullptr)},
        {"scroll down", 1, false, false, false, 4, 4, scroll({0, 1}, nullptr)},
        {"scroll up, area beyond", 1, false, false, false, 4, 4, scroll({0, -3}, &beyond)},
        {"scroll inner area 2, -1", 1, false, false, false, 4, 4, scroll({2, -1}, &inner)},
        {"scroll inner area -1, 2", 1, false, false, false, 4, 4, scroll({-1, 2}, &inner)},
        {"scroll by the width", 1, false, false, false, 4, 4, scroll({4, 0}, nullptr)},
        {"scroll by int extremes", 1, false, false, false, 4, 4, scroll({INT_MIN, INT_MAX}, &beyond)},
        {"scroll at 2.0", 2, false, false, false, 4, 4, scroll({1, 0}, &small)},
        {"scroll at 0.5", 0.5f, false, false, false, 4, 4, scroll({0, 2}, nullptr)},
        {"scroll 1, -2", 1, false, false, false, 4, 4, scroll({1, -2}, nullptr)},
        {"scroll -3, 1, area beyond", 1, false, false, false, 4, 4, scroll({-3, 1}, &beyond)},
        {"scroll by 3", 1, false, false, false, 4, 4, scroll({3, 0}, nullptr)},
        {"scroll a padded-free wide surface", 1, false, false, false, 9, 3, scroll({-2, 1}, nullptr)},
    });
    // clang-format on
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

}  // namespace
