// The drawing frame: conversion only outside the guard on a magnified surface, the guard raised while a
// member runs and restored on every exit, clipping of rectangles, clamping of points, bottom-up rows;
// and the two reference members, FillRect and DrawPixel, on plain and magnified surfaces.
#include <gtest/gtest.h>

#include <climits>
#include <stdexcept>
#include <vector>

#include "SurfaceTestSupport.h"
#include "surface/DrawingFrame.h"
#include "ulogui/TrueColorDC.h"

namespace {

using namespace surfacetest;
using ulogui::surface::DeviceView;
using ulogui::surface::DrawingFrame;

const CLR kInk(200, 100, 50);

using DrawingFrameTest = MagnifierTest;

// Lengths and points, which no member here converts (the table below covers rectangles and the guard).
TEST_F(DrawingFrameTest, LengthsAndPointsRoundAsFloorOfVTimesMPlusAHalf) {
    SetMagnifier(1.5f);
    ULOTrueColorDCBase magnified(ULORect(0, 0, 10, 10), false, true);
    const DrawingFrame frame(magnified);
    EXPECT_EQ(frame.ToDevice(3), 5);    // 4.5 rounds up
    EXPECT_EQ(frame.ToDevice(-2), -3);  // floor(-3 + 0.5), not truncation
    EXPECT_EQ(frame.ToDevice(ULOPoint(1, 2)), ULOPoint(2, 3));
    EXPECT_EQ(DrawingFrame(magnified).ToDevice(3), 3);  // nested: the guard is up
}

TEST_F(DrawingFrameTest, MembersSeeDeviceGeometryWhileTheyRunAndTheGuardIsRestoredOnAnException) {
    SetMagnifier(1.5f);
    ObservedSurface magnified(ULORect(0, 0, 4, 4), false, true);
    const ULORect rect(0, 0, 2, 2);
    magnified.FillRect(&rect, kInk, 0);
    ASSERT_FALSE(magnified.guardSeen.empty());
    EXPECT_EQ(magnified.guardSeen, std::vector<bool>(magnified.guardSeen.size(), true));
    EXPECT_EQ(magnified.canGetBitsSeen, std::vector<bool>(magnified.canGetBitsSeen.size(), true));
    ObservedSurface plain(ULORect(0, 0, 4, 4), false, false);
    plain.DrawPixel(ULOPoint(1, 1), kInk);
    ASSERT_FALSE(plain.guardSeen.empty());
    EXPECT_EQ(plain.guardSeen, std::vector<bool>(plain.guardSeen.size(), false));

    SetMagnifier(2.0f);
    ObservedSurface throwing(ULORect(0, 0, 4, 4), false, true);
    throwing.throwFromHeight = true;
    for (bool guard : {false, true}) {
        throwing.SetWorkingOnScreenSize(guard);
        EXPECT_THROW(throwing.FillRect(&rect, kInk, 0), std::runtime_error);
        EXPECT_EQ(throwing.GetWorkingOnScreenSize(), guard);
        EXPECT_THROW(throwing.DrawPixel(ULOPoint(1, 1), kInk), std::runtime_error);
        EXPECT_EQ(throwing.GetWorkingOnScreenSize(), guard);
    }
}

TEST_F(DrawingFrameTest, BufferThatCannotBeDrawnOnSafelyHasNoBounds) {
    std::vector<unsigned char> memory(32, 0);
    BufferSurface mask(memory.data(), 4, 2, 16, PICTBITS_MASK8);
    BufferSurface shortRows(memory.data(), 4, 2, 12);
    BufferSurface noPixels(nullptr, 4, 2, 16);
    for (BufferSurface* dc : {&mask, &shortRows, &noPixels}) {
        EXPECT_TRUE(DeviceView(*dc).IsEmpty());
        const ULORect all(0, 0, 4, 2);
        dc->FillRect(&all, kInk, 1);
        dc->DrawPixel(ULOPoint(1, 1), kInk);
    }
    shortRows = noPixels;  // nothing to copy from
    EXPECT_EQ(memory, std::vector<unsigned char>(32, 0));
}

using FillRectTest = MagnifierTest;

TEST_F(FillRectTest, EveryRowWidthOffsetAndBandMatchesAPixelByPixelFill) {
    // The row store is vectorised; odd widths and offsets exercise its head and tail.
    for (int left = 0; left < 5; ++left) {
        for (int w = 1; w <= 37; ++w) {
            ULOTrueColorDCBase dc(ULORect(0, 0, 42, 3), true, false);
            const ULORect rect(left, 1, left + w, 3);
            dc.FillRect(&rect, CLR(left, w, 7), static_cast<unsigned char>(w));
            ExpectOnly(dc, rect, Bgra(CLR(left, w, 7), static_cast<unsigned char>(w)));
        }
    }
    // Whole rows of an unpadded buffer are filled as one run; its start must be the band's bottom row.
    for (int w = 1; w <= 19; ++w) {
        for (int top = 0; top < 3; ++top) {
            for (int bottom = top + 1; bottom <= 4; ++bottom) {
                ULOTrueColorDCBase dc(ULORect(0, 0, w, 4), false, false);
                const ULORect band(-2, top, w + 3, bottom);
                dc.FillRect(&band, CLR(w, top, bottom), 0x5A);
                ExpectOnly(dc, ULORect(0, top, w, bottom), Bgra(CLR(w, top, bottom), 0x5A));
            }
        }
    }
    // Rows with padding between them are filled one by one: the padding stays.
    std::vector<unsigned char> memory(3 * 24, 0xEE);
    BufferSurface padded(memory.data(), 5, 3, 24);
    const ULORect all(0, 0, 5, 3);
    padded.FillRect(&all, kInk, 0);
    ExpectOnly(padded, all, Bgra(kInk, 0));
    for (int row = 0; row < 3; ++row) {
        EXPECT_EQ(memory[row * 24 + 23], 0xEE) << "row " << row;
    }
}

// FillRect of `rect` with alpha 5, or DrawPixel at its top-left corner, on a surface of 6 x 6 logical
// units whose every device pixel starts black with alpha 200. Exactly `expected` (device pixels) changes,
// to the ink with `alpha`; the guard ends as it started.
struct DrawCase {
    float magnifier;
    bool magnified, guard, pixel;
    ULORect rect, expected;
    unsigned char alpha;
};

TEST_F(DrawingFrameTest, FillRectClipsAndDrawPixelClampsOrFillsItsBlock) {
    const ULORect none;
    const DrawCase cases[] = {
        // Rectangles are cut at the borders; outside, empty or inverted ones draw nothing.
        {1.0f, false, false, false, ULORect(-3, 2, 9, 8), ULORect(0, 2, 6, 6), 5},
        {1.0f, false, false, false, ULORect(6, 0, 9, 4), none, 5},
        {1.0f, false, false, false, ULORect(-4, -4, 0, 0), none, 5},
        {1.0f, false, false, false, ULORect(INT_MIN, 0, INT_MIN + 1, 4), none, 5},
        {1.0f, false, false, false, ULORect(3, 3, 1, 1), none, 5},
        {1.0f, false, false, false, ULORect(0, 2, 4, 2), none, 5},
        {2.0f, true, false, false, ULORect(3, 3, 1, 1), none, 5},
        // Magnified: origin and size are scaled apart, rounding as floor(v * m + 0.5), then clipped.
        {1.5f, true, false, false, ULORect(1, 1, 4, 4), ULORect(2, 2, 7, 7), 5},
        {1.5f, true, false, false, ULORect(4, -1, 7, 1), ULORect(6, 0, 9, 2), 5},
        {2.0f, true, false, false, ULORect(-1, 0, 1, 1), ULORect(0, 0, 2, 2), 5},
        // Inside the guard the rectangle is already in device pixels.
        {1.5f, true, true, false, ULORect(1, 1, 4, 4), ULORect(1, 1, 4, 4), 5},

        // One device pixel keeps its alpha; outside the surface it lands on the nearest border.
        {1.0f, false, false, true, ULORect(4, 1, 0, 0), ULORect(4, 1, 5, 2), 200},
        {1.0f, false, false, true, ULORect(-5, 3, 0, 0), ULORect(0, 3, 1, 4), 200},
        {1.0f, false, false, true, ULORect(6, 3, 0, 0), ULORect(5, 3, 6, 4), 200},
        {1.0f, false, false, true, ULORect(INT_MIN, INT_MAX, 0, 0), ULORect(0, 5, 1, 6), 200},
        // So does a magnified surface at magnifier 1.0 or inside the guard.
        {1.0f, true, false, true, ULORect(9, 1, 0, 0), ULORect(5, 1, 6, 2), 200},
        {2.0f, true, true, true, ULORect(-1, 5, 0, 0), ULORect(0, 5, 1, 6), 200},
        // Otherwise the logical pixel is its whole device block, alpha 0, clipped like a rectangle.
        {2.0f, true, false, true, ULORect(1, 2, 0, 0), ULORect(2, 4, 4, 6), 0},
        {1.5f, true, false, true, ULORect(1, 1, 0, 0), ULORect(2, 2, 4, 4), 0},
        {2.0f, true, false, true, ULORect(-5, 3, 0, 0), none, 0},
        {2.0f, true, false, true, ULORect(INT_MAX, 0, 0, 0), none, 0},
    };
    for (const DrawCase& c : cases) {
        SCOPED_TRACE(::testing::Message() << "case " << (&c - cases));
        SetMagnifier(c.magnifier);
        ULOTrueColorDCBase dc(ULORect(0, 0, 6, 6), true, c.magnified);
        FillAll(dc, CLR(0, 0, 0), 200);
        dc.SetWorkingOnScreenSize(c.guard);
        if (c.pixel) {
            dc.DrawPixel(ULOPoint(c.rect.left, c.rect.top), kInk);
        } else {
            dc.FillRect(&c.rect, kInk, 5);
        }
        EXPECT_EQ(dc.GetWorkingOnScreenSize(), c.guard);
        ExpectOnly(dc, c.expected, Bgra(kInk, c.alpha), Pixel{0, 0, 0, 200});
    }
    ULOTrueColorDCBase dc(ULORect(0, 0, 2, 2), false, false);
    dc.FillRect(nullptr, kInk, 0);
    ExpectOnly(dc, none, kClear);
}

}  // namespace
