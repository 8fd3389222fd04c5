// Logical and device sizes of the surface under magnifiers 1.0, 1.5 and 2.0, with the guard raised or
// not, and the size-changing operations, which take logical units only outside the guard.
#include <gtest/gtest.h>

#include <thread>
#include <utility>
#include <vector>

#include "SurfaceTestSupport.h"
#include "ulogui/TrueColorDC.h"

namespace {

using namespace surfacetest;

TEST_F(MagnifierTest, GettersReportLogicalSizesOnlyOutsideTheGuard) {
    // The buffer built from (0, 0, 10, 7): 7 * 1.5 = 10.5 rounds up to 11, and 11 / 1.5 = 7.33 back down.
    const std::pair<float, ULOSize> devices[] = {
        {1.0f, ULOSize(10, 7)}, {1.5f, ULOSize(15, 11)}, {2.0f, ULOSize(20, 14)}};
    for (const auto& d : devices) {
        SCOPED_TRACE(::testing::Message() << "magnifier " << d.first);
        SetMagnifier(d.first);
        const ULOSize device = d.second, logical(10, 7);
        const ULOTrueColorDCBase dc(ULORect(0, 0, 10, 7), false, true);
        EXPECT_EQ(dc.GetSize(true), device);
        EXPECT_EQ(dc.GetLineWidth(true), device.cx * 4);
        EXPECT_EQ(ULOSize(dc.GetWidth(false), dc.GetHeight(false)), logical);
        EXPECT_EQ(dc.GetSize(false), logical);
        EXPECT_EQ(dc.GetRect(false), ULORect(0, 0, 10, 7));
        EXPECT_EQ(dc.GetLineWidth(false), 40);  // the stride divided like a length: 60 / 1.5, 80 / 2

        dc.SetWorkingOnScreenSize(true);
        EXPECT_EQ(ULOSize(dc.GetWidth(false), dc.GetHeight(false)), device);
        EXPECT_EQ(dc.GetSize(false), device);
        EXPECT_EQ(dc.GetRect(false), ULORect(0, 0, device.cx, device.cy));
        EXPECT_EQ(dc.GetLineWidth(false), device.cx * 4);

        // A surface that is not magnified always reports its buffer.
        const ULOTrueColorDCBase plain(ULORect(0, 0, 10, 7), false, false);
        EXPECT_EQ(plain.GetSize(false), logical);
        EXPECT_EQ(plain.GetLineWidth(false), 40);
    }
}

TEST_F(MagnifierTest, LogicalSizesFollowTheCallingThreadsCurrentMagnifier) {
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

TEST_F(SurfaceResizeTest, ArgumentsAreLogicalOnlyOnAMagnifiedSurfaceOutsideTheGuard) {
    SetMagnifier(2.0f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 10, 10), false, true);
    dc.Crop(6, 4, ULOPictureBits::eCropTopLeft);
    // The crop resizes through the virtual Resize; that nested call must not double the size again.
    EXPECT_EQ(dc.GetSize(true), ULOSize(12, 8));
    EXPECT_EQ(dc.GetSize(false), ULOSize(6, 4));
    dc.Resize(5, 3, ULOPictureBits::eResizeNearest);
    EXPECT_EQ(dc.GetSize(true), ULOSize(10, 6));
    dc.ResizeLazy(7, 2);
    EXPECT_EQ(dc.GetSize(true), ULOSize(14, 4));
    EXPECT_EQ(dc.GetLineWidth(true), 56);
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
}

TEST_F(SurfaceResizeTest, CropRectangleIsScaledAsARectangleAndItsPixelsFollow) {
    SetMagnifier(1.5f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 10, 10), false, true);
    dc.Crop(ULORect(1, 1, 4, 3));  // (2, 2, 7, 5) in device pixels: origin and size scaled apart
    EXPECT_EQ(dc.GetSize(true), ULOSize(5, 3));

    SetMagnifier(2.0f);
    ULOTrueColorDCBase marked(ULORect(0, 0, 4, 4), false, true);
    const ULORect mark(1, 1, 2, 2);  // device (2, 2)-(4, 4)
    marked.FillRect(&mark, CLR(200, 100, 50), 0);
    marked.Crop(ULORect(1, 1, 3, 3));  // device source (2, 2, 6, 6)
    ASSERT_EQ(marked.GetSize(true), ULOSize(4, 4));
    ExpectOnly(marked, ULORect(0, 0, 2, 2), Bgra(CLR(200, 100, 50), 0));
}

// A surface given memory starts unmagnified and draws into it without owning it; a buffer operation
// replaces that memory with a block the surface then owns and frees (the sanitizer build reports a
// leak or a wrong free otherwise).
TEST_F(SurfaceResizeTest, GivenMemoryIsNotOwnedButABlockBuiltByAResizeIs) {
    std::vector<unsigned char> memory(16, 9);
    {
        BufferSurface dc(memory.data(), 2, 2, 8);
        EXPECT_FALSE(dc.OwnBuffer() || dc.IsMagnified() || dc.GetWorkingOnScreenSize());
        const ULORect all(0, 0, 2, 2);
        dc.FillRect(&all, CLR(3, 3, 3), 3);
        EXPECT_EQ(memory, std::vector<unsigned char>(16, 3));
        dc.Resize(3, 3, ULOPictureBits::eResizeNearest);
        EXPECT_EQ(dc.GetSize(true), ULOSize(3, 3));
        EXPECT_NE(dc.GetBits(), memory.data());
        EXPECT_TRUE(dc.OwnBuffer());
    }
    EXPECT_EQ(memory, std::vector<unsigned char>(16, 3));
    EXPECT_TRUE(BufferSurface(2, 2).OwnBuffer());  // a block handed over is freed by the surface
}

}  // namespace
