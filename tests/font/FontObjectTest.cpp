// ULOFont on a scripted engine: construction, the platform fonts and their variants, the width
// caches, selection, and fonts from the font resource file.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "FakeFontEngine.h"
#include "TempDir.h"
#include "TestFonts.h"
#include "ulogui/Font.h"
#include "ulogui/font/FontRecord.h"
#include "ulogui/font/FontResourceWriter.h"

using namespace ulogui::platform;
using testfonts::Face;
using testfonts::FakeFontEngine;

namespace {

class FontObject : public ::testing::Test {
protected:
    FontObject()
        : engine_(std::make_shared<FakeFontEngine>(std::vector<FaceInfo>{
              Face(L"Tahoma", 0, 0x22),
              Face(L"Courier New", 0, 0x31),
              Face(L"MS Gothic", 128, 0x31),
              Face(L"MS PGothic", 128, 0x22),
              Face(L"SimSun", 134, 0x22),
          })),
          scoped_(engine_) {}

    // The fake engine's advance of c for a font of that height.
    static float Advance(uint32_t c, int height) { return static_cast<float>(c % 7 + std::abs(height)); }

    std::shared_ptr<FakeFontEngine> engine_;
    testfonts::ScopedEngine scoped_;
};

ULOFont NamedFont(std::vector<ULOString> faces, int height, int language, float m = 1.0f, bool italic = false,
                  bool underline = false) {
    return ULOFont(faces, height, language, m, italic, underline, false);
}

}  // namespace

TEST_F(FontObject, AFontFromFaceNamesKeepsItsHeightAndDefaults) {
    ULOFont font({L"Missing", L"Tahoma"}, 16, 0, 2.0f, false, false, true);
    EXPECT_TRUE(font.IsValid());
    EXPECT_EQ(ULOFont::kNoFontID, font.GetFontID());
    EXPECT_EQ(16, font.GetFontHeight());  // not magnified
    EXPECT_EQ(2.0f, font.GetMagnifier());
    EXPECT_EQ(400, font.GetWeight());
    EXPECT_EQ(0x20, font.GetFamily());
    EXPECT_EQ(2, font.GetPitch());
    EXPECT_EQ(L"Missing", font.GetName());
    EXPECT_EQ(L"Missing", font.GetFirstWantedFont());
    EXPECT_EQ(L"Tahoma", font.GetChosenFace());
    EXPECT_FALSE(font.IgnoresHeightExt());
    EXPECT_EQ(16, font.GetHeightExt());
    EXPECT_TRUE(font.IsNonANSIFontOK());
    const FontRequest& regular = engine_->requests.front();
    EXPECT_EQ(16, regular.height);
    EXPECT_EQ(0x22, regular.pitchAndFamily);
    EXPECT_EQ(4, regular.outPrecision);  // TrueType precision
    EXPECT_TRUE(regular.strikeOut);
    EXPECT_EQ(L"FONT 'Tahoma' h=16, hext=16, w=400, m=2.000000, 1, 0\n", font.GetDebugInfo());
}

TEST_F(FontObject, TheLanguageChoosesTheCharacterSet) {
    const std::pair<int, uint8_t> cases[] = {{0, 0}, {1, 0},   {2, 0}, {3, 128},
                                             {4, 0}, {7, 134}, {8, 0}, {-1, 0}};
    for (const auto& c : cases) {
        engine_->requests.clear();
        ULOFont font = NamedFont({L"Tahoma"}, 12, c.first);
        for (const FontRequest& r : engine_->requests) {
            EXPECT_EQ(c.second, r.charSet) << "language " << c.first;
        }
        EXPECT_EQ(c.first == 3 || c.first == 7, ULOFont::NeedsUnicodeExtras(c.first));
        EXPECT_EQ(c.first == 3 || c.first == 7, font.HasUnicodeExtraWidths());
    }
}

TEST_F(FontObject, WidthCachesHoldTheEngineAdvancesWithControlCharactersAtZero) {
    ULOFont font = NamedFont({L"Tahoma"}, 12, 0, 2.0f);
    for (uint32_t c = 0; c < 256; ++c) {
        const float expected = c < 32 ? 0.0f : Advance(c, 12);
        ASSERT_EQ(expected, font.GetCharWidthW(static_cast<wchar_t>(c), true)) << c;
        ASSERT_EQ(expected / 2.0f, font.GetCharWidthW(static_cast<wchar_t>(c), false)) << c;
    }
    EXPECT_EQ(0.0f, font.GetCharWidthW(L'\t', true));
    // Without the extra tables every other character measures as "?".
    const float question = Advance('?', 12);
    for (wchar_t c : {0x100, 0x3000, 0x4E00, 0xF900, 0xFFEF, 0x10000}) {
        EXPECT_EQ(question, font.GetCharWidthW(c, true)) << c;
    }
    EXPECT_EQ(question, font.GetCharWidthW(static_cast<wchar_t>(-1), true));
}

