// Resize by its three methods, ResizeToWidth/ResizeToHeight and ResizeLazy; the box method on golden
// images of random sizes and rectangles.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "ResampleTestUtil.h"

namespace {

using namespace resample_test;

TEST(ResizeTest, SameSizeChangesNothingWhateverTheMethodOrSource) {
    for (int method = 0; method < 4; ++method) {
        TestBits b(ULOSize(3, 2), PICTBITS_ALPHA);
        Paint(b, Distinct);
        const std::vector<std::uint8_t> before = Block(b);
        const unsigned char* block = b.GetBits();
        b.Resize(3, 2, ULORect(1, 0, 2, 1), static_cast<ULOPictureBits::EResizeMethod>(method));
        EXPECT_EQ(b.GetBits(), block);
        EXPECT_EQ(Block(b), before);
    }
}

// Row y takes source row h * y / nh and column x source column x * w / nw, for every pixel size; the
// first round is 2 x 2 -> 4 x 4, where every pixel becomes a 2 x 2 block.
TEST(ResizeTest, NearestTakesPixelsByIntegerDivision) {
    std::mt19937 random(17);
    for (int round = 0; round < 40; ++round) {
        const int flags = kFormats[round % 3];
        const auto size = [&](int most) { return 1 + static_cast<int>(random() % most); };
        const int w = round < 3 ? 2 : size(40), h = round < 3 ? 2 : size(40);
        const int nw = round < 3 ? 4 : size(60), nh = round < 3 ? 4 : size(60);
        if (nw == w && nh == h) {
            continue;
        }
        TestBits b(ULOSize(w, h), flags);
        PaintRandom(b, random);
        TestBits original(ULOSize(w, h), flags);
        std::memcpy(original.GetBits(), b.GetBits(), static_cast<size_t>(b.GetLineWidth(false)) * h);
        b.Resize(nw, nh, ULORect(5, 5, 1, 1), ULOPictureBits::eResizeNearest);  // the rectangle is ignored
        ASSERT_TRUE(b.OwnsBits());
        ASSERT_EQ(b.GetLineWidth(false), ULOPictureUtil::ComputeLineWidth(nw, flags));
        for (int y = 0; y < nh; ++y) {
            for (int x = 0; x < nw; ++x) {
                ASSERT_EQ(Pixel(b, x, y), Pixel(original, x * w / nw, h * y / nh));
            }
            // Row padding is cleared.
            for (int i = nw * b.GetBytesPerPixel(); i < b.GetLineWidth(false); ++i) {
                ASSERT_EQ(b.GetBits(0, y)[i], 0);
            }
        }
    }
}

TEST(ResizeTest, CopyTakesTheRectangleAndClearsTheRest) {
    for (int flags : kFormats) {
        TestBits b(ULOSize(4, 4), flags);
        Paint(b, Distinct);
        b.Resize(3, 3, ULORect(1, 2, 3, 4), ULOPictureBits::eResizeCopy);
        ASSERT_EQ(b.GetSize(false), ULOSize(3, 3));
        // Rows 2 and 3 of the rectangle land in the bottom two rows; the top row and column 2 are not
        // written and stay cleared.
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 3; ++x) {
                const bool inside = x < 2 && y >= 1;
                EXPECT_EQ(Pixel(b, x, y)[0], inside ? Distinct(1 + x, y + 1, 0) : 0)
                    << flags << " " << x << y;
            }
        }
    }
}

TEST(ResizeTest, BoxHalvingAveragesBlocksAndTruncates) {
    for (int flags : kFormats) {
        TestBits b(ULOSize(4, 2), flags);
        // Block of columns 0-1: 10, 20 / 30, 41 -> 101 / 4 = 25.25 -> 25; columns 2-3: 255 everywhere.
        Paint(b, [](int x, int y, int c) -> std::uint8_t {
            if (x >= 2) {
                return 255;
            }
            const std::uint8_t v[2][2] = {{10, 20}, {30, 41}};
            return static_cast<std::uint8_t>(v[y][x] + c);
        });
        b.Resize(2, 1, ULOPictureBits::eResizeBox);
        for (int c = 0; c < b.GetBytesPerPixel(); ++c) {
            EXPECT_EQ(Pixel(b, 0, 0)[c], (101 + 4 * c) / 4) << flags;
            EXPECT_EQ(Pixel(b, 1, 0)[c], 255);
        }
    }
}

