#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <set>
#include <utility>

#include "TransferTestSupport.h"
#include "ulogui/PictureBits.h"

namespace {

using namespace ulogui::transfer;
using Route = PictureTransfer::Route;

TEST(TransferSelection, WrapperTableOfSourceAlphaDestinationAlphaAndOpacity) {
    EXPECT_EQ(SelectWrapper(false, false, 1.0f), Wrapper::kPlain);
    EXPECT_EQ(SelectWrapper(false, true, 1.0f), Wrapper::kPlain);
    EXPECT_EQ(SelectWrapper(false, false, 0.5f), Wrapper::kOpacity);
    EXPECT_EQ(SelectWrapper(false, true, 0.5f), Wrapper::kOpacity);
    EXPECT_EQ(SelectWrapper(true, false, 1.0f), Wrapper::kSourceAlpha);
    EXPECT_EQ(SelectWrapper(true, false, 0.5f), Wrapper::kSourceAlphaOpacity);
    EXPECT_EQ(SelectWrapper(true, true, 1.0f), Wrapper::kOntoAlpha);
    EXPECT_EQ(SelectWrapper(true, true, 0.5f), Wrapper::kOntoAlpha);
    // Only exactly 1.0 counts as opaque.
    EXPECT_EQ(SelectWrapper(false, false, std::nextafter(1.0f, 0.0f)), Wrapper::kOpacity);
    EXPECT_EQ(SelectWrapper(true, false, 1.5f), Wrapper::kSourceAlphaOpacity);
}

TEST(TransferSelection, CopyTypesChooseTheirFunctorUnderSixWrapperCombinations) {
    const Functor expected[] = {Functor::kCopy, Functor::kHighlight, Functor::kDisabled, Functor::kDarken};
    for (int type = 0; type < 4; ++type) {
        std::set<std::pair<Functor, Wrapper>> instances;
        for (bool srcAlpha : {false, true}) {
            for (bool dstAlpha : {false, true}) {
                for (float opacity : {1.0f, 0.25f}) {
                    const PictureTransfer t =
                        SelectPictureTransfer(srcAlpha ? PICTBITS_ALPHA : 0, dstAlpha, opacity, type);
                    ASSERT_EQ(t.route, Route::kLoop);
                    EXPECT_FALSE(t.loop.IsEmpty());
                    EXPECT_EQ(t.loop.GetFunctor(), expected[type]);
                    EXPECT_EQ(t.loop.GetWrapper(), SelectWrapper(srcAlpha, dstAlpha, opacity));
                    instances.insert({t.loop.GetFunctor(), t.loop.GetWrapper()});
                }
            }
        }
        EXPECT_EQ(instances.size(), 5u) << "W0, W1, W2, W3 and W4 for copy type " << type;
    }
    EXPECT_EQ(ulogui::eCopyNormal, 0);
    EXPECT_EQ(ulogui::eCopyHighlight, 1);
    EXPECT_EQ(ulogui::eCopyDisabled, 2);
    EXPECT_EQ(ulogui::eCopyDarken, 3);
}

TEST(TransferSelection, SourceFlagsComeBeforeTheCopyType) {
    // Flag 0x2: full copy, plain at exactly 1.0 and mixed otherwise; any copy type, even an unknown one.
    PictureTransfer t = SelectPictureTransfer(kFullCopySourceFlag | PICTBITS_ALPHA, true, 1.0f, 3);
    EXPECT_EQ(t.route, Route::kFullCopy);
    EXPECT_EQ(t.loop.GetFunctor(), Functor::kFullCopy);
    EXPECT_EQ(t.loop.GetWrapper(), Wrapper::kPlain);
    t = SelectPictureTransfer(kFullCopySourceFlag | PICTBITS_MASK8, false, 0.5f, 9);
    EXPECT_EQ(t.route, Route::kFullCopy);
    EXPECT_EQ(t.loop.GetWrapper(), Wrapper::kOpacityAllBytes);
    EXPECT_EQ(t.loop.GetConstants().k, 127);

    // A one-byte mask goes to the mask routine, whatever the copy type.
    for (int type : {0, 2, 4, -1}) {
        t = SelectPictureTransfer(PICTBITS_MASK8, false, 0.5f, type);
        EXPECT_EQ(t.route, Route::kMask);
        EXPECT_TRUE(t.loop.IsEmpty());
    }

    // Otherwise a copy type of 4 or more (or below 0) draws nothing.
    for (int type : {4, 5, 1000, -1}) {
        t = SelectPictureTransfer(PICTBITS_ALPHA, true, 1.0f, type);
        EXPECT_EQ(t.route, Route::kNothing) << type;
        EXPECT_TRUE(t.loop.IsEmpty());
    }
}

TEST(TransferSelection, OpacityWeightTruncatesAndHoldsToTheByteRange) {
    EXPECT_EQ(OpacityWeight(1.0f), 255);
    EXPECT_EQ(OpacityWeight(0.5f), 127);
    EXPECT_EQ(OpacityWeight(0.999f), 254);
    EXPECT_EQ(OpacityWeight(0.0f), 0);
    EXPECT_EQ(OpacityWeight(-0.5f), 0);
    EXPECT_EQ(OpacityWeight(7.0f), 255);
    EXPECT_EQ(OpacityWeight(std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(OpacityWeight(std::numeric_limits<float>::infinity()), 255);
}

TEST(TransferSelection, RelativeLoopsKeepTheirTwoOpacitiesApart) {
    const Loop loop = SelectLoop(Functor::kRelativeOpacity, true, false, 0.5f, 0.25f);
    EXPECT_EQ(loop.GetWrapper(), Wrapper::kSourceAlphaOpacity);
    EXPECT_EQ(loop.GetConstants().k, 127);
    EXPECT_EQ(loop.GetConstants().relativeOpacity, 0.25f);
    EXPECT_EQ(SelectLoop(Functor::kRelative, true, true, 1.0f).GetWrapper(), Wrapper::kOntoAlpha);
}

TEST(TransferSelection, PathSwitchFallsBackToWhatTheMachineHas) {
    const Path before = GetPath();
    ulogui::SetTransferSimd(false);
    EXPECT_EQ(GetPath(), Path::kScalar);
    EXPECT_FALSE(ulogui::GetTransferSimd());
    EXPECT_EQ(Loop(Functor::kCopy, Wrapper::kPlain, 1.0f).GetPath(), Path::kScalar);
    ulogui::SetTransferSimd(true);
    EXPECT_EQ(GetPath(), GetBestPath());
    EXPECT_TRUE(ulogui::GetTransferSimd());
    SetPath(Path::kVector256);
    EXPECT_EQ(GetPath(), IsPathAvailable(Path::kVector256) ? Path::kVector256 : GetBestPath());
    SetPath(before);
}

TEST(TransferSelection, AnEmptyLoopChangesNothing) {
    const Loop empty;
    EXPECT_TRUE(empty.IsEmpty());
    unsigned char dst[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    const unsigned char src[8] = {};
    empty.RunRow(dst, src, 2);
    EXPECT_EQ(dst[0], 1);
    EXPECT_EQ(dst[7], 8);
}

// Pixel (x, y) of a 4-byte buffer, addressed bottom-up like the library does.
unsigned char* At(std::vector<unsigned char>& block, int width, int height, int x, int y) {
    return &block[(static_cast<size_t>(height - 1 - y) * width + x) * 4];
}

TEST(TransferSelection, RunWalksTheRectangleCutToBothBuffersBottomUp) {
    const int w = 6;
    const int h = 5;
    std::vector<unsigned char> dstBlock(w * h * 4, 0);
    std::vector<unsigned char> srcBlock(4 * 3 * 4, 0);
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 4; ++x) {
            unsigned char* p = At(srcBlock, 4, 3, x, y);
            p[0] = static_cast<unsigned char>(10 * y + x + 1);  // blue names the source pixel
        }
    }
    ULOPictureBits dst(dstBlock.data(), w, h, w * 4, 0);
    const ULOPictureBits src(srcBlock.data(), 4, 3, 16, 0);
    const Loop copy(Functor::kCopy, Wrapper::kPlain, 1.0f);

    // The rectangle starts left of the destination and the source origin one column in: the first
    // destination column drawn is 0, fed by source column 1 + 2 = 3; source rows 1..2 feed rows 3..4.
    ASSERT_TRUE(copy.Run(dst, ULORect(-2, 3, 10, 9), src, ULOPoint(1, 1)));
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const int expected = (x == 0 && y >= 3) ? 10 * (y - 2) + 3 + 1 : 0;
            EXPECT_EQ(At(dstBlock, w, h, x, y)[0], expected) << x << ", " << y;
        }
    }

