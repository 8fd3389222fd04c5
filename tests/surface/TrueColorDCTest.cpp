// Construction, copying, pixel assignment and ownership of the drawing surface. Ownership mistakes show
// in the sanitizer build: a block freed twice or one the surface did not allocate aborts, a block never
// freed is reported as a leak.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <new>
#include <vector>

#include "SurfaceTestSupport.h"
#include "ulogui/TrueColorDC.h"

namespace {

using namespace surfacetest;
using Access = ULOTrueColorDCBaseTestAccess;

// Hosts name the copy types through the surface; their values are part of the interface.
static_assert(ULOTrueColorDCBase::eCopyNormal == 0 && ULOTrueColorDCBase::eCopyHighlight == 1 &&
                  ULOTrueColorDCBase::eCopyDisabled == 2 && ULOTrueColorDCBase::eCopyDarken == 3,
              "copy type values are fixed");

using SurfaceTest = MagnifierTest;

TEST_F(SurfaceTest, ConstructionSizesClearsAndFlagsTheBuffer) {
    const ULOTrueColorDCBase dc(ULORect(-7, 30, 3, 33), true, false);
    EXPECT_EQ(dc.GetSize(true), ULOSize(10, 3));
    EXPECT_EQ(dc.GetLineWidth(true), 40);
    EXPECT_EQ(dc.GetBytesPerPixel(), 4);
    EXPECT_EQ(dc.GetFlags(), PICTBITS_ALPHA);
    EXPECT_TRUE(Access::ComputeAlpha(dc));
    EXPECT_EQ(Bytes(dc), std::vector<unsigned char>(40 * 3, 0));
    EXPECT_FALSE(dc.GetUpdated() || dc.GetEnableMnemonic() || dc.GetWorkingOnScreenSize());
    EXPECT_FALSE(Access::ComputeAlpha(ULOTrueColorDCBase(ULORect(0, 0, 2, 2), false, false)));

    // An empty or inverted side becomes one pixel.
    for (const ULORect& rect : {ULORect(0, 0, 0, 0), ULORect(10, 10, 0, 0), ULORect(5, 5, 5, 9)}) {
        const ULOTrueColorDCBase one(rect, false, false);
        EXPECT_EQ(one.GetSize(true), ULOSize(1, rect.Height() > 0 ? rect.Height() : 1));
        EXPECT_EQ(one.GetLineWidth(true), 4);
        EXPECT_EQ(PixelAt(one, 0, 0), kClear);
    }

    // Sides too long for a 32-bit stride.
    EXPECT_THROW(ULOTrueColorDCBase(ULORect(0, 0, INT_MAX, 1), false, false), std::bad_alloc);
    EXPECT_THROW(ULOTrueColorDCBase(ULORect(INT_MIN, 0, INT_MAX, 1), false, false), std::bad_alloc);
    EXPECT_THROW(ULOTrueColorDCBase(ULORect(0, INT_MIN, 1, INT_MAX), false, false), std::bad_alloc);
    SetMagnifier(4.0f);
    EXPECT_THROW(ULOTrueColorDCBase(ULORect(0, 0, INT_MAX / 8, 1), false, true), std::bad_alloc);

    // Device pixels cannot be read with logical coordinates until the guard is raised (on a const
    // surface too).
    const ULOTrueColorDCBase magnified(ULORect(0, 0, 4, 4), false, true);
    EXPECT_FALSE(Access::CanGetBits(magnified));
    magnified.SetWorkingOnScreenSize(true);
    EXPECT_TRUE(Access::CanGetBits(magnified));
    EXPECT_TRUE(Access::CanGetBits(dc));
}

TEST_F(SurfaceTest, CopyIsAViewOfTheSamePixelsWithTheSameFlagsThatFreesNothing) {
    SetMagnifier(2.0f);
    auto original = std::make_unique<ULOTrueColorDCBase>(ULORect(0, 0, 3, 2), true, true);
    original->SetUpdated(true);
    original->SetEnableMnemonic(true);
    {
        ULOTrueColorDCBase copy(*original);
        EXPECT_EQ(copy.GetBits(), original->GetBits());
        EXPECT_EQ(copy.GetSize(true), ULOSize(6, 4));
        EXPECT_EQ(copy.GetSize(false), ULOSize(3, 2));
        EXPECT_TRUE(copy.IsMagnified() && copy.GetUpdated() && copy.GetEnableMnemonic());
        EXPECT_FALSE(copy.GetWorkingOnScreenSize());
        EXPECT_EQ(copy.GetFlags(), PICTBITS_ALPHA);
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
}

TEST_F(SurfaceTest, AssignmentCopiesPixelsOnlyCutToTheSmallerBlockAndTheLogicalShare) {
    ULOTrueColorDCBase target(ULORect(0, 0, 6, 6), false, false);
    ULOTrueColorDCBase small(ULORect(0, 0, 2, 2), true, false);
    FillAll(small, CLR(1, 1, 1), 1);
    small.SetUpdated(true);
    target = small;  // 16 bytes available, 144 asked for
    std::vector<unsigned char> expected(144, 0);
    std::fill(expected.begin(), expected.begin() + 16, 1);
    EXPECT_EQ(Bytes(target), expected);
    EXPECT_FALSE(target.GetUpdated());
    EXPECT_EQ(target.GetFlags(), 0);

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

}  // namespace
