// Construction, copying, ownership (mistakes show in the sanitizer build) and the logical and device sizes
// of the drawing surface; the drawing frame and its two reference members, FillRect and DrawPixel.
#include <memory>
#include <new>

#include "SurfaceTestSupport.h"
#include "surface/DrawingFrame.h"

namespace {

using namespace surfacetest;
using Access = ULOTrueColorDCBaseTestAccess;

using SurfaceTest = MagnifierTest;

TEST_F(SurfaceTest, ConstructionCopiesAndAssignment) {
    const ULOTrueColorDCBase dc(ULORect(-7, 30, 3, 33), true, false);
    EXPECT_EQ(std::make_tuple(dc.GetSize(true), dc.GetLineWidth(true), dc.GetBytesPerPixel(), dc.GetFlags()),
              std::make_tuple(ULOSize(10, 3), 40, 4, PICTBITS_ALPHA));
    EXPECT_TRUE(Access::ComputeAlpha(dc));
    EXPECT_EQ(Bytes(dc), std::vector<unsigned char>(40 * 3, 0));
    EXPECT_FALSE(dc.GetUpdated() || dc.GetEnableMnemonic() || dc.GetWorkingOnScreenSize());
    EXPECT_FALSE(Access::ComputeAlpha(ULOTrueColorDCBase(ULORect(0, 0, 2, 2), false, false)));

    // An empty or inverted side becomes one pixel.
    for (const ULORect& rect : {ULORect(0, 0, 0, 0), ULORect(10, 10, 0, 0), ULORect(5, 5, 5, 9)}) {
        const ULOTrueColorDCBase one(rect, false, false);
        EXPECT_EQ(std::make_tuple(one.GetSize(true), one.GetLineWidth(true), PixelAt(one, 0, 0)),
                  std::make_tuple(ULOSize(1, rect.Height() > 0 ? rect.Height() : 1), 4, kClear));
    }

    // Sides too long for a 32-bit stride.
    for (const ULORect& rect :
         {ULORect(0, 0, INT_MAX, 1), ULORect(INT_MIN, 0, INT_MAX, 1), ULORect(0, INT_MIN, 1, INT_MAX)}) {
        EXPECT_THROW(ULOTrueColorDCBase(rect, false, false), std::bad_alloc);
    }
    SetMagnifier(4.0f);
    EXPECT_THROW(ULOTrueColorDCBase(ULORect(0, 0, INT_MAX / 8, 1), false, true), std::bad_alloc);

    // Device pixels cannot be read with logical coordinates until the guard is raised (on a const
    // surface too).
    const ULOTrueColorDCBase guarded(ULORect(0, 0, 4, 4), false, true);
    EXPECT_FALSE(Access::CanGetBits(guarded));
    guarded.SetWorkingOnScreenSize(true);
    EXPECT_TRUE(Access::CanGetBits(guarded) && Access::CanGetBits(dc));

    // A copy is a view of the same pixels with the same flags that frees nothing.
    SetMagnifier(2.0f);
    auto original = std::make_unique<ULOTrueColorDCBase>(ULORect(0, 0, 3, 2), true, true);
    original->SetUpdated(true);
    original->SetEnableMnemonic(true);
    {
        ULOTrueColorDCBase copy(*original);
        EXPECT_EQ(std::make_tuple(copy.GetBits(), copy.GetSize(true), copy.GetSize(false), copy.GetFlags()),
                  std::make_tuple(original->GetBits(), ULOSize(6, 4), ULOSize(3, 2), PICTBITS_ALPHA));
        EXPECT_TRUE(copy.IsMagnified() && copy.GetUpdated() && copy.GetEnableMnemonic());
        EXPECT_FALSE(copy.GetWorkingOnScreenSize());
        const ULORect all(0, 0, 3, 2);
        copy.FillRect(&all, CLR(1, 2, 3), 4);
        EXPECT_EQ(PixelAt(*original, 5, 3), Bgra(CLR(1, 2, 3), 4));
        EXPECT_EQ(ULOTrueColorDCBase(copy).GetBits(), original->GetBits());
    }
    // The copies are gone and freed nothing: the original still draws into its block.
    const ULORect first(0, 0, 1, 1);
    original->FillRect(&first, CLR(9, 9, 9), 0);
    EXPECT_EQ(PixelAt(*original, 0, 0), Bgra(CLR(9, 9, 9), 0));
    // A copy that outlives the original frees nothing either.
    auto late = std::make_unique<ULOTrueColorDCBase>(*original);
    original.reset();
    late.reset();
    // Assignment copies pixels only, cut to the smaller block and the logical share.
    ULOTrueColorDCBase target(ULORect(0, 0, 6, 6), false, false);
    ULOTrueColorDCBase small(ULORect(0, 0, 2, 2), true, false);
    FillAll(small, CLR(1, 1, 1), 1);
    small.SetUpdated(true);
    target = small;  // 16 bytes available, 144 asked for
    std::vector<unsigned char> expected(144, 0);
    std::fill(expected.begin(), expected.begin() + 16, 1);
    EXPECT_EQ(std::make_tuple(Bytes(target), target.GetUpdated(), target.GetFlags()),
              std::make_tuple(expected, false, 0));

    FillAll(target, CLR(2, 2, 2), 2);
    small = target;  // only the 16 bytes the target holds
    EXPECT_EQ(Bytes(small), std::vector<unsigned char>(16, 2));

    // Assigning a view of itself changes nothing.
    const ULOTrueColorDCBase view(small);
    small = view;
    EXPECT_EQ(Bytes(small), std::vector<unsigned char>(16, 2));

    // A magnified surface outside the guard copies GetLineWidth(false) * GetHeight(false) = 16 * 4 = 64 of
    // its 256 bytes; inside the guard the getters give device sizes, so everything is copied.
    SetMagnifier(2.0f);
    ULOTrueColorDCBase magnified(ULORect(0, 0, 4, 4), false, true);
    ULOTrueColorDCBase source(ULORect(0, 0, 4, 4), false, true);
    FillAll(source, CLR(7, 7, 7), 7);
    magnified = source;
    expected.assign(256, 0);
    std::fill(expected.begin(), expected.begin() + 64, 7);
    EXPECT_EQ(Bytes(magnified), expected);
    magnified.SetWorkingOnScreenSize(true);
    magnified = source;
    EXPECT_EQ(Bytes(magnified), Bytes(source));
}

TEST_F(MagnifierTest, GettersAreLogicalOutsideTheGuardAndLogicalSizesFollowTheCallingThreadsMagnifier) {
    // Getters report logical sizes only outside the guard.
    // The buffer built from (0, 0, 10, 7): 7 * 1.5 = 10.5 rounds up to 11, and 11 / 1.5 = 7.33 back down.
    const std::pair<float, ULOSize> devices[] = {
        {1.0f, ULOSize(10, 7)}, {1.5f, ULOSize(15, 11)}, {2.0f, ULOSize(20, 14)}};
    for (const auto& d : devices) {
        SCOPED_TRACE(::testing::Message() << "magnifier " << d.first);
        SetMagnifier(d.first);
        const ULOSize device = d.second, logical(10, 7);
        const ULOTrueColorDCBase dc(ULORect(0, 0, 10, 7), false, true);
        const auto sizes = [&dc] {
            return std::make_tuple(ULOSize(dc.GetWidth(false), dc.GetHeight(false)), dc.GetSize(false),
                                   dc.GetRect(false), dc.GetLineWidth(false));
        };
        EXPECT_EQ(std::make_tuple(dc.GetSize(true), dc.GetLineWidth(true)),
                  std::make_tuple(device, device.cx * 4));
        // The stride is divided like a length: 60 / 1.5, 80 / 2.
        EXPECT_EQ(sizes(), std::make_tuple(logical, logical, ULORect(0, 0, 10, 7), 40));
        dc.SetWorkingOnScreenSize(true);
        EXPECT_EQ(sizes(),
                  std::make_tuple(device, device, ULORect(0, 0, device.cx, device.cy), device.cx * 4));
        // A surface that is not magnified always reports its buffer.
        const ULOTrueColorDCBase plain(ULORect(0, 0, 10, 7), false, false);
        EXPECT_EQ(std::make_tuple(plain.GetSize(false), plain.GetLineWidth(false)),
                  std::make_tuple(logical, 40));
    }
    // Logical sizes follow the calling thread's current magnifier.
    SetMagnifier(2.0f);
    const ULOTrueColorDCBase dc(ULORect(0, 0, 10, 10), false, true);
    SetMagnifier(1.5f);
    EXPECT_EQ(dc.GetWidth(false), 13);      // 20 / 1.5 = 13.33
    EXPECT_EQ(dc.GetLineWidth(false), 53);  // 80 / 1.5 = 53.33
    // A thread of its own starts at 1.0 (no global factor is set) and sees device sizes.
    int otherThreadWidth = 0;
    std::thread([&] { otherThreadWidth = dc.GetWidth(false); }).join();
    EXPECT_EQ(otherThreadWidth, 20);
}

using SurfaceResizeTest = MagnifierTest;

TEST_F(SurfaceResizeTest, ArgumentsAreLogicalOnlyOutsideTheGuardAndGivenMemoryIsNotOwned) {
    SetMagnifier(2.0f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 10, 10), false, true);
    dc.Crop(6, 4, ULOPictureBits::eCropTopLeft);
    // The crop resizes through the virtual Resize; that nested call must not double the size again.
    EXPECT_EQ(std::make_tuple(dc.GetSize(true), dc.GetSize(false)),
              std::make_tuple(ULOSize(12, 8), ULOSize(6, 4)));
    dc.Resize(5, 3, ULOPictureBits::eResizeNearest);
    EXPECT_EQ(dc.GetSize(true), ULOSize(10, 6));
    dc.ResizeLazy(7, 2);
    EXPECT_EQ(std::make_tuple(dc.GetSize(true), dc.GetLineWidth(true)), std::make_tuple(ULOSize(14, 4), 56));
    dc.HResize(9);
    EXPECT_EQ(dc.GetSize(true), ULOSize(18, 4));
    dc.ResizeToWidth(3, ULOPictureBits::eResizeNearest);
    EXPECT_EQ(dc.GetWidth(true), 6);
    dc.ResizeToHeight(4, ULOPictureBits::eResizeNearest);
    EXPECT_EQ(dc.GetHeight(true), 8);
    EXPECT_FALSE(dc.GetWorkingOnScreenSize());