TEST(ResizeTest, BoxOriginIsInOutputUnits) {
    // 4 -> 2 columns over the rectangle's right half: one output column, origin 2 / 2 = 1, so it averages
    // source columns 1 and 2 (not 2 and 3); the second output column is not written.
    TestBits b(ULOSize(4, 1), PICTBITS_MASK8);
    Paint(b, [](int x, int, int) { return static_cast<std::uint8_t>(10 * (x + 1)); });
    b.Resize(2, 1, ULORect(2, 0, 4, 1), ULOPictureBits::eResizeBox);
    EXPECT_EQ(Pixel(b, 0, 0)[0], 25);
    EXPECT_EQ(Pixel(b, 1, 0)[0], 0);
}

// Random sizes and rectangles inside the picture, kept as golden images (taken when the method matched a
// literal transcription of its per-pixel description in single precision bit for bit).
TEST(ResizeTest, BoxMatchesItsGoldenImages) {
    std::mt19937 random(7);
    std::vector<golden::Image> images;
    for (int round = 0; round < 60; ++round) {
        const int flags = kFormats[round % 3];
        const int w = 1 + static_cast<int>(random() % 23);
        const int h = 1 + static_cast<int>(random() % 23);
        const int nw = 1 + static_cast<int>(random() % 31);
        const int nh = 1 + static_cast<int>(random() % 31);
        if (nw == w && nh == h) {
            continue;
        }
        TestBits b(ULOSize(w, h), flags);
        PaintRandom(b, random);
        ULORect s(0, 0, w, h);
        if (round % 2 == 1) {
            s.left = static_cast<int>(random() % w);
            s.top = static_cast<int>(random() % h);
            s.right = s.left + 1 + static_cast<int>(random() % (w - s.left));
            s.bottom = s.top + 1 + static_cast<int>(random() % (h - s.top));
        }
        b.Resize(nw, nh, s, ULOPictureBits::eResizeBox);
        images.push_back(Picture(std::to_string(round) + ": " + std::to_string(w) + "x" + std::to_string(h) +
                                     " flags " + std::to_string(flags),
                                 b));
    }
    golden::ExpectMatches("resample/box", images);
}

TEST(ResizeTest, ResizeToWidthAndHeightKeepTheAspectWithTheirRounding) {
    TestBits b(ULOSize(10, 5), PICTBITS_ALPHA);
    Paint(b, Distinct);
    b.ResizeToWidth(4, ULOPictureBits::eResizeNearest);  // (5 + 0.9) * 4 / 10 = 2.36
    EXPECT_EQ(b.GetSize(false), ULOSize(4, 2));
    TestBits c(ULOSize(10, 5), PICTBITS_ALPHA);
    Paint(c, Distinct);
    c.ResizeToHeight(3, ULOPictureBits::eResizeBox);  // (10 + 0.9) * 3 / 5 = 6.54
    EXPECT_EQ(c.GetSize(false), ULOSize(6, 3));
}

TEST(ResizeTest, ResizeLazyReplacesTheBlockOnlyForANewSize) {
    TestBits b(ULOSize(3, 3), PICTBITS_RGB24);
    const unsigned char* block = b.GetBits();
    b.ResizeLazy(3, 3);
    EXPECT_EQ(b.GetBits(), block);
    b.ResizeLazy(5, 2);
    EXPECT_EQ(b.GetSize(false), ULOSize(5, 2));
    EXPECT_EQ(b.GetLineWidth(false), 16);
}

// A view gets a block of its own; the owner's block is neither freed (the sanitizer build would
// report the owner's second free) nor changed.
TEST(ResizeTest, AViewGetsABlockOfItsOwn) {
    TestBits owner(ULOSize(2, 2), PICTBITS_ALPHA);
    Paint(owner, Distinct);
    const std::vector<std::uint8_t> before = Block(owner);
    TestBits view(owner.GetBits(), 2, 2, 8, PICTBITS_ALPHA);
    view.Resize(4, 4, ULOPictureBits::eResizeNearest);
    EXPECT_TRUE(view.OwnsBits());
    EXPECT_NE(view.GetBits(), owner.GetBits());
    EXPECT_EQ(Block(owner), before);
}

}  // namespace
