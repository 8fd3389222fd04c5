// The wrappers on hand-computed pixels, on every path. A pixel is repeated across a row long enough
// for the vector kernels and their scalar tail, and every copy must come out the same.
#include <gtest/gtest.h>

#include <vector>

#include "TransferTestSupport.h"

namespace {

using namespace ulogui::transfer;
using transfer_test::AvailablePaths;
using transfer_test::PathName;
using transfer_test::Pixel;
using transfer_test::Px;

constexpr int kRow = 37;  // more than one 32-byte vector's worth of pixels plus an odd tail

class WrapperTest : public transfer_test::TransferTest, public ::testing::WithParamInterface<Path> {
protected:
    Pixel Run(Functor functor, Wrapper wrapper, float opacity, Pixel dst, Pixel src,
              float relativeOpacity = 1.0f) {
        const Loop loop(functor, wrapper, opacity, relativeOpacity, GetParam());
        std::vector<Pixel> dstRow(kRow, dst);
        const std::vector<Pixel> srcRow(kRow, src);
        loop.RunRow(dstRow[0].data(), srcRow[0].data(), kRow);
        for (int i = 1; i < kRow; ++i) {
            EXPECT_EQ(dstRow[i], dstRow[0]) << "pixel " << i;
        }
        return dstRow[0];
    }
};

TEST_P(WrapperTest, PlainLetsTheFunctorWriteTheDestination) {
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kPlain, 1.0f, Px(1, 2, 3, 4), Px(10, 20, 30, 40)),
              Px(10, 20, 30, 4));
    EXPECT_EQ(Run(Functor::kFullCopy, Wrapper::kPlain, 1.0f, Px(1, 2, 3, 4), Px(10, 20, 30, 40)),
              Px(10, 20, 30, 40));
    EXPECT_EQ(Run(Functor::kRelative, Wrapper::kPlain, 1.0f, Px(10, 10, 10, 4), Px(0xFE, 2, 0, 0)),
              Px(8, 12, 10, 4));
}

TEST_P(WrapperTest, SourceAlphaShiftsBy8AndSoLosesOneLevel) {
    // An opaque white source gives (255 * 255) >> 8 = 254 over any background.
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kSourceAlpha, 1.0f, Px(0, 100, 255, 7), Px(255, 255, 255, 0)),
              Px(254, 254, 254, 7));
    // a = 128: (200 * 128 + 100 * 127) >> 8 = 149; (0 * 128 + 255 * 127) >> 8 = 126
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kSourceAlpha, 1.0f, Px(200, 0, 200, 7), Px(100, 255, 100, 128)),
              Px(149, 126, 149, 7));
    // A fully transparent source keeps the background.
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kSourceAlpha, 1.0f, Px(1, 2, 3, 7), Px(100, 100, 100, 255)),
              Px(1, 2, 3, 7));
}

TEST_P(WrapperTest, SourceAlphaWithOpacityScalesTheOpaquenessFirst) {
    // k = trunc(0.5 * 255) = 127; a = 0: w = (255 * 127) >> 8 = 126; (255 * 126) >> 8 = 125
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kSourceAlphaOpacity, 0.5f, Px(0, 0, 0, 9), Px(255, 255, 255, 0)),
              Px(125, 125, 125, 9));
    // a = 100: w = (155 * 127) >> 8 = 76; (200 * 179 + 50 * 76) >> 8 = 154
    EXPECT_EQ(
        Run(Functor::kCopy, Wrapper::kSourceAlphaOpacity, 0.5f, Px(200, 200, 200, 9), Px(50, 50, 50, 100)),
        Px(154, 154, 154, 9));
    // w = 0 keeps the background: a transparent source, or a nearly transparent one at low opacity.
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kSourceAlphaOpacity, 0.5f, Px(1, 2, 3, 9), Px(200, 200, 200, 255)),
              Px(1, 2, 3, 9));
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kSourceAlphaOpacity, 0.5f, Px(1, 2, 3, 9), Px(200, 200, 200, 254)),
              Px(1, 2, 3, 9));
}

