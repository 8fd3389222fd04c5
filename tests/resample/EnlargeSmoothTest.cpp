// Rotation (exact quarter turns and the resampled path), transformation records and blending; EnlargeSmooth:
// the target rectangle, the rounding of the tap weights, and random scenarios whose scalar
// output is kept as golden images (taken when the kernels matched the exact formula within its rounding
// and a per-pixel evaluation of the fixed-point definition bit for bit), every vector kernel against it.
#include "ResampleTestUtil.h"
#include "base/CpuFeatures.h"
#include "resample/SmoothScaler.h"

namespace {

using namespace resample_test;
namespace smooth = ulogui::resample::smooth;
namespace base = ulogui::base;

// Restores the instruction-set level a test forced.
class EnlargeSmoothTest : public ::testing::Test {
protected:
    void TearDown() override { base::ForceIsa(base::BestIsa()); }
};

// The rectangle gives the size only: output (x, y) goes to target (x, y); an output larger than the
// target is cut at the target's edge.
TEST_F(EnlargeSmoothTest, TargetRectangleGivesTheSizeButNotThePosition) {
    TestBits src(ULOSize(6, 6), PICTBITS_MASK8);
    Paint(src, [](int, int, int) { return 77; });
    TestBits target(ULOSize(5, 5), PICTBITS_MASK8);
    Paint(target, [](int, int, int) { return 1; });
    const ULORect rect(10, 10, 13, 13), large(0, 0, 9, 9);
    src.EnlargeSmooth(target, &rect);
    for (int i = 0; i < 25; ++i) {
        EXPECT_EQ(Pixels(target)[i], i % 5 < 3 && i / 5 < 3 ? 77 : 1) << i;
    }
    src.EnlargeSmooth(target, &large);
    EXPECT_EQ(Pixels(target), std::vector<std::uint8_t>(25, 77));
}

// Tap weights round to the nearest unit of 1 / 16384 (the sweeps cannot tell: their references read the
// same tables): a bilinear pair at p = 0.55 gives its first pixel 0.45 * 16384 = 7372.8, an area window
// of 1.1 cells its first cell 16384 / 1.1 = 14894.5.
TEST_F(EnlargeSmoothTest, TapWeightsRoundToTheNearestUnit) {
    EXPECT_EQ(smooth::BilinearTaps(3, 10, 0.3f, 0).weight[6], 7373);
    EXPECT_EQ(smooth::AreaTaps(11, 10, 1.1f, 0).weight[0], 14895);
}

struct Scenario {
    int flags;
    int w, h, dw, dh;
};

// The output over a target of 0xEE bytes at the forced instruction-set level.
TestBits Enlarged(const ULOPictureBits& src, const Scenario& s, base::Isa level) {
    base::ForceIsa(level);
    TestBits target(ULOSize(s.dw, s.dh), s.flags);
    Paint(target, [](int, int, int) { return 0xEE; });
    src.EnlargeSmooth(target, nullptr);
    return target;
}

// Random scenarios of every format, both modes, empty windows and large scales, whose scalar output is
// kept as golden images (outputs above 600 pixels as digests; the largest are split over threads and have
// rows that are not 32-byte aligned);
// every vector kernel computes the scalar path's bytes.
TEST_F(EnlargeSmoothTest, ScalarOutputMatchesItsGoldenAndEveryKernelTheScalarOne) {
    const int flags[] = {PICTBITS_MASK8, PICTBITS_RGB24, 0, PICTBITS_ALPHA};
    std::mt19937 random(11);
    std::vector<Scenario> scenarios;
    for (int i = 0; i < 60; ++i) {
        const auto size = [&] { return 1 + static_cast<int>(random() % 70); };
        scenarios.push_back({flags[i % 4], size(), size(), size(), size()});
    }
    scenarios.push_back({PICTBITS_ALPHA, 50, 41, 130, 97});
    scenarios.push_back({0, 333, 257, 130, 100});
    scenarios.push_back({PICTBITS_ALPHA, 300, 250, 1100, 1000});
    scenarios.push_back({0, 2203, 1900, 1101, 950});
    std::vector<golden::Image> images;
    for (const Scenario& s : scenarios) {
        const std::string name = std::to_string(images.size()) + ": " + std::to_string(s.w) + "x" +
                                 std::to_string(s.h) + " flags " + std::to_string(s.flags);
        TestBits src(ULOSize(s.w, s.h), s.flags);
        PaintRandom(src, random);
        const TestBits scalar = Enlarged(src, s, base::Isa(0));
        images.push_back(s.dw * s.dh > 600 ? Digest(name, scalar) : Picture(name, scalar));
        for (int level = 1; level < base::kIsaCount && base::IsIsaAvailable(base::Isa(level)); ++level) {
            ASSERT_EQ(Pixels(Enlarged(src, s, base::Isa(level))), Pixels(scalar))
                << base::IsaName(base::Isa(level)) << " " << name;
        }
    }
    golden::ExpectMatches("resample/enlarge-smooth", images);
}

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

}  // namespace
