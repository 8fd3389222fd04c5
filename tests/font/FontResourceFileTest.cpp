// The font resource file: records and their lookup by ID over file images, well-formed and not, and
// opening the file (path checks, the three platform steps and their errors).
#include <gtest/gtest.h>

#include "FontFiles.h"
#include "font/MappedFontResourceFile.h"
#include "resfile/FontResourceWriter.h"
#include "ulogui/Font.h"
#include "ulolib/Exception.h"

using testfonts::PutU32;
using testfonts::WriteFile;
using ulogui::resfile::BuildFontResourceFile;
using ulogui::resfile::FontRecord;
using ulogui::resfile::ParseFontRecord;
using ulogui::resfile::ReadFontRecord;

namespace {

FontRecord Record(const wchar_t* face) {
    return FontRecord{
        face,       12,    700, true, false, true, 0x10, 2, {L"Liberation Sans", L"DejaVu Sans"},
        L"Caption", false, 20};
}

// The primary face of the record found for id, or "none".
std::wstring Lookup(const std::vector<uint8_t>& file, uint32_t id) {
    FontRecord r;
    return ReadFontRecord(file.data(), file.size(), id, r) ? r.primaryFace : L"none";
}

// Opens the platform steps to the test, which the path checks of Init otherwise stand before.
class OpenMappedFile : public details::MappedFontResourceFile {
public:
    using details::MappedFontResourceFile::DoClose;
    using details::MappedFontResourceFile::DoInit;
    ~OpenMappedFile() override { DoClose(); }
};

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

TEST(FontRecordParse, EveryFieldAtItsPositionTruncationsFailAndMissingIdsOrBadOffsetsGiveFontZeroIfAny) {
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
    EXPECT_EQ(L"Ab -12 400 i-s 32 2 [\x3042] '' 1 28", testfonts::Describe(r));
    std::vector<uint8_t> normalised = bytes;  // the writer stores flags as 0 or 1
    normalised[18] = 1;
    normalised[35] = 1;
    EXPECT_EQ(normalised, ulogui::resfile::EncodeFontRecord(r));
    // A negative alternative count means none.
    const std::vector<uint8_t> encoded = ulogui::resfile::EncodeFontRecord(Record(L"DejaVu Sans"));
    for (size_t cut = 0; cut < encoded.size(); ++cut) {
        std::vector<uint8_t> prefix(encoded.begin(), encoded.begin() + static_cast<std::ptrdiff_t>(cut));
        EXPECT_FALSE(ParseFontRecord(prefix.data(), prefix.size(), r)) << "cut at " << cut;
    }
    FontRecord bare = Record(L"DejaVu Sans");
    bare.alternativeFaces.clear();
    bare.name.clear();
    const size_t kCount = 4 + 2 * 11 + 13;  // where the alternative count lies
    const std::tuple<size_t, uint32_t, bool> patches[] = {
        {0, 0xFFFFFFFFu, false},       // 2n overflows 32 bits
        {kCount, 0x7FFFFFFFu, false},  // far beyond the data
        {kCount, 0x80000000u, true},   // negative: none
    };
    for (const auto& [at, value, parses] : patches) {
        std::vector<uint8_t> patched = ulogui::resfile::EncodeFontRecord(bare);
        PutU32(patched, at, value);
        EXPECT_EQ(parses, ParseFontRecord(patched.data(), patched.size(), r)) << at << " " << value;
    }
    EXPECT_EQ(L"DejaVu Sans 12 700 i-s 16 2 [] '' 0 20", testfonts::Describe(r));
    EXPECT_FALSE(ParseFontRecord(nullptr, 0, r));
    std::vector<uint8_t> file =
        BuildFontResourceFile({Record(L"Zero"), std::nullopt, Record(L"Two"), Record(L"3"), Record(L"4")});
    ASSERT_EQ(5u, ulogui::resfile::FontTableSizeFromHeader(file.data(), file.size()).value_or(0));
    EXPECT_EQ(std::vector<uint8_t>(4, 0xFF), std::vector<uint8_t>(file.begin() + 260, file.begin() + 264));
    PutU32(file, 256 + 12, static_cast<uint32_t>(file.size()));      // just past the end
    PutU32(file, 256 + 16, static_cast<uint32_t>(file.size() - 3));  // record cut by the end of the file
    // Entry 1 is 0xFFFFFFFF; the others lie past the file, the last one's offset overflows 32 bits.
    for (uint32_t id : {0u, 1u, 3u, 4u, 5u, 1000u, 0x3FFFFFC0u, 0x40000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(L"Zero", Lookup(file, id)) << id;
    }
    EXPECT_EQ(L"Two", Lookup(file, 2));
    std::vector<uint8_t> lying = file;
    lying[16] = 200;  // more table entries than the file can hold
    EXPECT_FALSE(ulogui::resfile::FontTableSizeFromHeader(lying.data(), lying.size()).has_value());
    EXPECT_FALSE(ulogui::resfile::FontTableSizeFromHeader(file.data(), 100).has_value());

    file = BuildFontResourceFile({std::nullopt, Record(L"One")});
    EXPECT_EQ(L"One", Lookup(file, 1));
    EXPECT_EQ(L"none", Lookup(file, 0));
    EXPECT_EQ(L"none", Lookup(file, 2));
    PutU32(file, 256, 0x7FFFFFFF);
    EXPECT_EQ(L"none", Lookup(file, 5));
    for (size_t size : {0u, 1u, 255u, 256u, 259u}) {  // too short for the header or the table
        EXPECT_EQ(L"none", Lookup(std::vector<uint8_t>(file.begin(), file.begin() + size), 0)) << size;
    }
    EXPECT_FALSE(ReadFontRecord(nullptr, 0, 0, r));
}

TEST(FontResourceFileInit, BadPathsGiveTheInternalErrorFilesMapWholeAndEachPlatformStepReportsItsError) {
    TempDir dir;
    OpenMappedFile file;
    for (const ULOPath& path :
         {ULOPath(), dir.Path(), ULOPath::FromNative(dir.Path().native() + "/none.urf")}) {
        const ulo::ErrorCode error = file.Init(path);
        ASSERT_TRUE(error.IsError());
        EXPECT_EQ("URF_INIPTH", Origin(error));
        EXPECT_EQ(ulo::exception::kResultUnexpected, error.GetResultCode());
        EXPECT_EQ("class ulo::ErrorCode __cdecl FontResourceFile::Init(const class ULOPath &)",
                  error.GetFunction());
        EXPECT_EQ("ulogui/font", error.GetFile());
        EXPECT_FALSE(file.IsOpen());
    }
    // The process's own file, through the font (opened by the tests of fonts from the file).
    EXPECT_EQ("URF_INIPTH", Origin(ULOFont::SetFontResourceFile(dir.Path())));
    EXPECT_FALSE(FontResourceFile::Instance().IsOpen());
    const std::vector<uint8_t> first = BuildFontResourceFile({Record(L"DejaVu Sans")});
    ASSERT_TRUE(file.Init(ULOPath::FromNative(WriteFile(dir, "a.urf", first))).IsOk());
    ASSERT_TRUE(file.IsOpen());
    EXPECT_EQ(first, std::vector<uint8_t>(file.GetView(), file.GetView() + file.GetViewSize()));
    FontRecord r;
    EXPECT_TRUE(file.ReadRecord(7, r));  // beyond the table: font 0
    EXPECT_EQ(L"DejaVu Sans", r.primaryFace);

    ASSERT_TRUE(
        file.Init(ULOPath::FromNative(WriteFile(dir, "b.urf", std::vector<uint8_t>(300, 0xAB)))).IsOk());
    ASSERT_EQ(300u, file.GetViewSize());
    EXPECT_EQ(0xAB, file.GetView()[299]);
    EXPECT_FALSE(file.ReadRecord(0, r));  // offsets 0xABABABAB: no readable record

    // A failed re-initialisation leaves no stale view behind.
    EXPECT_TRUE(file.Init(ULOPath()).IsError());
    EXPECT_FALSE(file.IsOpen());
    EXPECT_FALSE(file.ReadRecord(0, r));
    const std::string folder = dir.Path().native();
    struct Case {
        std::string path;
        uint32_t code;
        const char* call;
    };
    const Case cases[] = {
        {folder + "/missing.urf", 0x80070002u, "CreateFile"},                  // ERROR_FILE_NOT_FOUND
        {WriteFile(dir, "plain", {1}) + "/x.urf", 0x80070003u, "CreateFile"},  // ERROR_PATH_NOT_FOUND
        {folder, 0x80070005u, "CreateFile"},                                   // a directory: access denied
        {WriteFile(dir, "empty.urf", {}), 0x800703EEu, "CreateFileMapping"},   // ERROR_FILE_INVALID
        {"/dev/null", 0x800703EEu, "CreateFileMapping"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        const ulo::ErrorCode error = file.DoInit(ULOPath::FromNative(c.path));
        ASSERT_TRUE(error.IsError());
        EXPECT_EQ(c.code, error.GetResultCode());
        EXPECT_EQ(c.call, Origin(error));
        EXPECT_EQ(
            "class ulo::ErrorCode __cdecl details::MappedFontResourceFile::DoInit(const class ULOPath &)",
            error.GetFunction());
        EXPECT_EQ("ulogui/font", error.GetFile());
        EXPECT_GT(error.GetLine(), 0);
        EXPECT_FALSE(file.IsOpen());
        file.DoClose();
    }
}
