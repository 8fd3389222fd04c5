// The stream record of a pixel buffer. Read allocates a block that the buffer does not own (its
// ownership flag is left as it was), so the tests free what Read gave them.
#include <algorithm>

#include "PictureBitsTestSupport.h"
#include "ulolib/Stream.h"

namespace {

using Record = std::vector<uint8_t>;

Record RecordOf(const ULOPictureBits& b) {
    ULOMemoryStream stream;
    EXPECT_TRUE(b.Write(&stream));
    return stream.GetBuffer();
}

// A record written field by field, so that any field can hold a value Write would never produce.
Record ForgedRecord(uint16_t id, int32_t width, int32_t height, int32_t lineWidth, uint8_t bpp, int32_t count,
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
        const Record bytes(bytesPresent, 0x5A);
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

TEST(PictureBitsStreamTest, RecordLayout) {
    ULOPictureBits b(ULOSize(1, 1), PICTBITS_ALPHA);
    b.SetPixelAndAlpha(0, 0, CLR(0x33, 0x22, 0x11), 0x44);
    // clang-format off
    const Record expected{0x2F, 0x03, 0, 0, 0, 25,  // chunk 12035 of 25 bytes
                          1, 0, 0, 0, 1, 0, 0, 0,   // width, height
                          4, 0, 0, 0, 4,            // stride, bytes per pixel
                          1, 0, 0, 0,               // flags
                          4, 0, 0, 0, 0x11, 0x22, 0x33, 0x44};  // 4 bytes of pixels
    // clang-format on
    EXPECT_EQ(RecordOf(b), expected);
}

TEST(PictureBitsStreamTest, RoundTripReproducesEveryFieldAndByte) {
    for (auto [flags, size] : {std::pair(0, ULOSize(3, 2)),
                               {PICTBITS_ALPHA, ULOSize(3, 2)},
                               {PICTBITS_RGB24, ULOSize(3, 2)},
                               {PICTBITS_MASK8, ULOSize(3, 2)},
                               {0, ULOSize(0, 0)}}) {
        ULOPictureBits original(size, flags);
        for (int i = 0; i < original.GetLineWidth(false) * size.cy; ++i) {
            original.GetBits()[i] = static_cast<unsigned char>(i * 7 + 1);  // padding included
        }
        const Record record = RecordOf(original);
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
    // The stored pixel size is kept, whatever the flags say.
    const Record record = ForgedRecord(12035, 2, 1, 4, 1, 4, 4);
    ULOMemoryStream stream(record.data(), record.size());
    ULOPictureBits b;
    ASSERT_TRUE(b.Read(&stream));
    EXPECT_EQ(b.GetBytesPerPixel(), 1);
    std::free(b.GetBits());
}

TEST(PictureBitsStreamTest, ReadReplacesTheBlockWithoutFreeingOrOwning) {
    ExposedBits owner(ULOSize(2, 2), 0);
    unsigned char* previous = owner.GetBits();
    const Record record = RecordOf(ULOPictureBits(ULOSize(1, 1), 0));
    ULOMemoryStream stream(record.data(), record.size());
    ASSERT_TRUE(owner.Read(&stream));
    EXPECT_NE(owner.GetBits(), previous);
    EXPECT_TRUE(owner.OwnsBits());  // unchanged: the buffer now owns the new block ...
    std::free(previous);            // ... and the old one is the caller's
}

TEST(PictureBitsStreamTest, OtherChunksAndImplausibleSizesAreRefusedWithoutChange) {
    std::vector<Record> records;
    Record record = RecordOf(ULOPictureBits(ULOSize(2, 2), PICTBITS_RGB24));
    for (uint16_t id : {0, 12034, 12036, 0x032F, 0xFFFF}) {
        record[0] = static_cast<uint8_t>(id >> 8);
        record[1] = static_cast<uint8_t>(id);
        records.push_back(record);
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
}

TEST(PictureBitsStreamTest, TruncatedRecordsAreRefused) {
    const Record record = RecordOf(ULOPictureBits(ULOSize(3, 2), PICTBITS_RGB24));
    for (size_t length = 0; length < record.size(); ++length) {
        ULOMemoryStream stream(record.data(), length);
        ULOPictureBits target;
        EXPECT_FALSE(target.Read(&stream)) << length;
        EXPECT_EQ(target.GetBits(), nullptr) << length;
    }
    // A header cut short leaves the fields read so far.
    const Record forged = ForgedRecord(12035, 7, 5, 28, 4, 140, 140);
    ULOMemoryStream stream(forged.data(), 6 + 8);  // chunk header, width and height only
    ULOPictureBits target;
    EXPECT_FALSE(target.Read(&stream));
    EXPECT_EQ(ShapeOf(target), Shape(7, 5, 0, 4, 0, nullptr));
}

TEST(PictureBitsStreamTest, ShortArrayLeavesZeros) {
    // The array holds 2 of the 8 bytes; the record is still read, the rest of the block is zero.
    const Record record = ForgedRecord(12035, 2, 1, 8, 4, 2, 8);
    ULOMemoryStream stream(record.data(), record.size());
    ULOPictureBits target;
    ASSERT_TRUE(target.Read(&stream));
    EXPECT_EQ(Bytes(target), (std::vector<unsigned char>{0x5A, 0x5A, 0, 0, 0, 0, 0, 0}));
    std::free(target.GetBits());
}

TEST(PictureBitsStreamTest, WriteFailsWheneverTheStreamRefusesABlock) {
    ULOPictureBits source(ULOSize(2, 2), 0);
    source.Fill(CLR(1, 2, 3), 4);
    const Record full = RecordOf(source);
    for (size_t capacity = 0; capacity < full.size(); ++capacity) {
        SmallStream stream(capacity);
        EXPECT_FALSE(source.Write(&stream)) << capacity;
    }
    SmallStream roomy(full.size());
    EXPECT_TRUE(source.Write(&roomy));
    EXPECT_EQ(roomy.GetBuffer(), full);
    EXPECT_FALSE(source.Write(nullptr));
}

}  // namespace
