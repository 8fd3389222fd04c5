// Rotation (exact quarter turns and the resampled path), transformation records and blending.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "ResampleTestUtil.h"

namespace {

using namespace resample_test;

TEST(RotateTest, QuarterTurnsOfSquareBuffersMovePixelsExactly) {
    for (int flags : kFormats) {
        for (float degrees : {90.0f, 180.0f, 270.0f}) {
            TestBits b(ULOSize(3, 3), flags);
            Paint(b, Distinct);
            TestBits original(ULOSize(3, 3), flags);
            Paint(original, Distinct);
            const unsigned char* block = b.GetBits();
            if (degrees == 90.0f) {
                b.Rotate(degrees);  // a square buffer and a whole quarter: the exact path
            } else {
                b.Rotate90(degrees);
            }
            EXPECT_EQ(b.GetBits(), block);  // rotated in place
            for (int y = 0; y < 3; ++y) {
                for (int x = 0; x < 3; ++x) {
                    // Turns in memory coordinates, whose rows run bottom-up.
                    const ULOPoint to = degrees == 90.0f    ? ULOPoint(y, 2 - x)
                                        : degrees == 180.0f ? ULOPoint(2 - x, 2 - y)
                                                            : ULOPoint(2 - y, x);
                    EXPECT_EQ(Pixel(b, to.x, to.y), Pixel(original, x, y)) << degrees << " " << flags;
                }
            }
        }
    }
}

TEST(RotateTest, AnglesThatAreNotExactQuartersLeaveSquareBuffersAlone) {
    for (float degrees : {0.0f, 89.5f, 45.0f, -90.0f, 360.0f}) {
        TestBits b(ULOSize(3, 3), PICTBITS_RGB24);
        Paint(b, Distinct);
        const std::vector<std::uint8_t> before = Block(b);
        b.Rotate90(degrees);
        EXPECT_EQ(Block(b), before) << degrees;
    }
    // 89.5 is within 0.01 quarter of 90, so Rotate hands it to Rotate90, which does not turn it.
    TestBits b(ULOSize(3, 3), PICTBITS_RGB24);
    Paint(b, Distinct);
    const std::vector<std::uint8_t> before = Block(b);
    b.Rotate(89.5f);
    EXPECT_EQ(Block(b), before);
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

TEST(TransformTest, ApplyRotatesOnlyForPositiveAnglesThenMirrors) {
    TestBits b(ULOSize(2, 2), PICTBITS_ALPHA);
    Paint(b, Distinct);
    const std::vector<std::uint8_t> before = Block(b);
    b.ApplyTransformation(ULOPictureTransform());
    EXPECT_EQ(Block(b), before);

    ULOPictureTransform t;
    t.rotation = -90;
    t.mirrorHorizontally = true;
    b.ApplyTransformation(t);  // mirror only
    TestBits original(ULOSize(2, 2), PICTBITS_ALPHA);
    Paint(original, Distinct);
    EXPECT_EQ(Pixel(b, 0, 0), Pixel(original, 1, 0));

    t.rotation = 180;
    t.mirrorHorizontally = false;
    t.mirrorVertically = true;
    b.ApplyTransformation(t);  // half turn, then upside down: back to the mirrored picture's rows
    EXPECT_EQ(Pixel(b, 0, 0), Pixel(original, 0, 0));
}

TEST(BlendTest, MixesEveryByteWithAWeightOutOf256) {
    TestBits own(ULOSize(2, 1), PICTBITS_RGB24);  // 6 pixel bytes and 2 padding bytes
    TestBits other(ULOSize(2, 1), PICTBITS_RGB24);
    for (int i = 0; i < 8; ++i) {
        own.GetBits()[i] = static_cast<std::uint8_t>(10 + i);
        other.GetBits()[i] = static_cast<std::uint8_t>(200 + i);
    }
    own.BlendWithPicture(&other, 0.5f);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(own.GetBits()[i], ((200 + i) * 128 + (10 + i) * 128) >> 8) << i;
    }

    const std::vector<std::uint8_t> mixed = Block(own);
    own.BlendWithPicture(&other, 0.0f);
    own.BlendWithPicture(&other, -1.0f);
    own.BlendWithPicture(&other, std::numeric_limits<float>::quiet_NaN());
    own.BlendWithPicture(nullptr, 0.5f);
    EXPECT_EQ(Block(own), mixed);

    own.BlendWithPicture(&other, 0.9959f);  // w = 254
    EXPECT_EQ(own.GetBits()[0], (200 * 254 + mixed[0] * 2) >> 8);
    own.BlendWithPicture(&other, 0.996f);
    EXPECT_EQ(Block(own), Block(other));
}

}  // namespace