TEST_F(FontObject, DoubleByteLanguagesCacheTheIdeographicAndCompatibilityRanges) {
    ULOFont font = NamedFont({L"MS Gothic"}, 14, 3);
    ASSERT_TRUE(font.HasUnicodeExtraWidths());
    for (uint32_t c = 0x3000; c < 0xA000; c += 97) {
        ASSERT_EQ(Advance(c, 14), font.GetCharWidthW(static_cast<wchar_t>(c), true)) << c;
    }
    EXPECT_EQ(Advance(0x9FFF, 14), font.GetCharWidthW(0x9FFF, true));
    EXPECT_EQ(Advance(0xF900, 14), font.GetCharWidthW(0xF900, true));
    EXPECT_EQ(Advance(0xFFEF, 14), font.GetCharWidthW(0xFFEF, true));
    const float question = Advance('?', 14);
    for (wchar_t c : {0x100, 0x2FFF, 0xA000, 0xF8FF, 0xFFF0, 0xFFFF, 0x10000}) {
        EXPECT_EQ(question, font.GetCharWidthW(c, true)) << c;
    }
    // A copy shares the tables; they outlive the font they were made for.
    ULOFont* original = new ULOFont(NamedFont({L"MS Gothic"}, 14, 7));
    ULOFont copy(*original);
    delete original;
    EXPECT_EQ(Advance(0x4E00, 14), copy.GetCharWidthW(0x4E00, true));
}

TEST_F(FontObject, NonAnsiFontOkIsFalseOnlyWhenNoDoubleByteFaceExists) {
    EXPECT_TRUE(
        NamedFont({L"Missing"}, 12, 3).IsNonANSIFontOK());  // MS PGothic has the same pitch and family
    auto latinOnly = std::make_shared<FakeFontEngine>(std::vector<FaceInfo>{Face(L"Tahoma", 0, 0x22)});
    testfonts::ScopedEngine scoped(latinOnly);
    EXPECT_FALSE(NamedFont({L"MS Gothic"}, 12, 3).IsNonANSIFontOK());
    EXPECT_FALSE(NamedFont({L"SimSun"}, 12, 7).IsNonANSIFontOK());
    EXPECT_TRUE(NamedFont({L"MS Gothic"}, 12, 0).IsNonANSIFontOK());
    const ULOFont font = NamedFont({L"MS Gothic"}, 12, 3);
    EXPECT_EQ(L"FONT 'MS Gothic' h=12, hext=12, w=400, m=1.000000, 0, 0\n", font.GetDebugInfo());
}

TEST_F(FontObject, VariantsAreMadeInOrderOrShareTheRegularFont) {
    {
        ULOFont plain = NamedFont({L"Tahoma"}, 12, 0);
        ASSERT_EQ(4u, engine_->requests.size());
        EXPECT_FALSE(engine_->requests[0].italic || engine_->requests[0].underline);
        EXPECT_TRUE(engine_->requests[1].italic && engine_->requests[1].underline);
        EXPECT_TRUE(engine_->requests[2].italic && !engine_->requests[2].underline);
        EXPECT_TRUE(!engine_->requests[3].italic && engine_->requests[3].underline);
        const std::vector<HFONT> handles = {plain.GetRegularFont(), plain.GetItalicFont(),
                                            plain.GetUnderlineFont(), plain.GetItalicUnderlineFont()};
        for (size_t i = 0; i < handles.size(); ++i) {
            for (size_t j = i + 1; j < handles.size(); ++j) {
                EXPECT_NE(handles[i], handles[j]);
            }
        }
    }
    engine_->requests.clear();
    ULOFont italic = NamedFont({L"Tahoma"}, 12, 0, 1.0f, true, false);
    ASSERT_EQ(3u, engine_->requests.size());
    EXPECT_EQ(italic.GetRegularFont(), italic.GetItalicFont());
    EXPECT_TRUE(engine_->requests[2].italic && engine_->requests[2].underline);  // the underlined variant
}

