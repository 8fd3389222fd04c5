// ULOFont on a scripted engine: the choice of face, construction, the platform fonts and their variants,
// the width caches, selection, and fonts from the font resource file; that file's records and their
// lookup by ID over file images, well-formed and not, and opening the file (path checks, the three
// platform steps and their errors). Then the glyph functions on the project's Latin faces: outlines,
// widths with kerning, the face list, and the input they must survive.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cwchar>
#include <limits>
#include <set>
#include <vector>

#include "FakeFontEngine.h"
#include "FontFiles.h"
#include "TestFonts.h"
#include "font/GlyphFonts.h"
#include "font/MappedFontResourceFile.h"
#include "resfile/FontResourceWriter.h"
#include "ulogui/Font.h"
#include "ulogui/Glyph.h"
#include "ulolib/ErrorOrigin.h"
#include "ulolib/Exception.h"

using namespace ulogui::platform;
using testfonts::Face;
using testfonts::WriteFile;
using ulogui::resfile::BuildFontResourceFile;
using ulogui::resfile::FontRecord;
using ulogui::resfile::ParseFontRecord;
using ulogui::resfile::ReadFontRecord;

// Outlines compare whole (ULOArray_NOSTL compares its items); found by argument-dependent lookup.
static bool operator==(const ULOGlyphVertex& u, const ULOGlyphVertex& v) {
    return u.x == v.x && u.y == v.y && u.onCurve == v.onCurve;
}

namespace {

class FontObject : public ::testing::Test {
protected:
    // The fake engine's advance of c for a font of that height.
    static float Advance(uint32_t c, int height) { return static_cast<float>(c % 7 + std::abs(height)); }

    std::shared_ptr<testfonts::FakeFontEngine> engine_ =
        std::make_shared<testfonts::FakeFontEngine>(std::vector<FaceInfo>{
            Face(L"Arial", 0, 0x22), Face(L"Tahoma", 0, 0x22), Face(L"Courier New", 0, 0x31),
            Face(L"MS Gothic", 128, 0x31), Face(L"MS PGothic", 128, 0x22), Face(L"Verdana", 0, 0x22),
            Face(L"Tahoma", 0, 0x22),  // a face may be reported more than once
            Face(L"SimSun", 134, 0x22)});
    testfonts::ScopedEngine scoped_{engine_};
};

ULOFont NamedFont(std::vector<ULOString> faces, int height, int language, float m = 1.0f, bool italic = false,
                  bool underline = false) {
    return ULOFont(faces, height, language, m, italic, underline, false);
}

// What a font was made with, in one line: its debug text and the fields that text leaves out.
std::wstring Facts(const ULOFont& f) {
    std::wstring faces;
    for (const ULOString& face : f.GetFaceNames()) {
        faces += face + L",";
    }
    return f.GetDebugInfo() + L"family " + std::to_wstring(f.GetFamily()) + L" pitch " +
           std::to_wstring(f.GetPitch()) + (f.IsItalic() ? L" italic [" : L" [") + faces + L"] '" +
           f.GetName() + L"' first '" + f.GetFirstWantedFont() + L"'";
}

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

const std::pair<const wchar_t*, std::string> kFaces[] = {
    {L"DejaVu Sans", testfonts::DejaVu("DejaVuSans.ttf")},
    {L"Liberation Sans", testfonts::Liberation("LiberationSans-Regular.ttf")},
};

}  // namespace

