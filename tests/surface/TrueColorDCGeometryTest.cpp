// Logical and device sizes of the surface under magnifiers 1.0, 1.5 and 2.0, with the guard raised or
// not, and the size-changing operations, which take logical units only outside the guard.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "SurfaceTestSupport.h"
#include "ulogui/TrueColorDC.h"

namespace {

using surfacetest::MagnifierTest;

struct GeometryCase {
    float magnifier;
    ULOSize device;        // the buffer built from (0, 0, 10, 7)
    ULOSize logical;       // what the getters report outside the guard
    int logicalLineWidth;  // the byte stride divided like a length
};

class SurfaceGeometryTest : public MagnifierTest, public ::testing::WithParamInterface<GeometryCase> {};

TEST_P(SurfaceGeometryTest, GettersReportLogicalSizesOnlyOutsideTheGuard) {
    const GeometryCase& c = GetParam();
    SetMagnifier(c.magnifier);
    const ULOTrueColorDCBase dc(ULORect(0, 0, 10, 7), false, true);
    const int deviceLineWidth = c.device.cx * 4;

    EXPECT_EQ(dc.GetSize(true), c.device);
    EXPECT_EQ(dc.GetLineWidth(true), deviceLineWidth);
    EXPECT_EQ(dc.GetWidth(false), c.logical.cx);
    EXPECT_EQ(dc.GetHeight(false), c.logical.cy);
    EXPECT_EQ(dc.GetSize(false), c.logical);
    EXPECT_EQ(dc.GetRect(false), ULORect(0, 0, c.logical.cx, c.logical.cy));
    EXPECT_EQ(dc.GetLineWidth(false), c.logicalLineWidth);

    dc.SetWorkingOnScreenSize(true);
    EXPECT_EQ(dc.GetWidth(false), c.device.cx);
    EXPECT_EQ(dc.GetHeight(false), c.device.cy);
    EXPECT_EQ(dc.GetSize(false), c.device);
    EXPECT_EQ(dc.GetRect(false), ULORect(0, 0, c.device.cx, c.device.cy));
    EXPECT_EQ(dc.GetLineWidth(false), deviceLineWidth);

    // A surface that is not magnified always reports its buffer.
    const ULOTrueColorDCBase plain(ULORect(0, 0, 10, 7), false, false);
    EXPECT_EQ(plain.GetSize(false), ULOSize(10, 7));
    EXPECT_EQ(plain.GetLineWidth(false), 40);
}

INSTANTIATE_TEST_SUITE_P(
    Magnifiers, SurfaceGeometryTest,
    ::testing::Values(GeometryCase{1.0f, ULOSize(10, 7), ULOSize(10, 7), 40},
                      // 7 * 1.5 = 10.5 rounds up to 11; 11 / 1.5 = 7.33 rounds back to 7; 60 / 1.5 = 40.
                      GeometryCase{1.5f, ULOSize(15, 11), ULOSize(10, 7), 40},
                      GeometryCase{2.0f, ULOSize(20, 14), ULOSize(10, 7), 40}));

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

// The size-changing operations, on a surface of 10 x 10 logical units.
using SurfaceResizeTest = MagnifierTest;

TEST_F(SurfaceResizeTest, ArgumentsAreLogicalOnAMagnifiedSurfaceOutsideTheGuard) {
    SetMagnifier(2.0f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 10, 10), false, true);
    dc.Crop(6, 4, ULOPictureBits::eCropTopLeft);
    // The crop resizes through the virtual Resize; that nested call must not double the size again.
    EXPECT_EQ(dc.GetSize(true), ULOSize(12, 8));
    EXPECT_EQ(dc.GetSize(false), ULOSize(6, 4));
    EXPECT_FALSE(dc.GetWorkingOnScreenSize());

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
}

TEST_F(SurfaceResizeTest, CropRectangleIsScaledAsARectangle) {
    SetMagnifier(1.5f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 10, 10), false, true);
    dc.Crop(ULORect(1, 1, 4, 3));  // (2, 2, 7, 5) in device pixels: origin and size scaled apart
    EXPECT_EQ(dc.GetSize(true), ULOSize(5, 3));
}

TEST_F(SurfaceResizeTest, ArgumentsAreDevicePixelsInsideTheGuardOrWithoutMagnification) {
    SetMagnifier(2.0f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 10, 10), false, true);
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

TEST_F(SurfaceResizeTest, CroppedPixelsComeFromTheScaledSourceRectangle) {
    SetMagnifier(2.0f);
    ULOTrueColorDCBase dc(ULORect(0, 0, 4, 4), false, true);
    const ULORect marked(1, 1, 2, 2);  // device (2, 2)-(4, 4)
    dc.FillRect(&marked, CLR(200, 100, 50), 0);
    dc.Crop(ULORect(1, 1, 3, 3));  // device source (2, 2, 6, 6)
    ASSERT_EQ(dc.GetSize(true), ULOSize(4, 4));
    EXPECT_EQ(surfacetest::PixelAt(dc, 1, 1)[2], 200);
    EXPECT_EQ(surfacetest::PixelAt(dc, 2, 2)[2], 0);
}

// A surface given memory it must not free: a buffer operation replaces that memory with a block the
// surface then owns and frees (the sanitizer build reports it otherwise).
TEST_F(SurfaceResizeTest, BlockBuiltByAResizeIsFreedByASurfaceThatWasGivenItsBuffer) {
    class GivenBufferSurface : public ULOTrueColorDCBase {
    public:
        explicit GivenBufferSurface(std::vector<unsigned char>& memory) {
            ULOPictureBits::operator=(ULOPictureBits(memory.data(), 2, 2, 8, 0));
        }
    };
    std::vector<unsigned char> memory(16, 9);
    {
        GivenBufferSurface dc(memory);
        dc.Resize(3, 3, ULOPictureBits::eResizeNearest);
        EXPECT_EQ(dc.GetSize(true), ULOSize(3, 3));
        EXPECT_NE(dc.GetBits(), memory.data());
    }
    EXPECT_EQ(memory, std::vector<unsigned char>(16, 9));
}

}  // namespace
