#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

#include "TempDir.h"
#include "ulolib/Directory.h"
#include "ulolib/LitInt.h"
#include "ulolib/Path.h"
#include "ulolib/Stream.h"
#include "ulolib/Xml.h"

namespace {

void WriteFile(const ULOPath& path, const std::string& bytes) {
    FILE* f = std::fopen(path.native().c_str(), "wb");
    ASSERT_NE(f, nullptr);
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
}

TEST(ULOPathTest, JoinsAndTakesApart) {
    EXPECT_EQ(ULOPath::wSeparator, L'/');
    EXPECT_EQ((ULOPath(L"/res") / L"de" / L"Main.ura").wstring(), L"/res/de/Main.ura");
    EXPECT_EQ((ULOPath(L"/res/") / L"Main.ura").wstring(), L"/res/Main.ura");
    EXPECT_EQ((ULOPath(L"/res") / L"" / L"x").wstring(), L"/res/x");
    EXPECT_EQ((ULOPath() / L"x").wstring(), L"x");
    ULOPath p(L"a");
    p /= L"b";
    EXPECT_EQ(p, ULOPath(L"a/b"));

    const ULOPath file(L"/res/de/Main.ura");
    EXPECT_EQ(file.filename(), L"Main.ura");
    EXPECT_EQ(file.extension(), L"ura");
    EXPECT_EQ(file.parent_path(), ULOPath(L"/res/de"));
    EXPECT_EQ(ULOPath(L"/res/archive.tar.gz").extension(), L"gz");
    EXPECT_EQ(ULOPath(L"/res.d/README").extension(), L"");
    EXPECT_EQ(ULOPath(L"..").extension(), L"");
    EXPECT_EQ(ULOPath(L"/a").parent_path(), ULOPath(L"/"));
    EXPECT_EQ(ULOPath(L"a//b").parent_path(), ULOPath(L"a"));
    EXPECT_TRUE(ULOPath(L"a").parent_path().empty());
    EXPECT_TRUE(ULOPath(L"/").parent_path().empty());
    EXPECT_TRUE(ULOPath().empty());

    const ULOPath wide(L"/tmp/\x00e9t\x00e9\U0001F600");
    EXPECT_EQ(wide.native(), "/tmp/\xC3\xA9t\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(ULOPath::FromNative(wide.native()), wide);
}

TEST(ULOPathTest, ExistsAndIsDirectoryReportWhy) {
    TempDir dir;
    const ULOPath file = dir.Path() / L"f\x00e9.txt";
    WriteFile(file, "x");

    ulo::ErrorCode error(ulo::exception::InternalError("stale"));
    EXPECT_TRUE(file.exists(&error));
    EXPECT_FALSE(error.IsError()) << "success clears the error";
    EXPECT_FALSE(file.is_directory(&error));
    EXPECT_FALSE(error.IsError());
    EXPECT_TRUE(dir.Path().is_directory());

    const ULOPath missing = dir.Path() / L"missing";
    EXPECT_FALSE(missing.exists(&error));
    EXPECT_EQ(error.GetResultCode(), 0x80070002u);
    EXPECT_EQ(error.GetMessage().find(L"stat failed"), 0u);
    EXPECT_EQ(error.GetFile(), "ulolib/Path");
    EXPECT_FALSE(missing.is_directory(&error));
    EXPECT_EQ(error.GetResultCode(), 0x80070002u);
    // A file used as a folder.
    EXPECT_FALSE((file / L"below").exists(&error));
    EXPECT_EQ(error.GetResultCode(), 0x80070003u);
    EXPECT_FALSE(ULOPath().exists());
}

TEST(ULOFileStreamTest, OpenFailuresComeFromTheRealCall) {
    TempDir dir;
    ULOFileStream stream;
    ulo::ErrorCode e = stream.Open(dir.Path() / L"missing.bin", ULOFileStream::Mode::kRead);
    EXPECT_TRUE(e.IsError());
    EXPECT_EQ(e.GetResultCode(), 0x80070002u);
    EXPECT_EQ(e.GetFile(), "ulolib/Stream");
    try {
        e.Rethrow();
        ADD_FAILURE() << "nothing thrown";
    } catch (const ulo::exception::SystemError& ex) {
        EXPECT_EQ(ex.GetCall(), "fopen");
        EXPECT_EQ(ex.GetPlatformError(), 2);
    }
    EXPECT_FALSE(stream.IsOpen());

    // A folder is no file, for reading as for writing.
    e = stream.Open(dir.Path(), ULOFileStream::Mode::kRead);
    EXPECT_EQ(e.GetResultCode(), 0x80070005u);
    e = stream.Open(dir.Path(), ULOFileStream::Mode::kWrite);
    EXPECT_EQ(e.GetResultCode(), 0x80070005u);
    e = stream.Open(dir.Path() / L"no/such/folder.bin", ULOFileStream::Mode::kWrite);
    EXPECT_EQ(e.GetResultCode(), 0x80070002u);
    EXPECT_FALSE(stream.IsOpen());
    uint8_t b = 0;
    EXPECT_FALSE(stream.ReadByte(b));
    EXPECT_FALSE(stream.WriteByte(b));
}

TEST(LitIntTest, ReadsLittleEndianAndZeroFillsAShortRead) {
    TempDir dir;
    const ULOPath path = dir.Path() / L"ints.bin";
    WriteFile(path, std::string("\x01\x02\x03\x04\xFE\xFF\xFF\xFF\x2A\x01", 10));
    FILE* f = std::fopen(path.native().c_str(), "rb");
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(LitInt(f), 0x04030201);
    int32_t v = 0;
    EXPECT_TRUE(LitInt(f, v));
    EXPECT_EQ(v, -2);
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
    EXPECT_TRUE(original.is_directory());
    // This test runs from its own executable, which therefore lies in that folder.
    EXPECT_TRUE((original / L"ulolib_tests").exists());

    d->SetApplicationDirectory(ULOPath(L"/elsewhere"));
    EXPECT_EQ(Directory::create()->GetApplicationDirectory(), ULOPath(L"/elsewhere"));
    d->SetApplicationDirectory(original);
}

TEST(ULOOpenXmlTest, LoadsGoodFilesAndRejectsBadOnes) {
    TempDir dir;
    const ULOPath good = dir.Path() / L"languages.xml";
    WriteFile(good,
              "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<languages><language id=\"3\" folder=\"de\">Deutsch \xC3\xA4</language></languages>");
    TiXmlDocument doc;
    ASSERT_TRUE(ULOOpenXml(doc, good));
    const TiXmlElement* language = doc.FirstChildElement("languages")->FirstChildElement("language");
    ASSERT_NE(language, nullptr);
    int id = 0;
    EXPECT_EQ(language->QueryIntAttribute("id", &id), TIXML_SUCCESS);
    EXPECT_EQ(id, 3);
    EXPECT_STREQ(language->GetText(), "Deutsch \xC3\xA4");

    const ULOPath bad = dir.Path() / L"bad.xml";
    WriteFile(bad, "<languages><language></languages>");
    EXPECT_FALSE(ULOOpenXml(doc, bad));
    const ULOPath empty = dir.Path() / L"empty.xml";
    WriteFile(empty, "");
    EXPECT_FALSE(ULOOpenXml(doc, empty));
    EXPECT_FALSE(ULOOpenXml(doc, dir.Path() / L"missing.xml"));
    EXPECT_FALSE(ULOOpenXml(doc, dir.Path()));
    // A failed load leaves nothing of an earlier document behind.
    EXPECT_EQ(doc.FirstChildElement("languages"), nullptr);
}

}  // namespace