TEST_F(FontObject, WantedFacesFirstThenTheSamePitchFamilyAndCharSetAndTheRequestCarriesEveryArgument) {
    struct Case {
        std::vector<ULOString> wanted;
        unsigned long charSet, pitchAndFamily;
        bool found;
        const wchar_t* chosen;
        int enumerations;
    };
    const Case cases[] = {
        // First pass: the wanted faces that exist, ordered by the wanted list, whatever their pitch.
        {{L"Tahoma", L"Arial"}, 0, 0x22, true, L"Tahoma", 1},
        {{L"Missing", L"Verdana", L"Arial"}, 0, 0x22, true, L"Verdana", 1},  // enumerated Arial first
        {{L"Missing", L"Tahoma"}, 0, 0x22, true, L"Tahoma", 1},              // reported twice
        {{L"Missing", L"Courier New"}, 0, 0x22, true, L"Courier New", 1},
        // Second pass: the first face of the same pitch and family and character set, in enumeration
        // order (no reordering by the wanted list); only the low bytes of both arguments count.
        {{L"Missing"}, 0, 0x31, true, L"Courier New", 2},
        {{L"Missing"}, 128, 0x22, true, L"MS PGothic", 2},
        {{L"Missing", L"Other"}, 0, 0x22, true, L"Arial", 2},
        {{L"Missing"}, 0x100 | 128, 0x100 | 0x31, true, L"MS Gothic", 2},
        {{}, 0, 0x31, true, L"Courier New", 2},
        // Nothing found: the first wanted name is left to the platform.
        {{L"Missing", L"Other"}, 0, 0x77, false, L"Missing", 2},
        {{L"MS Gothic"}, 0, 0x52, false, L"MS Gothic", 2},          // not in this character set
        {{L"arial", L"COURIER NEW"}, 0, 0x77, false, L"arial", 2},  // names compare exactly
        {{}, 0, 0x77, false, L"", 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "case " << &c - cases);
        engine_->enumerations = 0;
        std::vector<ULOString> wanted = c.wanted;
        bool found = !c.found;
        ULOString chosen = L"stale";
        HFONT font = ULOFont::CreateWindowsFont(nullptr, 16, 0, 0, 0, 400, 0, 0, 0, c.charSet, 4, 0, 0,
                                                c.pitchAndFamily, wanted, found, chosen);
        EXPECT_EQ(c.found, found);
        EXPECT_EQ(c.chosen, chosen);
        EXPECT_EQ(c.enumerations, engine_->enumerations);
        EXPECT_EQ(c.chosen, engine_->requests.back().faceName);
        EXPECT_EQ(c.wanted, wanted);  // the caller's list is left as it was
        DeleteFontHandle(font);
    }
    std::vector<ULOString> wanted = {L"MS Gothic"};
    bool found = false;
    ULOString chosen;
    HFONT font = ULOFont::CreateWindowsFont(nullptr, -13, 5, 6, 7, 700, 2, 0, 1, 0x180, 4, 2, 3, 0x31, wanted,
                                            found, chosen);
    const FontRequest& r = engine_->requests.back();
    EXPECT_EQ(std::make_tuple(-13, 5, 6, 7, 700, true, false, true),
              std::make_tuple(r.height, r.width, r.escapement, r.orientation, r.weight, r.italic, r.underline,
                              r.strikeOut));
    EXPECT_EQ(std::make_tuple(128, 4, 2, 3, 0x31),
              std::make_tuple(+r.charSet, +r.outPrecision, +r.clipPrecision, +r.quality, +r.pitchAndFamily));
    EXPECT_EQ(L"MS Gothic", ResolveFont(font)->GetFaceName());
    DeleteFontHandle(font);
}

