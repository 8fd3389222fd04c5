#include <gtest/gtest.h>

#include <boost/throw_exception.hpp>
#include <cerrno>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <tuple>

#include "TempDir.h"
#include "ulolib/Directory.h"
#include "ulolib/ErrorCode.h"
#include "ulolib/LitInt.h"
#include "ulolib/Path.h"
#include "ulolib/Stream.h"
#include "ulolib/Xml.h"

namespace {

using ulo::ErrorCode;
using ulo::exception::InternalError;
using ulo::exception::SystemError;

boost::exception_ptr Caught(const std::function<void()>& raise) {
    try {
        raise();
    } catch (...) {
        return boost::current_exception();
    }
    return {};
}

TEST(ErrorCodeTest, ErrorsCarryTheirResultMessageLocationAndSystemCall) {
    const int line = __LINE__ + 1;
    const auto located = Caught([] { BOOST_THROW_EXCEPTION(std::logic_error("broken")); });
    const std::tuple<ErrorCode, uint32_t, std::wstring, std::string> cases[] = {
        {ErrorCode::noError(), 0, L"", ":0"},
        {ErrorCode(boost::exception_ptr()), 0, L"", ":0"},
        {ErrorCode(ULO_AT(InternalError("URB_INIPTH"), "Init()", "ulogui/picture", 185)),
         ulo::exception::kResultUnexpected, L"URB_INIPTH", "ulogui/picture:185"},
        {ErrorCode(std::runtime_error("disk on fire")), ulo::exception::kResultFail, L"disk on fire", ":0"},
        {ErrorCode(located), ulo::exception::kResultFail, L"broken", __FILE__ ":" + std::to_string(line)},
        {ErrorCode(Caught([] { throw 42; })), ulo::exception::kResultFail, L"unknown error", ":0"},
    };
    for (const auto& [error, result, message, where] : cases) {
        EXPECT_EQ(error.IsError(), result != 0) << where;
        EXPECT_EQ(std::make_tuple(error.GetResultCode(), error.GetMessage(),
                                  error.GetFile() + ":" + std::to_string(error.GetLine())),
                  std::make_tuple(result, ULOString(message), where));
    }
    EXPECT_NO_THROW(ErrorCode::noError().Rethrow());
    EXPECT_EQ(std::get<0>(cases[2]).GetFunction(), "Init()");
    EXPECT_THROW(std::get<0>(cases[2]).Rethrow(), InternalError);
    const ErrorCode accessDenied(SystemError(5, "CreateFile"));
    EXPECT_EQ(accessDenied.GetResultCode(), 0x80070005u);
    EXPECT_EQ(accessDenied.GetMessage().find(L"CreateFile failed"), 0u);
    const SystemError fromErrno = SystemError::FromErrno(ENOENT, "fopen");
    EXPECT_EQ(fromErrno.GetResultCode(), 0x80070002u);
    EXPECT_STREQ(fromErrno.what(), "fopen failed: No such file or directory (error 2)");

    EXPECT_EQ(ulo::exception::ResultFromPlatformError(0x12345), 0x80072345u);
    EXPECT_EQ(ulo::exception::ResultFromPlatformError(0), 0u);
    EXPECT_EQ(ulo::exception::ResultFromPlatformError(-2147024891L), 0x80070005u);  // already a result
    const std::pair<int, long> errnoToWindows[] = {
        {ENOENT, 2},  {ENOTDIR, 3}, {EMFILE, 4},   {EACCES, 5},      {EPERM, 5},   {EISDIR, 5},
        {EBADF, 6},   {ENOMEM, 8},  {EXDEV, 17},   {EROFS, 19},      {EAGAIN, 33}, {EEXIST, 80},
        {EINVAL, 87}, {EPIPE, 109}, {ENOSPC, 112}, {ENOTEMPTY, 145}, {EBUSY, 170}, {ENAMETOOLONG, 206},
        {EIO, 1117},  {0, 0},       {EDOM, 31},    {-7, 31},         {100000, 31}};
    for (const auto& p : errnoToWindows) {
        EXPECT_EQ(ulo::exception::WindowsErrorFromErrno(p.first), p.second) << "errno " << p.first;
    }
}

TEST(ULOPathTest, PathsJoinTakeApartAndReportWhyTheyDoNotExistOrOpenAndFilesAreReadAsIntegersOrXml) {
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
    using Mode = ULOFileStream::Mode;
    const struct {
        ULOPath path;
        Mode mode;
        uint32_t result;
    } opens[] = {{dir.Path() / L"missing.bin", Mode::kRead, 0x80070002u},
                 {dir.Path() / L"no/such/folder.bin", Mode::kWrite, 0x80070002u},
                 {dir.Path(), Mode::kRead, 0x80070005u},  // a folder is no file
                 {dir.Path(), Mode::kWrite, 0x80070005u}};
    ULOFileStream stream;
    for (const auto& c : opens) {
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
    // The folder of this test's own executable (setting it: tests/l10n/InitResourceDirTest.cpp).
    const ULOPath application = Directory::create()->GetApplicationDirectory();
#if defined(_WIN32)
    EXPECT_TRUE((application / L"ulolib_tests.exe").exists());
#else
    EXPECT_TRUE((application / L"ulolib_tests").exists());
#endif
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