    // A negative source origin moves the destination instead.
    std::fill(dstBlock.begin(), dstBlock.end(), 0);
    ASSERT_TRUE(copy.Run(dst, ULORect(0, 0, 6, 5), src, ULOPoint(-1, -2)));
    EXPECT_EQ(At(dstBlock, w, h, 1, 2)[0], 1);
    EXPECT_EQ(At(dstBlock, w, h, 4, 2)[0], 4);
    EXPECT_EQ(At(dstBlock, w, h, 4, 4)[0], 24);
    EXPECT_EQ(At(dstBlock, w, h, 0, 2)[0], 0);
    EXPECT_EQ(At(dstBlock, w, h, 5, 4)[0], 0);

    // Wild rectangles draw nothing and overflow nothing.
    std::fill(dstBlock.begin(), dstBlock.end(), 0);
    EXPECT_TRUE(
        copy.Run(dst, ULORect(INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX), src, ULOPoint(INT32_MAX, 0)));
    EXPECT_TRUE(copy.Run(dst, ULORect(4, 4, 1, 1), src, ULOPoint(0, 0)));
    EXPECT_EQ(std::count(dstBlock.begin(), dstBlock.end(), 0), w * h * 4);
}

TEST(TransferSelection, RunGivesTheSameWhetherRowsLieEndToEndOrArePadded) {
    const int w = 7;
    const int h = 5;
    std::vector<unsigned char> src(w * h * 4);
    std::vector<unsigned char> tight(w * h * 4);
    for (size_t i = 0; i < src.size(); ++i) {
        src[i] = static_cast<unsigned char>(i * 37 + 11);
        tight[i] = static_cast<unsigned char>(i * 13 + 5);
    }
    // The same pixels with 8 bytes of padding after every row; the padding must stay as it is.
    const int paddedStride = w * 4 + 8;
    std::vector<unsigned char> padded(paddedStride * h, 0xEE);
    for (int row = 0; row < h; ++row) {
        std::copy(&tight[row * w * 4], &tight[(row + 1) * w * 4], &padded[row * paddedStride]);
    }
    const std::vector<unsigned char> before = tight;
    const Loop loop(Functor::kCopy, Wrapper::kSourceAlpha, 1.0f);
    ULOPictureBits tightBits(tight.data(), w, h, w * 4, PICTBITS_ALPHA);
    ULOPictureBits paddedBits(padded.data(), w, h, paddedStride, PICTBITS_ALPHA);
    const ULOPictureBits srcBits(src.data(), w, h, w * 4, PICTBITS_ALPHA);
    ASSERT_TRUE(loop.Run(tightBits, ULORect(0, 0, w, h), srcBits, ULOPoint(0, 0)));
    ASSERT_TRUE(loop.Run(paddedBits, ULORect(0, 0, w, h), srcBits, ULOPoint(0, 0)));
    EXPECT_NE(tight, before);
    for (int row = 0; row < h; ++row) {
        EXPECT_TRUE(std::equal(&tight[row * w * 4], &tight[(row + 1) * w * 4], &padded[row * paddedStride]));
        EXPECT_EQ(padded[row * paddedStride + w * 4], 0xEE);
        EXPECT_EQ(padded[row * paddedStride + w * 4 + 7], 0xEE);
    }
}

TEST(TransferSelection, RunRefusesBuffersThatAreNotFourBytesAPixel) {
    std::vector<unsigned char> mask(8 * 2, 0);
    std::vector<unsigned char> colour(2 * 2 * 4, 9);
    ULOPictureBits maskBits(mask.data(), 8, 2, 8, PICTBITS_MASK8);
    const ULOPictureBits colourBits(colour.data(), 2, 2, 8, 0);
    const Loop copy(Functor::kCopy, Wrapper::kPlain, 1.0f);
    EXPECT_FALSE(copy.Run(maskBits, ULORect(0, 0, 2, 2), colourBits, ULOPoint(0, 0)));
    EXPECT_EQ(std::count(mask.begin(), mask.end(), 0), 16);
}

}  // namespace
