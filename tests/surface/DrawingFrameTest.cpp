// The drawing frame: conversion only outside the guard on a magnified surface, the guard raised while a
// member runs and restored on every exit, clipping of rectangles, clamping of points, bottom-up rows;
// and the two reference members, FillRect and DrawPixel, on plain and magnified surfaces.
#include "GoldenScene.h"
#include "surface/DrawingFrame.h"

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

// FillRect cuts rectangles at the borders (outside, empty or inverted ones draw nothing); magnified, origin
// and size are scaled apart, rounding as floor(v * m + 0.5), then clipped; inside the guard they are
// device pixels. DrawPixel writes one device pixel, keeping its alpha and clamped to the nearest border,
// on a surface that is not magnified, at magnifier 1.0 or inside the guard; otherwise the logical pixel
// is its whole device block, alpha 0, clipped like a rectangle.
TEST_F(DrawingFrameTest, FillRectClipsAndDrawPixelClampsOrFillsItsBlock) {
    using DC = ULOTrueColorDCBase;
    const auto fill = [](ULORect rect) { return [rect](DC& dc) { dc.FillRect(&rect, kInk, 5); }; };
    const auto pixel = [](int x, int y) { return [x, y](DC& dc) { dc.DrawPixel(ULOPoint(x, y), kInk); }; };
    // clang-format off
    ExpectScenes("surface/fill-rect-pixel", {
        {"cut", 1, true, false, false, 6, 6, fill({-3, 2, 9, 8})},
        {"outside right", 1, true, false, false, 6, 6, fill({6, 0, 9, 4})},
        {"outside left", 1, true, false, false, 6, 6, fill({-4, -4, 0, 0})},
        {"far outside", 1, true, false, false, 6, 6, fill({INT_MIN, 0, INT_MIN + 1, 4})},
        {"inverted", 1, true, false, false, 6, 6, fill({3, 3, 1, 1})},
        {"empty", 1, true, false, false, 6, 6, fill({0, 2, 4, 2})},
        {"inverted at 2.0", 2, true, true, false, 6, 6, fill({3, 3, 1, 1})},
        {"1.5", 1.5f, true, true, false, 6, 6, fill({1, 1, 4, 4})},
        {"1.5 at the edge", 1.5f, true, true, false, 6, 6, fill({4, -1, 7, 1})},
        {"2.0 at the edge", 2, true, true, false, 6, 6, fill({-1, 0, 1, 1})},
        {"1.5 inside the guard", 1.5f, true, true, true, 6, 6, fill({1, 1, 4, 4})},
        {"no rectangle", 1, false, false, false, 2, 2, [](DC& dc) { dc.FillRect(nullptr, kInk, 0); }},
        {"pixel", 1, true, false, false, 6, 6, pixel(4, 1)},
        {"pixel left", 1, true, false, false, 6, 6, pixel(-5, 3)},
        {"pixel right", 1, true, false, false, 6, 6, pixel(6, 3)},
        {"pixel far", 1, true, false, false, 6, 6, pixel(INT_MIN, INT_MAX)},
        {"pixel, magnified at 1.0", 1, true, true, false, 6, 6, pixel(9, 1)},
        {"pixel at 2.0 inside the guard", 2, true, true, true, 6, 6, pixel(-1, 5)},
        {"pixel block at 2.0", 2, true, true, false, 6, 6, pixel(1, 2)},
        {"pixel block at 1.5", 1.5f, true, true, false, 6, 6, pixel(1, 1)},
        {"pixel block outside", 2, true, true, false, 6, 6, pixel(-5, 3)},
        {"pixel block far outside", 2, true, true, false, 6, 6, pixel(INT_MAX, 0)},
    });
    // clang-format on
}

}  // namespace
