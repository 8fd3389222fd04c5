// The drawing frame: conversion only outside the guard on a magnified surface, the guard raised while a
// member runs and restored on every exit, clipping of rectangles, clamping of points, bottom-up rows;
// and the two reference members, FillRect and DrawPixel, on plain and magnified surfaces.
#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "SurfaceTestSupport.h"
#include "ulogui/DrawingFrame.h"
#include "ulogui/TrueColorDC.h"

namespace {

using surfacetest::Bgra;
using surfacetest::MagnifierTest;
using surfacetest::ObservedSurface;
using surfacetest::Pixel;
using surfacetest::PixelAt;
using ulogui::surface::DeviceCanvas;
using ulogui::surface::DrawingFrame;

const CLR kInk(200, 100, 50);
const Pixel kClear{0, 0, 0, 0};

// Expects exactly the device pixels inside `area` to be `inside`, all others `outside`.
void ExpectOnly(const ULOTrueColorDCBase& dc, const ULORect& area, const Pixel& inside,
                const Pixel& outside = kClear) {
    for (int y = 0; y < dc.GetHeight(true); ++y) {
        for (int x = 0; x < dc.GetWidth(true); ++x) {
            ASSERT_EQ(PixelAt(dc, x, y), area.Contains(ULOPoint(x, y)) ? inside : outside)
                << "at (" << x << ", " << y << ")";
        }
    }
}

using DrawingFrameTest = MagnifierTest;

TEST_F(DrawingFrameTest, ConvertsOnlyOutsideTheGuardOnAMagnifiedSurface) {
    SetMagnifier(1.5f);
    ULOTrueColorDCBase magnified(ULORect(0, 0, 10, 10), false, true);
    ULOTrueColorDCBase plain(ULORect(0, 0, 10, 10), false, false);
    {
        const DrawingFrame frame(magnified);
        EXPECT_TRUE(frame.Conversion().IsActive());
        EXPECT_TRUE(frame.Conversion().PixelIsBlock());
        EXPECT_EQ(frame.ToDevice(3), 5);  // 4.5 rounds up
        EXPECT_EQ(frame.ToDevice(-3), -4);
        EXPECT_EQ(frame.ToDevice(ULOPoint(1, 2)), ULOPoint(2, 3));
        EXPECT_EQ(frame.ToDevice(ULORect(1, 1, 4, 4)), ULORect(2, 2, 7, 7));
        // Inside the frame the surface works in device pixels, so a nested frame converts nothing.
        EXPECT_TRUE(magnified.GetWorkingOnScreenSize());
        const DrawingFrame nested(magnified);
        EXPECT_FALSE(nested.Conversion().IsActive());
        EXPECT_EQ(nested.ToDevice(ULORect(1, 1, 4, 4)), ULORect(1, 1, 4, 4));
        EXPECT_EQ(nested.Canvas().Bounds(), ULORect(0, 0, 15, 15));
    }
    EXPECT_FALSE(magnified.GetWorkingOnScreenSize());
    const DrawingFrame plainFrame(plain);
    EXPECT_FALSE(plainFrame.Conversion().IsActive());
    EXPECT_EQ(plainFrame.ToDevice(3), 3);
    EXPECT_FALSE(plain.GetWorkingOnScreenSize());  // never touched on a surface that is not magnified
}

TEST_F(DrawingFrameTest, ExceptionThroughADrawingMemberRestoresTheGuard) {
    SetMagnifier(2.0f);
    ObservedSurface dc(ULORect(0, 0, 4, 4), false, true);
    dc.throwFromHeight = true;
    const ULORect rect(0, 0, 2, 2);
    EXPECT_THROW(dc.FillRect(&rect, kInk, 0), std::runtime_error);
    EXPECT_FALSE(dc.GetWorkingOnScreenSize());
    EXPECT_THROW(dc.DrawPixel(ULOPoint(1, 1), kInk), std::runtime_error);
    EXPECT_FALSE(dc.GetWorkingOnScreenSize());
    dc.SetWorkingOnScreenSize(true);
    EXPECT_THROW(dc.DrawPixel(ULOPoint(1, 1), kInk), std::runtime_error);
    EXPECT_TRUE(dc.GetWorkingOnScreenSize());
}

TEST_F(DrawingFrameTest, MembersSeeDeviceGeometryAndReadableBitsWhileTheyRun) {
    SetMagnifier(1.5f);
    ObservedSurface magnified(ULORect(0, 0, 4, 4), false, true);
    const ULORect rect(0, 0, 2, 2);
    magnified.FillRect(&rect, kInk, 0);
    ASSERT_FALSE(magnified.guardSeen.empty());
    EXPECT_EQ(magnified.guardSeen, std::vector<bool>(magnified.guardSeen.size(), true));
    EXPECT_EQ(magnified.canGetBitsSeen, std::vector<bool>(magnified.canGetBitsSeen.size(), true));
    EXPECT_FALSE(magnified.GetWorkingOnScreenSize());

    ObservedSurface plain(ULORect(0, 0, 4, 4), false, false);
    plain.DrawPixel(ULOPoint(1, 1), kInk);
    ASSERT_FALSE(plain.guardSeen.empty());
    EXPECT_EQ(plain.guardSeen, std::vector<bool>(plain.guardSeen.size(), false));
}

TEST_F(DrawingFrameTest, BufferThatCannotBeDrawnOnSafelyHasNoBounds) {
    class OddSurface : public ULOTrueColorDCBase {
    public:
        OddSurface(unsigned char* memory, int flags, int lineWidth) {
            ULOPictureBits::operator=(ULOPictureBits(memory, 4, 2, lineWidth, flags));
        }
    };
    std::vector<unsigned char> memory(32, 0);
    OddSurface mask(memory.data(), PICTBITS_MASK8, 4);
    OddSurface shortRows(memory.data(), 0, 12);
    OddSurface noPixels(nullptr, 0, 16);
    for (ULOTrueColorDCBase* dc :
         {static_cast<ULOTrueColorDCBase*>(&mask), static_cast<ULOTrueColorDCBase*>(&shortRows),
          static_cast<ULOTrueColorDCBase*>(&noPixels)}) {
        EXPECT_TRUE(DeviceCanvas(*dc).IsEmpty());
        const ULORect all(0, 0, 4, 2);
        dc->FillRect(&all, kInk, 1);
        dc->DrawPixel(ULOPoint(1, 1), kInk);
    }
    shortRows = noPixels;  // nothing to copy from
    EXPECT_EQ(memory, std::vector<unsigned char>(32, 0));
}

using FillRectTest = MagnifierTest;

TEST_F(FillRectTest, EveryRowWidthAndOffsetMatchesAPixelByPixelFill) {
    // The row store is vectorised; odd widths and offsets exercise its head and tail.
    for (int left = 0; left < 5; ++left) {
        for (int w = 1; w <= 37; ++w) {
            ULOTrueColorDCBase dc(ULORect(0, 0, 42, 3), true, false);
            const ULORect rect(left, 1, left + w, 3);
            dc.FillRect(&rect, CLR(left, w, 7), static_cast<unsigned char>(w));
            ExpectOnly(dc, rect, Bgra(CLR(left, w, 7), static_cast<unsigned char>(w)));
        }
    }
}

TEST_F(FillRectTest, FullWidthBandsMatchAPixelByPixelFill) {
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
}

TEST_F(FillRectTest, PartlyOutsideIsCutAtTheBordersAndFullyOutsideDrawsNothing) {
    ULOTrueColorDCBase dc(ULORect(0, 0, 6, 4), false, false);
    const ULORect overhanging(-3, 2, 9, 8);
    dc.FillRect(&overhanging, kInk, 0);
    ExpectOnly(dc, ULORect(0, 2, 6, 4), Bgra(kInk, 0));

    ULOTrueColorDCBase untouched(ULORect(0, 0, 6, 4), false, false);
    for (const ULORect& r : {ULORect(6, 0, 9, 4), ULORect(-4, -4, 0, 0), ULORect(0, 4, 6, 5),
                             ULORect(INT32_MIN, 0, INT32_MIN + 1, 4)}) {
        untouched.FillRect(&r, kInk, 9);
    }
    ExpectOnly(untouched, ULORect(), kClear);
}

TEST_F(FillRectTest, EmptyOrNullRectangleDrawsNothing) {
    SetMagnifier(2.0f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 4, 4), false, true);
    const ULORect inverted(3, 3, 1, 1);
    const ULORect flat(0, 2, 4, 2);
    dc.FillRect(&inverted, kInk, 0);
    dc.FillRect(&flat, kInk, 0);
    dc.FillRect(nullptr, kInk, 0);
    ExpectOnly(dc, ULORect(), kClear);
}

