// Pixel buffers: construction, ownership and addressing; pixel access and the whole-buffer operations
// Fill, InvertAlpha and Mirror; the stream record. Ownership mistakes show in the sanitizer build: a
// block freed twice or used after free aborts, a block never freed is reported as a leak. Read allocates
// a block that the buffer does not own (its ownership flag is left as it was), so the tests free what
// Read gave them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>
#include <tuple>
#include <typeinfo>
#include <vector>

#include "ulogui/PictureBits.h"
#include "ulolib/Stream.h"

namespace {

// Exposes the ownership flag and Reset, which subclasses use.
class ExposedBits : public ULOPictureBits {
public:
    using ULOPictureBits::Reset;
    using ULOPictureBits::ULOPictureBits;
    bool OwnsBits() const { return ownsBits; }
};

using Row = std::vector<unsigned char>;

// Width, height, stride, bytes per pixel, flags and block, to compare all at once.
using Shape = std::tuple<int, int, int, int, int, const unsigned char*>;

Shape ShapeOf(const ULOPictureBits& b) {
    return Shape(b.GetWidth(false), b.GetHeight(false), b.GetLineWidth(false), b.GetBytesPerPixel(),
                 b.GetFlags(), b.GetBits());
}

// The whole block, row padding included.
Row Bytes(const ULOPictureBits& b) {
    const unsigned char* bits = b.GetBits();
    return std::vector<unsigned char>(bits, bits + b.GetLineWidth(false) * b.GetHeight(false));
}

TEST(PictureBitsTest, LineWidthsSizesAndBottomUpPixelAddresses) {
    const int r24 = PICTBITS_RGB24, m8 = PICTBITS_MASK8;
    // 32-bit rows need no padding; the mask flag wins over RGB24; -1 is shifted arithmetically.
    const std::tuple<int, int, int> widths[] = {{1, 0, 4},    {7, 0, 28},       {1, PICTBITS_ALPHA, 4},
                                                {1, r24, 4},  {2, r24, 8},      {4, r24, 12},
                                                {5, r24, 16}, {4, m8, 4},       {5, m8, 8},
                                                {0, 0, 0},    {3, m8 | r24, 4}, {-1, 0, -4},
                                                {-1, m8, 0}};
    for (auto [width, flags, stride] : widths) {
        EXPECT_EQ(ULOPictureUtil::ComputeLineWidth(width, flags), stride) << width << " flags " << flags;
    }
    ULOPictureBits b(ULOSize(2, 2), 0), rgb(ULOSize(5, 2), PICTBITS_RGB24),
        mask(ULOSize(5, 3), PICTBITS_MASK8);
    std::vector<unsigned char> memory(3 * 20);
    ULOPictureBits wrapped(memory.data(), 2, 3, 20, 0);  // keeps the stride it was given
    const std::tuple<const ULOPictureBits&, int, int, ptrdiff_t> cases[] = {
        {b, 0, 0, 8},           {b, 0, 1, 0},         {b, 1, 0, 12},
        {b, 1, 1, 4},           {rgb, 4, 0, 16 + 12}, {mask, 3, 0, 2 * 8 + 3},
        {wrapped, 1, 0, 40 + 4}};
    for (const auto& [buffer, x, y, offset] : cases) {
        EXPECT_EQ(buffer.GetBits(x, y) - buffer.GetBits(), offset) << x << "," << y;
    }
    // Default and sized buffers.
    EXPECT_EQ(ShapeOf(ULOPictureBits()), Shape(0, 0, 0, 4, 0, nullptr));
    EXPECT_EQ(ShapeOf(rgb), Shape(5, 2, 16, 3, PICTBITS_RGB24, rgb.GetBits()));
    EXPECT_NE(rgb.GetBits(), nullptr);
    EXPECT_EQ(rgb.GetRect(false), ULORect(0, 0, 5, 2));
    EXPECT_EQ(
        std::make_tuple(ULOPictureBits(ULOSize(2, 2), PICTBITS_MASK8 | PICTBITS_RGB24).GetBytesPerPixel(),
                        ULOPictureBits(ULOSize(2, 2), PICTBITS_ALPHA).GetBytesPerPixel()),
        std::make_tuple(1, 4));
    // A zero or negative size owns no block at all.
    EXPECT_TRUE(ULOPictureBits(ULOSize(0, 5), 0).GetBits() == nullptr &&
                ULOPictureBits(ULOSize(-3, 5), 0).GetBits() == nullptr);
}

TEST(PictureBitsTest, CopiesAndAssignmentsAreViewsAndCloneADeepOwningCopy) {
    ULOPictureBits owner(ULOSize(4, 4), 0);
    {
        const ULOPictureBits copy(owner);
        ULOPictureBits assigned;
        assigned = owner;
        EXPECT_EQ(std::make_tuple(ShapeOf(copy), ShapeOf(assigned)),
                  std::make_tuple(ShapeOf(owner), ShapeOf(owner)));
    }
    owner.Fill(CLR(1, 2, 3), 4);  // still alive after both views are gone
    EXPECT_EQ(owner.GetPixel(3, 3), CLR(1, 2, 3));

    // Assigning to an owning buffer leaves its old block to the caller.
    ExposedBits target(ULOSize(2, 2), 0);
    unsigned char* previous = target.GetBits();
    std::vector<unsigned char> memory(16, 7);
    static_cast<ULOPictureBits&>(target) = ULOPictureBits(memory.data(), 2, 2, 8, 0);
    EXPECT_EQ(std::make_tuple(target.OwnsBits(), target.GetBits()), std::make_tuple(false, memory.data()));
    std::free(previous);  // freed twice would abort under the sanitizer
    // Clone is a deep owning copy and leaves the old block.
    std::vector<unsigned char> wide(2 * 12);
    for (size_t i = 0; i < wide.size(); ++i) {
        wide[i] = static_cast<unsigned char>(i);
    }
    const ULOPictureBits source(wide.data(), 2, 2, 12, PICTBITS_RGB24);  // a stride wider than needed
    ExposedBits clone;
    clone.Clone(source);
    EXPECT_TRUE(clone.OwnsBits() && clone.GetBits() != source.GetBits());
    EXPECT_EQ(ShapeOf(clone), Shape(2, 2, 12, 3, PICTBITS_RGB24, clone.GetBits()));
    EXPECT_EQ(Bytes(clone), wide);
    unsigned char* old = clone.GetBits();
    clone.Clone(clone);  // a buffer may clone itself
    EXPECT_EQ(std::make_tuple(clone.GetBits() != old, Bytes(clone)), std::make_tuple(true, wide));
    std::free(old);
}

// A subclass that answers pixel and size queries itself, as pictures and surfaces do.
class Overriding : public ULOPictureBits {
public:
    CLR GetPixel(int x, int y) const override { return CLR(x, y, 99); }
    using ULOPictureBits::GetPixel;
    ULOSize GetSize(bool magnified) const override { return magnified ? ULOSize(8, 6) : ULOSize(4, 3); }
};

TEST(PictureBitsTest, ResetTakesOwnershipSwapExchangesItAndHoldersAreViews) {
    ExposedBits b;
    b.Reset(static_cast<unsigned char*>(std::calloc(8, 1)), 2, 1, 8, PICTBITS_MASK8 | PICTBITS_ALPHA);
    EXPECT_TRUE(b.OwnsBits());
    EXPECT_EQ(ShapeOf(b),
              Shape(2, 1, 8, 1, PICTBITS_MASK8 | PICTBITS_ALPHA, b.GetBits()));  // stride as given
    unsigned char* previous = b.GetBits();
    b.Reset(static_cast<unsigned char*>(std::calloc(16, 1)), 2, 2, 8, 0);  // the previous block is not freed
    EXPECT_EQ(b.GetBytesPerPixel(), 4);
    std::free(previous);

    std::vector<unsigned char> memory(12);
    ExposedBits view(memory.data(), 1, 1, 12, PICTBITS_RGB24);
    const Shape ownerShape = ShapeOf(b);
    b.Swap(view);
    EXPECT_TRUE(!b.OwnsBits() && view.OwnsBits());  // the view frees the block at the end of the test
    EXPECT_EQ(std::make_tuple(ShapeOf(view), ShapeOf(b)),
              std::make_tuple(ownerShape, Shape(1, 1, 12, 3, PICTBITS_RGB24, memory.data())));
    // Holders and raw bits are views.
    std::vector<unsigned char> held(24);
    ULOPictureBitsHolder holder(held.data(), 2, 3, 8, PICTBITS_ALPHA);
    ULOPictureBitsHolder copy(holder);
    ULOPictureBitsHolder moved(std::move(copy)), assigned;
    EXPECT_EQ(copy.GetBits(), held.data());  // a move leaves the source as it was
    assigned = holder;
    assigned = std::move(moved);
    EXPECT_EQ(ShapeOf(assigned), ShapeOf(holder));

    const ULOPictureBits raw = holder.GetRawPictureBits();
    EXPECT_TRUE(typeid(raw) == typeid(ULOPictureBits));
    EXPECT_EQ(ShapeOf(raw), Shape(2, 3, 8, 4, PICTBITS_ALPHA, held.data()));
    ULOPictureBits owner(ULOSize(2, 3), PICTBITS_ALPHA);
    { const ULOPictureBits rawOfOwner = owner.GetRawPictureBits(); }
    owner.Fill(CLR(0, 0, 0), 0);  // the owner's block survived its raw view
    // Point and rectangle queries go through the virtual overloads.
    const Overriding o;
    const ULOPictureBits& base = o;
    EXPECT_EQ(std::make_tuple(base.GetPixel(ULOPoint(5, 6)), base.GetRect(false), base.GetRect(true)),
              std::make_tuple(CLR(5, 6, 99), ULORect(0, 0, 4, 3), ULORect(0, 0, 8, 6)));
}

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

TEST(PictureBitsPixelsTest, ReadingAndWritingPixelsAndInvertingAlpha) {
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
    // InvertAlpha, only with the flag. The pixels are taken as one unpadded run from the first byte, so with
    // a padded stride the run covers padding and misses the end of the last row; for 3-byte and mask buffers
    // the run stops at the end of the block (the sanitizer build checks that nothing beyond it is touched).
    ULOPictureBits flagless(ULOSize(2, 1), 0), rgbAlpha(ULOSize(3, 1), PICTBITS_RGB24 | PICTBITS_ALPHA),
        maskAlpha(ULOSize(4, 2), PICTBITS_MASK8 | PICTBITS_ALPHA);
    Put(flagless, {1, 2, 3, 4, 5, 6, 7, 8});
    Put(rgbAlpha, Row(12, 0));
    Put(maskAlpha, Row(8, 0));
    flagless.InvertAlpha();
    EXPECT_EQ(Bytes(flagless), (Row{1, 2, 3, 4, 5, 6, 7, 8}));
    ULOPictureBits(flagless.GetBits(), 2, 1, 8, PICTBITS_ALPHA).InvertAlpha();
    EXPECT_EQ(Bytes(flagless), (Row{1, 2, 3, 251, 5, 6, 7, 247}));

    Row padded(2 * 12, 0);
    ULOPictureBits(padded.data(), 2, 2, 12, PICTBITS_ALPHA).InvertAlpha();
    for (size_t i = 0; i < padded.size(); ++i) {
        EXPECT_EQ(padded[i], i == 3 || i == 7 || i == 11 || i == 15 ? 255 : 0) << i;
    }
    rgbAlpha.InvertAlpha();
    maskAlpha.InvertAlpha();
    EXPECT_EQ(Bytes(rgbAlpha), (Row{0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255}));
    EXPECT_EQ(Bytes(maskAlpha), (Row{0, 0, 0, 255, 0, 0, 0, 255}));
}

// Fill is built with vectorised loops: every width, including the odd tails, must match what
// SetPixelAndAlpha does pixel by pixel, and row padding is left alone.
TEST(PictureBitsPixelsTest, MirrorAndFillMatchPixelByPixelReferences) {
    // Against a pixel-by-pixel reference over many sizes, which covers the vectorised loops' tails:
    // mirroring horizontally keeps each row's padding, mirroring vertically moves it with its row.
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

Row RecordOf(const ULOPictureBits& b) {
    ULOMemoryStream stream;
    EXPECT_TRUE(b.Write(&stream));
    return stream.GetBuffer();
}

// A record written field by field, so that any field can hold a value Write would never produce.
Row ForgedRecord(uint16_t id, int32_t width, int32_t height, int32_t lineWidth, uint8_t bpp, int32_t count,
                 size_t bytesPresent) {
    ULOMemoryStream stream;
    {
        ULOWriteChunk chunk(&stream, id);
        stream.WriteSInt32(width);
        stream.WriteSInt32(height);
        stream.WriteSInt32(lineWidth);
        stream.WriteByte(bpp);
        stream.WriteSInt32(0);
        stream.WriteSInt32(count);
        const Row bytes(bytesPresent, 0x5A);
        stream.Write(bytes.data(), bytes.size());
    }
    return stream.GetBuffer();
}

// A memory stream that refuses to hold more than `capacity` bytes.
class SmallStream : public ULOMemoryStream {
public:
    explicit SmallStream(size_t capacity) : capacity_(capacity) {}

protected:
    size_t DoWrite(const void* data, size_t size) override {
        const size_t room = capacity_ - std::min<size_t>(capacity_, DoTell());
        return ULOMemoryStream::DoWrite(data, std::min(size, room));
    }

private:
    size_t capacity_;
};

TEST(PictureBitsStreamTest, RecordLayoutAndRoundTripOfEveryFieldAndByte) {
    // The record layout.
    ULOPictureBits one(ULOSize(1, 1), PICTBITS_ALPHA);
    one.SetPixelAndAlpha(0, 0, CLR(0x33, 0x22, 0x11), 0x44);
    // clang-format off
    const Row expected{0x2F, 0x03, 0, 0, 0, 25,  // chunk 12035 of 25 bytes
                          1, 0, 0, 0, 1, 0, 0, 0,   // width, height
                          4, 0, 0, 0, 4,            // stride, bytes per pixel
                          1, 0, 0, 0,               // flags
                          4, 0, 0, 0, 0x11, 0x22, 0x33, 0x44};  // 4 bytes of pixels
    // clang-format on
    EXPECT_EQ(RecordOf(one), expected);
    for (auto [flags, size] : {std::pair(0, ULOSize(3, 2)),
                               {PICTBITS_ALPHA, ULOSize(3, 2)},
                               {PICTBITS_RGB24, ULOSize(3, 2)},
                               {PICTBITS_MASK8, ULOSize(3, 2)},
                               {0, ULOSize(0, 0)}}) {
        ULOPictureBits original(size, flags);
        for (int i = 0; i < original.GetLineWidth(false) * size.cy; ++i) {
            original.GetBits()[i] = static_cast<unsigned char>(i * 7 + 1);  // padding included
        }
        const Row record = RecordOf(original);
        ULOMemoryStream stream(record.data(), record.size());
        ExposedBits copy;
        ASSERT_TRUE(copy.Read(&stream)) << flags;
        EXPECT_FALSE(copy.OwnsBits()) << "the flag stays as it was";
        EXPECT_EQ(ShapeOf(copy),
                  Shape(size.cx, size.cy, original.GetLineWidth(false), original.GetBytesPerPixel(), flags,
                        size.cx ? copy.GetBits() : nullptr));
        EXPECT_EQ(Bytes(copy), Bytes(original));
        EXPECT_EQ(stream.GetRemaining(), 0u);
        std::free(copy.GetBits());
    }
    // Forged records that are still read: the stored pixel size is kept whatever the flags say, and an
    // array shorter than the block leaves zeros.
    for (const auto& [record, bpp, bytes] :
         {std::tuple(ForgedRecord(12035, 2, 1, 4, 1, 4, 4), 1, Row(4, 0x5A)),
          std::tuple(ForgedRecord(12035, 2, 1, 8, 4, 2, 8), 4, Row{0x5A, 0x5A, 0, 0, 0, 0, 0, 0})}) {
        ULOMemoryStream stream(record.data(), record.size());
        ULOPictureBits b;
        ASSERT_TRUE(b.Read(&stream));
        EXPECT_EQ(std::make_tuple(b.GetBytesPerPixel(), Bytes(b)), std::make_tuple(bpp, bytes));
        std::free(b.GetBits());
    }
    // Read into an owner: the flag is unchanged, so the buffer now owns the new block, and the old one is
    // the caller's.
    ExposedBits owner(ULOSize(2, 2), 0);
    unsigned char* previous = owner.GetBits();
    const Row record = RecordOf(ULOPictureBits(ULOSize(1, 1), 0));
    ULOMemoryStream stream(record.data(), record.size());
    ASSERT_TRUE(owner.Read(&stream));
    EXPECT_TRUE(owner.OwnsBits() && owner.GetBits() != previous);
    std::free(previous);
}

TEST(PictureBitsStreamTest, OtherChunksImplausibleSizesAndTruncationsAreRefused) {
    std::vector<Row> records;
    Row header = RecordOf(ULOPictureBits(ULOSize(2, 2), PICTBITS_RGB24));
    for (uint16_t id : {0, 12034, 12036, 0x032F, 0xFFFF}) {
        header[0] = static_cast<uint8_t>(id >> 8);
        header[1] = static_cast<uint8_t>(id);
        records.push_back(header);
    }
    records.push_back(ForgedRecord(12035, 1, -1, 4, 4, 0, 0));    // negative height
    records.push_back(ForgedRecord(12035, -1, 1, 4, 4, 4, 4));    // negative width
    records.push_back(ForgedRecord(12035, 1, 1, -4, 4, 0, 0));    // negative stride
    records.push_back(ForgedRecord(12035, 1000, 1, 4, 4, 4, 4));  // rows too short for their pixels
    records.push_back(ForgedRecord(12035, 1, 1, 4, 2, 4, 4));     // unknown pixel size
    // A block beyond 32 bits, and a gigabyte claimed with 64 bytes present.
    records.push_back(ForgedRecord(12035, 1, 0x7FFFFFFF, 0x7FFFFFFF, 1, 0x7FFFFFFF, 16));
    records.push_back(ForgedRecord(12035, 16384, 16384, 65536, 4, 0x40000000, 64));
    records.push_back(ForgedRecord(12035, 2, 2, 8, 4, 16, 15));  // one byte short
    for (size_t i = 0; i < records.size(); ++i) {
        ULOMemoryStream stream(records[i].data(), records[i].size());
        ULOPictureBits target(ULOSize(3, 3), PICTBITS_ALPHA);
        const Shape before = ShapeOf(target);
        EXPECT_FALSE(target.Read(&stream)) << "record " << i;
        EXPECT_EQ(ShapeOf(target), before) << "record " << i;
    }
    EXPECT_FALSE(ULOPictureBits().Read(nullptr));
    // Every record cut short is refused (a header cut short leaves the fields read so far), and a write fails
    // whenever the stream refuses a block.
    ULOPictureBits source(ULOSize(3, 2), PICTBITS_RGB24);
    source.Fill(CLR(1, 2, 3), 4);
    const Row record = RecordOf(source);
    for (size_t length = 0; length < record.size(); ++length) {
        ULOMemoryStream stream(record.data(), length);
        ULOPictureBits target;
        EXPECT_FALSE(target.Read(&stream)) << length;
        EXPECT_EQ(target.GetBits(), nullptr) << length;
        SmallStream small(length);
        EXPECT_FALSE(source.Write(&small)) << length;
    }
    SmallStream roomy(record.size());
    EXPECT_TRUE(source.Write(&roomy));
    EXPECT_EQ(roomy.GetBuffer(), record);
    EXPECT_FALSE(source.Write(nullptr));
    const Row forged = ForgedRecord(12035, 7, 5, 28, 4, 140, 140);
    ULOMemoryStream stream(forged.data(), 6 + 8);  // chunk header, width and height only
    ULOPictureBits target;
    EXPECT_FALSE(target.Read(&stream));
    EXPECT_EQ(ShapeOf(target), Shape(7, 5, 0, 4, 0, nullptr));
}

}  // namespace
