// Which loop a drawing call gets, the instruction-set level it runs at, and how a loop walks two buffers.
#include <cmath>
#include <set>

#include "TransferTestSupport.h"
#include "ulogui/PictureBits.h"

namespace {

using namespace ulogui::pixelops;
using Route = PictureTransfer::Route;
using namespace transfer_test;  // W0 .. W4

TEST(TransferSelection, WrapperTableAndOpacityWeight) {
    // [source alpha][destination alpha][opacity below 1.0]
    const Wrapper table[2][2][2] = {{{W0, W3}, {W0, W3}}, {{W1, W2}, {W4, W4}}};
    for (int facts = 0; facts < 8; ++facts) {
        const bool srcAlpha = facts & 1, dstAlpha = facts & 2, translucent = facts & 4;
        EXPECT_EQ(SelectWrapper(srcAlpha, dstAlpha, translucent ? 0.5f : 1.0f),
                  table[srcAlpha][dstAlpha][translucent])
            << facts;
    }
    // Only exactly 1.0 counts as opaque.
    EXPECT_EQ(SelectWrapper(false, false, std::nextafter(1.0f, 0.0f)), W3);
    EXPECT_EQ(SelectWrapper(true, false, 1.5f), W2);

    const float inf = std::numeric_limits<float>::infinity();
    const std::pair<float, int> weights[] = {
        {1.0f, 255}, {0.5f, 127}, {0.999f, 254},
        {0.0f, 0},   {-0.5f, 0},  {7.0f, 255},
        {-inf, 0},   {inf, 255},  {std::numeric_limits<float>::quiet_NaN(), 0}};
    for (const auto& w : weights) {
        EXPECT_EQ(OpacityWeight(w.first), w.second) << w.first;
    }
}

TEST(TransferSelection, SourceFlagsThenCopyTypeThenTheWrapperTable) {
    // Copy types 0..3 choose their functor under the wrapper of the three facts: five instances each.
    const Functor expected[] = {Functor::kCopy, Functor::kHighlight, Functor::kDisabled, Functor::kDarken};
    for (int type = 0; type < 4; ++type) {
        std::set<std::pair<Functor, Wrapper>> instances;
        for (int facts = 0; facts < 8; ++facts) {
            const bool srcAlpha = facts & 1, dstAlpha = facts & 2;
            const float opacity = facts & 4 ? 0.25f : 1.0f;
            const PictureTransfer t =
                SelectPictureTransfer(srcAlpha ? PICTBITS_ALPHA : 0, dstAlpha, opacity, type);
            ASSERT_EQ(t.route, Route::kLoop);
            EXPECT_EQ(t.loop.GetFunctor(), expected[type]);
            EXPECT_EQ(t.loop.GetWrapper(), SelectWrapper(srcAlpha, dstAlpha, opacity));
            instances.insert({t.loop.GetFunctor(), t.loop.GetWrapper()});
        }
        EXPECT_EQ(instances.size(), 5u) << "copy type " << type;
    }

    // Flag 0x2 first: full copy, plain at exactly 1.0 and mixed otherwise, whatever the copy type.
    const auto facts = [](const PictureTransfer& p) {
        return std::make_tuple(p.route, p.loop.GetFunctor(), p.loop.GetWrapper(), p.loop.GetConstants().k);
    };
    EXPECT_EQ(facts(SelectPictureTransfer(kFullCopySourceFlag | PICTBITS_ALPHA, true, 1.0f, 3)),
              std::make_tuple(Route::kFullCopy, Functor::kFullCopy, W0, 255));
    EXPECT_EQ(facts(SelectPictureTransfer(kFullCopySourceFlag | PICTBITS_MASK8, false, 0.5f, 9)),
              std::make_tuple(Route::kFullCopy, Functor::kFullCopy, W3All, 127));

    // Then a one-byte mask goes to the mask routine whatever the copy type; otherwise a copy type outside
    // 0..3 draws nothing. Neither has a loop, and an empty loop changes nothing.
    for (int type : {0, 2, 4, 5, 1000, -1}) {
        const PictureTransfer mask = SelectPictureTransfer(PICTBITS_MASK8, false, 0.5f, type);
        EXPECT_TRUE(mask.loop.IsEmpty() && mask.route == Route::kMask) << type;
        const PictureTransfer t = SelectPictureTransfer(PICTBITS_ALPHA, true, 1.0f, type);
        EXPECT_EQ(t.route, type >= 0 && type < 4 ? Route::kLoop : Route::kNothing) << type;
        EXPECT_EQ(t.loop.IsEmpty(), t.route == Route::kNothing) << type;
    }
    unsigned char dst[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    Loop().RunRow(dst, dst, 2);
    EXPECT_EQ(dst[0] + dst[7], 9);

    // The relative functor keeps its own opacity apart from the wrapper's.
    const Loop relative = SelectLoop(Functor::kRelativeOpacity, true, false, 0.5f, 0.25f);
    EXPECT_EQ(std::make_tuple(relative.GetWrapper(), relative.GetConstants().k,
                              relative.GetConstants().relativeOpacity),
              std::make_tuple(W2, 127, 0.25f));
    EXPECT_EQ(SelectLoop(Functor::kRelative, true, true, 1.0f).GetWrapper(), W4);
}

TEST(TransferSelection, LoopsTakeTheForcedLevelOrTheBestTheMachineHas) {
    using namespace ulogui::base;
    for (int i = 0; i < kIsaCount; ++i) {
        const Isa isa = static_cast<Isa>(i);
        ForceIsa(isa);
        const Isa expected = IsIsaAvailable(isa) ? isa : BestIsa();
        EXPECT_EQ(ActiveIsa(), expected) << IsaName(isa);
        EXPECT_EQ(Loop(Functor::kCopy, W0, 1.0f).GetIsa(), expected) << IsaName(isa);
    }
    ForceIsa(BestIsa());
}

// Blue byte of pixel (x, y) of a 4-byte buffer, addressed bottom-up like the library does.
unsigned char& Blue(std::vector<unsigned char>& block, int width, int height, int x, int y) {
    return block[(static_cast<size_t>(height - 1 - y) * width + x) * 4];
}

TEST(TransferSelection, RunWalksTheRectangleCutToBothBuffersBottomUp) {
    const int w = 6, h = 5;
    std::vector<unsigned char> dstBlock(w * h * 4, 0);
    std::vector<unsigned char> srcBlock(4 * 3 * 4, 0);
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 4; ++x) {
            Blue(srcBlock, 4, 3, x, y) = static_cast<unsigned char>(10 * y + x + 1);  // names the pixel
        }
    }
    ULOPictureBits dst(dstBlock.data(), w, h, w * 4, 0);
    const ULOPictureBits src(srcBlock.data(), 4, 3, 16, 0);
    const Loop copy(Functor::kCopy, W0, 1.0f);

