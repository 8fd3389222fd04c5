// Font records and their lookup by ID over file images, well-formed and not.
#include <gtest/gtest.h>

#include "ulogui/font/FontRecord.h"
#include "ulogui/font/FontResourceWriter.h"

using details::BuildFontResourceFile;
using details::EncodeFontRecord;
using details::FontRecord;
using details::ParseFontRecord;
using details::ReadFontRecord;

namespace {

FontRecord Record(const wchar_t* face, int32_t height) {
    FontRecord r;
    r.primaryFace = face;
    r.height = height;
    r.weight = 700;
    r.italic = true;
    r.strikeOut = true;
    r.family = 0x10;
    r.pitch = 2;
    r.alternativeFaces = {L"Liberation Sans", L"DejaVu Sans"};
    r.name = L"Caption";
    r.ignoreHeightExt = false;
    r.heightExt = 20;
    return r;
}

void PutU32(std::vector<uint8_t>& bytes, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<uint8_t>(v >> (8 * i));
    }
}

}  // namespace

TEST(FontRecordParse, ReadsEveryFieldAtItsPosition) {
    // Built by hand, byte by byte, so that the writer is not checked against itself.
    const std::vector<uint8_t> bytes = {
        2,    0,    0,    0,    'A',  0,    'b', 0,  // primary face "Ab"
        0xF4, 0xFF, 0xFF, 0xFF,                      // height -12
        0x90, 0x01, 0,    0,                         // weight 400
        1,    0,    7,    0x20, 0x02,                // italic, no underline, strike-out 7, family, pitch
        1,    0,    0,    0,                         // one alternative
        1,    0,    0,    0,    0x42, 0x30,          // U+3042
        0,    0,    0,    0,                         // empty own name
        5,                                           // ignoreHeightExt
        0x1C, 0,    0,    0,                         // heightExt 28
    };
    FontRecord r;
    ASSERT_TRUE(ParseFontRecord(bytes.data(), bytes.size(), r));
    EXPECT_EQ(L"Ab", r.primaryFace);
    EXPECT_EQ(-12, r.height);
    EXPECT_EQ(400, r.weight);
    EXPECT_TRUE(r.italic);
    EXPECT_FALSE(r.underline);
    EXPECT_TRUE(r.strikeOut);
    EXPECT_EQ(0x20, r.family);
    EXPECT_EQ(0x02, r.pitch);
    ASSERT_EQ(1u, r.alternativeFaces.size());
    EXPECT_EQ(L"\x3042", r.alternativeFaces[0]);
    EXPECT_TRUE(r.name.empty());
    EXPECT_TRUE(r.ignoreHeightExt);
    EXPECT_EQ(28, r.heightExt);
    std::vector<uint8_t> normalised = bytes;  // the writer stores flags as 0 or 1
    normalised[18] = 1;
    normalised[35] = 1;
    EXPECT_EQ(normalised, EncodeFontRecord(r));
}

TEST(FontRecordParse, NegativeOrZeroAlternativeCountsMeanNone) {
    FontRecord source = Record(L"DejaVu Sans", 12);
    source.alternativeFaces.clear();
    source.name.clear();
    std::vector<uint8_t> bytes = EncodeFontRecord(source);
    const size_t countAt = 4 + 2 * 11 + 13;
    PutU32(bytes, countAt, 0x80000000u);  // k < 0
    FontRecord r;
    ASSERT_TRUE(ParseFontRecord(bytes.data(), bytes.size(), r));
    EXPECT_TRUE(r.alternativeFaces.empty());
    EXPECT_TRUE(r.name.empty());
    EXPECT_EQ(20, r.heightExt);
}

TEST(FontRecordParse, EveryTruncationIsRejectedWithoutReadingPastTheEnd) {
    const std::vector<uint8_t> bytes = EncodeFontRecord(Record(L"DejaVu Sans", 12));
    FontRecord r;
    ASSERT_TRUE(ParseFontRecord(bytes.data(), bytes.size(), r));
    for (size_t cut = 0; cut < bytes.size(); ++cut) {
        std::vector<uint8_t> prefix(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(cut));
        EXPECT_FALSE(ParseFontRecord(prefix.data(), prefix.size(), r)) << "cut at " << cut;
    }
}

