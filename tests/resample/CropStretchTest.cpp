// Crop at its nine anchors, the stretching operations (HEnlarge, VEnlarge, Enlarge, HResize) as golden
// blocks, and ClipRectToPictureSize.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "ResampleTestUtil.h"

namespace {

using namespace resample_test;

// Crop at its nine anchors and unknown ones (10 x 8 cut to 4 x 3; anchor 2 takes the width difference as
// its top edge, so its last row lies below the picture and stays cleared), by a rectangle, and past the
// picture (the block read as it lies, what is outside it cleared); HEnlarge repeating and dropping
// columns around the split; VEnlarge repeating a memory row and never shrinking; HResize centring rows
// between transparent padding (a mask's rows copied with their own padding, not realigned).
TEST(CropStretchTest, OperationsMatchTheirGoldenBlocks) {
    std::vector<Operation> operations;
    for (const int flags : kFormats) {
        for (const int anchor : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, -3}) {
            operations.push_back({"crop at " + std::to_string(anchor), 10, 8, flags, [anchor](TestBits& b) {
                                      b.Crop(4, 3, static_cast<ULOPictureBits::ECropPosition>(anchor));
                                  }});
        }
        operations.push_back(
            {"crop to a rectangle", 10, 8, flags, [](TestBits& b) { b.Crop(ULORect(3, 2, 7, 5)); }});
        operations.push_back({"HEnlarge 7 at 1", 4, 2, flags, [](TestBits& b) { b.HEnlarge(7, 1); }});
        operations.push_back({"HEnlarge 2 at -1", 4, 2, flags, [](TestBits& b) { b.HEnlarge(2, -1); }});
        operations.push_back({"VEnlarge", 2, 3, flags, [](TestBits& b) {
                                  b.VEnlarge(3, 0);
                                  b.VEnlarge(2, 0);
                                  b.VEnlarge(5, 1);
                              }});
    }
    operations.push_back({"HResize", 2, 2, PICTBITS_ALPHA, [](TestBits& b) {
                              b.HResize(5);
                              b.HResize(3);
                          }});
    operations.push_back({"crop past the picture", 10, 10, PICTBITS_ALPHA,
                          [](TestBits& b) { b.Crop(12, 12, ULOPictureBits::eCropCenter); }});
    operations.push_back({"HResize of a one-pixel mask", 1, 2, PICTBITS_MASK8,
                          [](TestBits& b) {
                              const std::uint8_t rows[8] = {
                                  2, 0x77, 0, 0, 1, 0x77, 0, 0};  // bottom row first, padding marked
                              std::memcpy(b.GetBits(), rows, sizeof rows);
                              b.HResize(3);
                          },
                          true});
    ExpectOperations("resample/crop-stretch", operations);
}

// Operations that keep the size keep the block.
TEST(CropStretchTest, VEnlargeToTheSameOrASmallerHeightKeepsTheBlock) {
    TestBits b(ULOSize(2, 3), PICTBITS_ALPHA);
    const unsigned char* block = b.GetBits();
    b.VEnlarge(3, 0);
    b.VEnlarge(2, 0);
    EXPECT_EQ(b.GetBits(), block);
}

TEST(StretchTest, EnlargeStretchesOnlyWhereSmaller) {
    TestBits b(ULOSize(4, 4), PICTBITS_MASK8);
    Paint(b, Distinct);
    b.Enlarge(ULORect(10, 10, 16, 13), ULOPoint(-1, -1));  // 6 x 3: wider only
    EXPECT_EQ(b.GetSize(false), ULOSize(6, 4));
    b.Enlarge(ULORect(0, 0, 2, 7), ULOPoint(0, 0));  // 2 x 7: taller only
    EXPECT_EQ(b.GetSize(false), ULOSize(6, 7));
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
