// Opening the font resource file: path checks, the three platform steps and their errors.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "TempDir.h"
#include "ulogui/Font.h"
#include "ulogui/font/FontRecord.h"
#include "ulogui/font/FontResourceWriter.h"
#include "ulogui/font/MappedFontResourceFile.h"
#include "ulolib/Exception.h"

using testfonts::TempDir;

namespace {

// Opens the platform steps to the test, which the path checks of Init otherwise stand before.
class OpenMappedFile : public details::MappedFontResourceFile {
public:
    using details::MappedFontResourceFile::DoClose;
    using details::MappedFontResourceFile::DoInit;
    ~OpenMappedFile() override { DoClose(); }
};

std::vector<uint8_t> SmallFile() {
    details::FontRecord r;
    r.primaryFace = L"DejaVu Sans";
    r.height = 12;
    r.weight = 400;
    return details::BuildFontResourceFile({r});
}

// The call name a system error carries, or the code of an internal error.
std::string Origin(const ulo::ErrorCode& error) {
    try {
        error.Rethrow();
    } catch (const ulo::exception::SystemError& e) {
        return e.GetCall();
    } catch (const ulo::exception::InternalError& e) {
        return e.GetCode();
    } catch (...) {
        return "?";
    }
    return "";
}

}  // namespace

TEST(FontResourceFileInit, PathsThatAreNoFileGiveTheInternalError) {
    TempDir dir;
    OpenMappedFile file;
    for (const ULOPath& path :
         {ULOPath(), ULOPath::FromNative(dir.Path()), ULOPath::FromNative(dir.Path() + "/missing.urf")}) {
        const ulo::ErrorCode error = file.Init(path);
        ASSERT_TRUE(error.IsError());
        EXPECT_EQ("URF_INIPTH", Origin(error));
        EXPECT_EQ(ulo::exception::kResultUnexpected, error.GetResultCode());
        EXPECT_EQ("class ulo::ErrorCode __cdecl FontResourceFile::Init(const class ULOPath &)",
                  error.GetFunction());
        EXPECT_EQ("ulogui/font", error.GetFile());
        EXPECT_FALSE(file.IsOpen());
    }
}

TEST(FontResourceFileInit, MapsTheWholeFileAndReopensOnTheNextInit) {
    TempDir dir;
    const std::vector<uint8_t> first = SmallFile();
    const std::vector<uint8_t> second(300, 0xAB);
    OpenMappedFile file;
    ASSERT_TRUE(file.Init(ULOPath::FromNative(dir.Write("a.urf", first))).IsOk());
    ASSERT_TRUE(file.IsOpen());
    ASSERT_EQ(first.size(), file.GetViewSize());
    EXPECT_TRUE(std::equal(first.begin(), first.end(), file.GetView()));
    details::FontRecord r;
    EXPECT_TRUE(file.ReadRecord(7, r));  // beyond the table: font 0
    EXPECT_EQ(L"DejaVu Sans", r.primaryFace);

    ASSERT_TRUE(file.Init(ULOPath::FromNative(dir.Write("b.urf", second))).IsOk());
    ASSERT_EQ(second.size(), file.GetViewSize());
    EXPECT_EQ(0xAB, file.GetView()[299]);
    EXPECT_FALSE(file.ReadRecord(0, r));  // offsets 0xABABABAB: no readable record

    // A failed re-initialisation leaves no stale view behind.
    EXPECT_TRUE(file.Init(ULOPath()).IsError());
    EXPECT_FALSE(file.IsOpen());
    EXPECT_FALSE(file.ReadRecord(0, r));
}

TEST(FontResourceFileOpen, EachPlatformStepReportsItsCallNameAndWindowsErrorNumber) {
    TempDir dir;
    OpenMappedFile file;
    struct Case {
        std::string path;
        uint32_t code;
        const char* call;
    };
    const Case cases[] = {
        {dir.Path() + "/missing.urf", 0x80070002u, "CreateFile"},         // ERROR_FILE_NOT_FOUND
        {dir.Write("plain", {1}) + "/x.urf", 0x80070003u, "CreateFile"},  // ERROR_PATH_NOT_FOUND
        {dir.Path(), 0x80070005u, "CreateFile"},                          // a directory: access denied
        {dir.Write("empty.urf", {}), 0x800703EEu, "CreateFileMapping"},   // ERROR_FILE_INVALID
        {"/dev/null", 0x800703EEu, "CreateFileMapping"},
    };
    for (const Case& c : cases) {
        const ulo::ErrorCode error = file.DoInit(ULOPath::FromNative(c.path));
        ASSERT_TRUE(error.IsError()) << c.path;
        EXPECT_EQ(c.code, error.GetResultCode()) << c.path;
        EXPECT_EQ(c.call, Origin(error)) << c.path;
        EXPECT_EQ(
            "class ulo::ErrorCode __cdecl details::MappedFontResourceFile::DoInit(const class ULOPath &)",
            error.GetFunction());
        EXPECT_EQ("ulogui/font", error.GetFile());
        EXPECT_GT(error.GetLine(), 0);
        EXPECT_FALSE(file.IsOpen());
        file.DoClose();
    }
}

TEST(FontResourceFileOpen, AnUnreadableFileIsAccessDeniedAtCreateFile) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root reads every file";
    }
    TempDir dir;
    const std::string path = dir.Write("locked.urf", SmallFile());
    ASSERT_EQ(0, chmod(path.c_str(), 0));
    OpenMappedFile file;
    const ulo::ErrorCode error = file.Init(ULOPath::FromNative(path));
    EXPECT_EQ(0x80070005u, error.GetResultCode());
    EXPECT_EQ("CreateFile", Origin(error));
}

TEST(FontResourceFileInstance, IsOneObjectForTheProcess) {
    EXPECT_EQ(&FontResourceFile::Instance(), &FontResourceFile::Instance());
    TempDir dir;
    EXPECT_EQ("URF_INIPTH", Origin(ULOFont::SetFontResourceFile(ULOPath::FromNative(dir.Path()))));
    EXPECT_FALSE(FontResourceFile::Instance().IsOpen());
    ASSERT_TRUE(ULOFont::SetFontResourceFile(ULOPath::FromNative(dir.Write("f.urf", SmallFile()))).IsOk());
    EXPECT_TRUE(FontResourceFile::Instance().IsOpen());
    ULOFont::SetFontResourceFile(ULOPath());  // leave it closed for other tests
}
