// Crop at its nine anchors, the stretching operations (HEnlarge, VEnlarge, Enlarge, HResize) and
// ClipRectToPictureSize.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "ResampleTestUtil.h"

namespace {

using namespace resample_test;

// 10 x 8 cut to 4 x 3: W - w = 6, H - h = 5, halves rounded toward zero. Position 2 takes the width
// difference as its top edge and keeps the left edge at 0: rectangle (0, 6, 4, 9), whose last row lies
// below the picture and stays cleared.
TEST(CropTest, EveryAnchorTakesItsRectangle) {
    struct Anchor {
        int position;
        int left;
        int top;
    };
    const Anchor anchors[] = {{0, 0, 0}, {1, 3, 0}, {2, 0, 6}, {3, 0, 2}, {4, 3, 2}, {5, 6, 2},
                              {6, 0, 5}, {7, 3, 5}, {8, 6, 5}, {9, 0, 0}, {-3, 0, 0}};
    for (int flags : kFormats) {
        TestBits original(ULOSize(10, 8), flags);
        Paint(original, Distinct);
        for (const Anchor& a : anchors) {
            TestBits b(ULOSize(10, 8), flags);
            Paint(b, Distinct);
            b.Crop(4, 3, static_cast<ULOPictureBits::ECropPosition>(a.position));
            ASSERT_EQ(b.GetSize(false), ULOSize(4, 3));
            EXPECT_TRUE(b.OwnsBits());
            const int rows = a.position == 2 ? 2 : 3;
            std::vector<std::uint8_t> expected = Region(original, a.left, a.top, 4, rows);
            expected.resize(12 * b.GetBytesPerPixel(), 0);
            EXPECT_EQ(Pixels(b), expected) << "position " << a.position << " flags " << flags;
        }
        TestBits r(ULOSize(10, 8), flags);
        Paint(r, Distinct);
        r.Crop(ULORect(3, 2, 7, 5));
        EXPECT_EQ(Pixels(r), Region(original, 3, 2, 4, 3));
    }
}

// A rectangle reaching past the picture reads the block as it lies: a pixel left of a row is the last
// pixel of the row below it in the picture (the previous row in memory), one right of it the first
// pixel of the row above; what is outside the block stays cleared.
TEST(CropTest, BeyondThePictureReadsOnlyInsideTheBlock) {
    TestBits original(ULOSize(10, 10), PICTBITS_ALPHA);
    Paint(original, Distinct);
    TestBits b(ULOSize(10, 10), PICTBITS_ALPHA);
    Paint(b, Distinct);
    b.Crop(12, 12, ULOPictureBits::eCropCenter);  // rectangle (-1, -1, 11, 11)
    const std::vector<std::uint8_t> zero(4, 0);
    // Source rows -1 and 10 lie outside the block but for (-1, -1), the block's last pixel, and
    // (10, 10), its first.
    EXPECT_EQ(Pixel(b, 0, 0), Pixel(original, 9, 0));
    EXPECT_EQ(Pixel(b, 11, 11), Pixel(original, 0, 9));
    for (int x = 1; x < 12; ++x) {
        EXPECT_EQ(Pixel(b, x, 0), zero);
        EXPECT_EQ(Pixel(b, x - 1, 11), zero);
    }
    for (int r = 0; r < 10; ++r) {
        EXPECT_EQ(Region(b, 1, r + 1, 10, 1), Region(original, 0, r, 10, 1));
        EXPECT_EQ(Pixel(b, 0, r + 1), r < 9 ? Pixel(original, 9, r + 1) : zero);
        EXPECT_EQ(Pixel(b, 11, r + 1), r > 0 ? Pixel(original, 0, r - 1) : zero);
    }
}

std::vector<std::uint8_t> FirstBytes(const ULOPictureBits& b, int y) {
    std::vector<std::uint8_t> row;
    for (int x = 0; x < b.GetWidth(false); ++x) {
        row.push_back(Pixel(b, x, y)[0]);
    }
    return row;
}

TEST(StretchTest, HEnlargeRepeatsOrDropsColumnsAroundTheSplit) {
    const auto abcd = [](int x, int y, int) { return static_cast<std::uint8_t>('a' + x + 10 * y); };
    for (int flags : kFormats) {
        TestBits grow(ULOSize(4, 2), flags);
        Paint(grow, abcd);
        grow.HEnlarge(7, 1);
        EXPECT_EQ(FirstBytes(grow, 0), (std::vector<std::uint8_t>{'a', 'b', 'b', 'b', 'b', 'c', 'd'}));
        EXPECT_EQ(FirstBytes(grow, 1)[4], 'b' + 10);
        EXPECT_EQ(grow.GetLineWidth(false), ULOPictureUtil::ComputeLineWidth(7, flags));

        TestBits shrink(ULOSize(4, 2), flags);
        Paint(shrink, abcd);
        shrink.HEnlarge(2, -1);  // split 2, remove 2: columns 1 and 2 go
        EXPECT_EQ(FirstBytes(shrink, 0), (std::vector<std::uint8_t>{'a', 'd'}));
    }
}

TEST(StretchTest, VEnlargeRepeatsAMemoryRowAndNeverShrinks) {
    for (int flags : kFormats) {
        TestBits b(ULOSize(2, 3), flags);
        Paint(b, Distinct);
        const unsigned char* block = b.GetBits();
        b.VEnlarge(3, 0);
        b.VEnlarge(2, 0);
        EXPECT_EQ(b.GetBits(), block);
        // Memory row 1 is picture row 1 of 3; split 1 repeats it twice more.
        b.VEnlarge(5, 1);
        ASSERT_EQ(b.GetSize(false), ULOSize(2, 5));
        const int sourceRow[] = {0, 1, 1, 1, 2};
        for (int y = 0; y < 5; ++y) {
            EXPECT_EQ(Pixel(b, 1, y)[0], Distinct(1, sourceRow[y], 0)) << y;
        }
    }
}

TEST(StretchTest, EnlargeStretchesOnlyWhereSmaller) {
    TestBits b(ULOSize(4, 4), PICTBITS_MASK8);
    Paint(b, Distinct);
    b.Enlarge(ULORect(10, 10, 16, 13), ULOPoint(-1, -1));  // 6 x 3: wider only
    EXPECT_EQ(b.GetSize(false), ULOSize(6, 4));
    b.Enlarge(ULORect(0, 0, 2, 7), ULOPoint(0, 0));  // 2 x 7: taller only
    EXPECT_EQ(b.GetSize(false), ULOSize(6, 7));
}

TEST(StretchTest, HResizeCentresRowsBetweenTransparentPadding) {
    TestBits b(ULOSize(2, 2), PICTBITS_ALPHA);
    Paint(b, [](int, int, int) { return 9; });
    b.HResize(5);  // 1 pixel before, 2 after
    b.HResize(3);  // never narrows
    const std::vector<std::uint8_t> pad{0, 0, 0, 255}, nine(4, 9);
    for (int y = 0; y < 2; ++y) {
        EXPECT_EQ(Region(b, 0, y, 5, 1), Concat({pad, nine, nine, pad, pad}));
    }

    // A mask row carries padding of its own, which is copied too, and the rows are not realigned:
    // 1 + 4 + 1 = 6 bytes per row in a block of 4-byte rows.
    TestBits m(ULOSize(1, 2), PICTBITS_MASK8);
    const std::uint8_t rows[8] = {2, 0x77, 0, 0, 1, 0x77, 0, 0};  // bottom row first, with padding
    std::memcpy(m.GetBits(), rows, sizeof rows);
    m.HResize(3);
    EXPECT_EQ(Block(m), (std::vector<std::uint8_t>{255, 2, 0x77, 0, 0, 255, 255, 1}));
}

TEST(ClipRectTest, CapsWidthAndHeightKeepingLeftAndTop) {
    const TestBits b(ULOSize(5, 4), PICTBITS_ALPHA);
    ULORect r(2, 3, 20, 30);
    b.ClipRectToPictureSize(&r, 1);
    EXPECT_EQ(r, ULORect(2, 3, 7, 30));
    b.ClipRectToPictureSize(&r, 2);
    EXPECT_EQ(r, ULORect(2, 3, 7, 7));
    ULORect small(1, 1, 3, 2);
    b.ClipRectToPictureSize(&small, 3);
    EXPECT_EQ(small, ULORect(1, 1, 3, 2));
    b.ClipRectToPictureSize(nullptr, 3);
}

}  // namespace
