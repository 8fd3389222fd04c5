#include <gtest/gtest.h>

#include <cstring>
#include <tuple>
#include <vector>

#include "TempDir.h"
#include "ulolib/Stream.h"

namespace {

using Bytes = std::vector<uint8_t>;

// One value of every encoding, in a chunk holding a nested chunk.
void WriteSample(ULOStream& s) {
    ULOWriteChunk outer(&s, 0x2F03);
    EXPECT_TRUE(outer.IsOk() && s.WriteSwap(uint16_t(0xBEEF)) && s.WriteSwap(uint32_t(0x01020304)) &&
                s.WriteSInt32(-2) && s.WriteByte(0xAB));
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

// Reads the sample from a stream holding its first n bytes: each read succeeds exactly when all its
// bytes are there, a failed read leaves its value alone, and nothing is read past n.
void ReadSample(ULOStream& s, size_t n) {
    uint16_t v16 = 0x1111;
    uint32_t v32 = 0x22222222;
    int32_t i32 = 0x33333333, got = -1;
    uint8_t byte = 0x44;
    int16_t values[2] = {};
    char tail[4] = {};
    {
        ULOReadChunk outer(&s);
        EXPECT_EQ(outer.IsOk(), n >= 6);
        EXPECT_EQ(std::make_tuple(outer.GetID(), outer.GetLength()),
                  n >= 6 ? std::make_tuple(uint16_t(0x2F03), 28u) : std::make_tuple(uint16_t(0), 0u));
        const bool ok16 = s.ReadSwap(v16), ok32 = s.ReadSwap(v32), okInt = s.ReadSInt32(i32),
                   okByte = s.ReadByte(byte);
        EXPECT_EQ(std::make_tuple(ok16, ok32, okInt, okByte),
                  std::make_tuple(n >= 8, n >= 12, n >= 16, n >= 17));
        {
            ULOReadChunk inner(&s);
            EXPECT_EQ(inner.GetID(), n >= 23 ? 7 : 0);
            EXPECT_EQ(s.ReadArray(values, 2, sizeof values[0], &got), n >= 31);
            EXPECT_LE(s.GetPosition(), n);
        }
        const size_t read = s.Read(tail, sizeof tail);
        EXPECT_EQ(std::string(tail, read), std::string("end").substr(0, n > 31 ? n - 31 : 0));
        EXPECT_EQ(s.GetRemaining(), 0u);
    }
    EXPECT_EQ(s.GetPosition(), n);
    EXPECT_EQ(s.Read(tail, 1), 0u);
    EXPECT_EQ(std::make_tuple(v16, v32, i32, byte),
              std::make_tuple(uint16_t(n >= 8 ? 0xBEEF : 0x1111), n >= 12 ? 0x01020304u : 0x22222222u,
                              n >= 16 ? -2 : 0x33333333, uint8_t(n >= 17 ? 0xAB : 0x44)));
    EXPECT_EQ(got, n >= 31 ? 2 : (n >= 29 ? 1 : 0));  // whole elements only
    using Values = std::vector<int16_t>;
    EXPECT_EQ(Values(values, values + (n >= 31 ? 2 : 0)), (n >= 31 ? Values{1, -1} : Values()));
}

TEST(ULOStreamTest, RoundTripsHaveTheDocumentedBytesTruncationsReadWhatIsThereAndReadsStayInsideChunks) {
    ULOMemoryStream out;
    WriteSample(out);
    EXPECT_EQ(out.GetBuffer(), kSampleBytes);
    for (size_t cut = 0; cut <= kSampleBytes.size(); ++cut) {
        SCOPED_TRACE(cut);
        ULOMemoryStream in(kSampleBytes.data(), cut);
        ReadSample(in, cut);
    }
    TempDir dir;
    const ULOPath path = dir.Path() / L"sample.bin";
    {
        ULOFileStream file;
        ASSERT_TRUE(file.Open(path, ULOFileStream::Mode::kWrite).IsOk());
        WriteSample(file);
    }
    ULOFileStream file;
    ASSERT_TRUE(file.Open(path, ULOFileStream::Mode::kRead).IsOk());
    ReadSample(file, kSampleBytes.size());
    // Outer chunk of 8 bytes whose inner chunk claims 1000; 2 bytes follow the outer chunk.
    const Bytes bytes = {0, 1, 0, 0, 0, 8, 0, 2, 0, 0, 3, 0xE8, 0xAA, 0xBB, 0xCC, 0xDD};
    ULOMemoryStream s(bytes.data(), bytes.size());
    for (bool readInner : {true, false}) {
        uint8_t buf[16];
        s.Seek(0);
        {
            ULOReadChunk outer(&s);
            EXPECT_EQ(s.GetRemaining(), 8u);
            if (readInner) {
                ULOReadChunk inner(&s);
                EXPECT_EQ(inner.GetLength(), 1000u);
                EXPECT_EQ(s.Read(buf, sizeof buf), 2u);
                EXPECT_FALSE(s.ReadByte(buf[0]));
            }
        }
        EXPECT_TRUE(s.ReadByte(buf[0]));
        EXPECT_EQ(buf[0], 0xCC);
    }
    ULOMemoryStream chunks, written;
    {
        ULOWriteChunk a(&chunks, 1), b(&chunks, 2), c(&chunks, 3);
        chunks.WriteByte(9);
        EXPECT_TRUE(c.Close());
        EXPECT_FALSE(c.Close());
    }
    EXPECT_EQ(chunks.GetBuffer(), (Bytes{0, 1, 0, 0, 0, 13, 0, 2, 0, 0, 0, 7, 0, 3, 0, 0, 0, 1, 9}));
    EXPECT_FALSE(ULOWriteChunk(nullptr, 1).IsOk());
    EXPECT_FALSE(ULOReadChunk(nullptr).IsOk());
    written.WriteSInt32(1);
    written.WriteSInt32(2);
    EXPECT_FALSE(written.Seek(9));
    EXPECT_TRUE(written.Seek(8));
    EXPECT_TRUE(written.Seek(4));
    written.WriteSInt32(7);  // in place
    EXPECT_EQ(written.GetBuffer(), (Bytes{1, 0, 0, 0, 7, 0, 0, 0}));
    EXPECT_EQ(written.Read(nullptr, 4), 0u);
    ULOMemoryStream arrays;
    const uint8_t five[] = {1, 2, 3, 4, 5};
    arrays.WriteArray(five, 5, 1);
    arrays.WriteByte(0x77);
    EXPECT_FALSE(arrays.WriteArray(five, -1, 1));
    // Room for more: all are read but the sizes disagree; room for fewer: the rest is skipped.
    for (auto [capacity, ok, count] : {std::make_tuple(8, false, 5), {3, false, 3}, {5, true, 5}}) {
        uint8_t buf[8] = {}, next = 0;
        int32_t got = -1;
        arrays.Seek(0);
        EXPECT_EQ(arrays.ReadArray(buf, capacity, 1, &got), ok) << capacity;
        EXPECT_EQ(got, count);
        Bytes want(five, five + count);
        want.resize(8);  // nothing beyond the capacity is written
        EXPECT_EQ(Bytes(buf, buf + 8), want);
        EXPECT_TRUE(arrays.ReadByte(next) && next == 0x77) << capacity;
    }
    // A stored negative count, or one far beyond the data, fails without reading past the end.
    const Bytes negative = {0xFF, 0xFF, 0xFF, 0xFF, 1, 2}, huge = {0xFF, 0xFF, 0xFF, 0x7F, 1, 2};
    uint8_t buf[8];
    int32_t got = -1;
    ULOMemoryStream n(negative.data(), negative.size()), h(huge.data(), huge.size());
    EXPECT_FALSE(n.ReadArray(buf, 8, 1, &got));
    EXPECT_EQ(got, 0);
    for (int32_t capacity : {1, 0}) {  // 0: only skipping, and the skip runs out
        h.Seek(0);
        EXPECT_FALSE(h.ReadArray(buf, capacity, 4, &got));
        EXPECT_EQ(h.GetPosition(), huge.size());
    }
}

}  // namespace
