// The stream record of a pixel buffer. Read allocates a block that the buffer does not own (its
// ownership flag is left as it was), so the tests free what Read gave them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "ulogui/PictureBits.h"
#include "ulolib/Stream.h"

namespace {

class ExposedBits : public ULOPictureBits {
public:
    using ULOPictureBits::ULOPictureBits;
    bool OwnsBits() const { return ownsBits; }
};

struct Fields {
    int width, height, lineWidth, bytesPerPixel, flags;
    const unsigned char* bits;
};

Fields FieldsOf(const ULOPictureBits& b) {
    return {b.GetWidth(false),    b.GetHeight(false), b.GetLineWidth(false),
            b.GetBytesPerPixel(), b.GetFlags(),       b.GetBits()};
}

void ExpectSameFields(const Fields& a, const Fields& b) {
    EXPECT_EQ(a.width, b.width);
    EXPECT_EQ(a.height, b.height);
    EXPECT_EQ(a.lineWidth, b.lineWidth);
    EXPECT_EQ(a.bytesPerPixel, b.bytesPerPixel);
    EXPECT_EQ(a.flags, b.flags);
    EXPECT_EQ(a.bits, b.bits);
}

std::vector<uint8_t> RecordOf(const ULOPictureBits& b) {
    ULOMemoryStream stream;
    EXPECT_TRUE(b.Write(&stream));
    return stream.GetBuffer();
}

// A record written field by field, so that any field can hold a value Write would never produce.
std::vector<uint8_t> ForgedRecord(uint16_t id, int32_t width, int32_t height, int32_t lineWidth, uint8_t bpp,
                                  int32_t flags, int32_t count, size_t bytesPresent) {
    ULOMemoryStream stream;
    {
        ULOWriteChunk chunk(&stream, id);
        stream.WriteSInt32(width);
        stream.WriteSInt32(height);
        stream.WriteSInt32(lineWidth);
        stream.WriteByte(bpp);
        stream.WriteSInt32(flags);
        stream.WriteSInt32(count);
        const std::vector<uint8_t> bytes(bytesPresent, 0x5A);
        stream.Write(bytes.data(), bytes.size());
    }
    return stream.GetBuffer();
}

// A seekable memory stream that refuses to hold more than `capacity` bytes.
class SmallStream : public ULOStream {
public:
    explicit SmallStream(size_t capacity) : capacity_(capacity) {}

protected:
    size_t DoRead(void*, size_t) override { return 0; }
    size_t DoWrite(const void* data, size_t size) override {
        const size_t n = position_ >= capacity_ ? 0 : std::min(size, capacity_ - position_);
        if (bytes_.size() < position_ + n) {
            bytes_.resize(position_ + n);
        }
        if (n > 0) {
            std::memcpy(bytes_.data() + position_, data, n);
            position_ += n;
        }
        return n;
    }
    bool DoSeek(uint64_t position) override {
        if (position > bytes_.size()) {
            return false;
        }
        position_ = static_cast<size_t>(position);
        return true;
    }
    uint64_t DoTell() const override { return position_; }
    uint64_t DoLength() const override { return bytes_.size(); }

private:
    size_t capacity_;
    size_t position_ = 0;
    std::vector<uint8_t> bytes_;
};

TEST(PictureBitsStreamTest, RecordLayout) {
    ULOPictureBits b(ULOSize(1, 1), PICTBITS_ALPHA);
    b.SetPixelAndAlpha(0, 0, CLR(0x33, 0x22, 0x11), 0x44);
    const std::vector<uint8_t> expected{
        0x2F, 0x03,              // chunk 12035
        0x00, 0x00, 0x00, 0x19,  // 25 payload bytes
        0x01, 0x00, 0x00, 0x00,  // width
        0x01, 0x00, 0x00, 0x00,  // height
        0x04, 0x00, 0x00, 0x00,  // lineWidth
        0x04,                    // bytesPerPixel
        0x01, 0x00, 0x00, 0x00,  // flags
        0x04, 0x00, 0x00, 0x00,  // 4 bytes of pixels follow
        0x11, 0x22, 0x33, 0x44,
    };
    EXPECT_EQ(RecordOf(b), expected);
}

TEST(PictureBitsStreamTest, RoundTripReproducesEveryField) {
    for (int flags : {0, PICTBITS_ALPHA, PICTBITS_RGB24, PICTBITS_MASK8}) {
        ULOPictureBits original(ULOSize(3, 2), flags);
        for (int i = 0; i < original.GetLineWidth(false) * 2; ++i) {
            original.GetBits()[i] = static_cast<unsigned char>(i * 7 + 1);  // padding included
        }
        const std::vector<uint8_t> record = RecordOf(original);
        ULOMemoryStream stream(record.data(), record.size());
        ExposedBits copy;
        ASSERT_TRUE(copy.Read(&stream));
        EXPECT_FALSE(copy.OwnsBits());  // the flag of a default buffer stays false
        EXPECT_EQ(copy.GetSize(false), original.GetSize(false));
        EXPECT_EQ(copy.GetLineWidth(false), original.GetLineWidth(false));
        EXPECT_EQ(copy.GetBytesPerPixel(), original.GetBytesPerPixel());
        EXPECT_EQ(copy.GetFlags(), flags);
        EXPECT_EQ(std::memcmp(copy.GetBits(), original.GetBits(), original.GetLineWidth(false) * 2), 0);
        EXPECT_EQ(stream.GetRemaining(), 0u);
        std::free(copy.GetBits());
    }
}

TEST(PictureBitsStreamTest, EmptyBufferRoundTrip) {
    const std::vector<uint8_t> record = RecordOf(ULOPictureBits());
    ULOMemoryStream stream(record.data(), record.size());
    ULOPictureBits copy(ULOSize(0, 0), PICTBITS_RGB24);
    ASSERT_TRUE(copy.Read(&stream));
    EXPECT_EQ(copy.GetBits(), nullptr);  // nothing to allocate
    EXPECT_EQ(copy.GetBytesPerPixel(), 4);
    EXPECT_EQ(copy.GetFlags(), 0);
}

TEST(PictureBitsStreamTest, BytesPerPixelIsTakenAsStored) {
    // Flags say 4 bytes, the record says 1: the stored value is kept.
    const std::vector<uint8_t> record = ForgedRecord(12035, 2, 1, 4, 1, 0, 4, 4);
    ULOMemoryStream stream(record.data(), record.size());
    ULOPictureBits b;
    ASSERT_TRUE(b.Read(&stream));
    EXPECT_EQ(b.GetBytesPerPixel(), 1);
    EXPECT_EQ(b.GetFlags(), 0);
    std::free(b.GetBits());
}

TEST(PictureBitsStreamTest, ReadReplacesTheBlockWithoutFreeingOrOwning) {
    ExposedBits owner(ULOSize(2, 2), 0);
    unsigned char* previous = owner.GetBits();
    ULOPictureBits source(ULOSize(1, 1), 0);
    source.Fill(CLR(1, 2, 3), 4);
    const std::vector<uint8_t> record = RecordOf(source);
    ULOMemoryStream stream(record.data(), record.size());
    ASSERT_TRUE(owner.Read(&stream));
    EXPECT_NE(owner.GetBits(), previous);
    EXPECT_TRUE(owner.OwnsBits());  // unchanged: the buffer now owns the new block ...
    std::free(previous);            // ... and the old one is the caller's
}

TEST(PictureBitsStreamTest, OtherChunksAreRefusedWithoutChange) {
    ULOPictureBits source(ULOSize(2, 2), PICTBITS_RGB24);
    source.Fill(CLR(1, 2, 3), 0);
    std::vector<uint8_t> record = RecordOf(source);
    for (uint16_t id : {uint16_t(0), uint16_t(12034), uint16_t(12036), uint16_t(0x032F), uint16_t(0xFFFF)}) {
        record[0] = static_cast<uint8_t>(id >> 8);
        record[1] = static_cast<uint8_t>(id);
        ULOMemoryStream stream(record.data(), record.size());
        ULOPictureBits target(ULOSize(3, 3), PICTBITS_ALPHA);
        const Fields before = FieldsOf(target);
        EXPECT_FALSE(target.Read(&stream)) << id;
        ExpectSameFields(FieldsOf(target), before);
    }
    EXPECT_FALSE(ULOPictureBits().Read(nullptr));
}

TEST(PictureBitsStreamTest, EveryTruncationIsRefused) {
    ULOPictureBits source(ULOSize(3, 2), PICTBITS_RGB24);
    source.Fill(CLR(1, 2, 3), 0);
    const std::vector<uint8_t> record = RecordOf(source);
    for (size_t length = 0; length < record.size(); ++length) {
        ULOMemoryStream stream(record.data(), length);
        ULOPictureBits target;
        EXPECT_FALSE(target.Read(&stream)) << length;
        EXPECT_EQ(target.GetBits(), nullptr) << length;
    }
}

TEST(PictureBitsStreamTest, TruncatedHeaderFieldsLeaveTheFieldsReadSoFar) {
    const std::vector<uint8_t> record = ForgedRecord(12035, 7, 5, 28, 4, 0, 140, 140);
    ULOMemoryStream stream(record.data(), 6 + 8);  // chunk header, width and height only
    ULOPictureBits target;
    EXPECT_FALSE(target.Read(&stream));
    EXPECT_EQ(target.GetSize(false), ULOSize(7, 5));
    EXPECT_EQ(target.GetLineWidth(false), 0);
    EXPECT_EQ(target.GetBits(), nullptr);
}

TEST(PictureBitsStreamTest, ImplausibleSizesAreRefusedWithoutChange) {
    struct Case {
        int32_t width, height, lineWidth;
        uint8_t bpp;
        int32_t count;
        size_t present;
    };
    const Case cases[] = {
        {1, -1, 4, 4, 0, 0},                             // negative height
        {-1, 1, 4, 4, 4, 4},                             // negative width
        {1, 1, -4, 4, 0, 0},                             // negative stride
        {1000, 1, 4, 4, 4, 4},                           // rows too short for their pixels
        {1, 1, 4, 2, 4, 4},                              // unknown pixel size
        {1, 0x7FFFFFFF, 0x7FFFFFFF, 1, 0x7FFFFFFF, 16},  // block beyond 32 bits
        {16384, 16384, 65536, 4, 0x40000000, 64},        // a gigabyte claimed, 64 bytes present
        {2, 2, 8, 4, 16, 15},                            // one byte short
    };
    for (const Case& c : cases) {
        const std::vector<uint8_t> record =
            ForgedRecord(12035, c.width, c.height, c.lineWidth, c.bpp, 0, c.count, c.present);
        ULOMemoryStream stream(record.data(), record.size());
        ULOPictureBits target(ULOSize(1, 1), PICTBITS_RGB24);
        const Fields before = FieldsOf(target);
        EXPECT_FALSE(target.Read(&stream)) << c.width << "x" << c.height << "/" << c.lineWidth;
        ExpectSameFields(FieldsOf(target), before);
    }
}

TEST(PictureBitsStreamTest, ShortArrayLeavesZeros) {
    // The array holds 2 of the 8 bytes; the record is still read, the rest of the block is zero.
    std::vector<uint8_t> record = ForgedRecord(12035, 2, 1, 8, 4, 0, 2, 8);
    ULOMemoryStream stream(record.data(), record.size());
    ULOPictureBits target;
    ASSERT_TRUE(target.Read(&stream));
    const unsigned char* bits = target.GetBits();
    EXPECT_EQ(std::vector<unsigned char>(bits, bits + 8),
              (std::vector<unsigned char>{0x5A, 0x5A, 0, 0, 0, 0, 0, 0}));
    std::free(target.GetBits());
}

TEST(PictureBitsStreamTest, WriteStopsAtTheFirstFailure) {
    ULOPictureBits source(ULOSize(2, 2), 0);
    source.Fill(CLR(1, 2, 3), 4);
    const size_t full = RecordOf(source).size();
    for (size_t capacity = 0; capacity < full; ++capacity) {
        SmallStream stream(capacity);
        EXPECT_FALSE(source.Write(&stream)) << capacity;
    }
    SmallStream roomy(full);
    EXPECT_TRUE(source.Write(&roomy));
    EXPECT_FALSE(source.Write(nullptr));
}

}  // namespace