    // The rectangle starts left of the destination and the source origin one column in: the first
    // destination column drawn is 0, fed by source column 1 + 2 = 3; source rows 1..2 feed rows 3..4.
    ASSERT_TRUE(copy.Run(dst, ULORect(-2, 3, 10, 9), src, ULOPoint(1, 1)));
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            EXPECT_EQ(Blue(dstBlock, w, h, x, y), (x == 0 && y >= 3) ? 10 * (y - 2) + 4 : 0)
                << x << ", " << y;
        }
    }

    // A negative source origin moves the destination instead: source (0, 0) lands on (1, 2).
    std::fill(dstBlock.begin(), dstBlock.end(), 0);
    ASSERT_TRUE(copy.Run(dst, ULORect(0, 0, 6, 5), src, ULOPoint(-1, -2)));
    const int moved[][3] = {{1, 2, 1}, {4, 2, 4}, {4, 4, 24}, {0, 2, 0}, {5, 4, 0}};
    for (const auto& m : moved) {
        EXPECT_EQ(Blue(dstBlock, w, h, m[0], m[1]), m[2]) << m[0] << ", " << m[1];
    }

    // Wild rectangles draw nothing and overflow nothing; a one-byte buffer is refused.
    std::fill(dstBlock.begin(), dstBlock.end(), 0);
    EXPECT_TRUE(
        copy.Run(dst, ULORect(INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX), src, ULOPoint(INT32_MAX, 0)));
    EXPECT_TRUE(copy.Run(dst, ULORect(4, 4, 1, 1), src, ULOPoint(0, 0)));
    ULOPictureBits mask(dstBlock.data(), 8, 2, 8, PICTBITS_MASK8);
    EXPECT_FALSE(copy.Run(mask, ULORect(0, 0, 2, 2), src, ULOPoint(0, 0)));
    EXPECT_EQ(std::count(dstBlock.begin(), dstBlock.end(), 0), w * h * 4);
}

// Whole rows run as one when both buffers are unpadded; the result must not depend on it.
TEST(TransferSelection, RunGivesTheSameWhetherRowsLieEndToEndOrArePadded) {
    const int w = 7, h = 5, stride = w * 4 + 8;
    // The same pixels with 8 bytes of padding (0xEE) after every row.
    auto pad = [&](const std::vector<unsigned char>& tight) {
        std::vector<unsigned char> padded(stride * h, 0xEE);
        for (int row = 0; row < h; ++row) {
            std::copy(&tight[row * w * 4], &tight[(row + 1) * w * 4], &padded[row * stride]);
        }
        return padded;
    };
    std::vector<unsigned char> src(w * h * 4), tight(w * h * 4);
    for (size_t i = 0; i < src.size(); ++i) {
        src[i] = static_cast<unsigned char>(i * 37 + 11);
        tight[i] = static_cast<unsigned char>(i * 13 + 5);
    }
    const std::vector<unsigned char> before = tight;
    std::vector<unsigned char> paddedDst = pad(tight), paddedSrc = pad(src), fromPaddedSrc = tight;
    auto bits = [&](std::vector<unsigned char>& block, int lineWidth) {
        return ULOPictureBits(block.data(), w, h, lineWidth, PICTBITS_ALPHA);
    };
    const Loop loop(Functor::kCopy, W1, 1.0f);
    const ULORect all(0, 0, w, h);
    ULOPictureBits tightBits = bits(tight, w * 4), paddedBits = bits(paddedDst, stride);
    ULOPictureBits fromPaddedBits = bits(fromPaddedSrc, w * 4);
    ASSERT_TRUE(loop.Run(tightBits, all, bits(src, w * 4), ULOPoint(0, 0)));
    ASSERT_TRUE(loop.Run(paddedBits, all, bits(src, w * 4), ULOPoint(0, 0)));
    ASSERT_TRUE(loop.Run(fromPaddedBits, all, bits(paddedSrc, stride), ULOPoint(0, 0)));
    EXPECT_NE(tight, before);
    EXPECT_EQ(paddedDst, pad(tight));  // the same rows, and the padding untouched
    EXPECT_EQ(fromPaddedSrc, tight);
}

}  // namespace
