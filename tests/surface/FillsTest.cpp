// Solid fills, the alpha-only fill and the three gradations on hand-computed pixels, with the
// conversion these members make whenever the guard is down, and inputs that must not yield NaN colours.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "SurfaceTestSupport.h"
#include "ulogui/TrueColorDC.h"

namespace {

using namespace surfacetest;
using FillsTest = MagnifierTest;
const float kNaN = std::nanf("");

// Four pixels of colour (blue 10, green 20, red 30) and transparencies 0, 100, 255, 255. Every fill
// below is given (-1, -1, 3, 5), which the surface cuts to the first three.
TEST_F(FillsTest, SolidFillsWriteTheirArithmeticInsideTheClippedRectangleOnly) {
    const unsigned char alphas[4] = {0, 100, 255, 255};
    const CLR offsets(250, 0x7F, 0x80);  // red -6, green +127, blue -128
    struct Case {
        std::function<void(ULOTrueColorDCBase&, const ULORect*)> fill;
        Pixel want;        // bytes 0..2 of the changed pixels; byte 3 when >= 0 in `alpha`
        unsigned changed;  // bit x: pixel x changed
        int alpha;
    };
    const Case cases[] = {
        {[](auto& dc, auto r) { dc.FillRectAlpha(r, CLR(200, 100, 0), 0.5f); }, {5, 59, 114}, 7, -1},
        {[](auto& dc, auto r) { dc.FillRectAlpha(r, CLR(200, 100, 0), 7.0f); }, {0, 100, 200}, 7, -1},
        {[](auto& dc, auto r) { dc.FillRectAlpha(r, CLR(200, 100, 0), kNaN); }, {}, 0, -1},
        {[](auto& dc, auto r) { dc.FillRectAlpha(r, CLR(200, 100, 0), -0.5f); }, {}, 0, -1},
        {[&](auto& dc, auto r) { dc.FillRectRelative(r, offsets); }, {0, 147, 24}, 7, -1},
        {[&](auto& dc, auto r) { dc.FillRectRelativeAlpha(r, offsets, 0.5f); }, {0, 83, 27}, 7, -1},
        {[&](auto& dc, auto r) { dc.FillRectRelativeAlpha(r, offsets, 3.0f); }, {0, 147, 24}, 7, -1},
        {[&](auto& dc, auto r) { dc.FillRectRelativeAlpha(r, offsets, kNaN); }, {}, 0, -1},
        {[](auto& dc, auto r) { dc.FillRectOnTransparentPart(r, CLR(3, 2, 1), 0); }, {1, 2, 3}, 7, -1},
        {[](auto& dc, auto r) { dc.FillRectOnTransparentPart(r, CLR(3, 2, 1), 100); }, {1, 2, 3}, 6, -1},
        {[](auto& dc, auto r) { dc.FillRectOnTransparentPart(r, CLR(3, 2, 1), 255); }, {1, 2, 3}, 4, -1},
        {[](auto& dc, auto r) { dc.FillAlphaRect(r, 77); }, {10, 20, 30}, 7, 77},
    };
    for (const Case& c : cases) {
        ULOTrueColorDCBase dc(ULORect(0, 0, 4, 1), true, false);
        for (int x = 0; x < 4; ++x) {
            unsigned char* p = dc.GetBits(x, 0);
            p[0] = 10, p[1] = 20, p[2] = 30, p[3] = alphas[x];
        }
        const ULORect rect(-1, -1, 3, 5);
        c.fill(dc, &rect);
        c.fill(dc, nullptr);
        const ULORect inverted(3, 0, 1, 1);
        c.fill(dc, &inverted);
        for (int x = 0; x < 4; ++x) {
            const bool changed = (c.changed >> x) & 1;
            const Pixel want = changed ? Pixel{c.want[0], c.want[1], c.want[2],
                                               static_cast<unsigned char>(c.alpha >= 0 ? c.alpha : alphas[x])}
                                       : Pixel{10, 20, 30, alphas[x]};
            EXPECT_EQ(PixelAt(dc, x, 0), want) << "case " << (&c - cases) << " pixel " << x;
        }
    }
}

// Rows longer than the transfer loops' source run, and whole rows run as one.
TEST_F(FillsTest, LongRowsAndWholeBuffersFillEveryPixel) {
    ULOTrueColorDCBase wide(ULORect(0, 0, 300, 2), false, false);
    const ULORect band(1, 0, 300, 2);
    const ULORect all(0, 0, 300, 2);
    wide.FillRectAlpha(&band, CLR(200, 100, 0), 0.5f);
    wide.FillRectRelative(&all, CLR(0, 0, 1));
    ExpectOnly(wide, band, Pixel{1, 49, 99, 0}, Pixel{1, 0, 0, 0});
}

TEST_F(FillsTest, AlphaFillAndGradationsConvertWheneverTheGuardIsDownEvenUnmagnified) {
    SetMagnifier(2.0f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 10, 3), true, false);
    const ULORect rect(1, 0, 2, 1);
    dc.FillAlphaRect(&rect, 9);
    ExpectOnly(dc, ULORect(2, 0, 4, 2), Pixel{0, 0, 0, 9});
    dc.SetWorkingOnScreenSize(true);
    const ULORect device(1, 0, 2, 2);
    dc.FillAlphaRect(&device, 9);
    ExpectOnly(dc, ULORect(1, 0, 4, 2), Pixel{0, 0, 0, 9});
    dc.SetWorkingOnScreenSize(false);