TEST_P(WrapperTest, OpacityDividesBy255) {
    // k = 127: (255 * 127) / 255 = 127; (255 * 128) / 255 = 128; (100 * 127 + 200 * 128) / 255 = 150
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kOpacity, 0.5f, Px(0, 255, 200, 66), Px(255, 0, 100, 0)),
              Px(127, 128, 150, 66));
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kOpacity, 0.0f, Px(1, 2, 3, 66), Px(255, 0, 100, 0)),
              Px(1, 2, 3, 66));
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kOpacity, 1.0f, Px(1, 2, 3, 66), Px(255, 0, 100, 0)),
              Px(255, 0, 100, 66));
    // The full-copy opacity loop mixes alpha like a colour byte.
    EXPECT_EQ(
        Run(Functor::kFullCopy, Wrapper::kOpacityAllBytes, 0.5f, Px(0, 0, 0, 255), Px(255, 255, 255, 0)),
        Px(127, 127, 127, 128));
}

TEST_P(WrapperTest, OntoAlphaCompositesAndWritesTheCombinedTransparency) {
    // Onto a fully transparent destination: the colour is copied and the alpha becomes the source's
    // transparency after opacity, t = 255 - (((255 - a) * k) >> 8).
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kOntoAlpha, 1.0f, Px(9, 9, 9, 255), Px(10, 20, 30, 0)),
              Px(10, 20, 30, 1));
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kOntoAlpha, 1.0f, Px(9, 9, 9, 255), Px(10, 20, 30, 100)),
              Px(10, 20, 30, 101));
    // A source that ends fully transparent keeps all four destination bytes.
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kOntoAlpha, 1.0f, Px(9, 8, 7, 6), Px(10, 20, 30, 255)),
              Px(9, 8, 7, 6));
    // Opaque destination: t = 1, c = 0: (100 * 1 + 200 * 254) / 255 = 199.
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kOntoAlpha, 1.0f, Px(100, 100, 100, 0), Px(200, 200, 200, 0)),
              Px(199, 199, 199, 0));
    // b = 128, t = 101: c = 50, d = 205: (100 * 51 + 200 * 154) / 205 = 175; (0 + 0) / 205 = 0.
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kOntoAlpha, 1.0f, Px(100, 0, 255, 128), Px(200, 0, 255, 100)),
              Px(175, 0, 255, 50));
    // With opacity 0.5 (k = 127): a = 0 gives t = 255 - 126 = 129; onto b = 255: alpha 129.
    EXPECT_EQ(Run(Functor::kCopy, Wrapper::kOntoAlpha, 0.5f, Px(0, 0, 0, 255), Px(40, 50, 60, 0)),
              Px(40, 50, 60, 129));
}

TEST_P(WrapperTest, WrappersMixTheRelativeFunctorsResult) {
    // f = clamp(dst + s): 100 + 50 = 150, 100 - 128 -> 0, 250 + 127 -> 255; W3 at k = 127.
    EXPECT_EQ(Run(Functor::kRelative, Wrapper::kOpacity, 0.5f, Px(100, 100, 250, 0), Px(50, 0x80, 0x7F, 0)),
              Px((150 * 127 + 100 * 128) / 255, (0 + 100 * 128) / 255, (255 * 127 + 250 * 128) / 255, 0));
    // W1 with an opaque source: (f * 255) >> 8 of f = 150.
    EXPECT_EQ(Run(Functor::kRelative, Wrapper::kSourceAlpha, 1.0f, Px(100, 100, 100, 0), Px(50, 50, 50, 0)),
              Px(149, 149, 149, 0));
    // The relative-opacity functor's own opacity is independent of the wrapper's.
    EXPECT_EQ(Run(Functor::kRelativeOpacity, Wrapper::kPlain, 1.0f, Px(10, 100, 10, 3),
                  Px(0x80, 0x7F, 0xFF, 0), 0.5f),
              Px(0, 163, 9, 3));
    // W4 around the relative-opacity functor, onto a transparent destination: f = clamp(trunc(s / 2 + dst)).
    EXPECT_EQ(Run(Functor::kRelativeOpacity, Wrapper::kOntoAlpha, 1.0f, Px(100, 100, 100, 255),
                  Px(20, 0xEC, 0, 0), 0.5f),
              Px(110, 90, 100, 1));
}

INSTANTIATE_TEST_SUITE_P(Paths, WrapperTest, ::testing::ValuesIn(AvailablePaths()),
                         [](const ::testing::TestParamInfo<Path>& p) { return PathName(p.param); });

}  // namespace