// Fonts cache U+0000..U+00FF (control characters 0); double-byte languages also the ideographs
// U+3000..U+9FFF and the compatibility forms U+F900..U+FFEF. Every other character measures as "?".
TEST_F(FontObject, WidthCachesHoldTheEngineAdvancesNamedFontsKeepTheirHeightAndLanguagesChooseTheCharSet) {
    ULOFont latin = NamedFont({L"Tahoma"}, 12, 0, 2.0f), gothic = NamedFont({L"MS Gothic"}, 14, 3);
    ASSERT_TRUE(gothic.HasUnicodeExtraWidths());
    for (uint32_t c = 0; c <= 0x10000 && static_cast<long>(c) <= static_cast<long>(WCHAR_MAX); ++c) {
        const bool extra = (c >= 0x3000 && c < 0xA000) || (c >= 0xF900 && c < 0xFFF0);
        const float l = c < 32 ? 0.0f : Advance(c < 256 ? c : '?', 12);
        ASSERT_EQ(l, latin.GetCharWidthW(static_cast<wchar_t>(c), true)) << c;
        ASSERT_EQ(l / 2.0f, latin.GetCharWidthW(static_cast<wchar_t>(c), false)) << c;
        ASSERT_EQ(c < 32 ? 0.0f : Advance(c < 256 || extra ? c : '?', 14),
                  gothic.GetCharWidthW(static_cast<wchar_t>(c), true))
            << c;
    }
    EXPECT_EQ(Advance('?', 12), latin.GetCharWidthW(static_cast<wchar_t>(-1), true));
    // A copy shares the tables; they outlive the font they were made for.
    auto original = std::make_unique<ULOFont>(NamedFont({L"MS Gothic"}, 14, 7));
    ULOFont copy(*original);
    original.reset();
    EXPECT_EQ(Advance(0x4E00, 14), copy.GetCharWidthW(0x4E00, true));
    engine_->requests.clear();
    ULOFont named({L"Missing", L"Tahoma"}, 16, 0, 2.0f, false, false, true);
    EXPECT_EQ(ULOFont::kNoFontID, named.GetFontID());
    EXPECT_EQ(
        L"FONT 'Tahoma' h=16, hext=16, w=400, m=2.000000, 1, 0\n"  // not magnified
        L"family 32 pitch 2 [Missing,Tahoma,] 'Missing' first 'Missing'",
        Facts(named));
    const FontRequest& regular = engine_->requests.front();
    EXPECT_EQ(
        std::make_tuple(16, 0x22, 4, true),  // TrueType output precision
        std::make_tuple(regular.height, +regular.pitchAndFamily, +regular.outPrecision, regular.strikeOut));
    EXPECT_FALSE(ULOFont::UsesUnicodeExtras());
    const std::pair<int, uint8_t> cases[] = {{0, 0}, {1, 0},   {2, 0}, {3, 128},
                                             {4, 0}, {7, 134}, {8, 0}, {-1, 0}};
    for (const auto& [language, charSet] : cases) {
        engine_->requests.clear();
        ULOFont font = NamedFont({L"Tahoma"}, 12, language);
        for (const FontRequest& r : engine_->requests) {
            EXPECT_EQ(charSet, r.charSet) << "language " << language;
        }
        EXPECT_EQ(language == 3 || language == 7, ULOFont::NeedsUnicodeExtras(language));
        EXPECT_EQ(language == 3 || language == 7, font.HasUnicodeExtraWidths());
    }
    // A double-byte font reports a missing face only when no face of its character set exists.
    EXPECT_TRUE(NamedFont({L"Missing"}, 12, 3).IsNonANSIFontOK());  // MS PGothic: same pitch and family
    testfonts::ScopedEngine latinOnly(
        std::make_shared<testfonts::FakeFontEngine>(std::vector<FaceInfo>{Face(L"Tahoma", 0, 0x22)}));
    EXPECT_FALSE(NamedFont({L"SimSun"}, 12, 7).IsNonANSIFontOK());
    EXPECT_TRUE(NamedFont({L"MS Gothic"}, 12, 0).IsNonANSIFontOK());
    EXPECT_EQ(L"FONT 'MS Gothic' h=12, hext=12, w=400, m=1.000000, 0, 0\n",
              NamedFont({L"MS Gothic"}, 12, 3).GetDebugInfo());
}

