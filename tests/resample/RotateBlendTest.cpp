// Rotation (exact quarter turns and the resampled path), transformation records and blending.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "ResampleTestUtil.h"

namespace {

using namespace resample_test;

// Exact quarter turns of square buffers (in memory coordinates, whose rows run bottom-up), in place;
// angles that are not exact quarters leave them alone (89.5 is within 0.01 quarter of 90, so Rotate hands
// it to Rotate90, which does not turn it); transformations rotate only for positive angles, then mirror;
// blending mixes every byte, padding included, with a weight out of 256 (0.9959 gives 254, 0.996 256).
TEST(RotateTest, QuarterTurnsTransformsAndBlendsMatchTheirGoldenBlocks) {
    std::vector<Operation> operations;
    for (const int flags : kFormats) {
        operations.push_back({"Rotate 90", 3, 3, flags, [](TestBits& b) {
                                  const unsigned char* block = b.GetBits();
                                  b.Rotate(90.0f);
                                  EXPECT_EQ(b.GetBits(), block);
                              }});
        for (const float degrees : {180.0f, 270.0f, 0.0f, 89.5f, 45.0f, -90.0f, 360.0f}) {
            operations.push_back({"Rotate90 " + std::to_string(degrees), 3, 3, flags,
                                  [degrees](TestBits& b) { b.Rotate90(degrees); }});
        }
    }
    operations.push_back({"Rotate 89.5", 3, 3, PICTBITS_RGB24, [](TestBits& b) { b.Rotate(89.5f); }});
    const auto transform = [](float rotation, bool horizontally, bool vertically) {
        return [=](TestBits& b) {
            ULOPictureTransform t;
            t.rotation = rotation;
            t.mirrorHorizontally = horizontally;
            t.mirrorVertically = vertically;
            b.ApplyTransformation(t);
        };
    };
    operations.push_back({"no transformation", 2, 2, PICTBITS_ALPHA, transform(0, false, false)});
    operations.push_back({"-90 and mirrored", 2, 2, PICTBITS_ALPHA, transform(-90, true, false)});
    operations.push_back({"180 and upside down", 2, 2, PICTBITS_ALPHA, transform(180, false, true)});
    operations.push_back({"blends", 2, 1, PICTBITS_RGB24, [](TestBits& own) {
                              TestBits other(ULOSize(2, 1), PICTBITS_RGB24);
                              for (int i = 0; i < 8; ++i) {
                                  other.GetBits()[i] = static_cast<std::uint8_t>(200 + i);
                              }
                              for (const float w : {0.5f, 0.0f, -1.0f, std::nanf(""), 0.9959f}) {
                                  own.BlendWithPicture(&other, w);
                              }
                              own.BlendWithPicture(nullptr, 0.5f);
                          }});
    ExpectOperations("resample/rotate-blend", operations);
}

TEST(RotateTest, GeneralPathFillsWhatFallsOutsideWithWhiteTransparency) {
    // 4 x 2 turned by 90 degrees about (2, 1): memory (r, c) reads memory (3 - c, r + 1), which exists
    // for c = 2, 3 only.
    TestBits b(ULOSize(4, 2), PICTBITS_ALPHA);
    Paint(b, [](int x, int y, int c) { return c == 3 ? std::uint8_t{0} : Distinct(x, y, c); });
    b.GetBits(2, 1)[3] = 100;  // a half-transparent pixel at memory (0, 2), read for memory (1, 3)
    TestBits original(ULOSize(4, 2), PICTBITS_ALPHA);
    std::memcpy(original.GetBits(), b.GetBits(), 32);
    b.Rotate(90);
    const auto memoryPixel = [](const ULOPictureBits& p, int r, int c) { return Pixel(p, c, 1 - r); };
    for (int r = 0; r < 2; ++r) {
        for (int c = 0; c < 4; ++c) {
            const std::vector<std::uint8_t> got = memoryPixel(b, r, c);
            if (c < 2) {
                EXPECT_EQ(got, std::vector<std::uint8_t>(4, 255)) << r << c;
                continue;
            }
            const std::vector<std::uint8_t> from = memoryPixel(original, 3 - c, r + 1);
            const int alpha = from[3];
            for (int k = 0; k < 3; ++k) {
                // Over the scratch's 255 alpha: (0 * 255 + (255 - As) * source) / (As + 255).
                EXPECT_EQ(got[k], (255 - alpha) * from[k] / (alpha + 255)) << r << c << k;
            }
            EXPECT_EQ(got[3], alpha);
        }
    }
}

TEST(RotateTest, GeneralPathCopiesThreeBytePixels) {
    TestBits b(ULOSize(4, 2), PICTBITS_RGB24);
    Paint(b, Distinct);
    TestBits original(ULOSize(4, 2), PICTBITS_RGB24);
    Paint(original, Distinct);
    b.Rotate(90);
    EXPECT_EQ(Pixel(b, 0, 0), std::vector<std::uint8_t>(3, 255));
    EXPECT_EQ(Pixel(b, 3, 1), Pixel(original, 1, 1));  // memory (0, 3) <- memory (0, 1)
    EXPECT_EQ(Pixel(b, 2, 0), Pixel(original, 2, 0));  // memory (1, 2) <- memory (1, 2)
}

TEST(TransformTest, RecordComparesRotationAsAFloat) {
    ULOPictureTransform a, b;
    b.mirrorHorizontally = true;
    EXPECT_FALSE(a == b);
    a = b;
    a.rotation = b.rotation = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(a == b);  // a NaN rotation is never equal
}

TEST(BlendTest, AWeightNearOneCopiesTheOtherPicture) {
    TestBits own(ULOSize(2, 1), PICTBITS_RGB24), other(ULOSize(2, 1), PICTBITS_RGB24);
    Paint(other, Distinct);
    own.BlendWithPicture(&other, 0.996f);
    EXPECT_EQ(Block(own), Block(other));
}

}  // namespace