TEST_F(FillRectTest, MagnifiedSurfaceFillsTheDeviceRectangle) {
    SetMagnifier(1.5f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 6, 6), false, true);  // 9 x 9
    const ULORect logical(1, 1, 4, 4);
    dc.FillRect(&logical, kInk, 5);
    ExpectOnly(dc, ULORect(2, 2, 7, 7), Bgra(kInk, 5));

    // Inside the guard the rectangle is already in device pixels.
    ULOTrueColorDCBase guarded(ULORect(0, 0, 6, 6), false, true);
    guarded.SetWorkingOnScreenSize(true);
    guarded.FillRect(&logical, kInk, 5);
    ExpectOnly(guarded, logical, Bgra(kInk, 5));
    EXPECT_TRUE(guarded.GetWorkingOnScreenSize());

    // Clipping happens after the conversion: (4, -1, 7, 1) -> (6, -1, 11, 2) on 9 x 9.
    ULOTrueColorDCBase overhanging(ULORect(0, 0, 6, 6), false, true);
    const ULORect edge(4, -1, 7, 1);
    overhanging.FillRect(&edge, kInk, 0);
    ExpectOnly(overhanging, ULORect(6, 0, 9, 2), Bgra(kInk, 0));
}

using DrawPixelTest = MagnifierTest;

