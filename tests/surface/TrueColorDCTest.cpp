// Construction, copying, pixel assignment and ownership of the drawing surface. Ownership mistakes show
// in the sanitizer build: a block freed twice or one the surface did not allocate aborts, a block never
// freed is reported as a leak.
#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <vector>

#include "SurfaceTestSupport.h"
#include "ulogui/TrueColorDC.h"

namespace {

using surfacetest::Bgra;
using surfacetest::MagnifierTest;
using surfacetest::Pixel;
using surfacetest::PixelAt;

using SurfaceConstructionTest = MagnifierTest;

TEST_F(SurfaceConstructionTest, EmptyOrInvertedRectangleGivesOneClearedPixel) {
    for (const ULORect& rect : {ULORect(0, 0, 0, 0), ULORect(10, 10, 0, 0), ULORect(5, 5, 5, 9)}) {
        const ULOTrueColorDCBase dc(rect, false, false);
        EXPECT_EQ(dc.GetWidth(true), 1);
        EXPECT_EQ(dc.GetHeight(true), rect.Height() > 0 ? rect.Height() : 1);
        EXPECT_EQ(dc.GetLineWidth(true), 4);
        EXPECT_EQ(PixelAt(dc, 0, 0), (Pixel{0, 0, 0, 0}));
    }
}

TEST_F(SurfaceConstructionTest, BufferTakesTheRectangleSizeWhereverItLies) {
    const ULOTrueColorDCBase dc(ULORect(-7, 30, 3, 33), true, false);
    EXPECT_EQ(dc.GetSize(true), ULOSize(10, 3));
    EXPECT_EQ(dc.GetLineWidth(true), 40);
    EXPECT_EQ(dc.GetBytesPerPixel(), 4);
    EXPECT_EQ(dc.GetFlags(), PICTBITS_ALPHA);
    EXPECT_TRUE(ULOTrueColorDCBaseTestAccess::ComputeAlpha(dc));
    for (int i = 0; i < 40 * 3; ++i) {
        ASSERT_EQ(dc.GetBits()[i], 0) << i;
    }
    const ULOTrueColorDCBase opaque(ULORect(0, 0, 2, 2), false, false);
    EXPECT_EQ(opaque.GetFlags(), 0);
    EXPECT_FALSE(ULOTrueColorDCBaseTestAccess::ComputeAlpha(opaque));
}

TEST_F(SurfaceConstructionTest, SidesTooLongForA32BitStrideThrowBadAlloc) {
    EXPECT_THROW(ULOTrueColorDCBase(ULORect(0, 0, INT_MAX, 1), false, false), std::bad_alloc);
    EXPECT_THROW(ULOTrueColorDCBase(ULORect(INT_MIN, 0, INT_MAX, 1), false, false), std::bad_alloc);
    EXPECT_THROW(ULOTrueColorDCBase(ULORect(0, INT_MIN, 1, INT_MAX), false, false), std::bad_alloc);
    SetMagnifier(4.0f);
    EXPECT_THROW(ULOTrueColorDCBase(ULORect(0, 0, INT_MAX / 8, 1), false, true), std::bad_alloc);
}

TEST_F(SurfaceConstructionTest, FlagsStartClearAndTheGuardOpensTheBits) {
    SetMagnifier(2.0f);
    const ULOTrueColorDCBase dc(ULORect(0, 0, 4, 4), false, true);
    EXPECT_FALSE(dc.GetUpdated());
    EXPECT_FALSE(dc.GetEnableMnemonic());
    EXPECT_FALSE(dc.GetWorkingOnScreenSize());
    // Device pixels cannot be read with logical coordinates until the guard is raised (on a const
    // surface too).
    EXPECT_FALSE(ULOTrueColorDCBaseTestAccess::CanGetBits(dc));
    dc.SetWorkingOnScreenSize(true);
    EXPECT_TRUE(ULOTrueColorDCBaseTestAccess::CanGetBits(dc));
    const ULOTrueColorDCBase plain(ULORect(0, 0, 4, 4), false, false);
    EXPECT_TRUE(ULOTrueColorDCBaseTestAccess::CanGetBits(plain));
}

// Hosts name the copy types through the surface; their values are part of the interface.
static_assert(ULOTrueColorDCBase::eCopyNormal == 0 && ULOTrueColorDCBase::eCopyHighlight == 1 &&
                  ULOTrueColorDCBase::eCopyDisabled == 2 && ULOTrueColorDCBase::eCopyDarken == 3,
              "copy type values are fixed");

using SurfaceCopyTest = MagnifierTest;

TEST_F(SurfaceCopyTest, CopyIsAViewOfTheSamePixelsWithTheSameFlags) {
    SetMagnifier(2.0f);
    auto original = std::make_unique<ULOTrueColorDCBase>(ULORect(0, 0, 3, 2), true, true);
    original->SetUpdated(true);
    original->SetEnableMnemonic(true);
    {
        ULOTrueColorDCBase copy(*original);
        EXPECT_EQ(copy.GetBits(), original->GetBits());
        EXPECT_EQ(copy.GetSize(true), ULOSize(6, 4));
        EXPECT_EQ(copy.GetSize(false), ULOSize(3, 2));
        EXPECT_TRUE(copy.IsMagnified());
        EXPECT_TRUE(copy.GetUpdated());
        EXPECT_TRUE(copy.GetEnableMnemonic());
        EXPECT_FALSE(copy.GetWorkingOnScreenSize());
        EXPECT_EQ(copy.GetFlags(), PICTBITS_ALPHA);

        const ULORect all(0, 0, 3, 2);
        copy.FillRect(&all, CLR(1, 2, 3), 4);
        EXPECT_EQ(PixelAt(*original, 5, 3), Bgra(CLR(1, 2, 3), 4));

        const ULOTrueColorDCBase copyOfCopy(copy);
        EXPECT_EQ(copyOfCopy.GetBits(), original->GetBits());
    }
    // The copies are gone and freed nothing: the original still draws into its block.
    const ULORect first(0, 0, 1, 1);
    original->FillRect(&first, CLR(9, 9, 9), 0);
    EXPECT_EQ(PixelAt(*original, 0, 0), Bgra(CLR(9, 9, 9), 0));
    // A copy that outlives the original frees nothing either.
    auto late = std::make_unique<ULOTrueColorDCBase>(*original);
    original.reset();
    late.reset();
}

// A 4 x 4 logical surface at magnifier 2: 8 x 8 device pixels, 32-byte rows, 256 bytes.
class SurfaceAssignTest : public MagnifierTest {
protected:
    static std::vector<unsigned char> Bytes(const ULOTrueColorDCBase& dc) {
        const unsigned char* b = dc.GetBits();
        return std::vector<unsigned char>(b, b + dc.GetLineWidth(true) * dc.GetHeight(true));
    }
    static void FillAll(ULOTrueColorDCBase& dc, const CLR& colour, unsigned char alpha) {
        const ULOTrueColorDCBase& view = dc;
        view.SetWorkingOnScreenSize(true);
        const ULORect all = dc.GetRect(true);
        dc.FillRect(&all, colour, alpha);
        view.SetWorkingOnScreenSize(false);
    }
};

TEST_F(SurfaceAssignTest, CopiesEveryByteOfAnUnmagnifiedSurface) {
    ULOTrueColorDCBase target(ULORect(0, 0, 5, 3), false, false);
    ULOTrueColorDCBase source(ULORect(0, 0, 5, 3), true, false);
    FillAll(source, CLR(10, 20, 30), 40);
    source.SetUpdated(true);
    target = source;
    EXPECT_EQ(Bytes(target), Bytes(source));
    EXPECT_NE(target.GetBits(), source.GetBits());
    EXPECT_FALSE(target.GetUpdated());  // pixels only
    EXPECT_EQ(target.GetFlags(), 0);
}

TEST_F(SurfaceAssignTest, MagnifiedSurfaceCopiesOnlyItsLogicalShareOfBytes) {
    SetMagnifier(2.0f);
    ULOTrueColorDCBase target(ULORect(0, 0, 4, 4), false, true);
    ULOTrueColorDCBase source(ULORect(0, 0, 4, 4), false, true);
    FillAll(source, CLR(7, 7, 7), 7);
    target = source;
    // GetLineWidth(false) * GetHeight(false) = 16 * 4 = 64 of the 256 bytes.
    const std::vector<unsigned char> bytes = Bytes(target);
    for (size_t i = 0; i < bytes.size(); ++i) {
        ASSERT_EQ(bytes[i], i < 64 ? 7 : 0) << i;
    }
    // Inside the guard the getters give device sizes, so everything is copied.
    target.SetWorkingOnScreenSize(true);
    target = source;
    EXPECT_EQ(Bytes(target), Bytes(source));
}

TEST_F(SurfaceAssignTest, CountIsCutToTheSmallerBlock) {
    ULOTrueColorDCBase large(ULORect(0, 0, 6, 6), false, false);
    ULOTrueColorDCBase small(ULORect(0, 0, 2, 2), false, false);
    FillAll(small, CLR(1, 1, 1), 1);
    large = small;  // 16 bytes available, 144 asked for
    const std::vector<unsigned char> bytes = Bytes(large);
    for (size_t i = 0; i < bytes.size(); ++i) {
        ASSERT_EQ(bytes[i], i < 16 ? 1 : 0) << i;
    }
    FillAll(large, CLR(2, 2, 2), 2);
    small = large;  // only the 16 bytes the target holds
    EXPECT_EQ(Bytes(small), std::vector<unsigned char>(16, 2));
}

TEST_F(SurfaceAssignTest, AssigningAViewOfItselfChangesNothing) {
    ULOTrueColorDCBase dc(ULORect(0, 0, 3, 3), false, false);
    FillAll(dc, CLR(5, 6, 7), 8);
    const std::vector<unsigned char> before = Bytes(dc);
    const ULOTrueColorDCBase view(dc);
    dc = view;
    ULOTrueColorDCBase& alias = dc;
    dc = alias;
    EXPECT_EQ(Bytes(dc), before);
}

// A subclass that brings its own buffer through the protected constructor.
class ForeignBufferSurface : public ULOTrueColorDCBase {
public:
    // Memory owned by the subclass: the surface must neither free it nor outlive it.
    explicit ForeignBufferSurface(std::vector<unsigned char>& memory, int w, int h) {
        ULOPictureBits::operator=(ULOPictureBits(memory.data(), w, h, w * 4, 0));
    }
    // A block the subclass hands over to the surface.
    ForeignBufferSurface(int w, int h) {
        Reset(static_cast<unsigned char*>(std::calloc(static_cast<size_t>(w) * h, 4)), w, h, w * 4, 0);
        ownBuffer = true;
    }
    bool OwnBuffer() const { return ownBuffer; }
};

TEST_F(SurfaceCopyTest, ProtectedConstructorStartsEmptyWithoutOwnership) {
    std::vector<unsigned char> memory(4 * 3 * 2, 0);
    {
        ForeignBufferSurface dc(memory, 3, 2);
        EXPECT_FALSE(dc.OwnBuffer());
        EXPECT_FALSE(dc.IsMagnified());
        EXPECT_FALSE(dc.GetWorkingOnScreenSize());
        const ULORect all(0, 0, 3, 2);
        dc.FillRect(&all, CLR(3, 3, 3), 3);
    }
    EXPECT_EQ(memory, std::vector<unsigned char>(memory.size(), 3));
    {
        ForeignBufferSurface handedOver(2, 2);  // freed by the surface, or a leak would be reported
        EXPECT_TRUE(handedOver.OwnBuffer());
    }
}

}  // namespace
