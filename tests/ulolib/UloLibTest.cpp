// ULOLib: errors, paths, files and streams, and strings.
#include <gtest/gtest.h>

#include <boost/throw_exception.hpp>
#include <cerrno>
#include <cstdio>
#include <cwchar>
#include <functional>
#include <stdexcept>
#include <tuple>
#include <vector>

#include "ErrorOrigin.h"
#include "TempDir.h"
#include "ulolib/Directory.h"
#include "ulolib/ErrorCode.h"
#include "ulolib/LitInt.h"
#include "ulolib/Path.h"
#include "ulolib/Stream.h"
#include "ulolib/String.h"
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
        EXPECT_EQ(ErrorOrigin(e), "fopen");
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

const wchar_t r = 0xFFFD;  // the replacement character

TEST(ULOStringTest, PiecesSplitCompareFormatAndUtfRoundTripsWithReplacementCharactersForBadInput) {
    const ULOString s = L"abcdef";
    const std::pair<ULOString, const wchar_t*> cases[] = {
        {s.Left(2), L"ab"},    {s.Left(99), L"abcdef"}, {s.Left(-3), L""},        {s.Mid(2), L"cdef"},
        {s.Mid(2, 3), L"cde"}, {s.Mid(4, 99), L"ef"},   {s.Mid(6), L""},          {s.Mid(60, 1), L""},
        {s.Mid(-2, 2), L"ab"}, {s.Right(2), L"ef"},     {s.Right(99), L"abcdef"}, {s.Right(-1), L""}};
    for (size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(cases[i].first, cases[i].second) << "case " << i;
    }
    using V = std::vector<ULOString>;
    EXPECT_EQ(ULOString(L"a//b").Split(L'/'), (V{L"a", L"", L"b"}));
    EXPECT_EQ(ULOString(L"/usr/share/").Split(L'/'), (V{L"", L"usr", L"share", L""}));
    EXPECT_EQ(ULOString(L"").Split(L'/'), (V{L""}));
    EXPECT_EQ(ULOString(L"/usr//share/").Tokenize(L'/'), (V{L"usr", L"share"}));
    EXPECT_TRUE(ULOString(L"///").Tokenize(L'/').empty());
    // Both give the sign only, also for lengths that differ by more than one.
    struct Case {
        const wchar_t *a, *b;
        int ordinal, noCase;
    };
    const Case comparisons[] = {{L"abc", L"abd", -1, -1},       {L"abd", L"abc", 1, 1},
                                {L"abc", L"abc", 0, 0},         {L"B", L"a", -1, 1},
                                {L"a", L"abc", -1, -1},         {L"ab", L"ABCD", 1, -1},
                                {L"\x00c4X", L"\x00e4x", -1, 0}};
    for (const Case& c : comparisons) {
        EXPECT_EQ(ULOString(c.a).Compare(c.b), c.ordinal) << c.a << " " << c.b;
        EXPECT_EQ(ULOString(c.a).CompareNoCase(c.b), c.noCase) << c.a << " " << c.b;
        EXPECT_EQ(ULOString(c.a).EqualsNoCase(c.b), c.noCase == 0);
    }
    EXPECT_EQ(ULOString(L"MiXed \x00c9").MakeLower(), L"mixed \x00e9");
    EXPECT_EQ(ULOString(L"MiXed \x00e9").MakeUpper(), L"MIXED \x00c9");
    EXPECT_EQ(ULOString::Format(L"%s.%s", L"Main", L"ura"), L"Main.ura");
    EXPECT_EQ(ULOString::Format(L"%d-%5.2f-%c", 42, 1.5, L'\x00e9'), L"42- 1.50-\x00e9");
    EXPECT_EQ(ULOString::Format(L"%ls|%hs|%S|%C", L"w\x4e2d", "narrow", "N", 'x'), L"w\x4e2d|narrow|N|x");
    EXPECT_EQ(ULOString::Format(L"%-4s|%I64d|%Iu|100%%", L"ab", 1LL << 40, size_t(7)),
              L"ab  |1099511627776|7|100%");
    EXPECT_EQ(ULOString::Format(L"<%s>", L"\U0001F600"), L"<\U0001F600>");  // beyond the BMP, untouched
    const std::wstring longText(5000, L'x');
    EXPECT_EQ(ULOString::Format(L"[%s]", longText.c_str()), L"[" + longText + L"]");
    ULOString inPlace = L"old";
    inPlace.FormatInPlace(L"%d/%d", 3, 4);
    EXPECT_EQ(inPlace, L"3/4");
    const ULOString text = L"A\x00e9\x4e2d\xffff\U00010000\U0001F600\U0010FFFF";
    const std::string utf8 = text.ToUtf8();
    EXPECT_EQ(utf8, "A\xC3\xA9\xE4\xB8\xAD\xEF\xBF\xBF\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF");
    EXPECT_EQ(ULOString::FromUtf8(utf8), text);
    const std::u16string utf16 = text.ToUtf16();
    EXPECT_EQ(utf16,
              (std::u16string{u'A', 0x00e9, 0x4e2d, 0xffff, 0xD800, 0xDC00, 0xD83D, 0xDE00, 0xDBFF, 0xDFFF}));
    EXPECT_EQ(ULOString::FromUtf16(utf16), text);
    const uint16_t units[] = {0xD83D, 0xDE00, 'a'};
    EXPECT_EQ(ULOString::FromUtf16(units, 3), L"\U0001F600a");
    EXPECT_EQ(ULOString::FromUtf16(units, 1), L"\xFFFD");  // the pair cut in half
    EXPECT_EQ(ULOString::FromUtf16(nullptr, 5), L"");
    const std::pair<const char*, std::wstring> malformed[] = {
        {"a\x80z", {L'a', r, L'z'}},           // lone continuation byte
        {"\xC0\xAF", {r, r}},                  // overlong '/' (C0 never starts a sequence)
        {"\xE0\x80\xAF", {r, r, r}},           // overlong three-byte form
        {"\xED\xA0\x80", {r, r, r}},           // encoded surrogate
        {"\xF4\x90\x80\x80", {r, r, r, r}},    // above U+10FFFF
        {"\xE4\xB8z", {r, L'z'}},              // truncated sequence: one replacement
        {"\xF0\x9F\x98", {r}},                 // truncated at the end
        {"\xFF\xFE", {r, r}},                  // bytes that never occur
        {"\xC3\xA9\xC3", {L'\x00e9', r}},      // good, then cut short
        {"\xE4\xB8\xC3\xA9", {r, L'\x00e9'}},  // a new lead byte ends the broken sequence
    };
    for (const auto& c : malformed) {
        EXPECT_EQ(ULOString::FromUtf8(c.first), c.second) << "input " << testing::PrintToString(c.first);
    }
    // High without low, low without high, two highs, and a low then a high (wrong order).
    const std::u16string broken = {0xD800, u'a', 0xDC00, 0xD800, 0xD801, 0xDC01, 0xDC02, 0xD803};
    EXPECT_EQ(ULOString::FromUtf16(broken),
              L"\xFFFD"
              L"a\xFFFD\xFFFD" +
                  ULOString::FromUtf8("\xF0\x90\x90\x81") +
                  L"\xFFFD\xFFFD");  // U+10401 whole, one or two wchar_t
    // A wide string may hold values that are no characters; they are never written as such.
#if WCHAR_MAX > 0xFFFF
    const std::vector<uint32_t> wide = {0xD800, 0x110000, 0xFFFFFFFF, L'k'};
#else  // UTF-16 units: lone surrogates are the only units that are no characters
    const std::vector<uint32_t> wide = {0xDFFF, 0xDC00, 0xD800, L'k'};
#endif
    ULOString invalid;
    for (uint32_t u : wide) {
        invalid += static_cast<wchar_t>(u);
    }
    EXPECT_EQ(invalid.ToUtf16(), (std::u16string{r, r, r, u'k'}));
    EXPECT_EQ(invalid.ToUtf8(), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDk");
}

}  // namespace
