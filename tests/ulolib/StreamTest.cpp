#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "TempDir.h"
#include "ulolib/Stream.h"

namespace {

using Bytes = std::vector<uint8_t>;

// Writes one value of every encoding, in a chunk holding a nested chunk.
void WriteSample(ULOStream& s) {
    ULOWriteChunk outer(&s, 0x2F03);
    ASSERT_TRUE(outer.IsOk());
    EXPECT_TRUE(s.WriteSwap(uint16_t(0xBEEF)));
    EXPECT_TRUE(s.WriteSwap(uint32_t(0x01020304)));
    EXPECT_TRUE(s.WriteSInt32(-2));
    EXPECT_TRUE(s.WriteByte(0xAB));
    {
        ULOWriteChunk inner(&s, 7);
        const int16_t values[] = {1, -1};
        EXPECT_TRUE(s.WriteArray(values, 2, sizeof values[0]));
    }
    EXPECT_EQ(s.Write("end", 3), 3u);
}

// The exact bytes WriteSample produces: what other programs rely on.
// clang-format off
const Bytes kSampleBytes = {
    0x2F, 0x03, 0x00, 0x00, 0x00, 0x1C,              // chunk 12035, 28 payload bytes
    0xBE, 0xEF,                                      // WriteSwap 16: big-endian
    0x01, 0x02, 0x03, 0x04,                          // WriteSwap 32: big-endian
    0xFE, 0xFF, 0xFF, 0xFF,                          // SInt32 -2: little-endian
    0xAB,                                            // Byte
    0x00, 0x07, 0x00, 0x00, 0x00, 0x08,              // nested chunk 7, 8 payload bytes
    0x02, 0x00, 0x00, 0x00, 0x01, 0x00, 0xFF, 0xFF,  // array: SInt32 count, raw elements
    'e', 'n', 'd'};
// clang-format on

void ReadSample(ULOStream& s) {
    ULOReadChunk outer(&s);
    ASSERT_TRUE(outer.IsOk());
    EXPECT_EQ(outer.GetID(), 0x2F03);
    EXPECT_EQ(outer.GetLength(), 28u);
    uint16_t v16 = 0;
    uint32_t v32 = 0;
    int32_t i32 = 0;
    uint8_t b = 0;
    EXPECT_TRUE(s.ReadSwap(v16));
    EXPECT_TRUE(s.ReadSwap(v32));
    EXPECT_TRUE(s.ReadSInt32(i32));
    EXPECT_TRUE(s.ReadByte(b));
    EXPECT_EQ(v16, 0xBEEF);
    EXPECT_EQ(v32, 0x01020304u);
    EXPECT_EQ(i32, -2);
    EXPECT_EQ(b, 0xAB);
    {
        ULOReadChunk inner(&s);
        EXPECT_EQ(inner.GetID(), 7);
        int16_t values[2] = {};
        EXPECT_TRUE(s.ReadArray(values, 2, sizeof values[0]));
        EXPECT_EQ(values[0], 1);
        EXPECT_EQ(values[1], -1);
    }
    char end[4] = {};
    EXPECT_EQ(s.Read(end, 3), 3u);
    EXPECT_STREQ(end, "end");
    EXPECT_EQ(s.GetRemaining(), 0u);
}

TEST(ULOStreamTest, MemoryRoundTripHasTheDocumentedBytes) {
    ULOMemoryStream out;
    WriteSample(out);
    EXPECT_EQ(out.GetBuffer(), kSampleBytes);

    ULOMemoryStream in(kSampleBytes.data(), kSampleBytes.size());
    ReadSample(in);
    EXPECT_EQ(in.GetPosition(), kSampleBytes.size());
}

TEST(ULOStreamTest, FileRoundTrip) {
    TempDir dir;
    const ULOPath path = dir.Path() / L"sample.bin";
    {
        ULOFileStream out;
        ASSERT_TRUE(out.Open(path, ULOFileStream::Mode::kWrite).IsOk());
        WriteSample(out);
    }
    ULOFileStream in;
    ASSERT_TRUE(in.Open(path, ULOFileStream::Mode::kRead).IsOk());
    ReadSample(in);
    uint8_t extra = 0;
    EXPECT_FALSE(in.ReadByte(extra));
    EXPECT_EQ(in.GetPosition(), kSampleBytes.size());
}

TEST(ULOStreamTest, ReaderCanRejectAWrongChunkAndStillSkipIt) {
    ULOMemoryStream s;
    {
        ULOWriteChunk other(&s, 0x2F04);
        s.WriteSInt32(99);
    }
    s.WriteSInt32(5);
    s.Seek(0);
    {
        ULOReadChunk chunk(&s);
        ASSERT_TRUE(chunk.IsOk());
        EXPECT_NE(chunk.GetID(), 0x2F03);  // a reader of 12035 records stops here
    }
    int32_t next = 0;
    EXPECT_TRUE(s.ReadSInt32(next));
    EXPECT_EQ(next, 5);
}

TEST(ULOStreamTest, ReadsStayInsideTheChunkAndTheChunkEndsWhereItSays) {
    ULOMemoryStream s;
    {
        ULOWriteChunk chunk(&s, 1);
        s.WriteSInt32(10);
        s.WriteSInt32(20);
    }
    s.WriteSInt32(30);
    s.Seek(0);
    {
        ULOReadChunk chunk(&s);
        int32_t v = 0;
        EXPECT_TRUE(s.ReadSInt32(v));
        EXPECT_EQ(s.GetRemaining(), 4u);
        EXPECT_TRUE(s.ReadSInt32(v));
        EXPECT_FALSE(s.ReadSInt32(v));  // 30 lies behind the chunk
        EXPECT_EQ(v, 20);
        uint8_t buf[8];
        EXPECT_EQ(s.Read(buf, sizeof buf), 0u);
    }
    int32_t after = 0;
    EXPECT_TRUE(s.ReadSInt32(after));
    EXPECT_EQ(after, 30);

    // A reader that reads only part of its chunk still leaves the stream at the chunk's end.
    s.Seek(0);
    {
        ULOReadChunk chunk(&s);
        uint8_t b = 0;
        s.ReadByte(b);
    }
    EXPECT_EQ(s.GetPosition(), 14u);
}

TEST(ULOStreamTest, InnerChunkClaimingTooMuchIsCutAtTheOuterEnd) {
    // Outer chunk of 8 bytes whose inner chunk claims 1000; 2 bytes follow the outer chunk.
    const Bytes bytes = {0, 1, 0, 0, 0, 8, 0, 2, 0, 0, 3, 0xE8, 0xAA, 0xBB, 0xCC, 0xDD};
    ULOMemoryStream s(bytes.data(), bytes.size());
    {
        ULOReadChunk outer(&s);
        ULOReadChunk inner(&s);
        ASSERT_TRUE(inner.IsOk());
        EXPECT_EQ(inner.GetLength(), 1000u);
        uint8_t buf[16];
        EXPECT_EQ(s.Read(buf, sizeof buf), 2u);
    }
    EXPECT_EQ(s.GetPosition(), 14u);
    uint8_t b = 0;
    EXPECT_TRUE(s.ReadByte(b));
    EXPECT_EQ(b, 0xCC);
}

TEST(ULOStreamTest, EveryReadOfATruncatedStreamFailsCleanly) {
    ULOMemoryStream full;
    WriteSample(full);
    const Bytes& all = full.GetBuffer();
    // Cut the sample at every length: reading never fails loudly and never reads past the cut.
    for (size_t cut = 0; cut < all.size(); ++cut) {
        ULOMemoryStream s(all.data(), cut);
        uint16_t v16 = 0x1111;
        uint32_t v32 = 0x22222222;
        int32_t i32 = 0x33333333;
        uint8_t byte = 0x44;
        {
            ULOReadChunk outer(&s);
            EXPECT_EQ(outer.IsOk(), cut >= 6);
            EXPECT_EQ(outer.GetID(), cut >= 6 ? 0x2F03 : 0);
            const bool okSwap16 = s.ReadSwap(v16);
            const bool okSwap32 = s.ReadSwap(v32);
            const bool okInt = s.ReadSInt32(i32);
            const bool okByte = s.ReadByte(byte);
            EXPECT_EQ(okSwap16, cut >= 8);
            EXPECT_EQ(v16, cut >= 8 ? 0xBEEF : 0x1111) << "failed reads leave the value alone";
            EXPECT_EQ(okSwap32, cut >= 12);
            EXPECT_EQ(v32, cut >= 12 ? 0x01020304u : 0x22222222u);
            EXPECT_EQ(okInt, cut >= 16);
            EXPECT_EQ(okByte, cut >= 17);
            ULOReadChunk inner(&s);
            int16_t values[2] = {};
            int32_t got = -1;
            EXPECT_EQ(s.ReadArray(values, 2, sizeof values[0], &got), cut >= 31);
            EXPECT_EQ(got, cut >= 31 ? 2 : (cut >= 29 ? 1 : 0));
            EXPECT_LE(s.GetPosition(), cut);
        }
        EXPECT_EQ(s.GetPosition(), cut);
        char rest[4];
        EXPECT_EQ(s.Read(rest, sizeof rest), 0u);
    }
}

TEST(ULOStreamTest, ReadArrayHonoursTheCapacity) {
    ULOMemoryStream s;
    const uint8_t five[] = {1, 2, 3, 4, 5};
    s.WriteArray(five, 5, 1);
    s.WriteByte(0x77);
    // Negative counts are refused on writing.
    EXPECT_FALSE(s.WriteArray(five, -1, 1));

    uint8_t buf[8] = {};
    int32_t got = -1;
    // Fewer stored than room for: all are read, but the sizes disagree.
    s.Seek(0);
    EXPECT_FALSE(s.ReadArray(buf, 8, 1, &got));
    EXPECT_EQ(got, 5);
    // More stored than room for: the surplus is skipped, so the next field is read correctly.
    s.Seek(0);
    std::memset(buf, 0, sizeof buf);
    EXPECT_FALSE(s.ReadArray(buf, 3, 1, &got));
    EXPECT_EQ(got, 3);
    EXPECT_EQ(buf[2], 3);
    EXPECT_EQ(buf[3], 0) << "nothing beyond the capacity is written";
    uint8_t next = 0;
    EXPECT_TRUE(s.ReadByte(next));
    EXPECT_EQ(next, 0x77);
    // Exactly the capacity.
    s.Seek(0);
    EXPECT_TRUE(s.ReadArray(buf, 5, 1, &got));
    EXPECT_EQ(got, 5);

    // A stored negative count or a count far beyond the data fails without reading past the end.
    const Bytes negative = {0xFF, 0xFF, 0xFF, 0xFF, 1, 2};
    ULOMemoryStream n(negative.data(), negative.size());
    EXPECT_FALSE(n.ReadArray(buf, 8, 1, &got));
    EXPECT_EQ(got, 0);
    const Bytes huge = {0xFF, 0xFF, 0xFF, 0x7F, 1, 2};
    ULOMemoryStream h(huge.data(), huge.size());
    EXPECT_FALSE(h.ReadArray(buf, 1, 4, &got));
    EXPECT_EQ(got, 0);
    EXPECT_EQ(h.GetPosition(), huge.size());
    h.Seek(0);
    EXPECT_FALSE(h.ReadArray(buf, 0, 1, &got));  // only skipping, and the skip runs out
    EXPECT_EQ(h.GetPosition(), huge.size());
}

TEST(ULOStreamTest, WriteChunkLengthCoversNestedChunks) {
    ULOMemoryStream s;
    {
        ULOWriteChunk a(&s, 1);
        {
            ULOWriteChunk b(&s, 2);
            ULOWriteChunk c(&s, 3);
            s.WriteByte(9);
            EXPECT_TRUE(c.Close());
            EXPECT_FALSE(c.Close()) << "a chunk closes once";
        }
    }
    EXPECT_EQ(s.GetBuffer(), (Bytes{0, 1, 0, 0, 0, 13, 0, 2, 0, 0, 0, 7, 0, 3, 0, 0, 0, 1, 9}));
    ULOWriteChunk none(nullptr, 1);
    EXPECT_FALSE(none.IsOk());
    ULOReadChunk noneRead(nullptr);
    EXPECT_FALSE(noneRead.IsOk());
}

TEST(ULOStreamTest, SeekingAndOverwritingMemory) {
    ULOMemoryStream s;
    s.WriteSInt32(1);
    s.WriteSInt32(2);
    EXPECT_FALSE(s.Seek(9));
    EXPECT_TRUE(s.Seek(8));
    EXPECT_TRUE(s.Seek(4));
    s.WriteSInt32(7);  // overwrites in place
    EXPECT_EQ(s.GetBuffer().size(), 8u);
    s.Seek(4);
    int32_t v = 0;
    EXPECT_TRUE(s.ReadSInt32(v));
    EXPECT_EQ(v, 7);
    EXPECT_EQ(s.Read(nullptr, 4), 0u);
}

}  // namespace