TEST_F(FontObject, AFontThatIsItalicAndUnderlinedHasOneHandleFourTimes) {
    HFONT handle = nullptr;
    {
        ULOFont font = NamedFont({L"Tahoma"}, 12, 0, 1.0f, true, true);
        handle = font.GetRegularFont();
        EXPECT_EQ(1u, engine_->requests.size());
        EXPECT_EQ(handle, font.GetItalicFont());
        EXPECT_EQ(handle, font.GetUnderlineFont());
        EXPECT_EQ(handle, font.GetItalicUnderlineFont());
        EXPECT_NE(nullptr, ResolveFont(handle));
    }
    EXPECT_EQ(nullptr, ResolveFont(handle));  // deleted (once; the other three deletions are no-ops)
}

TEST_F(FontObject, CopiesShareTheHandlesAndTheFirstDestroyedDeletesThem) {
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
}

TEST_F(FontObject, SelectionFallsBackAlongTheVariantsThatExist) {
    const HDC dc = reinterpret_cast<HDC>(0x1000);
    struct Case {
        std::function<bool(const FontRequest&)> refuse;
        const char* what;
    };
    const Case cases[] = {
        {[](const FontRequest&) { return false; }, "all variants"},
        {[](const FontRequest& r) { return r.italic && r.underline; }, "no italic underlined"},
        {[](const FontRequest& r) { return r.italic; }, "no italic"},
        {[](const FontRequest& r) { return r.underline; }, "no underlined"},
        {[](const FontRequest& r) { return r.italic || r.underline; }, "regular only"},
    };
    for (const Case& c : cases) {
        engine_->refuse = c.refuse;
        ULOFont font = NamedFont({L"Tahoma"}, 12, 0);
        auto pick = [&](bool italic, bool underline) {
            font.SelectWindowsFont(dc, italic, underline);
            HFONT selected = GetSelectedFont(dc);
            font.RestoreOldWindowsFont(dc);
            EXPECT_EQ(nullptr, GetSelectedFont(dc)) << c.what;  // restored to nothing selected
            return selected;
        };
        const HFONT r = font.GetRegularFont();
        const HFONT i = font.GetItalicFont();
        const HFONT u = font.GetUnderlineFont();
        const HFONT iu = font.GetItalicUnderlineFont();
        EXPECT_EQ(r, pick(false, false)) << c.what;
        EXPECT_EQ(i ? i : r, pick(true, false)) << c.what;
        EXPECT_EQ(u ? u : r, pick(false, true)) << c.what;
        EXPECT_EQ(iu ? iu : i ? i : u ? u : r, pick(true, true)) << c.what;
    }
}

