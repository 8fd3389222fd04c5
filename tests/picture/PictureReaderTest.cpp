// The reader of catalogue records and pixel blocks, on files with every kind of damage.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "picture/PictureReader.h"
#include "picture/PictureTestFiles.h"
#include "resfile/BitmapResourceFormat.h"

namespace {

using namespace picturetest;
using ulogui::resfile::BuildBitmapResourceFile;
using ulogui::resfile::DecodedBlock;
using ulogui::resfile::ReadPictureBlock;
using ulogui::resfile::ReadPictureInfo;

std::vector<unsigned char> Bytes(const DecodedBlock& b) {
    return std::vector<unsigned char>(b.bits.get(),
                                      b.bits.get() + static_cast<size_t>(b.lineWidth) * b.height);
}

// The block's origin, width, height, line width, flags and parts count.
std::tuple<bool, int, int, int, int, int> Shape(const DecodedBlock& b) {
    return std::make_tuple(b.fromRecord, b.width, b.height, b.lineWidth, b.flags, b.partsCount);
}

void ExpectTransparentPixel(const DecodedBlock& b) {
    EXPECT_EQ(std::make_tuple(false, 1, 1, 4, 0, 1), Shape(b));
    ASSERT_NE(b.bits, nullptr);
    EXPECT_EQ(std::vector<unsigned char>(4, 255), Bytes(b));
}

// Picture 3: 32-bit with alpha, two parts, versions 1 (10 x 4) and 2 (20 x 8); picture 5: 24-bit,
// three parts, version 1 only (10 x 4, stride 32).
std::vector<unsigned char> SampleFile() {
    return BuildBitmapResourceFile({MakePicture(3, PICTBITS_ALPHA, 2, {{10, 4}, {20, 8}}),
                                    MakePicture(5, PICTBITS_RGB24, 3, {{10, 4}})});
}

TEST(PictureReader, RecordListsEveryStoredVersionInBitOrder) {
    const auto file =
        StreamOf(BuildBitmapResourceFile({MakePicture(3, PICTBITS_ALPHA, 2, {{10, 4}, {0, 0}, {5, 7}})}));
    const ULOPictureInfo info = ReadPictureInfo(file.get(), 3);
    EXPECT_EQ(std::make_tuple(3, 2, PICTBITS_ALPHA, 5, size_t{2}),
              std::make_tuple(info.GetID(), info.GetPartsCount(), info.GetFlags(), info.GetSizeVersionFlags(),
                              info.GetSizes().size()));
    EXPECT_EQ(info.GetPicSizeInfo(1), ULOPictureSizeInfo(1, 10, 4, 40));
    EXPECT_EQ(info.GetPicSizeInfo(2), ULOPictureSizeInfo(4, 5, 7, 20));
    EXPECT_EQ(info.GetPicSizeInfo(3), ULOPictureSizeInfo::UndefPicSizeInfo());
    EXPECT_EQ(info.GetPicSizeInfo(0), ULOPictureSizeInfo::UndefPicSizeInfo());
}

TEST(PictureReader, PicturesWithoutRecordsAreOneTransparentPixel) {
    const auto bytes = SampleFile();
    const auto file = StreamOf(bytes);
    // A negative ID, an index entry of 0xFFFFFFFF, an ID past the index, and no file at all.
    for (int id : {-1, -2, 0, 4, 6, 1000, 0x7FFFFFFF}) {
        SCOPED_TRACE(id);
        EXPECT_EQ(ReadPictureInfo(file.get(), id).GetID(), -1);
        ExpectTransparentPixel(ReadPictureBlock(file.get(), id, 1, 0));
    }
    EXPECT_EQ(ReadPictureInfo(nullptr, 3).GetID(), -1);
    ExpectTransparentPixel(ReadPictureBlock(nullptr, 3, 1, 0));
}

TEST(PictureReader, PartsFollowOneAnotherAfterTheVersionHeader) {
    const auto bytes = SampleFile();
    const auto file = StreamOf(bytes);
    // Picture 5, part 2: 2 x (4 x 32) bytes after width and height.
    const DecodedBlock b = ReadPictureBlock(file.get(), 5, 1, 2);
    EXPECT_EQ(std::make_tuple(true, 10, 4, 32, PICTBITS_RGB24, 3), Shape(b));
    const size_t start = VersionOffset(bytes, 5, 0) + 8 + 2 * 128;
    EXPECT_EQ(Bytes(b), std::vector<unsigned char>(bytes.begin() + start, bytes.begin() + start + 128));
    EXPECT_EQ(Bytes(b), PartBytes(5, 0, 2, 10, 4, PICTBITS_RGB24));

    // The spacing of a 32-bit picture of width 10 and height 4: part n starts n x 160 bytes in.
    const DecodedBlock second = ReadPictureBlock(file.get(), 3, 1, 1);
    EXPECT_EQ(Bytes(second), PartBytes(3, 0, 1, 10, 4, PICTBITS_ALPHA));
}

TEST(PictureReader, VersionBitPicksTheSlotOfItsLowestBit) {
    const auto file = StreamOf(SampleFile());
    const DecodedBlock first = ReadPictureBlock(file.get(), 3, 1, 0);
    const DecodedBlock second = ReadPictureBlock(file.get(), 3, 2, 1);
    EXPECT_EQ(std::make_tuple(true, 10, 4, 40, PICTBITS_ALPHA, 2), Shape(first));
    EXPECT_EQ(Bytes(first), PartBytes(3, 0, 0, 10, 4, PICTBITS_ALPHA));
    EXPECT_EQ(std::make_tuple(true, 20, 8, 80, PICTBITS_ALPHA, 2), Shape(second));
    EXPECT_EQ(Bytes(second), PartBytes(3, 1, 1, 20, 8, PICTBITS_ALPHA));
    EXPECT_EQ(Bytes(ReadPictureBlock(file.get(), 3, 6, 1)), Bytes(second));  // 6: lowest bit is 2
    // Slots without a version (offset 0 lies in the header), no bit at all, and bits past slot 23.
    ExpectTransparentPixel(ReadPictureBlock(file.get(), 3, 4, 0));
    ExpectTransparentPixel(ReadPictureBlock(file.get(), 5, 2, 0));
    ExpectTransparentPixel(ReadPictureBlock(file.get(), 3, 0, 0));
    ExpectTransparentPixel(ReadPictureBlock(file.get(), 3, 0x1000000, 0));
    ExpectTransparentPixel(ReadPictureBlock(file.get(), 3, 0x80000000u, 0));
}

TEST(PictureReader, PartsPastTheEndOfTheFileReadAsZeros) {
    const auto bytes = SampleFile();  // picture 5's last part ends the file
    const auto file = StreamOf(bytes);
    const std::vector<unsigned char> zeros(128, 0);
    for (unsigned int part : {3u, 4u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        SCOPED_TRACE(part);
        const DecodedBlock b = ReadPictureBlock(file.get(), 5, 1, part);
        EXPECT_TRUE(b.fromRecord);
        EXPECT_EQ(Bytes(b), zeros);
    }
    // Part 3 of picture 3 lies within the file: it is whatever follows, as stored.
    const DecodedBlock inside = ReadPictureBlock(file.get(), 3, 1, 2);
    const size_t start = VersionOffset(bytes, 3, 0) + 8 + 2 * 160;
    EXPECT_EQ(Bytes(inside), std::vector<unsigned char>(bytes.begin() + start, bytes.begin() + start + 160));
}

// One kind of damage applied to the sample file; picture 3 must then read as missing.
struct Damage {
    const char* what;
    std::function<void(std::vector<unsigned char>&)> apply;
};

TEST(PictureReader, DamagedRecordsFallBack) {
    const std::vector<unsigned char> good = SampleFile();
    const uint32_t record = RecordOffset(good, 3);
    const uint32_t version2 = VersionOffset(good, 3, 1);
    auto setRecord = [](uint32_t v) {
        return [v](std::vector<unsigned char>& f) { PutU32(f, 256 + 12, v); };
    };
    auto setField = [record](size_t field, uint32_t v) {
        return [record, field, v](std::vector<unsigned char>& f) { PutU32(f, record + 4 * field, v); };
    };
    auto setVersionHeader = [version2](size_t field, uint32_t v) {
        return [version2, field, v](std::vector<unsigned char>& f) { PutU32(f, version2 + 4 * field, v); };
    };
    const std::vector<Damage> damages = {
        {"record offset in the header", setRecord(16)},
        {"record offset in the index", setRecord(256)},
        {"record offset past the end", setRecord(static_cast<uint32_t>(good.size()))},
        {"record cut by the end", setRecord(static_cast<uint32_t>(good.size() - 50))},
        {"zero parts", setField(0, 0)},
        {"negative parts", setField(0, 0xFFFFFFFFu)},
        {"enormous parts", setField(0, 0x7FFFFFFF)},
        {"version 2 offset in the index", setField(4, 260)},
        {"version 2 offset in the header", setField(4, 8)},
        {"version 2 offset in its own record", setField(4, record + 20)},
        {"version 2 offset past the end", setField(4, 0xFFFFFFF0u)},
        {"stored version 3 without data", setField(2, 7)},
        {"negative width", setVersionHeader(0, 0xFFFFFFFFu)},
        {"zero height", setVersionHeader(1, 0)},
        {"enormous width", setVersionHeader(0, 0x7FFFFFFF)},
        {"width whose stride overflows", setVersionHeader(0, 0x4000000)},
        {"enormous height", setVersionHeader(1, 0x7FFFFFFF)},
        {"parts larger than the file", setVersionHeader(1, 20)},
    };
    for (const Damage& damage : damages) {
        SCOPED_TRACE(damage.what);
        std::vector<unsigned char> bytes = good;
        damage.apply(bytes);
        const auto file = StreamOf(bytes);
        EXPECT_EQ(ReadPictureInfo(file.get(), 3).GetID(), -1);
        for (unsigned int version : {1u, 2u}) {
            ExpectTransparentPixel(ReadPictureBlock(file.get(), 3, version, 0));
        }
        // The other picture is untouched.
        EXPECT_EQ(ReadPictureInfo(file.get(), 5).GetID(), 5);
        std::string why;
        ulogui::resfile::StoredRecord stored;
        if (ulogui::resfile::FindRecord(ulogui::resfile::FileView(file.get()), 3, stored, &why) ==
            ulogui::resfile::LookupResult::kMalformed) {
            EXPECT_FALSE(why.empty());
        }
    }
}

TEST(PictureReader, EveryTruncationReadsWholePicturesOrFallsBack) {
    const std::vector<unsigned char> full = SampleFile();
    const auto fullFile = StreamOf(full);
    for (size_t length = 0; length <= full.size(); ++length) {
        SCOPED_TRACE(length);
        const auto file = StreamOf(std::vector<unsigned char>(full.begin(), full.begin() + length));
        for (int id : {3, 5}) {
            const ULOPictureInfo info = ReadPictureInfo(file.get(), id);
            const bool whole = info.GetID() == id;
            if (whole) {
                ASSERT_EQ(info.GetSizes().size(), ReadPictureInfo(fullFile.get(), id).GetSizes().size());
            }
            for (unsigned int part : {0u, 1u}) {
                const DecodedBlock b = ReadPictureBlock(file.get(), id, 1, part);
                if (!whole) {
                    ExpectTransparentPixel(b);
                } else {
                    ASSERT_EQ(Bytes(b), Bytes(ReadPictureBlock(fullFile.get(), id, 1, part)));
                }
            }
        }
    }
}

TEST(PictureReader, EntriesPastTheStatedIndexAreNotRead) {
    std::vector<unsigned char> bytes = SampleFile();
    PutU32(bytes, 20, 4);
    const auto file = StreamOf(bytes);
    EXPECT_EQ(ReadPictureInfo(file.get(), 3).GetID(), 3);
    EXPECT_EQ(ReadPictureInfo(file.get(), 5).GetID(), -1);
    ExpectTransparentPixel(ReadPictureBlock(file.get(), 5, 1, 0));
}

TEST(PictureReader, FilesWithoutTheHeaderTextAreReadToo) {
    std::vector<unsigned char> bytes = SampleFile();
    std::fill(bytes.begin(), bytes.begin() + 256, 0);
    const auto file = StreamOf(bytes);
    EXPECT_EQ(ReadPictureInfo(file.get(), 3).GetPicSizeInfo(2), ULOPictureSizeInfo(2, 20, 8, 80));
    EXPECT_EQ(Bytes(ReadPictureBlock(file.get(), 5, 1, 1)), PartBytes(5, 0, 1, 10, 4, PICTBITS_RGB24));
    // Without the entry count the index is only known to reach the entry looked up.
    PutU32(bytes, RecordOffset(bytes, 3) + 16, 256 + 4 * 3);
    const auto damaged = StreamOf(bytes);
    EXPECT_EQ(ReadPictureInfo(damaged.get(), 3).GetID(), -1);
}

TEST(PictureReader, MaskPicturesUseByteRows) {
    const auto file = StreamOf(BuildBitmapResourceFile({MakePicture(1, PICTBITS_MASK8, 1, {{5, 3}})}));
    const DecodedBlock b = ReadPictureBlock(file.get(), 1, 1, 0);
    EXPECT_EQ(b.lineWidth, 8);
    EXPECT_EQ(Bytes(b), PartBytes(1, 0, 0, 5, 3, PICTBITS_MASK8));
}

TEST(BitmapResourceWriter, RejectsRecordsThatDoNotHoldTogetherAndWritesTheHeader) {
    EXPECT_THROW(BuildBitmapResourceFile({MakePicture(-1, 0, 1, {{2, 2}})}), std::invalid_argument);
    EXPECT_THROW(BuildBitmapResourceFile({MakePicture(1, 0, 0, {{2, 2}})}), std::invalid_argument);
    EXPECT_THROW(BuildBitmapResourceFile({MakePicture(1, 0, 1, {{2, 2}}), MakePicture(1, 0, 1, {{2, 2}})}),
                 std::invalid_argument);
    PictureRecord wrongBytes = MakePicture(2, 0, 1, {{2, 2}});
    wrongBytes.versions[0].pixels.pop_back();
    EXPECT_THROW(BuildBitmapResourceFile({wrongBytes}), std::invalid_argument);
    PictureRecord badSlot = MakePicture(2, 0, 1, {{2, 2}});
    badSlot.versions[24] = badSlot.versions[0];
    EXPECT_THROW(BuildBitmapResourceFile({badSlot}), std::invalid_argument);
    try {
        BuildBitmapResourceFile({MakePicture(7, 0, 1, {{0, 3}})});
        ADD_FAILURE();
    } catch (const std::invalid_argument& e) {
        EXPECT_NE(std::string(e.what()).find("picture 7"), std::string::npos) << e.what();
    }
    const std::vector<unsigned char> bytes = BuildBitmapResourceFile({});  // an empty catalogue
    EXPECT_EQ(bytes.size(), 256u);
    EXPECT_EQ(std::memcmp(bytes.data(), "UloBitmapResource", 18), 0);
    EXPECT_EQ(GetU32(bytes, 20), 0u);
}

}  // namespace