// Variants in the order regular, italic and underlined, italic, underlined; a style the font has
// already is the regular font itself.
TEST_F(FontObject, VariantsAreMadeInOrderSharedByCopiesAndSelectedWithFallbacksThenRestored) {
    using Styles = std::vector<std::pair<bool, bool>>;  // italic, underlined
    const std::tuple<bool, bool, Styles, size_t> cases[] = {
        {false, false, {{false, false}, {true, true}, {true, false}, {false, true}}, 4},
        {true, false, {{true, false}, {true, true}, {true, true}}, 3},
        {true, true, {{true, true}}, 1},
    };
    HFONT handle = nullptr;
    for (const auto& [italic, underline, requested, handles] : cases) {
        engine_->requests.clear();
        const ULOFont font = NamedFont({L"Tahoma"}, 12, 0, 1.0f, italic, underline);
        Styles made;
        for (const FontRequest& r : engine_->requests) {
            made.emplace_back(r.italic, r.underline);
        }
        EXPECT_EQ(requested, made);
        handle = font.GetRegularFont();
        EXPECT_EQ(handles, (std::set<HFONT>{handle, font.GetItalicFont(), font.GetUnderlineFont(),
                                            font.GetItalicUnderlineFont()}
                                .size()));
        EXPECT_EQ(italic, handle == font.GetItalicFont());
    }
    EXPECT_EQ(nullptr, ResolveFont(handle));  // deleted (once; the other three deletions are no-ops)
    ULOFont original = NamedFont({L"Tahoma"}, 12, 0);
    {
        ULOFont copy(original);
        EXPECT_EQ(original.GetRegularFont(), copy.GetRegularFont());
        ULOFont assigned = NamedFont({L"Courier New"}, 10, 0);
        DeleteFontHandle(assigned.GetRegularFont());  // as if the platform had lost it
        assigned = original;
        EXPECT_EQ(original.GetItalicFont(), assigned.GetItalicFont());
    }
    EXPECT_TRUE(original.IsValid());                                  // the handle value is kept ...
    EXPECT_EQ(nullptr, ResolveFont(original.GetRegularFont()));       // ... but refers to nothing now
    EXPECT_EQ(Advance('A', 12), original.GetCharWidthW(L'A', true));  // the caches stay usable
    const HDC dc = reinterpret_cast<HDC>(0x1000);
    const std::function<bool(const FontRequest&)> refusals[] = {
        [](const FontRequest&) { return false; },
        [](const FontRequest& r) { return r.italic && r.underline; },
        [](const FontRequest& r) { return r.italic; },
        [](const FontRequest& r) { return r.underline; },
        [](const FontRequest& r) { return r.italic || r.underline; },
    };
    for (const auto& refuse : refusals) {
        SCOPED_TRACE(testing::Message() << "refusal " << &refuse - refusals);
        engine_->refuse = refuse;
        ULOFont font = NamedFont({L"Tahoma"}, 12, 0);
        auto pick = [&](bool italic, bool underline) {
            font.SelectWindowsFont(dc, italic, underline);
            HFONT selected = GetSelectedFont(dc);
            font.RestoreOldWindowsFont(dc);
            EXPECT_EQ(nullptr, GetSelectedFont(dc));  // restored to nothing selected
            return selected;
        };
        const HFONT r = font.GetRegularFont(), i = font.GetItalicFont(), u = font.GetUnderlineFont();
        const HFONT iu = font.GetItalicUnderlineFont();
        EXPECT_EQ(r, pick(false, false));
        EXPECT_EQ(i ? i : r, pick(true, false));
        EXPECT_EQ(u ? u : r, pick(false, true));
        EXPECT_EQ(iu ? iu : i ? i : u ? u : r, pick(true, true));
    }
    engine_->refuse = [](const FontRequest&) { return false; };
    ULOFont first = NamedFont({L"Tahoma"}, 12, 0);
    ULOFont second = NamedFont({L"Courier New"}, 12, 0);
    first.SelectWindowsFont(dc, false, false);
    second.SelectWindowsFont(dc, true, false);
    EXPECT_EQ(first.GetRegularFont(), second.GetPreviousFont());
    EXPECT_EQ(second.GetItalicFont(), GetSelectedFont(dc));
    second.RestoreOldWindowsFont(dc);
    EXPECT_EQ(first.GetRegularFont(), GetSelectedFont(dc));
    first.RestoreOldWindowsFont(dc);
    EXPECT_EQ(nullptr, GetSelectedFont(dc));
}

