// Rotation (exact quarter turns and the resampled path), transformation records and blending.
#include "ResampleTestUtil.h"

namespace {

using namespace resample_test;

// Exact quarter turns of square buffers (in memory coordinates, whose rows run bottom-up), in place;
// angles that are not exact quarters leave them alone (89.5 is within 0.01 quarter of 90, so Rotate hands
// it to Rotate90, which does not turn it); transformations rotate only for positive angles, then mirror;
// a turn of a buffer that is not square takes the general path, which fills what falls outside with
// white transparency and composes alpha pixels over the scratch's 255 alpha ((255 - As) * source /
// (As + 255)); blending mixes every byte, padding included, with a weight out of 256 (0.9959 gives 254,
// 0.996 256, a copy of the other picture).
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
    for (const int flags : {PICTBITS_RGB24, PICTBITS_ALPHA}) {
        operations.push_back({"Rotate 90, general path", 4, 2, flags, [](TestBits& b) { b.Rotate(90); }});
    }
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
    operations.push_back({"blend 0.996", 2, 1, PICTBITS_RGB24, [](TestBits& own) {
                              TestBits other(ULOSize(2, 1), PICTBITS_RGB24);
                              Paint(other, [](int x, int y, int c) { return Distinct(x + 5, y, c); });
                              own.BlendWithPicture(&other, 0.996f);
                          }});
    ExpectOperations("resample/rotate-blend", operations);
}

TEST(TransformTest, RecordComparesRotationAsAFloat) {
    ULOPictureTransform a, b;
    b.mirrorHorizontally = true;
    EXPECT_FALSE(a == b);
    a = b;
    a.rotation = b.rotation = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(a == b);  // a NaN rotation is never equal
}

}  // namespace
