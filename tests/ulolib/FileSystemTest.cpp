#include <gtest/gtest.h>

#include <cstdio>
#include <tuple>

#include "TempDir.h"
#include "ulolib/Directory.h"
#include "ulolib/LitInt.h"
#include "ulolib/Path.h"
#include "ulolib/Stream.h"
#include "ulolib/Xml.h"

namespace {

TEST(ULOPathTest, JoinsAndTakesApart) {
    const std::wstring sep(1, ULOPath::wSeparator);  // "\\" on Windows
    EXPECT_EQ((ULOPath(L"/res") / L"de" / L"" / L"Main.ura").wstring(),
              L"/res" + sep + L"de" + sep + L"Main.ura");
    EXPECT_EQ((ULOPath(L"/res/") / L"Main.ura").wstring(), L"/res/Main.ura");
    EXPECT_EQ((ULOPath() / L"x").wstring(), L"x");
    // Path, parent, and file name | extension.
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
        {L"/r/M.ura", L"/r", L"M.ura|ura"},
        {L"a.tar.gz", L"", L"a.tar.gz|gz"},
        {L"r.d/READ", L"r.d", L"READ|"},
        {L"/a/..", L"/a", L"..|"},
        {L"/a", L"/", L"a|"},
        {L"a//b", L"a", L"b|"},
        {L"/", L"", L"|"}};
    for (const auto& [path, parent, nameAndExtension] : cases) {
        EXPECT_EQ(ULOPath(path).parent_path(), ULOPath(parent)) << path;
        EXPECT_EQ(ULOPath(path).filename() + L"|" + ULOPath(path).extension(), nameAndExtension);
    }
    const ULOPath wide(L"/tmp/\x00e9t\x00e9\U0001F600");
    EXPECT_EQ(wide.native(), "/tmp/\xC3\xA9t\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(ULOPath::FromNative(wide.native()), wide);
}

TEST(ULOPathTest, ExistsAndIsDirectoryReportWhy) {
    TempDir dir;
    dir.Write("f\xC3\xA9.txt");
    const ULOPath file = dir.Path() / L"f\x00e9.txt";
    ulo::ErrorCode error(ulo::exception::InternalError("stale"));
    EXPECT_TRUE(file.exists(&error));
    EXPECT_FALSE(error.IsError()) << "success clears the error";
    EXPECT_FALSE(file.is_directory(&error));
    EXPECT_TRUE(dir.Path().is_directory());
    // Missing, and a file used as a folder.
    for (const auto& c : {std::make_pair(dir.Path() / L"missing", 0x80070002u),
                          std::make_pair(file / L"below", 0x80070003u)}) {
        EXPECT_FALSE(c.first.exists(&error));
        EXPECT_EQ(error.GetResultCode(), c.second);
        EXPECT_EQ(error.GetMessage().find(L"stat failed"), 0u);
        EXPECT_EQ(error.GetFile(), "ulolib/Path");
        error = ulo::ErrorCode();
        EXPECT_FALSE(c.first.is_directory(&error));
        EXPECT_EQ(error.GetResultCode(), c.second);
    }
    EXPECT_FALSE(ULOPath().exists());
}

TEST(ULOFileStreamTest, OpenFailuresComeFromTheRealCall) {
    TempDir dir;
    using Mode = ULOFileStream::Mode;
    const struct {
        ULOPath path;
        Mode mode;
        uint32_t result;
    } cases[] = {{dir.Path() / L"missing.bin", Mode::kRead, 0x80070002u},
                 {dir.Path() / L"no/such/folder.bin", Mode::kWrite, 0x80070002u},
                 {dir.Path(), Mode::kRead, 0x80070005u},  // a folder is no file
                 {dir.Path(), Mode::kWrite, 0x80070005u}};
    ULOFileStream stream;
    for (const auto& c : cases) {
        const ulo::ErrorCode e = stream.Open(c.path, c.mode);
        EXPECT_EQ(e.GetResultCode(), c.result) << c.path.native();
        EXPECT_EQ(e.GetFile(), "ulolib/Stream");
        EXPECT_FALSE(stream.IsOpen());
        try {
            e.Rethrow();
            ADD_FAILURE() << "nothing thrown";
        } catch (const ulo::exception::SystemError& ex) {
            EXPECT_EQ(ex.GetCall(), "fopen");
        }
    }
    uint8_t b = 0;
    EXPECT_FALSE(stream.ReadByte(b));
    EXPECT_FALSE(stream.WriteByte(b));
}

TEST(LitIntTest, ReadsLittleEndianAndZeroFillsAShortRead) {
    FILE* f = std::tmpfile();
    ASSERT_NE(f, nullptr);
    std::fwrite("\x01\x02\x03\x04\xFE\xFF\xFF\xFF\x2A\x01", 1, 10, f);
    std::rewind(f);
    int32_t v = 0;
    EXPECT_EQ(LitInt(f), 0x04030201);
    EXPECT_TRUE(LitInt(f, v) && v == -2);
    EXPECT_FALSE(LitInt(f, v));
    EXPECT_EQ(v, 0x012A);  // two bytes read, two missing count as zero
    EXPECT_EQ(LitInt(f), 0);
    std::fclose(f);
    EXPECT_FALSE(LitInt(nullptr, v));
}

TEST(DirectoryTest, DefaultsToTheExecutablesFolderAndCanBeMoved) {
    const boost::shared_ptr<Directory> d = Directory::create();
    EXPECT_EQ(d, Directory::create()) << "one instance per process";
    const ULOPath original = d->GetApplicationDirectory();
#if defined(_WIN32)
    EXPECT_TRUE((original / L"ulolib_tests.exe").exists());  // this test's own executable
#else
    EXPECT_TRUE((original / L"ulolib_tests").exists());
#endif
    d->SetApplicationDirectory(ULOPath(L"/elsewhere"));
    EXPECT_EQ(Directory::create()->GetApplicationDirectory(), ULOPath(L"/elsewhere"));
    d->SetApplicationDirectory(original);
}

TEST(ULOOpenXmlTest, LoadsGoodFilesAndRejectsBadOnes) {
    TempDir dir;
    dir.Write("good.xml",
              "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<languages><language id=\"3\">Deutsch \xC3\xA4</language></languages>");
    dir.Write("bad.xml", "<languages><language></languages>");
    dir.Write("empty.xml", "");
    TiXmlDocument doc;
    ASSERT_TRUE(ULOOpenXml(doc, dir.Path() / L"good.xml"));
    const TiXmlElement* language = doc.FirstChildElement("languages")->FirstChildElement("language");
    ASSERT_NE(language, nullptr);
    EXPECT_STREQ(language->Attribute("id"), "3");
    EXPECT_STREQ(language->GetText(), "Deutsch \xC3\xA4");
    for (const wchar_t* bad : {L"bad.xml", L"empty.xml", L"missing.xml", L""}) {
        EXPECT_FALSE(ULOOpenXml(doc, dir.Path() / bad)) << bad;
    }
    EXPECT_EQ(doc.FirstChildElement("languages"), nullptr);  // nothing of an earlier document is left
}

}  // namespace
