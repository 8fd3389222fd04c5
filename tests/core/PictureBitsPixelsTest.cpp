// Pixel access and the whole-buffer operations Fill, InvertAlpha and Mirror.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "ulogui/PictureBits.h"

namespace {

std::vector<unsigned char> Bytes(const ULOPictureBits& b) {
    const unsigned char* bits = b.GetBits();
    return std::vector<unsigned char>(bits, bits + b.GetLineWidth(false) * b.GetHeight(false));
}

void FillRandom(ULOPictureBits& b, unsigned seed) {
    std::mt19937 random(seed);
    unsigned char* bits = b.GetBits();
    for (int i = 0; i < b.GetLineWidth(false) * b.GetHeight(false); ++i) {
        bits[i] = static_cast<unsigned char>(random());
    }
}

TEST(PictureBitsPixelsTest, ReadingPixelsAndAlpha) {
    ULOPictureBits plain(ULOSize(2, 2), 0);
    unsigned char* p = plain.GetBits(1, 0);
    p[0] = 10;  // blue
    p[1] = 20;
    p[2] = 30;
    p[3] = 77;
    unsigned char alpha = 1;
    EXPECT_EQ(plain.GetPixel(1, 0), CLR(30, 20, 10));
    EXPECT_EQ(plain.GetPixel(ULOPoint(1, 0)), CLR(30, 20, 10));
    EXPECT_EQ(plain.GetPixelAndAlpha(1, 0, alpha), CLR(30, 20, 10));
    EXPECT_EQ(alpha, 0);  // byte 3 means nothing without PICTBITS_ALPHA

    ULOPictureBits withAlpha(plain.GetBits(), 2, 2, 8, PICTBITS_ALPHA);
    withAlpha.GetPixelAndAlpha(1, 0, alpha);
    EXPECT_EQ(alpha, 77);

    ULOPictureBits mask(ULOSize(3, 1), PICTBITS_MASK8);
    mask.GetBits()[2] = 130;
    alpha = 0;
    EXPECT_EQ(mask.GetPixelAndAlpha(2, 0, alpha), CLR(0, 0, 0));
    EXPECT_EQ(alpha, 130);
    EXPECT_EQ(mask.GetPixel(2, 0), CLR(0, 0, 0));

    // A 3-byte pixel has no alpha even when the flag is set, and byte 3 (the next pixel) is not read.
    ULOPictureBits rgb(ULOSize(2, 1), PICTBITS_RGB24 | PICTBITS_ALPHA);
    std::memset(rgb.GetBits(), 9, 8);
    alpha = 1;
    rgb.GetPixelAndAlpha(0, 0, alpha);
    EXPECT_EQ(alpha, 0);
}

TEST(PictureBitsPixelsTest, WritingPixelsAndAlpha) {
    ULOPictureBits plain(ULOSize(1, 1), 0);
    plain.SetPixelAndAlpha(0, 0, CLR(1, 2, 3), 200);
    EXPECT_EQ(Bytes(plain), (std::vector<unsigned char>{3, 2, 1, 200}));  // byte 3 written without the flag

    ULOPictureBits rgb(ULOSize(1, 2), PICTBITS_RGB24);
    std::memset(rgb.GetBits(), 0xAA, 8);
    rgb.SetPixelAndAlpha(0, 1, CLR(1, 2, 3), 200);
    EXPECT_EQ(Bytes(rgb), (std::vector<unsigned char>{3, 2, 1, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA}));

    ULOPictureBits mask(ULOSize(2, 1), PICTBITS_MASK8);
    std::memset(mask.GetBits(), 0, 4);
    mask.SetPixelAndAlpha(1, 0, CLR(1, 2, 3), 200);
    EXPECT_EQ(Bytes(mask), (std::vector<unsigned char>{0, 200, 0, 0}));
}

TEST(PictureBitsPixelsTest, FillLeavesRowPaddingAlone) {
    ULOPictureBits rgb(ULOSize(3, 2), PICTBITS_RGB24);  // 9 pixel bytes and 3 padding bytes a row
    std::memset(rgb.GetBits(), 0xAA, 24);
    rgb.Fill(CLR(1, 2, 3), 9);
    const std::vector<unsigned char> rgbRow{3, 2, 1, 3, 2, 1, 3, 2, 1, 0xAA, 0xAA, 0xAA};
    std::vector<unsigned char> expected(rgbRow);
    expected.insert(expected.end(), rgbRow.begin(), rgbRow.end());
    EXPECT_EQ(Bytes(rgb), expected);

    ULOPictureBits mask(ULOSize(3, 2), PICTBITS_MASK8);
    std::memset(mask.GetBits(), 0xAA, 8);
    mask.Fill(CLR(1, 2, 3), 9);
    EXPECT_EQ(Bytes(mask), (std::vector<unsigned char>{9, 9, 9, 0xAA, 9, 9, 9, 0xAA}));

    std::vector<unsigned char> memory(2 * 12, 0xAA);
    ULOPictureBits wide(memory.data(), 2, 2, 12, 0);  // a wrapped stride with 4 spare bytes
    wide.Fill(CLR(1, 2, 3), 4);
    const std::vector<unsigned char> wideRow{3, 2, 1, 4, 3, 2, 1, 4, 0xAA, 0xAA, 0xAA, 0xAA};
    expected = wideRow;
    expected.insert(expected.end(), wideRow.begin(), wideRow.end());
    EXPECT_EQ(memory, expected);

    ULOPictureBits none(memory.data(), 2, 0, 12, 0);
    none.Fill(CLR(5, 5, 5), 5);
    EXPECT_EQ(memory, expected);
}

// Fill is built with vectorised loops: every width, including the odd tails, must match what
// SetPixelAndAlpha does pixel by pixel.
TEST(PictureBitsPixelsTest, FillMatchesPixelByPixelReference) {
    for (int flags : {0, PICTBITS_ALPHA, PICTBITS_RGB24, PICTBITS_MASK8}) {
        for (int width = 1; width <= 67; ++width) {
            ULOPictureBits filled(ULOSize(width, 3), flags);
            ULOPictureBits reference(ULOSize(width, 3), flags);
            FillRandom(filled, 7);
            FillRandom(reference, 7);
            filled.Fill(CLR(11, 22, 33), 44);
            for (int y = 0; y < 3; ++y) {
                for (int x = 0; x < width; ++x) {
                    reference.SetPixelAndAlpha(x, y, CLR(11, 22, 33), 44);
                }
            }
            ASSERT_EQ(Bytes(filled), Bytes(reference)) << "flags " << flags << " width " << width;
        }
    }
}

TEST(PictureBitsPixelsTest, InvertAlphaOnlyWithTheFlag) {
    ULOPictureBits plain(ULOSize(2, 1), 0);
    std::memcpy(plain.GetBits(), "\x01\x02\x03\x04\x05\x06\x07\x08", 8);
    plain.InvertAlpha();
    EXPECT_EQ(Bytes(plain), (std::vector<unsigned char>{1, 2, 3, 4, 5, 6, 7, 8}));

    ULOPictureBits alpha(plain.GetBits(), 2, 1, 8, PICTBITS_ALPHA);
    alpha.InvertAlpha();
    EXPECT_EQ(Bytes(plain), (std::vector<unsigned char>{1, 2, 3, 251, 5, 6, 7, 247}));
}

// The pixels are taken as one unpadded run from the first byte, so with a padded stride the run
// covers padding and misses the end of the last row.
TEST(PictureBitsPixelsTest, InvertAlphaTreatsMemoryAsUnpaddedRun) {
    std::vector<unsigned char> memory(2 * 12, 0);
    ULOPictureBits wide(memory.data(), 2, 2, 12, PICTBITS_ALPHA);
    wide.InvertAlpha();
    for (size_t i = 0; i < memory.size(); ++i) {
        const bool inverted = i == 3 || i == 7 || i == 11 || i == 15;
        EXPECT_EQ(memory[i], inverted ? 255 : 0) << i;
    }
    // A 3-byte or mask buffer flagged with alpha: the run stops at the end of the block (the sanitizer
    // build checks that nothing beyond it is touched).
    ULOPictureBits rgb(ULOSize(3, 1), PICTBITS_RGB24 | PICTBITS_ALPHA);
    std::memset(rgb.GetBits(), 0, 12);
    rgb.InvertAlpha();
    EXPECT_EQ(Bytes(rgb), (std::vector<unsigned char>{0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255}));
    ULOPictureBits mask(ULOSize(4, 2), PICTBITS_MASK8 | PICTBITS_ALPHA);
    std::memset(mask.GetBits(), 0, 8);
    mask.InvertAlpha();
    EXPECT_EQ(Bytes(mask), (std::vector<unsigned char>{0, 0, 0, 255, 0, 0, 0, 255}));
}

TEST(PictureBitsPixelsTest, MirrorHorizontallyKeepsMiddleAndPadding) {
    ULOPictureBits rgb(ULOSize(3, 1), PICTBITS_RGB24);
    std::memcpy(rgb.GetBits(), "\x01\x02\x03\x04\x05\x06\x07\x08\x09\xA0\xA1\xA2", 12);
    rgb.Mirror(true, false);
    EXPECT_EQ(Bytes(rgb), (std::vector<unsigned char>{7, 8, 9, 4, 5, 6, 1, 2, 3, 0xA0, 0xA1, 0xA2}));

    ULOPictureBits mask(ULOSize(2, 2), PICTBITS_MASK8);
    std::memcpy(mask.GetBits(), "\x01\x02\x03\x04\x05\x06\x07\x08", 8);
    mask.Mirror(true, false);
    EXPECT_EQ(Bytes(mask), (std::vector<unsigned char>{2, 1, 3, 4, 6, 5, 7, 8}));

    ULOPictureBits plain(ULOSize(4, 1), PICTBITS_ALPHA);
    for (int i = 0; i < 16; ++i) {
        plain.GetBits()[i] = static_cast<unsigned char>(i);
    }
    plain.Mirror(true, false);
    EXPECT_EQ(Bytes(plain),
              (std::vector<unsigned char>{12, 13, 14, 15, 8, 9, 10, 11, 4, 5, 6, 7, 0, 1, 2, 3}));
}

TEST(PictureBitsPixelsTest, MirrorVerticallySwapsWholeRows) {
    ULOPictureBits rgb(ULOSize(1, 3), PICTBITS_RGB24);
    std::memcpy(rgb.GetBits(), "\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C", 12);
    rgb.Mirror(false, true);
    EXPECT_EQ(Bytes(rgb),
              (std::vector<unsigned char>{9, 10, 11, 12, 5, 6, 7, 8, 1, 2, 3, 4}));  // padding moves too

    ULOPictureBits single(ULOSize(2, 1), 0);
    std::memcpy(single.GetBits(), "\x01\x02\x03\x04\x05\x06\x07\x08", 8);
    single.Mirror(false, true);
    EXPECT_EQ(Bytes(single), (std::vector<unsigned char>{1, 2, 3, 4, 5, 6, 7, 8}));

    ULOPictureBits both(ULOSize(2, 2), PICTBITS_MASK8);
    std::memcpy(both.GetBits(), "\x01\x02\x03\x04\x05\x06\x07\x08", 8);
    both.Mirror(true, true);
    EXPECT_EQ(Bytes(both), (std::vector<unsigned char>{6, 5, 7, 8, 2, 1, 3, 4}));
}

// Against a pixel-by-pixel reference over many sizes, which covers the vectorised loops' tails.
TEST(PictureBitsPixelsTest, MirrorMatchesPixelByPixelReference) {
    for (int flags : {0, PICTBITS_RGB24, PICTBITS_MASK8}) {
        for (int width = 1; width <= 41; ++width) {
            for (int height : {1, 2, 5}) {
                ULOPictureBits mirrored(ULOSize(width, height), flags);
                FillRandom(mirrored, static_cast<unsigned>(width * 10 + height));
                ULOPictureBits original;
                original.Clone(mirrored);
                ULOPictureBits horizontal;
                horizontal.Clone(mirrored);
                horizontal.Mirror(true, false);
                mirrored.Mirror(true, true);
                const int bpp = mirrored.GetBytesPerPixel();
                for (int y = 0; y < height; ++y) {
                    for (int x = 0; x < width; ++x) {
                        ASSERT_EQ(std::memcmp(mirrored.GetBits(x, y),
                                              original.GetBits(width - 1 - x, height - 1 - y), bpp),
                                  0)
                            << "flags " << flags << " size " << width << "x" << height;
                        ASSERT_EQ(
                            std::memcmp(horizontal.GetBits(x, y), original.GetBits(width - 1 - x, y), bpp),
                            0);
                    }
                }
            }
        }
    }
}

}  // namespace