    dc.SetWorkingOnScreenSize(true);
    dc.Crop(6, 4, ULOPictureBits::eCropCenter);
    EXPECT_EQ(dc.GetSize(true), ULOSize(6, 4));
    EXPECT_TRUE(dc.GetWorkingOnScreenSize());

    ULOTrueColorDCBase plain(ULORect(0, 0, 10, 10), false, false);
    plain.Resize(4, 3, ULORect(0, 0, 10, 10), ULOPictureBits::eResizeBox);
    EXPECT_EQ(plain.GetSize(true), ULOSize(4, 3));
    plain.Crop(ULORect(1, 1, 3, 2));
    EXPECT_EQ(plain.GetSize(true), ULOSize(2, 1));

    // A crop rectangle is scaled as a rectangle, and its pixels follow.
    SetMagnifier(1.5f);
    ULOTrueColorDCBase scaled(ULORect(0, 0, 10, 10), false, true);
    scaled.Crop(ULORect(1, 1, 4, 3));  // (2, 2, 7, 5) in device pixels: origin and size scaled apart
    EXPECT_EQ(scaled.GetSize(true), ULOSize(5, 3));
    SetMagnifier(2.0f);
    ULOTrueColorDCBase marked(ULORect(0, 0, 4, 4), false, true);
    const ULORect mark(1, 1, 2, 2);  // device (2, 2)-(4, 4)
    marked.FillRect(&mark, CLR(200, 100, 50), 0);
    marked.Crop(ULORect(1, 1, 3, 3));  // device source (2, 2, 6, 6)
    ASSERT_EQ(marked.GetSize(true), ULOSize(4, 4));
    ExpectOnly(marked, ULORect(0, 0, 2, 2), Bgra(CLR(200, 100, 50), 0));
    // A surface given memory starts unmagnified and draws into it without owning it; a buffer operation
    // replaces that memory with a block the surface then owns and frees (the sanitizer build reports a
    // leak or a wrong free otherwise).
    std::vector<unsigned char> memory(16, 9);
    {
        BufferSurface given(memory.data(), 2, 2, 8);
        EXPECT_FALSE(given.OwnBuffer() || given.IsMagnified() || given.GetWorkingOnScreenSize());
        const ULORect all(0, 0, 2, 2);
        given.FillRect(&all, CLR(3, 3, 3), 3);
        EXPECT_EQ(memory, std::vector<unsigned char>(16, 3));
        given.Resize(3, 3, ULOPictureBits::eResizeNearest);
        EXPECT_EQ(given.GetSize(true), ULOSize(3, 3));
        EXPECT_NE(given.GetBits(), memory.data());
        EXPECT_TRUE(given.OwnBuffer());
    }
    EXPECT_EQ(memory, std::vector<unsigned char>(16, 3));
    EXPECT_TRUE(BufferSurface(2, 2).OwnBuffer());  // a block handed over is freed by the surface
}

