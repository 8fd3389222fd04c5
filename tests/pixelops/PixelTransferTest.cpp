// The pixel transfer loops: which loop a drawing call gets, its instruction-set level and how it walks two
// buffers; every functor and wrapper on hand-computed pixels at every level; the vector paths against the
// scalar reference bit for bit (all blending inputs, random rows of every length), and their identities.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "pixelops/PixelTransferKernels.h"
#include "pixelops/PixelTransferLoops.h"
#include "ulogui/Palette.h"
#include "ulogui/PictureBits.h"
#include "ulogui/PixelTransfer.h"

namespace {

using namespace ulogui::pixelops;
using ulogui::base::IsaName;

using Pixel = std::array<unsigned char, 4>;  // blue, green, red, alpha

// The wrappers by the names the docs give them.
constexpr auto W0 = Wrapper::kPlain;
constexpr auto W1 = Wrapper::kSourceAlpha;
constexpr auto W2 = Wrapper::kSourceAlphaOpacity;
constexpr auto W3 = Wrapper::kOpacity;
constexpr auto W3All = Wrapper::kOpacityAllBytes;
constexpr auto W4 = Wrapper::kOntoAlpha;

// Leaves the effect tables zero and CLR_GRADATION_TOP_LEFT black after each test, as at load time.
class TransferTest : public ::testing::Test {
protected:
    void TearDown() override {
        std::fill(std::begin(DISABLED_CLR_COMPONENT), std::end(DISABLED_CLR_COMPONENT), 0);
        std::fill(std::begin(HIGHLIGHT_CLR_COMPONENT), std::end(HIGHLIGHT_CLR_COMPONENT), 0);
        CLR_GRADATION_TOP_LEFT = CLR(0, 0, 0);
    }
};

// The instruction-set levels this machine runs, the scalar reference first unless `withScalar` is false.
std::vector<ulogui::base::Isa> AvailableIsas(bool withScalar = true) {
    std::vector<ulogui::base::Isa> levels;
    for (int i = withScalar ? 0 : 1; i < ulogui::base::kIsaCount; ++i) {
        if (ulogui::base::IsIsaAvailable(static_cast<ulogui::base::Isa>(i))) {
            levels.push_back(static_cast<ulogui::base::Isa>(i));
        }
    }
    return levels;
}

using Route = PictureTransfer::Route;

TEST(TransferSelection, SourceFlagsCopyTypeWrapperTableOpacityWeightAndLevel) {
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
    // Loops take the forced level, or the best this machine has.
    using namespace ulogui::base;
    for (int i = 0; i < kIsaCount; ++i) {
        const Isa isa = static_cast<Isa>(i);
        ForceIsa(isa);
        const Isa expected = IsIsaAvailable(isa) ? isa : BestIsa();
        EXPECT_EQ(ActiveIsa(), expected) << IsaName(isa);
        EXPECT_EQ(Loop(Functor::kCopy, W0, 1.0f).GetIsa(), expected) << IsaName(isa);
    }
    ForceIsa(BestIsa());

    // Source flags, then the copy type, then the wrapper table.
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

// Blue byte of pixel (x, y) of a 4-byte buffer, addressed bottom-up like the library does.
unsigned char& Blue(std::vector<unsigned char>& block, int width, int height, int x, int y) {
    return block[(static_cast<size_t>(height - 1 - y) * width + x) * 4];
}

TEST(TransferSelection, RunWalksTheRectangleCutToBothBuffersBottomUpPaddedOrNot) {
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
    // Whole rows run as one when both buffers are unpadded; the result must not depend on it.
    const int pw = 7, ph = 5, stride = pw * 4 + 8;
    // The same pixels with 8 bytes of padding (0xEE) after every row.
    auto pad = [&](const std::vector<unsigned char>& tight) {
        std::vector<unsigned char> padded(stride * ph, 0xEE);
        for (int row = 0; row < ph; ++row) {
            std::copy(&tight[row * pw * 4], &tight[(row + 1) * pw * 4], &padded[row * stride]);
        }
        return padded;
    };
    std::vector<unsigned char> source(pw * ph * 4), tight(pw * ph * 4);
    for (size_t i = 0; i < source.size(); ++i) {
        source[i] = static_cast<unsigned char>(i * 37 + 11);
        tight[i] = static_cast<unsigned char>(i * 13 + 5);
    }
    const std::vector<unsigned char> before = tight;
    std::vector<unsigned char> paddedDst = pad(tight), paddedSrc = pad(source), fromPaddedSrc = tight;
    auto bits = [&](std::vector<unsigned char>& block, int lineWidth) {
        return ULOPictureBits(block.data(), pw, ph, lineWidth, PICTBITS_ALPHA);
    };
    const Loop loop(Functor::kCopy, W1, 1.0f);
    const ULORect all(0, 0, pw, ph);
    ULOPictureBits tightBits = bits(tight, pw * 4), paddedBits = bits(paddedDst, stride);
    ULOPictureBits fromPaddedBits = bits(fromPaddedSrc, pw * 4);
    ASSERT_TRUE(loop.Run(tightBits, all, bits(source, pw * 4), ULOPoint(0, 0)));
    ASSERT_TRUE(loop.Run(paddedBits, all, bits(source, pw * 4), ULOPoint(0, 0)));
    ASSERT_TRUE(loop.Run(fromPaddedBits, all, bits(paddedSrc, stride), ULOPoint(0, 0)));
    EXPECT_NE(tight, before);
    EXPECT_EQ(paddedDst, pad(tight));  // the same rows, and the padding untouched
    EXPECT_EQ(fromPaddedSrc, tight);
}

using Bytes = std::vector<unsigned char>;

constexpr Functor Copy = Functor::kCopy, FullCopy = Functor::kFullCopy, Highlight = Functor::kHighlight,
                  Disabled = Functor::kDisabled, Darken = Functor::kDarken, Relative = Functor::kRelative,
                  RelativeOpacity = Functor::kRelativeOpacity;

constexpr int kRow = 37;  // more than one 32-byte vector's worth of pixels plus an odd tail
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

struct Case {
    Functor functor;
    Wrapper wrapper;
    float opacity;
    float relativeOpacity;
    Pixel dst, src, expected;
};

Pixel RunOnRow(const Case& c, Isa isa) {
    const Loop loop(c.functor, c.wrapper, c.opacity, c.relativeOpacity, isa);
    std::vector<Pixel> dst(kRow, c.dst);
    const std::vector<Pixel> src(kRow, c.src);
    loop.RunRow(dst[0].data(), src[0].data(), kRow);
    for (int i = 1; i < kRow; ++i) {
        EXPECT_EQ(dst[i], dst[0]) << "pixel " << i;
    }
    return dst[0];
}

TEST_F(TransferTest, FunctorsAndWrappersOnHandComputedPixels) {
    for (int i = 0; i < 256; ++i) {
        HIGHLIGHT_CLR_COMPONENT[i] = static_cast<unsigned char>(255 - i);
        DISABLED_CLR_COMPONENT[i] = static_cast<unsigned char>(i / 2);
    }
    CLR_GRADATION_TOP_LEFT = CLR(200, 100, 0);  // red, green, blue
    const Case cases[] = {
        // The functors, each writing the destination itself (W0).
        {Copy, W0, 1, 1, {1, 2, 3, 4}, {10, 20, 30, 40}, {10, 20, 30, 4}},
        {FullCopy, W0, 1, 1, {1, 2, 3, 4}, {10, 20, 30, 40}, {10, 20, 30, 40}},
        {Highlight, W0, 1, 1, {0, 0, 0, 77}, {10, 20, 30, 40}, {245, 235, 225, 77}},
        // grey = trunc(0.15 * 100 + 0.5 * 200 + 0.35 * 50) = 132, tone 66: trunc(0.6 * 66 + 0.4 * byte).
        {Disabled, W0, 1, 1, {0, 0, 0, 9}, {100, 200, 50, 1}, {79, 119, 59, 9}},
        // One tone for all three bytes: grey 128 gives 64, trunc(38.4 + 51.2), not the grey itself.
        {Disabled, W0, 1, 1, {0, 0, 0, 0}, {128, 128, 128, 0}, {89, 89, 89, 0}},
        // trunc(0.3 * table[s] + 0.7 * gradation): 15 + 0, 7.5 + 70, 1.5 + 140.
        {Darken, W0, 1, 1, {0, 0, 0, 5}, {100, 50, 10, 0}, {15, 77, 141, 5}},
        // Signed offsets, clamped: 0 - 1, 200 + 127, 100 - 128; then 16 + 16, 16 - 16, 16 + 0.
        {Relative, W0, 1, 1, {0, 200, 100, 6}, {0xFF, 0x7F, 0x80, 0}, {0, 255, 0, 6}},
        {Relative, W0, 1, 1, {16, 16, 16, 6}, {0x10, 0xF0, 0x00, 0}, {32, 0, 16, 6}},
        // trunc(-128 * 0.5 + 10) = -54 -> 0; trunc(127 * 0.5 + 100) = 163; trunc(-1 * 0.5 + 10) = 9.
        {RelativeOpacity, W0, 1, 0.5f, {10, 100, 10, 3}, {0x80, 0x7F, 0xFF, 0}, {0, 163, 9, 3}},
        // trunc(-0.5 + 0) is 0, not -1: truncation goes toward zero before clamping.
        {RelativeOpacity, W0, 1, 0.5f, {0, 250, 0, 0}, {0xFF, 0x14, 0, 0}, {0, 255, 0, 0}},
        {RelativeOpacity, W0, 1, 1e30f, {5, 5, 5, 0}, {1, 0xFF, 0, 0}, {255, 0, 5, 0}},
        {RelativeOpacity, W0, 1, kNaN, {5, 5, 5, 0}, {1, 2, 3, 0}, {0, 0, 0, 0}},

        // W1 shifts by 8, so an opaque white source gives (255 * 255) >> 8 = 254 and loses one level.
        {Copy, W1, 1, 1, {0, 100, 255, 7}, {255, 255, 255, 0}, {254, 254, 254, 7}},
        // a = 128: (200 * 128 + 100 * 127) >> 8 = 149; (0 * 128 + 255 * 127) >> 8 = 126.
        {Copy, W1, 1, 1, {200, 0, 200, 7}, {100, 255, 100, 128}, {149, 126, 149, 7}},
        {Copy, W1, 1, 1, {1, 2, 3, 7}, {100, 100, 100, 255}, {1, 2, 3, 7}},
        // W2, k = trunc(0.5 * 255) = 127. a = 0: w = (255 * 127) >> 8 = 126; (255 * 126) >> 8 = 125.
        {Copy, W2, 0.5f, 1, {0, 0, 0, 9}, {255, 255, 255, 0}, {125, 125, 125, 9}},
        // a = 100: w = (155 * 127) >> 8 = 76; (200 * 179 + 50 * 76) >> 8 = 154.
        {Copy, W2, 0.5f, 1, {200, 200, 200, 9}, {50, 50, 50, 100}, {154, 154, 154, 9}},
        // a = 254: w = (1 * 127) >> 8 = 0 keeps the background.
        {Copy, W2, 0.5f, 1, {1, 2, 3, 9}, {200, 200, 200, 254}, {1, 2, 3, 9}},
        // W3 divides by 255: (255 * 127) / 255, (255 * 128) / 255, (100 * 127 + 200 * 128) / 255.
        {Copy, W3, 0.5f, 1, {0, 255, 200, 66}, {255, 0, 100, 0}, {127, 128, 150, 66}},
        {Copy, W3, 0, 1, {1, 2, 3, 66}, {255, 0, 100, 0}, {1, 2, 3, 66}},
        {Copy, W3, 1, 1, {1, 2, 3, 66}, {255, 0, 100, 0}, {255, 0, 100, 66}},
        // The full-copy opacity loop mixes alpha like a colour byte.
        {FullCopy, W3All, 0.5f, 1, {0, 0, 0, 255}, {255, 255, 255, 0}, {127, 127, 127, 128}},

        // W4 onto a fully transparent destination copies the colour, and the alpha becomes the source's
        // transparency after opacity, t = 255 - (((255 - a) * k) >> 8).
        {Copy, W4, 1, 1, {9, 9, 9, 255}, {10, 20, 30, 0}, {10, 20, 30, 1}},
        {Copy, W4, 1, 1, {9, 9, 9, 255}, {10, 20, 30, 100}, {10, 20, 30, 101}},
        // k = 127, a = 0: t = 255 - 126 = 129.
        {Copy, W4, 0.5f, 1, {0, 0, 0, 255}, {40, 50, 60, 0}, {40, 50, 60, 129}},
        // A source that ends fully transparent keeps all four destination bytes.
        {Copy, W4, 1, 1, {9, 8, 7, 6}, {10, 20, 30, 255}, {9, 8, 7, 6}},
        // Opaque destination: t = 1, c = 0: (100 * 1 + 200 * 254) / 255 = 199.
        {Copy, W4, 1, 1, {100, 100, 100, 0}, {200, 200, 200, 0}, {199, 199, 199, 0}},
        // b = 128, t = 101: c = 50, d = 205: (100 * 51 + 200 * 154) / 205 = 175; (0 + 0) / 205 = 0.
        {Copy, W4, 1, 1, {100, 0, 255, 128}, {200, 0, 255, 100}, {175, 0, 255, 50}},

        // The wrappers mix the relative functors' result f. W3 at k = 127 with f = 150, 0, 255:
        // (150 * 127 + 100 * 128) / 255 = 124, (0 * 127 + 100 * 128) / 255 = 50, (255 * 127 + 250 * 128) /
        // 255 = 252.
        {Relative, W3, 0.5f, 1, {100, 100, 250, 0}, {50, 0x80, 0x7F, 0}, {124, 50, 252, 0}},
        {Relative, W1, 1, 1, {100, 100, 100, 0}, {50, 50, 50, 0}, {149, 149, 149, 0}},
        // W4 onto a transparent destination with f = clamp(trunc(s / 2 + dst)): the two opacities apart.
        {RelativeOpacity, W4, 1, 0.5f, {100, 100, 100, 255}, {20, 0xEC, 0, 0}, {110, 90, 100, 1}},
    };
    for (Isa isa : AvailableIsas()) {
        for (const Case& c : cases) {
            SCOPED_TRACE(::testing::Message() << IsaName(isa) << ", case " << (&c - cases));
            EXPECT_EQ(RunOnRow(c, isa), c.expected);
        }
        // Darkening reads the gradation colour as it is at the call: 15 + 0, 7.5 + 0, 1.5 + 0.
        CLR_GRADATION_TOP_LEFT = CLR(0, 0, 0);
        EXPECT_EQ(RunOnRow({Darken, W0, 1, 1, {0, 0, 0, 5}, {100, 50, 10, 0}, {}}, isa),
                  (Pixel{15, 7, 1, 5}));
        CLR_GRADATION_TOP_LEFT = CLR(200, 100, 0);
    }
}

void Set(unsigned char* p, unsigned b, unsigned g, unsigned r, unsigned a) {
    p[0] = static_cast<unsigned char>(b);
    p[1] = static_cast<unsigned char>(g);
    p[2] = static_cast<unsigned char>(r);
    p[3] = static_cast<unsigned char>(a);
}

// 256 x 256 pixel pairs; `fill(i, j, dst, src)` writes pair 256 * i + j.
template <class Fill>
void Grid(Bytes& dst, Bytes& src, Fill fill) {
    dst.resize(256 * 256 * 4);
    src.resize(dst.size());
    for (int i = 0; i < 256; ++i) {
        for (int j = 0; j < 256; ++j) {
            fill(i, j, &dst[4 * (256 * i + j)], &src[4 * (256 * i + j)]);
        }
    }
}

// Runs the instance on the scalar path and at level `isa` over copies of the same rows of `rowPixels`; true
// when every byte agrees, otherwise the first difference is reported.
::testing::AssertionResult SameAsScalar(Isa isa, Functor functor, Wrapper wrapper, float opacity,
                                        float relativeOpacity, const Bytes& dst, const Bytes& src,
                                        int rowPixels = 256) {
    Bytes expected = dst, actual = dst;
    const Loop reference(functor, wrapper, opacity, relativeOpacity, Isa::kScalar);
    const Loop fast(functor, wrapper, opacity, relativeOpacity, isa);
    const int pixels = static_cast<int>(dst.size() / 4);
    for (int start = 0; start < pixels; start += rowPixels) {
        const int n = std::min(rowPixels, pixels - start);
        reference.RunRow(&expected[4 * start], &src[4 * start], n);
        fast.RunRow(&actual[4 * start], &src[4 * start], n);
    }
    const size_t i = std::mismatch(expected.begin(), expected.end(), actual.begin()).first - expected.begin();
    if (i == expected.size()) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << IsaName(isa) << ", functor " << int(functor) << ", wrapper " << int(wrapper) << ", opacity "
           << opacity << ": byte " << i << " of " << int(dst[i]) << " under " << int(src[i]) << " gives "
           << int(actual[i]) << ", not " << int(expected[i]);
}

class VectorPathTest : public TransferTest, public ::testing::WithParamInterface<Isa> {};

// Every source alpha against every destination byte and every functor byte under W1 and W2, every weight
// k = a under W3. The destination's alpha f ^ d takes every value for each source alpha, so W4 sees
// every pair of alphas, each with 256 pairs of colours.
TEST_P(VectorPathTest, EveryWrapperOverAllInputs) {
    const float ontoAlphaOpacities[] = {1.0f, 0.5f, 0.1f, 0.996f};
    Bytes dst, src;
    for (int a = 0; a < 256; ++a) {
        Grid(dst, src, [a](int d, int f, unsigned char* p, unsigned char* s) {
            Set(p, d, 255 - d, d ^ 0x5A, f ^ d);
            Set(s, f, 255 - f, f * 7, a);
        });
        const float weightA = (static_cast<float>(a) + 0.5f) / 255.0f;  // trunc(weightA * 255) == a
        ASSERT_EQ(OpacityWeight(weightA), a);
        const std::pair<Wrapper, float> runs[] = {{W1, 1.0f},
                                                  {W2, 0.004f},
                                                  {W2, 0.5f},
                                                  {W2, 0.9f},
                                                  {W3, weightA},
                                                  {W3All, weightA},
                                                  {W4, ontoAlphaOpacities[a % 4]}};
        for (const auto& run : runs) {
            const Functor functor = run.first == W3All ? Functor::kFullCopy : Functor::kCopy;
            ASSERT_TRUE(SameAsScalar(GetParam(), functor, run.first, run.second, 1.0f, dst, src));
        }
    }
}

// Every functor under every wrapper, rows of every length up to 70 pixels and one of 1031 (the functor
// runs in staging blocks of 256), alpha bytes biased toward the values where the wrappers branch.
TEST_P(VectorPathTest, EveryInstanceOnRandomRowsOfEveryLength) {
    std::mt19937 random(11);
    for (int i = 0; i < 256; ++i) {
        DISABLED_CLR_COMPONENT[i] = static_cast<unsigned char>(random());
        HIGHLIGHT_CLR_COMPONENT[i] = static_cast<unsigned char>(random());
    }
    CLR_GRADATION_TOP_LEFT = CLR(131, 20, 250);
    const unsigned char specialAlpha[] = {0, 1, 254, 255, 128};
    auto alpha = [&]() {
        const unsigned r = random() % 10;
        return r < 5 ? specialAlpha[r] : random();
    };
    for (int length = 0; length <= 71; ++length) {
        const int pixels = length <= 70 ? length : 1031;
        Bytes dst(4 * pixels), src(4 * pixels);
        for (int p = 0; p < pixels; ++p) {
            Set(&dst[4 * p], random(), random(), random(), alpha());
            Set(&src[4 * p], random(), random(), random(), alpha());
        }
        for (int f = 0; f < kFunctorCount; ++f) {
            for (int w = 0; w < kWrapperCount; ++w) {
                for (float opacity : {1.0f, 0.5f, 0.0f, 0.73f}) {
                    ASSERT_TRUE(SameAsScalar(GetParam(), static_cast<Functor>(f), static_cast<Wrapper>(w),
                                             opacity, length % 2 ? -0.7f : 0.6f, dst, src,
                                             std::max(pixels, 1)))
                        << "row of " << pixels;
                }
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Levels, VectorPathTest, ::testing::ValuesIn(AvailableIsas(false)),
                         [](const ::testing::TestParamInfo<Isa>& p) { return IsaName(p.param); });

// The kernels at a width no instruction set of this machine has (two pixels a vector) take the
// portable code of every helper: the same results again.
TEST(PortableKernels, IntegerIdentitiesHoldAndTwoPixelVectorsMatchTheScalarReference) {
    // The two integer identities the kernels rest on.
    for (uint32_t x = 0; x <= 255u * 255u; ++x) {
        ASSERT_EQ((x + 1 + (x >> 8)) >> 8, x / 255) << x;
        ASSERT_EQ(((x * kDivide255Multiplier) >> 16) >> kDivide255Shift, x / 255) << x;
    }
    for (int d = 1; d <= 255; ++d) {
        const float reciprocal = kReciprocalScale / static_cast<float>(d);
        for (int n = 0; n <= 255 * d; ++n) {
            ASSERT_EQ(static_cast<int>(static_cast<float>(n) * reciprocal), n / d) << n << " / " << d;
        }
    }
    constexpr KernelSet kernels = MakeKernelSet<8>();
    const std::pair<Kernel, Wrapper> cases[] = {{kernels.plainColour, W0},        {kernels.sourceAlpha, W1},
                                                {kernels.sourceAlphaOpacity, W2}, {kernels.opacity, W3},
                                                {kernels.opacityAllBytes, W3All}, {kernels.ontoAlpha, W4}};
    std::mt19937 random(17);
    const int pixels = 4099;
    Bytes dst(4 * pixels), src(4 * pixels);
    for (size_t i = 0; i < dst.size(); ++i) {
        dst[i] = static_cast<unsigned char>(random());
        src[i] = static_cast<unsigned char>(random());
    }
    for (const auto& c : cases) {
        for (float opacity : {1.0f, 0.3f}) {
            const Functor functor = c.second == W3All ? Functor::kFullCopy : Functor::kCopy;
            const Loop reference(functor, c.second, opacity, 1.0f, Isa::kScalar);
            Bytes expected = dst, actual = dst;
            reference.RunRow(expected.data(), src.data(), pixels);
            const int done = c.first(actual.data(), src.data(), pixels, reference.GetConstants().k);
            EXPECT_EQ(done, pixels - 1);
            reference.RunRow(&actual[4 * done], &src[4 * done], pixels - done);
            EXPECT_TRUE(expected == actual) << "wrapper " << int(c.second) << ", opacity " << opacity;
        }
    }
}

}  // namespace
