// ULOFont on a scripted engine: the choice of face, construction, the platform fonts and their variants,
// the width caches, selection, and fonts from the font resource file.
#include <gtest/gtest.h>

#include <cwchar>

#include <cmath>
#include <limits>
#include <set>

#include "FakeFontEngine.h"
#include "FontFiles.h"
#include "TestFonts.h"
#include "resfile/FontResourceWriter.h"
#include "ulogui/Font.h"

using namespace ulogui::platform;
using testfonts::Face;

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
    EXPECT_TRUE(named.IsValid());
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
        ulogui::resfile::FontRecord zero{L"Tahoma", 11, 400, false, false, false, 0x20, 2, {}, L"", true, 0};
        ulogui::resfile::FontRecord two{
            L"Missing", 13,    700, true, false, false, 0x30, 1, {L"Other", L"Courier New"},
            L"Fixed",   false, 20};
        ulogui::resfile::FontRecord three = two;
        three.ignoreHeightExt = true;
        const std::string path = testfonts::WriteFile(
            dir_, "fonts.urf", ulogui::resfile::BuildFontResourceFile({zero, std::nullopt, two, three}));
        EXPECT_TRUE(ULOFont::SetFontResourceFile(ULOPath::FromNative(path)).IsOk());
    }
    ~FontFromFile() override { ULOFont::SetFontResourceFile(ULOPath()); }

    TempDir dir_;
};

TEST_F(FontFromFile, TakesItsRecordMagnifiesTheHeightUnlessDoubleByteTakesTheExtraOrIsEmptyWithoutAFile) {
    ULOFont font(2, 0, 1.5f);
    EXPECT_EQ(2u, font.GetFontID());
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
