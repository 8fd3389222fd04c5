// Pixel access and the whole-buffer operations Fill, InvertAlpha and Mirror.
#include <random>

#include "PictureBitsTestSupport.h"

namespace {

using Row = std::vector<unsigned char>;

// Stores `bytes` as the whole block, padding included.
void Put(ULOPictureBits& b, const Row& bytes) {
    ASSERT_EQ(Bytes(b).size(), bytes.size());
    std::memcpy(b.GetBits(), bytes.data(), bytes.size());
}

void FillRandom(ULOPictureBits& b, unsigned seed) {
    std::mt19937 random(seed);
    for (int i = 0; i < b.GetLineWidth(false) * b.GetHeight(false); ++i) {
        b.GetBits()[i] = static_cast<unsigned char>(random());
    }
}

TEST(PictureBitsPixelsTest, ReadingAndWritingPixelsAndAlpha) {
    ULOPictureBits plain(ULOSize(2, 1), 0), mask(ULOSize(3, 1), PICTBITS_MASK8),
        rgb(ULOSize(1, 2), PICTBITS_RGB24);
    Put(plain, {0, 0, 0, 0, 10, 20, 30, 77});
    Put(mask, {0, 0, 130, 0});
    Put(rgb, Row(8, 0xAA));
    unsigned char alpha = 1;
    EXPECT_EQ(plain.GetPixel(ULOPoint(1, 0)), CLR(30, 20, 10));
    EXPECT_EQ(plain.GetPixelAndAlpha(1, 0, alpha), CLR(30, 20, 10));
    EXPECT_EQ(alpha, 0);  // byte 3 means nothing without PICTBITS_ALPHA
    ULOPictureBits(plain.GetBits(), 2, 1, 8, PICTBITS_ALPHA).GetPixelAndAlpha(1, 0, alpha);
    EXPECT_EQ(alpha, 77);
    EXPECT_EQ(mask.GetPixelAndAlpha(2, 0, alpha), CLR(0, 0, 0));
    EXPECT_EQ(alpha, 130);
    EXPECT_EQ(mask.GetPixel(2, 0), CLR(0, 0, 0));
    // A 3-byte pixel has no alpha even when the flag is set, and byte 3 (the next pixel) is not read.
    ULOPictureBits(rgb.GetBits(), 2, 1, 8, PICTBITS_RGB24 | PICTBITS_ALPHA).GetPixelAndAlpha(0, 0, alpha);
    EXPECT_EQ(alpha, 0);

    plain.SetPixelAndAlpha(0, 0, CLR(1, 2, 3), 200);  // byte 3 is written without the flag
    EXPECT_EQ(Bytes(plain), (Row{3, 2, 1, 200, 10, 20, 30, 77}));
    rgb.SetPixelAndAlpha(0, 1, CLR(1, 2, 3), 200);
    EXPECT_EQ(Bytes(rgb), (Row{3, 2, 1, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA}));
    mask.SetPixelAndAlpha(1, 0, CLR(1, 2, 3), 200);
    EXPECT_EQ(Bytes(mask), (Row{0, 200, 130, 0}));
}

// Fill is built with vectorised loops: every width, including the odd tails, must match what
// SetPixelAndAlpha does pixel by pixel, and row padding is left alone.
TEST(PictureBitsPixelsTest, FillMatchesPixelByPixelReference) {
    for (int flags : {0, PICTBITS_ALPHA, PICTBITS_RGB24, PICTBITS_MASK8}) {
        for (int width = 1; width <= 67; ++width) {
            ULOPictureBits filled(ULOSize(width, 3), flags), reference(ULOSize(width, 3), flags);
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
    // A wrapped stride with 4 spare bytes, and a buffer without rows.
    Row memory(2 * 12, 0xAA);
    ULOPictureBits(memory.data(), 2, 2, 12, 0).Fill(CLR(1, 2, 3), 4);
    ULOPictureBits(memory.data(), 2, 0, 12, 0).Fill(CLR(5, 5, 5), 5);
    const Row row{3, 2, 1, 4, 3, 2, 1, 4, 0xAA, 0xAA, 0xAA, 0xAA};
    EXPECT_EQ(Row(memory.begin(), memory.begin() + 12), row);
    EXPECT_EQ(Row(memory.begin() + 12, memory.end()), row);
}

// Only with the flag. The pixels are taken as one unpadded run from the first byte, so with a padded
// stride the run covers padding and misses the end of the last row; for 3-byte and mask buffers the
// run stops at the end of the block (the sanitizer build checks that nothing beyond it is touched).
TEST(PictureBitsPixelsTest, InvertAlphaTreatsMemoryAsUnpaddedRun) {
    ULOPictureBits plain(ULOSize(2, 1), 0), rgb(ULOSize(3, 1), PICTBITS_RGB24 | PICTBITS_ALPHA),
        mask(ULOSize(4, 2), PICTBITS_MASK8 | PICTBITS_ALPHA);
    Put(plain, {1, 2, 3, 4, 5, 6, 7, 8});
    Put(rgb, Row(12, 0));
    Put(mask, Row(8, 0));
    plain.InvertAlpha();
    EXPECT_EQ(Bytes(plain), (Row{1, 2, 3, 4, 5, 6, 7, 8}));
    ULOPictureBits(plain.GetBits(), 2, 1, 8, PICTBITS_ALPHA).InvertAlpha();
    EXPECT_EQ(Bytes(plain), (Row{1, 2, 3, 251, 5, 6, 7, 247}));

    Row memory(2 * 12, 0);
    ULOPictureBits(memory.data(), 2, 2, 12, PICTBITS_ALPHA).InvertAlpha();
    for (size_t i = 0; i < memory.size(); ++i) {
        EXPECT_EQ(memory[i], i == 3 || i == 7 || i == 11 || i == 15 ? 255 : 0) << i;
    }
    rgb.InvertAlpha();
    mask.InvertAlpha();
    EXPECT_EQ(Bytes(rgb), (Row{0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255}));
    EXPECT_EQ(Bytes(mask), (Row{0, 0, 0, 255, 0, 0, 0, 255}));
}

// Against a pixel-by-pixel reference over many sizes, which covers the vectorised loops' tails:
// mirroring horizontally keeps each row's padding, mirroring vertically moves it with its row.
TEST(PictureBitsPixelsTest, MirrorMatchesPixelByPixelReference) {
    for (int flags : {0, PICTBITS_RGB24, PICTBITS_MASK8}) {
        for (int width = 1; width <= 41; ++width) {
            for (int height : {1, 2, 5}) {
                SCOPED_TRACE(testing::Message() << "flags " << flags << " size " << width << "x" << height);
                ULOPictureBits original(ULOSize(width, height), flags);
                FillRandom(original, static_cast<unsigned>(width * 10 + height));
                const int bpp = original.GetBytesPerPixel(), stride = original.GetLineWidth(false);
                for (const auto& [h, v] : {std::pair(true, false), {true, true}, {false, true}}) {
                    ULOPictureBits mirrored;
                    mirrored.Clone(original);
                    mirrored.Mirror(h, v);
                    Row expected;  // memory row r from row r or height - 1 - r, its pixels reversed or not
                    for (int r = 0; r < height; ++r) {
                        const unsigned char* row = original.GetBits() + (v ? height - 1 - r : r) * stride;
                        expected.insert(expected.end(), row, row + stride);
                        for (int x = 0; h && x < width; ++x) {
                            std::memcpy(&expected[r * stride + x * bpp], row + (width - 1 - x) * bpp, bpp);
                        }
                    }
                    ASSERT_EQ(Bytes(mirrored), expected) << h << v;
                }
            }
        }
    }
}

}  // namespace
