#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "TransferTestSupport.h"

namespace {

using namespace ULOPixelTransfer;
using transfer_test::Pixel;
using transfer_test::Px;
using transfer_test::TransferTest;

template <class F>
Pixel Apply(const F& functor, Pixel dst, Pixel src) {
    Pixel out = dst;
    functor(dst.data(), src.data(), out.data());
    return out;
}

TEST_F(TransferTest, CopiesTakeTheColourAndTheFullCopyTheAlphaToo) {
    EXPECT_EQ(Apply(PixelCopy(), Px(1, 2, 3, 4), Px(10, 20, 30, 40)), Px(10, 20, 30, 4));
    EXPECT_EQ(Apply(PixelFullCopy(), Px(1, 2, 3, 4), Px(10, 20, 30, 40)), Px(10, 20, 30, 40));
}

TEST_F(TransferTest, HighlightLooksEachByteUpInTheHighlightCurve) {
    for (int i = 0; i < 256; ++i) {
        HIGHLIGHT_CLR_COMPONENT[i] = static_cast<unsigned char>(255 - i);
    }
    EXPECT_EQ(Apply(PixelCopyHighlight(), Px(0, 0, 0, 77), Px(10, 20, 30, 40)), Px(245, 235, 225, 77));
}

TEST_F(TransferTest, DisabledMixesOneToneOfTheGreyLevelWithEachByte) {
    for (int i = 0; i < 256; ++i) {
        DISABLED_CLR_COMPONENT[i] = static_cast<unsigned char>(i / 2);
    }
    // grey = trunc(0.15 * 100 + 0.5 * 200 + 0.35 * 50) = trunc(132.5) = 132; tone = table[132] = 66;
    // out = trunc(0.6 * 66 + 0.4 * byte): 79.6, 119.6, 59.6.
    EXPECT_EQ(Apply(PixelCopyDisabled(), Px(0, 0, 0, 9), Px(100, 200, 50, 1)), Px(79, 119, 59, 9));

    // The same tone for all three bytes: a grey stays grey only when the curve maps it to itself.
    EXPECT_EQ(Apply(PixelCopyDisabled(), Px(0, 0, 0, 0), Px(128, 128, 128, 0)), Px(89, 89, 89, 0));
    DISABLED_CLR_COMPONENT[128] = 128;
    EXPECT_EQ(Apply(PixelCopyDisabled(), Px(0, 0, 0, 0), Px(128, 128, 128, 0)), Px(128, 128, 128, 0));
    DISABLED_CLR_COMPONENT[128] = 0;
    EXPECT_EQ(Apply(PixelCopyDisabled(), Px(0, 0, 0, 0), Px(128, 128, 128, 0)), Px(51, 51, 51, 0));
}

TEST_F(TransferTest, DarkenPullsTowardTheGradationColourAsItIsAtTheCall) {
    for (int i = 0; i < 256; ++i) {
        DISABLED_CLR_COMPONENT[i] = static_cast<unsigned char>(i);
    }
    CLR_GRADATION_TOP_LEFT = CLR(200, 100, 0);  // red, green, blue
    // trunc(0.3 * 100 + 0.7 * 0), trunc(0.3 * 50 + 0.7 * 100), trunc(0.3 * 10 + 0.7 * 200)
    EXPECT_EQ(Apply(PixelCopyDarken(), Px(0, 0, 0, 5), Px(100, 50, 10, 0)), Px(30, 85, 143, 5));
    CLR_GRADATION_TOP_LEFT = CLR(0, 0, 0);
    EXPECT_EQ(Apply(PixelCopyDarken(), Px(0, 0, 0, 5), Px(100, 50, 10, 0)), Px(30, 15, 3, 5));
}

TEST_F(TransferTest, RelativeAddsSignedOffsetsAndClamps) {
    const PixelCopyRelative relative;
    EXPECT_EQ(Apply(relative, Px(0, 200, 100, 6), Px(0xFF, 0x7F, 0x80, 0)), Px(0, 255, 0, 6));
    EXPECT_EQ(Apply(relative, Px(16, 16, 16, 6), Px(0x10, 0xF0, 0x00, 0)), Px(32, 0, 16, 6));
}

TEST_F(TransferTest, RelativeOpacityScalesTheOffsetInFloatThenClamps) {
    const PixelCopyRelativeOpacity half(0.5f);
    // trunc(-128 * 0.5 + 10) = -54 -> 0; trunc(127 * 0.5 + 100) = 163; trunc(-1 * 0.5 + 10) = 9
    EXPECT_EQ(Apply(half, Px(10, 100, 10, 3), Px(0x80, 0x7F, 0xFF, 0)), Px(0, 163, 9, 3));
    // trunc(-0.5 + 0) = 0, not -1: truncation goes toward zero before clamping.
    EXPECT_EQ(Apply(half, Px(0, 250, 0, 0), Px(0xFF, 0x14, 0, 0)), Px(0, 255, 0, 0));
    EXPECT_EQ(Apply(PixelCopyRelativeOpacity(1e30f), Px(5, 5, 5, 0), Px(1, 0xFF, 0, 0)), Px(255, 0, 5, 0));
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(Apply(PixelCopyRelativeOpacity(nan), Px(5, 5, 5, 0), Px(1, 2, 3, 0)), Px(0, 0, 0, 0));
    EXPECT_EQ(half.GetOpacity(), 0.5f);
}

}  // namespace