TEST_F(DrawPixelTest, ColoursOnePixelAndLeavesItsAlpha) {
    ULOTrueColorDCBase dc(ULORect(0, 0, 10, 5), true, false);
    const ULORect all(0, 0, 10, 5);
    dc.FillRect(&all, CLR(0, 0, 0), 77);
    dc.DrawPixel(ULOPoint(4, 1), kInk);
    ExpectOnly(dc, ULORect(4, 1, 5, 2), Bgra(kInk, 77), Pixel{0, 0, 0, 77});
}

TEST_F(DrawPixelTest, OutsidePixelIsDrawnOnTheNearestBorder) {
    ULOTrueColorDCBase dc(ULORect(0, 0, 10, 5), false, false);
    dc.DrawPixel(ULOPoint(-5, 3), kInk);
    EXPECT_EQ(PixelAt(dc, 0, 3), Bgra(kInk, 0));
    dc.DrawPixel(ULOPoint(12, 3), CLR(1, 2, 3));
    EXPECT_EQ(PixelAt(dc, 9, 3), Bgra(CLR(1, 2, 3), 0));
    dc.DrawPixel(ULOPoint(INT32_MIN, INT32_MAX), CLR(4, 5, 6));
    EXPECT_EQ(PixelAt(dc, 0, 4), Bgra(CLR(4, 5, 6), 0));
}

TEST_F(DrawPixelTest, LogicalPixelFillsItsWholeMagnifiedBlockWithAlphaZero) {
    SetMagnifier(2.0f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 4, 4), true, true);
    dc.SetWorkingOnScreenSize(true);
    const ULORect all(0, 0, 8, 8);
    dc.FillRect(&all, CLR(0, 0, 0), 200);
    dc.SetWorkingOnScreenSize(false);

    dc.DrawPixel(ULOPoint(1, 2), kInk);
    ExpectOnly(dc, ULORect(2, 4, 4, 6), Bgra(kInk, 0), Pixel{0, 0, 0, 200});
    EXPECT_FALSE(dc.GetWorkingOnScreenSize());
}

TEST_F(DrawPixelTest, FractionalMagnifierBlockFollowsTheRectangleRule) {
    SetMagnifier(1.5f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 4, 4), false, true);  // 6 x 6
    dc.DrawPixel(ULOPoint(1, 1), kInk);                       // (1.5 -> 2, size 1.5 -> 2)
    ExpectOnly(dc, ULORect(2, 2, 4, 4), Bgra(kInk, 0));
}

TEST_F(DrawPixelTest, MagnifiedBlockOutsideTheSurfaceIsClippedLikeARectangle) {
    SetMagnifier(2.0f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 4, 4), false, true);
    dc.DrawPixel(ULOPoint(-5, 3), kInk);
    dc.DrawPixel(ULOPoint(INT32_MAX, 0), kInk);
    ExpectOnly(dc, ULORect(), kClear);
}

TEST_F(DrawPixelTest, SinglePixelWhereNoBlockIsDue) {
    // Magnifier 1.0 on a magnified surface, or a raised guard: one device pixel, clamped.
    ULOTrueColorDCBase atOne(ULORect(0, 0, 4, 4), false, true);
    atOne.DrawPixel(ULOPoint(9, 1), kInk);
    ExpectOnly(atOne, ULORect(3, 1, 4, 2), Bgra(kInk, 0));

    SetMagnifier(2.0f);
    ULOTrueColorDCBase guarded(ULORect(0, 0, 4, 4), false, true);
    guarded.SetWorkingOnScreenSize(true);
    guarded.DrawPixel(ULOPoint(-1, 5), kInk);
    ExpectOnly(guarded, ULORect(0, 5, 1, 6), Bgra(kInk, 0));
}

}  // namespace