using ulogui::surface::DeviceView;
using ulogui::surface::DrawingFrame;

const CLR kInk(200, 100, 50);

using DrawingFrameTest = MagnifierTest;

TEST_F(DrawingFrameTest, ConvertsOnlyOutsideTheGuardRestoresItOnExceptionsAndRefusesUnsafeBuffers) {
    // Lengths and points, which no member here converts, round as floor(v * m + 0.5).
    SetMagnifier(1.5f);
    ULOTrueColorDCBase surface(ULORect(0, 0, 10, 10), false, true);
    const DrawingFrame frame(surface);
    EXPECT_EQ(frame.ToDevice(3), 5);    // 4.5 rounds up
    EXPECT_EQ(frame.ToDevice(-2), -3);  // floor(-3 + 0.5), not truncation
    EXPECT_EQ(frame.ToDevice(ULOPoint(1, 2)), ULOPoint(2, 3));
    EXPECT_EQ(DrawingFrame(surface).ToDevice(3), 3);  // nested: the guard is up
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
    // A buffer that cannot be drawn on safely has no bounds.
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

// FillRect cuts rectangles at the borders (outside, empty or inverted ones draw nothing); magnified, origin
// and size are scaled apart, rounding as floor(v * m + 0.5), then clipped; inside the guard they are
// device pixels. DrawPixel writes one device pixel, keeping its alpha and clamped to the nearest border,
// on a surface that is not magnified, at magnifier 1.0 or inside the guard; otherwise the logical pixel
// is its whole device block, alpha 0, clipped like a rectangle.
TEST_F(DrawingFrameTest, FillRectClipsAndFillsEveryRowAndDrawPixelClampsOrFillsItsBlock) {
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

}  // namespace