TEST_F(FontObject, RestoringSelectsWhatWasSelectedBefore) {
    const HDC dc = reinterpret_cast<HDC>(0x2000);
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

TEST_F(FontObject, StaticSwitches) {
    EXPECT_FALSE(ULOFont::UsesUnicodeExtras());
    ULOFont::SetUsesUnicodeExtras(true);
    EXPECT_TRUE(ULOFont::UsesUnicodeExtras());
    ULOFont::SetUsesUnicodeExtras(false);
    EXPECT_FALSE(ULOFont::UsesUnicodeExtras());
}

// Fonts by ID, from a font resource file written for the test.
class FontFromFile : public FontObject {
protected:
    FontFromFile() {
        details::FontRecord zero;
        zero.primaryFace = L"Tahoma";
        zero.height = 11;
        zero.weight = 400;
        zero.family = 0x20;
        zero.pitch = 2;
        zero.ignoreHeightExt = true;
        details::FontRecord two;
        two.primaryFace = L"Missing";
        two.height = 13;
        two.weight = 700;
        two.italic = true;
        two.family = 0x30;
        two.pitch = 1;
        two.alternativeFaces = {L"Other", L"Courier New"};
        two.name = L"Fixed";
        two.ignoreHeightExt = false;
        two.heightExt = 20;
        details::FontRecord three = two;
        three.ignoreHeightExt = true;
        const std::string path =
            dir_.Write("fonts.urf", details::BuildFontResourceFile({zero, std::nullopt, two, three}));
        EXPECT_TRUE(ULOFont::SetFontResourceFile(ULOPath::FromNative(path)).IsOk());
    }
    ~FontFromFile() override { ULOFont::SetFontResourceFile(ULOPath()); }

    testfonts::TempDir dir_;
};

TEST_F(FontFromFile, TakesEveryFieldOfTheRecordAndMagnifiesTheHeight) {
    ULOFont font(2, 0, 1.5f);
    EXPECT_EQ(2u, font.GetFontID());
    EXPECT_EQ(19, font.GetFontHeight());  // 13 x 1.5, truncated
    EXPECT_EQ(700, font.GetWeight());
    EXPECT_TRUE(font.IsItalic());
    EXPECT_EQ(0x30, font.GetFamily());
    EXPECT_EQ(1, font.GetPitch());
    EXPECT_EQ((std::vector<ULOString>{L"Missing", L"Other", L"Courier New"}), font.GetFaceNames());
    EXPECT_EQ(L"Fixed", font.GetName());
    EXPECT_EQ(L"Courier New", font.GetChosenFace());
    EXPECT_FALSE(font.IgnoresHeightExt());
    EXPECT_EQ(20, font.GetHeightExt());
    EXPECT_EQ(0x31, engine_->requests.front().pitchAndFamily);
    EXPECT_EQ(19, engine_->requests.front().height);
}

TEST_F(FontFromFile, DoubleByteLanguagesTakeTheExtraHeightUnmagnifiedUnlessTheRecordSaysIgnore) {
    ULOFont special(2, 3, 2.0f);
    EXPECT_EQ(20, special.GetFontHeight());
    EXPECT_EQ(20, engine_->requests.front().height);
    EXPECT_TRUE(special.HasUnicodeExtraWidths());
    EXPECT_EQ(Advance(0x3042, 20), special.GetCharWidthW(0x3042, true));

    ULOFont ignoring(3, 3, 2.0f);
    EXPECT_EQ(26, ignoring.GetFontHeight());
    EXPECT_FALSE(ignoring.HasUnicodeExtraWidths());    // not special: no extra tables ...
    EXPECT_EQ(128, engine_->requests.back().charSet);  // ... but the character set follows the language
    EXPECT_EQ(Advance('?', 26), ignoring.GetCharWidthW(0x3042, true));
    EXPECT_EQ(L"FONT 'MS Gothic' h=26, hext=20, w=700, m=2.000000, 1, 1\n", ignoring.GetDebugInfo());

    ULOFont latin(2, 0, 2.0f);
    EXPECT_EQ(26, latin.GetFontHeight());
}

TEST_F(FontFromFile, IdsWithoutARecordGetFontZero) {
    for (unsigned id : {1u, 4u, 100000u, 0xFFFFFFFEu}) {
        ULOFont font(id, 0, 1.0f);
        EXPECT_EQ(id, font.GetFontID());
        EXPECT_EQ(L"Tahoma", font.GetFirstWantedFont()) << id;
        EXPECT_EQ(11, font.GetFontHeight());
        EXPECT_TRUE(font.IgnoresHeightExt());
    }
}

TEST_F(FontFromFile, WithoutAFileTheFontIsEmpty) {
    ULOFont::SetFontResourceFile(ULOPath());
    engine_->requests.clear();
    ULOFont font(2, 3, 2.0f);
    EXPECT_FALSE(font.IsValid());
    EXPECT_EQ(2u, font.GetFontID());
    EXPECT_EQ(2.0f, font.GetMagnifier());
    EXPECT_TRUE(font.GetFaceNames().empty());
    EXPECT_TRUE(font.GetFirstWantedFont().empty());
    EXPECT_TRUE(font.IsNonANSIFontOK());
    EXPECT_TRUE(font.IgnoresHeightExt());
    EXPECT_TRUE(engine_->requests.empty());
    for (wchar_t c : {L'A', L'?', wchar_t(0x3042)}) {
        EXPECT_EQ(0.0f, font.GetCharWidthW(c, false));
    }
}

TEST_F(FontFromFile, WildMagnifiersKeepTheHeightInRange) {
    EXPECT_EQ(std::numeric_limits<int>::max(), ULOFont(2, 0, 1e30f).GetFontHeight());
    EXPECT_EQ(std::numeric_limits<int>::min(), ULOFont(2, 0, -1e30f).GetFontHeight());
    EXPECT_EQ(0, ULOFont(2, 0, std::nanf("")).GetFontHeight());
    const ULOFont zero(2, 0, 0.0f);
    EXPECT_EQ(0, zero.GetFontHeight());
    EXPECT_EQ(zero.GetCharWidthW(L'A', true), zero.GetCharWidthW(L'A', false));  // no division by zero
}