// Fonts by ID, from a font resource file written for the test: font 0, no font 1, fonts 2 and 3
// (which differ only in ignoring the extra height).
class FontFromFile : public FontObject {
protected:
    FontFromFile() {
        FontRecord zero{L"Tahoma", 11, 400, false, false, false, 0x20, 2, {}, L"", true, 0};
        FontRecord two{L"Missing", 13,    700, true, false, false, 0x30, 1, {L"Other", L"Courier New"},
                       L"Fixed",   false, 20};
        FontRecord three = two;
        three.ignoreHeightExt = true;
        const std::string path =
            WriteFile(dir_, "fonts.urf", BuildFontResourceFile({zero, std::nullopt, two, three}));
        EXPECT_TRUE(ULOFont::SetFontResourceFile(ULOPath::FromNative(path)).IsOk());
    }
    ~FontFromFile() override { ULOFont::SetFontResourceFile(ULOPath()); }

    TempDir dir_;
};

TEST_F(FontFromFile, TakesItsRecordMagnifiesTheHeightUnlessDoubleByteTakesTheExtraOrIsEmptyWithoutAFile) {
    ULOFont font(2, 0, 1.5f);
    EXPECT_EQ(
        L"FONT 'Courier New' h=19, hext=20, w=700, m=1.500000, 1, 0\n"  // 13 x 1.5, truncated
        L"family 48 pitch 1 italic [Missing,Other,Courier New,] 'Fixed' first 'Missing'",
        Facts(font));
    EXPECT_EQ(std::make_tuple(0x31, 19),
              std::make_tuple(+engine_->requests.front().pitchAndFamily, engine_->requests.front().height));
    const ULOFont zero(4, 0, 1.0f);  // ids without a record (see FontRecordLookup) get font 0
    EXPECT_EQ(4u, zero.GetFontID());
    EXPECT_EQ(
        L"FONT 'Tahoma' h=11, hext=0, w=400, m=1.000000, 1, 1\nfamily 32 pitch 2 [Tahoma,] '' first 'Tahoma'",
        Facts(zero));
    engine_->requests.clear();
    ULOFont special(2, 3, 2.0f);
    EXPECT_EQ(20, special.GetFontHeight());
    EXPECT_EQ(20, engine_->requests.front().height);
    EXPECT_TRUE(special.HasUnicodeExtraWidths());
    EXPECT_EQ(Advance(0x3042, 20), special.GetCharWidthW(0x3042, true));

    ULOFont ignoring(3, 3, 2.0f);
    EXPECT_FALSE(ignoring.HasUnicodeExtraWidths());    // not special: no extra tables ...
    EXPECT_EQ(128, engine_->requests.back().charSet);  // ... but the character set follows the language
    EXPECT_EQ(Advance('?', 26), ignoring.GetCharWidthW(0x3042, true));
    EXPECT_EQ(L"FONT 'MS Gothic' h=26, hext=20, w=700, m=2.000000, 1, 1\n", ignoring.GetDebugInfo());
    EXPECT_EQ(26, ULOFont(2, 0, 2.0f).GetFontHeight());
    EXPECT_EQ(std::numeric_limits<int>::max(), ULOFont(2, 0, 1e30f).GetFontHeight());
    EXPECT_EQ(std::numeric_limits<int>::min(), ULOFont(2, 0, -1e30f).GetFontHeight());
    EXPECT_EQ(0, ULOFont(2, 0, std::nanf("")).GetFontHeight());
    const ULOFont unmagnified(2, 0, 0.0f);
    EXPECT_EQ(0, unmagnified.GetFontHeight());
    EXPECT_EQ(unmagnified.GetCharWidthW(L'A', true),
              unmagnified.GetCharWidthW(L'A', false));  // no division by zero
    ULOFont::SetFontResourceFile(ULOPath());
    engine_->requests.clear();
    ULOFont empty(2, 3, 2.0f);
    EXPECT_FALSE(empty.IsValid());
    EXPECT_EQ(2u, empty.GetFontID());
    EXPECT_EQ(L"FONT '' h=0, hext=0, w=0, m=2.000000, 1, 1\nfamily 0 pitch 0 [] '' first ''", Facts(empty));
    EXPECT_TRUE(engine_->requests.empty());
    for (wchar_t c : {L'A', L'?', wchar_t(0x3042)}) {
        EXPECT_EQ(0.0f, empty.GetCharWidthW(c, false));
    }
}

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
        EXPECT_EQ("URF_INIPTH", ErrorOrigin(error));
        EXPECT_EQ(ulo::exception::kResultUnexpected, error.GetResultCode());
        EXPECT_EQ("class ulo::ErrorCode __cdecl FontResourceFile::Init(const class ULOPath &)",
                  error.GetFunction());
        EXPECT_EQ("ulogui/font", error.GetFile());
        EXPECT_FALSE(file.IsOpen());
    }
    // The process's own file, through the font (opened by the tests of fonts from the file).
    EXPECT_EQ("URF_INIPTH", ErrorOrigin(ULOFont::SetFontResourceFile(dir.Path())));
    EXPECT_FALSE(FontResourceFile::Instance().IsOpen());
    const std::vector<uint8_t> first = BuildFontResourceFile({Record(L"DejaVu Sans")});
    ASSERT_TRUE(file.Init(ULOPath::FromNative(WriteFile(dir, "a.urf", first))).IsOk());
    ASSERT_TRUE(file.IsOpen());
    EXPECT_EQ(first, std::vector<uint8_t>(file.GetView(), file.GetView() + file.GetViewSize()));
    FontRecord r;
    EXPECT_TRUE(file.ReadRecord(7, r));  // beyond the table: font 0
    EXPECT_EQ(L"DejaVu Sans", r.primaryFace);

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
        EXPECT_EQ(c.call, ErrorOrigin(error));
        EXPECT_EQ(
            "class ulo::ErrorCode __cdecl details::MappedFontResourceFile::DoInit(const class ULOPath &)",
            error.GetFunction());
        EXPECT_EQ("ulogui/font", error.GetFile());
        EXPECT_GT(error.GetLine(), 0);
        EXPECT_FALSE(file.IsOpen());
        file.DoClose();
    }
}

