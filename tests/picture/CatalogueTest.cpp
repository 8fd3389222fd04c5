// The resource file singleton and the process-wide catalogue.
#include "picture/PictureTestFiles.h"
#include "ulolib/Exception.h"

namespace {

using namespace picturetest;

class CatalogueTest : public ResourceFileTest {};

// Gives the tests the protected DoInit.
class OpenableResourceFile : public BitmapResourceFile {
public:
    ulo::ErrorCode CallDoInit(const ULOPath& path) { return DoInit(path); }
};

// The code of an internal error or the call name of a system error.
std::string Origin(const ulo::ErrorCode& error) {
    try {
        error.Rethrow();
    } catch (const ulo::exception::InternalError& e) {
        return e.GetCode();
    } catch (const ulo::exception::SystemError& e) {
        return e.GetCall();
    } catch (...) {
    }
    return "none";
}

void ExpectInitPathError(const ulo::ErrorCode& error) {
    EXPECT_EQ(std::make_tuple(0x8000FFFFu, std::string("ulogui/picture"), 185, std::string("URB_INIPTH")),
              std::make_tuple(error.GetResultCode(), error.GetFile(), error.GetLine(), Origin(error)));
    EXPECT_NE(error.GetFunction().find("BitmapResourceFile::Init"), std::string::npos);
}

TEST_F(CatalogueTest, UnusablePathsAreRefusedAndTheFileStays) {
    Use({MakePicture(101, 0, 1, {{2, 2}})});
    const ULOPath good = ULOPath::FromNative(FilePath());
    ExpectInitPathError(ULOPicture::SetBitmapResourceFile(ULOPath()));
    ExpectInitPathError(ULOPicture::SetBitmapResourceFile(ULOPath::FromNative(FilePath() + ".missing")));
    ExpectInitPathError(BitmapResourceFile::GetInstance().SetResourceFilePath(dir_.Path()));
    EXPECT_EQ(BitmapResourceFile::GetInstance().GetResourceFilePath(), good);
    EXPECT_TRUE(BitmapResourceFile::GetInstance().IsInitialized());
    EXPECT_EQ(ULOPicture::GetInfoByID(101).GetID(), 101);
}

TEST_F(CatalogueTest, FileThatCannotBeOpenedGivesTheFopenError) {
    OpenableResourceFile file;
    const ulo::ErrorCode error = file.CallDoInit(ULOPath::FromNative(FilePath() + ".missing"));
    EXPECT_EQ(std::make_tuple(0x80070002u, std::string("ulogui/picture"),
                              std::string("fopen")),  // ERROR_FILE_NOT_FOUND
              std::make_tuple(error.GetResultCode(), error.GetFile(), Origin(error)));
    EXPECT_FALSE(file.IsInitialized());
    EXPECT_EQ(file.GetBitmapResource(), nullptr);
}

TEST_F(CatalogueTest, EachReadOpensTheFileAnew) {
    Use({MakePicture(102, 0, 1, {{2, 2}})});
    FILE* first = BitmapResourceFile::GetInstance().GetBitmapResource();
    FILE* second = BitmapResourceFile::GetInstance().GetBitmapResource();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    std::fclose(first);
    std::fclose(second);
}

TEST_F(CatalogueTest, RecordsAndSizeLookups) {
    Use({MakePicture(110, PICTBITS_RGB24, 3, {{5, 4}, {10, 8}})});
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
}

TEST_F(CatalogueTest, IDsWithoutRecordsHaveAnotherID) {
    Use({MakePicture(121, 0, 1, {{2, 2}})});
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

TEST_F(CatalogueTest, RecordsAreKeptAfterTheFileChanges) {
    Use({MakePicture(130, 0, 1, {{4, 4}})});
    EXPECT_EQ(ULOPicture::GetSInfoByID(130, 1).GetWidth(), 4);
    Use({MakePicture(130, 0, 1, {{9, 9}}), MakePicture(131, 0, 1, {{9, 9}})});
    EXPECT_EQ(ULOPicture::GetSInfoByID(130, 1).GetWidth(), 4);
    EXPECT_EQ(ULOPicture::GetSInfoByID(131, 1).GetWidth(), 9);
}

TEST_F(CatalogueTest, LookupsWhileTheFileIsMissingAreNotRemembered) {
    Use({MakePicture(140, 0, 1, {{3, 3}})});
    ASSERT_EQ(std::remove(FilePath().c_str()), 0);
    EXPECT_EQ(ULOPicture::GetInfoByID(140).GetID(), -1);
    WriteBytes(FilePath(), ulogui::resfile::BuildBitmapResourceFile({MakePicture(140, 0, 1, {{3, 3}})}));
    EXPECT_EQ(ULOPicture::GetInfoByID(140).GetID(), 140);
}

TEST_F(CatalogueTest, MalformedRecordsAreCataloguedAsMissing) {
    std::vector<unsigned char> bytes = ulogui::resfile::BuildBitmapResourceFile(
        {MakePicture(150, 0, 1, {{3, 3}}), MakePicture(151, 0, 1, {{3, 3}})});
    PutU32(bytes, RecordOffset(bytes, 150), 0xFFFFFFFFu);  // parts count -1
    WriteBytes(FilePath(), bytes);
    ASSERT_FALSE(ULOPicture::SetBitmapResourceFile(ULOPath::FromNative(FilePath())).IsError());
    EXPECT_EQ(ULOPicture::GetInfoByID(150).GetID(), -1);
    EXPECT_EQ(ULOPicture::GetInfoByID(151).GetID(), 151);
}

}  // namespace
