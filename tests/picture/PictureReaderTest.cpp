// The resource file singleton and the process-wide catalogue; the reader of catalogue records and pixel
// blocks, on files with every kind of damage.
#include "picture/PictureReader.h"
#include "picture/PictureTestFiles.h"
#include "resfile/BitmapResourceFormat.h"
#include "ulolib/ErrorOrigin.h"

namespace {

using namespace picturetest;
using ulogui::resfile::BuildBitmapResourceFile;
using ulogui::resfile::DecodedBlock;
using ulogui::resfile::ReadPictureBlock;
using ulogui::resfile::ReadPictureInfo;

using CatalogueTest = ResourceFileTest;

// Gives the tests the protected DoInit.
class OpenableResourceFile : public BitmapResourceFile {
public:
    ulo::ErrorCode CallDoInit(const ULOPath& path) { return DoInit(path); }
};

void ExpectInitPathError(const ulo::ErrorCode& error) {
    EXPECT_EQ(std::make_tuple(0x8000FFFFu, std::string("ulogui/picture"), 185, std::string("URB_INIPTH")),
              std::make_tuple(error.GetResultCode(), error.GetFile(), error.GetLine(), ErrorOrigin(error)));
    EXPECT_NE(error.GetFunction().find("BitmapResourceFile::Init"), std::string::npos);
}

TEST_F(CatalogueTest, UnusablePathsAreRefusedEachReadOpensTheFileAndFoundRecordsAreKept) {
    Use({MakePicture(101, 0, 1, {{2, 2}})});
    const ULOPath good = ULOPath::FromNative(FilePath());
    ExpectInitPathError(ULOPicture::SetBitmapResourceFile(ULOPath()));
    ExpectInitPathError(ULOPicture::SetBitmapResourceFile(ULOPath::FromNative(FilePath() + ".missing")));
    ExpectInitPathError(BitmapResourceFile::GetInstance().SetResourceFilePath(dir_.Path()));
    EXPECT_EQ(BitmapResourceFile::GetInstance().GetResourceFilePath(), good);
    EXPECT_TRUE(BitmapResourceFile::GetInstance().IsInitialized());
    EXPECT_EQ(ULOPicture::GetInfoByID(101).GetID(), 101);
    // A file that cannot be opened gives the fopen error; each read of a good one opens it anew.
    OpenableResourceFile file;
    const ulo::ErrorCode error = file.CallDoInit(ULOPath::FromNative(FilePath() + ".missing"));
    EXPECT_EQ(std::make_tuple(0x80070002u, std::string("ulogui/picture"),
                              std::string("fopen")),  // ERROR_FILE_NOT_FOUND
              std::make_tuple(error.GetResultCode(), error.GetFile(), ErrorOrigin(error)));
    EXPECT_TRUE(!file.IsInitialized() && file.GetBitmapResource() == nullptr);
    Use({MakePicture(102, 0, 1, {{2, 2}})});
    FILE* first = BitmapResourceFile::GetInstance().GetBitmapResource();
    FILE* second = BitmapResourceFile::GetInstance().GetBitmapResource();
    ASSERT_TRUE(first != nullptr && second != nullptr);
    EXPECT_NE(first, second);
    std::fclose(first);
    std::fclose(second);
    // Records found are kept after the file changes; lookups while the file is missing are not remembered;
    // malformed records are catalogued as missing.
    Use({MakePicture(130, 0, 1, {{4, 4}}), MakePicture(140, 0, 1, {{3, 3}})});
    EXPECT_EQ(ULOPicture::GetSInfoByID(130, 1).GetWidth(), 4);
    ASSERT_EQ(std::remove(FilePath().c_str()), 0);
    EXPECT_EQ(ULOPicture::GetInfoByID(140).GetID(), -1);
    std::vector<unsigned char> bytes =
        BuildBitmapResourceFile({MakePicture(130, 0, 1, {{9, 9}}), MakePicture(131, 0, 1, {{9, 9}}),
                                 MakePicture(140, 0, 1, {{3, 3}}), MakePicture(150, 0, 1, {{3, 3}})});
    PutU32(bytes, RecordOffset(bytes, 150), 0xFFFFFFFFu);  // parts count -1
    WriteBytes(FilePath(), bytes);
    EXPECT_EQ(std::make_tuple(ULOPicture::GetSInfoByID(130, 1).GetWidth(),
                              ULOPicture::GetSInfoByID(131, 1).GetWidth(),
                              ULOPicture::GetInfoByID(140).GetID(), ULOPicture::GetInfoByID(150).GetID()),
              std::make_tuple(4, 9, 140, -1));
}

TEST_F(CatalogueTest, RecordsAndSizeLookupsAndIDsWithoutRecords) {
    Use({MakePicture(110, PICTBITS_RGB24, 3, {{5, 4}, {10, 8}}), MakePicture(121, 0, 1, {{2, 2}})});
    const ULOPictureInfo& info = ULOPicture::GetInfoByID(110);
    EXPECT_EQ(
        std::make_tuple(110, 3, PICTBITS_RGB24, 3),
        std::make_tuple(info.GetID(), info.GetPartsCount(), info.GetFlags(), info.GetSizeVersionFlags()));
    EXPECT_EQ(ULOPicture::GetSInfoByID(110, 1), ULOPictureSizeInfo(1, 5, 4, 16));
    EXPECT_EQ(ULOPicture::GetSInfoByID(110, 2), ULOPictureSizeInfo(2, 10, 8, 32));
    EXPECT_EQ(ULOPicture::GetSInfoByID(110, 2).GetSize(), ULOSize(10, 8));
    const ULOPictureSizeInfo& beyond = ULOPicture::GetSInfoByID(110, 3);
    EXPECT_EQ(&beyond, &ULOPictureSizeInfo::UndefPicSizeInfo());
    EXPECT_EQ(beyond, ULOPictureSizeInfo(-1, 0, 0, 0));
    // The same stored record every time.
    EXPECT_EQ(&ULOPicture::GetInfoByID(110), &info);
    // IDs without records have another ID.
    for (int id : {120, 122, 5000, -7}) {
        SCOPED_TRACE(id);
        EXPECT_EQ(ULOPicture::GetInfoByID(id).GetID(), -1);
        EXPECT_EQ(ULOPicture::GetSInfoByID(id, 1), ULOPictureSizeInfo(-1, 0, 0, 0));
    }
    const ULOPictureInfo& undefined = ULOPictureInfo::UndefPicInfo();
    EXPECT_EQ(std::make_tuple(1, 0, 1, size_t{0}),
              std::make_tuple(undefined.GetPartsCount(), undefined.GetFlags(),
                              undefined.GetSizeVersionFlags(), undefined.GetSizes().size()));
    ULOPictureBits plain;
    EXPECT_EQ(&plain.GetInfo(), &undefined);
}

std::vector<unsigned char> Bytes(const DecodedBlock& b) {
    const unsigned char* bits = b.bits.get();
    return bits == nullptr
               ? std::vector<unsigned char>()
               : std::vector<unsigned char>(bits, bits + static_cast<size_t>(b.lineWidth) * b.height);
}

// The block's origin, width, height, line width, flags and parts count.
using BlockShape = std::tuple<bool, int, int, int, int, int>;
BlockShape Shape(const DecodedBlock& b) {
    return std::make_tuple(b.fromRecord, b.width, b.height, b.lineWidth, b.flags, b.partsCount);
}

void ExpectTransparentPixel(const DecodedBlock& b) {
    EXPECT_EQ(std::make_tuple(Shape(b), Bytes(b)),
              std::make_tuple(BlockShape(false, 1, 1, 4, 0, 1), std::vector<unsigned char>(4, 255)));
}

// Picture 3: 32-bit with alpha, two parts, versions 1 (10 x 4) and 2 (20 x 8); picture 5: 24-bit,
// three parts, version 1 only (10 x 4, stride 32).
std::vector<unsigned char> SampleFile() {
    return BuildBitmapResourceFile({MakePicture(3, PICTBITS_ALPHA, 2, {{10, 4}, {20, 8}}),
                                    MakePicture(5, PICTBITS_RGB24, 3, {{10, 4}})});
}

// Blocks of the sample file: parts follow one another after the version header (picture 5, part 2: 2 x
// (4 x 32) bytes after width and height; picture 3, part n: n x 160 bytes in); the version bit picks the
// slot of its lowest bit (6: slot 2); parts past the end of the file read as zeros, while part 3 of
// picture 3 lies within the file and is whatever follows, as stored. IDs without records (negative, an
// index entry of 0xFFFFFFFF, past the index), slots without a version (offset 0 lies in the header), no
// bit at all, bits past slot 23 and no file give one transparent pixel.
TEST(PictureReader, BlocksOfTheSampleFileAndRecordsOfEveryVersion) {
    const auto bytes = SampleFile();
    const auto file = StreamOf(bytes);
    const auto stored = [&bytes](int id, size_t at, size_t n) {
        const auto start = bytes.begin() + VersionOffset(bytes, id, 0) + 8 + at;
        return std::vector<unsigned char>(start, start + n);
    };
    const BlockShape five(true, 10, 4, 32, PICTBITS_RGB24, 3), three(true, 10, 4, 40, PICTBITS_ALPHA, 2),
        large(true, 20, 8, 80, PICTBITS_ALPHA, 2), none(false, 1, 1, 4, 0, 1);
    const std::vector<unsigned char> white(4, 255), zeros(128, 0);
    const struct {
        int id;
        unsigned int bit, part;
        BlockShape shape;
        std::vector<unsigned char> bytes;
    } cases[] = {
        {5, 1, 2, five, PartBytes(5, 0, 2, 10, 4, PICTBITS_RGB24)},
        {5, 1, 2, five, stored(5, 2 * 128, 128)},
        {3, 1, 1, three, PartBytes(3, 0, 1, 10, 4, PICTBITS_ALPHA)},
        {3, 1, 0, three, PartBytes(3, 0, 0, 10, 4, PICTBITS_ALPHA)},
        {3, 2, 1, large, PartBytes(3, 1, 1, 20, 8, PICTBITS_ALPHA)},
        {3, 6, 1, large, PartBytes(3, 1, 1, 20, 8, PICTBITS_ALPHA)},
        {5, 1, 3, five, zeros},
        {5, 1, 4, five, zeros},
        {5, 1, 0x7FFFFFFFu, five, zeros},
        {5, 1, 0xFFFFFFFFu, five, zeros},
        {3, 1, 2, three, stored(3, 2 * 160, 160)},
        {3, 4, 0, none, white},
        {5, 2, 0, none, white},
        {3, 0, 0, none, white},
        {3, 0x1000000u, 0, none, white},
        {3, 0x80000000u, 0, none, white},
    };
    for (const auto& c : cases) {
        const DecodedBlock b = ReadPictureBlock(file.get(), c.id, c.bit, c.part);
        EXPECT_EQ(std::make_tuple(Shape(b), Bytes(b)), std::make_tuple(c.shape, c.bytes))
            << "case " << (&c - cases);
    }
    for (int id : {-1, -2, 0, 4, 6, 1000, 0x7FFFFFFF}) {
        EXPECT_EQ(ReadPictureInfo(file.get(), id).GetID(), -1) << id;
        ExpectTransparentPixel(ReadPictureBlock(file.get(), id, 1, 0));
    }
    EXPECT_EQ(ReadPictureInfo(nullptr, 3).GetID(), -1);
    ExpectTransparentPixel(ReadPictureBlock(nullptr, 3, 1, 0));
    // Versions in bit order; a mask picture's rows are bytes, padded to whole words.
    const auto masked =
        StreamOf(BuildBitmapResourceFile({MakePicture(3, PICTBITS_ALPHA, 2, {{10, 4}, {0, 0}, {5, 7}}),
                                          MakePicture(1, PICTBITS_MASK8, 1, {{5, 3}})}));
    const ULOPictureInfo info = ReadPictureInfo(masked.get(), 3);
    EXPECT_EQ(std::make_tuple(3, 2, PICTBITS_ALPHA, 5, size_t{2}),
              std::make_tuple(info.GetID(), info.GetPartsCount(), info.GetFlags(), info.GetSizeVersionFlags(),
                              info.GetSizes().size()));
    EXPECT_EQ(info.GetPicSizeInfo(1), ULOPictureSizeInfo(1, 10, 4, 40));
    EXPECT_EQ(info.GetPicSizeInfo(2), ULOPictureSizeInfo(4, 5, 7, 20));
    EXPECT_EQ(info.GetPicSizeInfo(3), ULOPictureSizeInfo::UndefPicSizeInfo());
    EXPECT_EQ(info.GetPicSizeInfo(0), ULOPictureSizeInfo::UndefPicSizeInfo());
    const DecodedBlock mask = ReadPictureBlock(masked.get(), 1, 1, 0);
    EXPECT_EQ(std::make_tuple(mask.lineWidth, Bytes(mask)),
              std::make_tuple(8, PartBytes(1, 0, 0, 5, 3, PICTBITS_MASK8)));
}

// One kind of damage to the sample file, a value put at an offset; picture 3 must then read as missing.
struct Damage {
    const char* what;
    size_t at;
    uint32_t value;
};

TEST(PictureReader, DamagedAndTruncatedFilesAndShortIndexesFallBack) {
    const std::vector<unsigned char> good = SampleFile();
    const size_t entry = 256 + 4 * 3, record = RecordOffset(good, 3), version2 = VersionOffset(good, 3, 1);
    const Damage damages[] = {
        {"record offset in the header", entry, 16},
        {"record offset in the index", entry, 256},
        {"record offset past the end", entry, static_cast<uint32_t>(good.size())},
        {"record cut by the end", entry, static_cast<uint32_t>(good.size() - 50)},
        {"zero parts", record, 0},
        {"negative parts", record, 0xFFFFFFFFu},
        {"enormous parts", record, 0x7FFFFFFF},
        {"version 2 offset in the index", record + 16, 260},
        {"version 2 offset in the header", record + 16, 8},
        {"version 2 offset in its own record", record + 16, static_cast<uint32_t>(record + 20)},
        {"version 2 offset past the end", record + 16, 0xFFFFFFF0u},
        {"stored version 3 without data", record + 8, 7},
        {"negative width", version2, 0xFFFFFFFFu},
        {"zero height", version2 + 4, 0},
        {"enormous width", version2, 0x7FFFFFFF},
        {"width whose stride overflows", version2, 0x4000000},
        {"enormous height", version2 + 4, 0x7FFFFFFF},
        {"parts larger than the file", version2 + 4, 20},
    };
    for (const Damage& damage : damages) {
        SCOPED_TRACE(damage.what);
        std::vector<unsigned char> bytes = good;
        PutU32(bytes, damage.at, damage.value);
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
    // Every truncation reads whole pictures or falls back.
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
    // Entries past the stated index are not read. Files without the header text are read too; without the
    // entry count the index is only known to reach the entry looked up.
    std::vector<unsigned char> bytes = SampleFile();
    PutU32(bytes, 20, 4);
    const auto file = StreamOf(bytes);
    EXPECT_EQ(std::make_tuple(ReadPictureInfo(file.get(), 3).GetID(), ReadPictureInfo(file.get(), 5).GetID()),
              std::make_tuple(3, -1));
    ExpectTransparentPixel(ReadPictureBlock(file.get(), 5, 1, 0));
    std::fill(bytes.begin(), bytes.begin() + 256, 0);
    const auto headless = StreamOf(bytes);
    EXPECT_EQ(ReadPictureInfo(headless.get(), 3).GetPicSizeInfo(2), ULOPictureSizeInfo(2, 20, 8, 80));
    EXPECT_EQ(Bytes(ReadPictureBlock(headless.get(), 5, 1, 1)), PartBytes(5, 0, 1, 10, 4, PICTBITS_RGB24));
    PutU32(bytes, RecordOffset(bytes, 3) + 16, 256 + 4 * 3);
    const auto damaged = StreamOf(bytes);
    EXPECT_EQ(ReadPictureInfo(damaged.get(), 3).GetID(), -1);
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