TEST(FontRecordParse, WildLengthsAndCountsFailAtTheEndOfTheData) {
    std::vector<uint8_t> bytes = EncodeFontRecord(Record(L"X", 12));
    FontRecord r;
    std::vector<uint8_t> wildName = bytes;
    PutU32(wildName, 0, 0xFFFFFFFFu);  // 2n overflows 32 bits
    EXPECT_FALSE(ParseFontRecord(wildName.data(), wildName.size(), r));
    std::vector<uint8_t> wildCount = bytes;
    PutU32(wildCount, 4 + 2 + 13, 0x7FFFFFFF);
    EXPECT_FALSE(ParseFontRecord(wildCount.data(), wildCount.size(), r));
    EXPECT_FALSE(ParseFontRecord(nullptr, 0, r));
}

TEST(FontRecordLookup, FindsRecordsByIdAndFallsBackToFontZero) {
    const std::vector<uint8_t> file =
        BuildFontResourceFile({Record(L"Zero", 10), std::nullopt, Record(L"Two", 12)});
    FontRecord r;
    ASSERT_TRUE(ReadFontRecord(file.data(), file.size(), 2, r));
    EXPECT_EQ(L"Two", r.primaryFace);
    ASSERT_TRUE(ReadFontRecord(file.data(), file.size(), 1, r));  // entry 0xFFFFFFFF
    EXPECT_EQ(L"Zero", r.primaryFace);
    ASSERT_TRUE(ReadFontRecord(file.data(), file.size(), 0, r));
    EXPECT_EQ(L"Zero", r.primaryFace);
}

TEST(FontRecordLookup, IdsAndOffsetsPastTheEndFallBackToFontZero) {
    std::vector<uint8_t> file =
        BuildFontResourceFile({Record(L"Zero", 10), Record(L"One", 11), Record(L"Two", 12)});
    FontRecord r;
    // Table entries beyond the file, including the last ID, whose entry offset overflows 32 bits.
    for (uint32_t id : {3u, 1000u, 0x3FFFFFC0u, 0x40000000u, 0xFFFFFFFFu}) {
        ASSERT_TRUE(ReadFontRecord(file.data(), file.size(), id, r)) << id;
        EXPECT_EQ(L"Zero", r.primaryFace);
    }
    PutU32(file, 256 + 4, static_cast<uint32_t>(file.size()));  // offset just past the end
    ASSERT_TRUE(ReadFontRecord(file.data(), file.size(), 1, r));
    EXPECT_EQ(L"Zero", r.primaryFace);
    PutU32(file, 256 + 8, static_cast<uint32_t>(file.size() - 3));  // record cut by the end of the file
    ASSERT_TRUE(ReadFontRecord(file.data(), file.size(), 2, r));
    EXPECT_EQ(L"Zero", r.primaryFace);
}

TEST(FontRecordLookup, WithoutAReadableFontZeroThereIsNoRecord) {
    std::vector<uint8_t> file = BuildFontResourceFile({std::nullopt, Record(L"One", 11)});
    FontRecord r;
    EXPECT_TRUE(ReadFontRecord(file.data(), file.size(), 1, r));
    EXPECT_FALSE(ReadFontRecord(file.data(), file.size(), 0, r));
    EXPECT_FALSE(ReadFontRecord(file.data(), file.size(), 2, r));
    PutU32(file, 256, 0x7FFFFFFF);
    EXPECT_FALSE(ReadFontRecord(file.data(), file.size(), 5, r));
    // Files too short for the header or the table.
    for (size_t size : {0u, 1u, 255u, 256u, 259u}) {
        std::vector<uint8_t> tiny(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_FALSE(ReadFontRecord(tiny.data(), tiny.size(), 0, r)) << size;
    }
    EXPECT_FALSE(ReadFontRecord(nullptr, 0, 0, r));
}

TEST(FontResourceWriter, HeaderStatesTheTableSize) {
    const std::vector<uint8_t> file = BuildFontResourceFile({Record(L"A", 1), std::nullopt});
    ASSERT_EQ(2u, details::FontTableSizeFromHeader(file.data(), file.size()).value_or(0));
    EXPECT_EQ(0xFFFFFFFFu,
              file[256 + 4] | file[256 + 5] << 8 | file[256 + 6] << 16 | (uint32_t)file[256 + 7] << 24);
    std::vector<uint8_t> lying = file;
    lying[16] = 200;  // more entries than the file can hold
    EXPECT_FALSE(details::FontTableSizeFromHeader(lying.data(), lying.size()).has_value());
    EXPECT_FALSE(details::FontTableSizeFromHeader(file.data(), 100).has_value());
}