TEST(GlyphFunctions, OutlinesWidthsWithKerningAndTheFaceListOnTheLatinFacesAndBadInputIsSurvived) {
    REQUIRE_LATIN_FONTS();
    testfonts::ScopedEngine scoped(testfonts::LatinEngine());
    for (const auto& [face, file] : kFaces) {
        ULOGlyphOutline outline;
        outline.Add(ULOArray_NOSTL<ULOGlyphVertex>(3));  // emptied first
        ASSERT_EQ(1, ULOGetGlyphOutline(&outline, L'O', face, 20, 1, 0, 0));
        ASSERT_EQ(2, outline.GetCount());
        ulogui::platform::GlyphMetrics box;
        ASSERT_TRUE(ulogui::font::GlyphFont(face, 20, 1, 0, 0)->GetGlyphMetrics(L'O', box));
        EXPECT_GE(box.blackBoxY, 14u);  // a capital of a 20-pixel font
        for (const auto& contour : outline) {
            ASSERT_GE(contour.GetCount(), 4);
            EXPECT_TRUE(contour.begin()->onCurve && (contour.end() - 1)->onCurve);
            for (const ULOGlyphVertex& v : contour) {
                EXPECT_TRUE(v.x >= box.originX && v.x <= box.originX + static_cast<double>(box.blackBoxX) &&
                            v.y <= box.originY && v.y >= box.originY - static_cast<double>(box.blackBoxY))
                    << v.x << "," << v.y;
            }
        }
        EXPECT_EQ(0, ULOGetGlyphOutline(&outline, L' ', face, 20, 1, 0, 0));
        EXPECT_TRUE(outline.IsEmpty());
    }
    // Characters without a glyph, surrogate halves and negative values are the missing glyph.
    ULOGlyphOutline missing, other;
    ASSERT_EQ(1, ULOGetGlyphOutline(&missing, 0xE000, L"DejaVu Sans", 20, 1, 0, 0));
    const int missingWidth = testfonts::ClassicAdvances(kFaces[0].second, 20, 0xE000, 0xE000)[0];
    std::vector<wchar_t> bad = {0xD800, 0xDFFF};
#if WCHAR_MAX > 0xFFFF  // 32-bit wchar_t: negative values and values beyond Unicode
    bad.insert(bad.end(), {static_cast<wchar_t>(-5), static_cast<wchar_t>(0x7FFFFFFF)});
#endif
    for (wchar_t ch : bad) {
        EXPECT_EQ(1, ULOGetGlyphOutline(&other, ch, L"DejaVu Sans", 20, 1, 0, 0));
        EXPECT_TRUE(missing == other) << ch;
        EXPECT_EQ(missingWidth, ULOGetGlyphWidth(ch, L'V', L"DejaVu Sans", 20, 1, 0, 0)) << ch;
    }
    // Heights of every sign and size, empty and unknown faces, weight indices out of range.
    const std::tuple<const wchar_t*, int, int> calls[] = {{L"DejaVu Sans", 0, 1},
                                                          {L"DejaVu Sans", -20, 1},
                                                          {L"DejaVu Sans", INT_MAX, 1},
                                                          {L"DejaVu Sans", INT_MIN, 4},
                                                          {L"", 20, -1},
                                                          {L"No Such Face", 20, 99}};
    for (const auto& [face, height, weightIndex] : calls) {
        EXPECT_EQ(1, ULOGetGlyphOutline(&other, L'O', face, height, weightIndex, 1, 1)) << height;
        EXPECT_EQ(2, other.GetCount()) << height;
        EXPECT_GT(ULOGetGlyphWidth(L'O', L'O', face, height, weightIndex, 1, 1), 0) << height;
    }
    EXPECT_EQ(0, ULOGetGlyphOutline(nullptr, L'O', L"DejaVu Sans", 20, 1, 0, 0));
    for (const auto& [face, file] : kFaces) {
        // The pairs of the face's 'kern' table, as the engine lists them.
        const auto pairs = ulogui::font::GlyphFont(face, 20, 1, 0, 0)->GetKerningPairs();
        const auto av = std::find_if(pairs.begin(), pairs.end(),
                                     [](const auto& p) { return p.first == 'A' && p.second == 'V'; });
        ASSERT_TRUE(av != pairs.end() && std::none_of(pairs.begin(), pairs.end(), [](const auto& p) {
                        return p.first == 'A' && p.second == 'B';
                    }));
        const int advance = testfonts::ClassicAdvances(file, 20, 'A', 'A')[0];
        EXPECT_EQ(advance, ULOGetGlyphWidth(L'A', L'B', face, 20, 1, 0, 0));
        EXPECT_EQ(advance + av->amount, ULOGetGlyphWidth(L'A', L'V', face, 20, 1, 0, 0));
    }
    // Liberation Mono has no bold file here: the synthesised bold is a pixel wider (Wine's GDI keeps
    // a fixed-pitch face's advance: docs/windows.md).
#if defined(_WIN32)
    const int bolder = 0;
#else
    const int bolder = 1;
#endif
    EXPECT_EQ(ULOGetGlyphWidth(L'm', L'm', L"Liberation Mono", 15, 1, 0, 0) + bolder,
              ULOGetGlyphWidth(L'm', L'm', L"Liberation Mono", 15, 3, 0, 0));
    std::vector<ULOString> names = {L"Liberation Sans"};  // kept, not repeated
    ULOGetFontList(&names);
    ULOGetFontList(nullptr);
    EXPECT_EQ(L"Liberation Sans", names.front());
    EXPECT_EQ(6u, names.size());  // DejaVu Sans, Sans Mono, Serif; Liberation Sans, Serif, Mono
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names.end(), std::adjacent_find(names.begin(), names.end()));
}

TEST(GlyphVertex, TakesFixedPointPairsAndTheWeightTableHasFourEntries) {
    ULOGlyphVertex v(1.0, 2.0, true);
    v = tagPOINTFX{{0x8000, -2}, {0x4000, 3}};
    EXPECT_EQ(std::make_tuple(-1.5, 3.25, true), std::make_tuple(v.x, v.y, v.onCurve));
    std::vector<int> weights;
    for (int index = -1; index <= 5; ++index) {
        weights.push_back(ULOGlyphWeight(index));
    }
    EXPECT_EQ((std::vector<int>{200, 200, 400, 700, 900, 200, 200}), weights);
}