    // Black to white over a gradient 10 device pixels wide: trunc(255 * x / 10), never 255; alpha alike.
    const ULORect gradient(0, 0, 5, 1);
    const ULORect area(0, 0, 5, 9);
    dc.FillRectHorizontalGradation(&gradient, &area, CLR(0, 0, 0), CLR(255, 255, 255), 0.0f, 1.0f);
    const unsigned char ramp[10] = {0, 25, 51, 76, 102, 127, 153, 178, 204, 229};
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 10; ++x) {
            const unsigned char v = ramp[x];
            EXPECT_EQ(PixelAt(dc, x, y), (Pixel{v, v, v, v})) << x << ", " << y;
        }
    }
    EXPECT_FALSE(dc.GetWorkingOnScreenSize());
}

// Black to white at full weight over a 3 x 4 surface of (10, 20, 30, alpha 99); t per pixel as each
// member samples it (no offset across, row centres down, 45-degree lines on the diagonal).
TEST_F(FillsTest, GradationsSampleAsDocumentedAndSurviveDegenerateRampsAndAlphas) {
    using Gradation =
        void (ULOTrueColorDCBase::*)(const ULORect*, const ULORect*, const CLR&, const CLR&, float, float);
    const Gradation horizontal = &ULOTrueColorDCBase::FillRectHorizontalGradation;
    const Gradation vertical = &ULOTrueColorDCBase::FillRectVerticalGradation;
    const Gradation diagonal = &ULOTrueColorDCBase::FillRectTopLeftToBottomRightGradation;
    struct Case {
        Gradation member;
        ULORect gradient;
        float alphaFrom, alphaTo;
        std::vector<int> colour;  // row by row; -1 unchanged
        int alpha;                // byte 3 written everywhere, or -1 when kept
    };
    const std::vector<int> untouched(12, -1);
    const Case cases[] = {
        {horizontal, {0, 0, 4, 1}, 1, 1, {0, 63, 127, 0, 63, 127, 0, 63, 127, 0, 63, 127}, 255},
        {vertical, {0, 0, 1, 4}, 1, 1, {31, 31, 31, 95, 95, 95, 159, 159, 159, 223, 223, 223}, -1},
        {vertical, {0, 0, 1, 4}, 0, 0, untouched, -1},
        {vertical, {0, 0, 1, 4}, kNaN, 1, untouched, -1},
        {diagonal, {0, 0, 2, 2}, 1, 1, {0, 63, 127, 63, 127, 191, 127, 191, 255, 191, 255, 255}, 255},
        // A ramp of no extent is its start everywhere; an infinite alpha times t = 0 is a NaN weight, as 0.
        {horizontal, {2, 0, 2, 9}, 0.5f, 1, std::vector<int>(12, 0), 127},
        {vertical, {0, 3, 9, 3}, 0, INFINITY, untouched, -1},
        {diagonal, {1, 1, 1, 1}, 0.5f, 1, std::vector<int>(12, 0), 127},
        {horizontal, {0, 0, 4, 1}, kNaN, kNaN, {0, 63, 127, 0, 63, 127, 0, 63, 127, 0, 63, 127}, 0},
    };
    for (const Case& c : cases) {
        ULOTrueColorDCBase dc(ULORect(0, 0, 3, 4), true, false);
        for (int y = 0; y < 4; ++y) {
            for (int x = 0; x < 3; ++x) {
                unsigned char* p = dc.GetBits(x, y);
                p[0] = 10, p[1] = 20, p[2] = 30, p[3] = 99;
            }
        }
        const ULORect area(-5, -5, 50, 50);
        (dc.*c.member)(&c.gradient, &area, CLR(0, 0, 0), CLR(255, 255, 255), c.alphaFrom, c.alphaTo);
        (dc.*c.member)(&c.gradient, nullptr, CLR(0, 0, 0), CLR(255, 255, 255), 1, 1);
        for (int i = 0; i < 12; ++i) {
            const int v = c.colour[i];
            const Pixel want = v < 0 ? Pixel{10, 20, 30, 99}
                                     : Pixel{static_cast<unsigned char>(v), static_cast<unsigned char>(v),
                                             static_cast<unsigned char>(v),
                                             static_cast<unsigned char>(c.alpha < 0 ? 99 : c.alpha)};
            EXPECT_EQ(PixelAt(dc, i % 3, i / 3), want) << "case " << (&c - cases) << " pixel " << i;
        }
    }
}

}  // namespace
