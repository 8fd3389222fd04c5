// The Linux font engine on the project's test fonts, through private fontconfig configurations.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "TestFonts.h"
#include "ulogui/platform/linux/FaceCatalogue.h"

using namespace ulogui::platform;
using testfonts::FullEngine;
using testfonts::LatinEngine;

namespace {

std::vector<FaceInfo> Enumerate(FontEngine& engine, uint8_t charSet) {
    std::vector<FaceInfo> faces;
    engine.EnumerateFaces(charSet, [&](const FaceInfo& f) {
        faces.push_back(f);
        return true;
    });
    return faces;
}

const FaceInfo* Find(const std::vector<FaceInfo>& faces, const wchar_t* name, uint8_t charSet) {
    for (const FaceInfo& f : faces) {
        if (f.faceName == name && f.charSet == charSet) {
            return &f;
        }
    }
    return nullptr;
}

std::shared_ptr<PlatformFont> Make(FontEngine& engine, const wchar_t* face, int height, uint8_t charSet = 0,
                                   int weight = 400, bool italic = false) {
    FontRequest r;
    r.faceName = face;
    r.height = height;
    r.charSet = charSet;
    r.weight = weight;
    r.italic = italic;
    r.pitchAndFamily = 0x22;
    return engine.CreateFontObject(r);
}

std::vector<int> Advances(const PlatformFont& font, uint32_t first, uint32_t last) {
    std::vector<int32_t> w(last - first + 1);
    font.GetCharAdvances(first, last, w.data());
    return std::vector<int>(w.begin(), w.end());
}

#define REQUIRE_CJK()                                                                                 \
    if (!testfonts::HaveCjkFonts()) {                                                                 \
        GTEST_SKIP() << "fonts-ipaexfont-gothic / fonts-arphic-gbsn00lp missing (scripts/bootstrap)"; \
    }

}  // namespace

TEST(FontEngineEnumeration, ReportsFamiliesByTheirWindowsNamesWithPitchAndFamily) {
    const std::vector<FaceInfo> ansi = Enumerate(*LatinEngine(), charset::kAnsi);
    const std::map<std::wstring, uint8_t> expected = {
        {L"DejaVu Sans", 0x22},     {L"DejaVu Sans Mono", 0x31}, {L"DejaVu Serif", 0x12},
        {L"Liberation Sans", 0x22}, {L"Liberation Serif", 0x12}, {L"Liberation Mono", 0x31},
    };
    ASSERT_EQ(expected.size(), ansi.size());  // one report per family, whatever its number of styles
    for (const auto& [name, pitchAndFamily] : expected) {
        const FaceInfo* face = Find(ansi, name.c_str(), 0);
        ASSERT_NE(nullptr, face) << std::string(name.begin(), name.end());
        EXPECT_EQ(pitchAndFamily, face->pitchAndFamily);
        EXPECT_TRUE(face->trueType);
    }
}

TEST(FontEngineEnumeration, OrderIsDefaultsFirstThenByNameIgnoringCaseAndStable) {
    const std::vector<FaceInfo> first = Enumerate(*LatinEngine(), charset::kAnsi);
    const std::vector<FaceInfo> again =
        Enumerate(*testfonts::MakeEngine(testfonts::LatinFiles()), charset::kAnsi);
    ASSERT_EQ(first.size(), again.size());
    for (size_t i = 0; i < first.size(); ++i) {
        EXPECT_EQ(first[i].faceName, again[i].faceName);
    }
    // After at most three families that fontconfig picks for the generic names, the rest is sorted.
    for (size_t start = 0; start <= 3; ++start) {
        if (std::is_sorted(first.begin() + start, first.end(), [](const FaceInfo& a, const FaceInfo& b) {
                return a.faceName.CompareNoCase(b.faceName) < 0;
            })) {
            SUCCEED();
            return;
        }
    }
    ADD_FAILURE() << "the families after the defaults are not in name order";
}

TEST(FontEngineEnumeration, CharacterSetsComeFromTheCodePageBits) {
    REQUIRE_CJK();
    FontEngine& engine = *FullEngine();
    const std::vector<FaceInfo> all = Enumerate(engine, charset::kDefault);
    // IPAex Gothic declares Latin-1 and JIS; AR PL SungtiL GB declares GB2312 only.
    EXPECT_NE(nullptr, Find(all, L"IPAexGothic", charset::kAnsi));
    EXPECT_NE(nullptr, Find(all, L"IPAexGothic", charset::kShiftJis));
    EXPECT_EQ(nullptr, Find(all, L"IPAexGothic", charset::kGb2312));
    EXPECT_NE(nullptr, Find(all, L"AR PL SungtiL GB", charset::kGb2312));
    EXPECT_EQ(nullptr, Find(all, L"AR PL SungtiL GB", charset::kAnsi));
    EXPECT_NE(nullptr, Find(all, L"DejaVu Sans", charset::kRussian));
    EXPECT_NE(nullptr, Find(all, L"DejaVu Sans", charset::kGreek));
    EXPECT_EQ(nullptr, Find(all, L"DejaVu Sans", charset::kShiftJis));
    EXPECT_EQ(0x22, Find(all, L"IPAexGothic", charset::kShiftJis)->pitchAndFamily);
    EXPECT_EQ(0x22, Find(all, L"AR PL SungtiL GB", charset::kGb2312)->pitchAndFamily);

    const std::vector<FaceInfo> japanese = Enumerate(engine, charset::kShiftJis);
    ASSERT_EQ(1u, japanese.size());
    EXPECT_EQ(L"IPAexGothic", japanese[0].faceName);
    const std::vector<FaceInfo> chinese = Enumerate(engine, charset::kGb2312);
    ASSERT_EQ(1u, chinese.size());
    EXPECT_EQ(L"AR PL SungtiL GB", chinese[0].faceName);
    EXPECT_TRUE(Enumerate(*LatinEngine(), charset::kShiftJis).empty());
}

TEST(FontEngineEnumeration, StopsWhenTheVisitorSaysSo) {
    int visits = 0;
    LatinEngine()->EnumerateFaces(charset::kDefault, [&](const FaceInfo&) { return ++visits < 2; });
    EXPECT_EQ(2, visits);
}

TEST(FontEngineFonts, CellAndCharacterHeightsGiveTheClassicVerticalMetrics) {
    struct Case {
        const wchar_t* face;
        int height;
        uint32_t ppem;
        int ascent, descent;
    };
    for (const Case& c : {Case{L"DejaVu Sans", 24, 21, 19, 5}, Case{L"DejaVu Sans", -20, 20, 19, 5},
                          Case{L"Liberation Sans", 24, 21, 19, 4}}) {
        auto font = Make(*LatinEngine(), c.face, c.height);
        ASSERT_NE(nullptr, font);
        const FontMetrics m = font->GetMetrics();
        EXPECT_EQ(c.ppem, m.pixelsPerEm);
        EXPECT_EQ(c.ascent, m.ascent);
        EXPECT_EQ(c.descent, m.descent);
        EXPECT_EQ(c.ascent + c.descent, m.height);
    }
}

TEST(FontEngineFonts, AdvancesAreThoseOfTheClassicTrueTypeInterpreter) {
    const std::pair<const wchar_t*, std::string> faces[] = {
        {L"DejaVu Sans", testfonts::DejaVu("DejaVuSans.ttf")},
        {L"Liberation Sans", testfonts::Liberation("LiberationSans-Regular.ttf")},
        {L"DejaVu Serif", testfonts::DejaVu("DejaVuSerif.ttf")},
    };
    for (const auto& [face, file] : faces) {
        for (unsigned ppem = 8; ppem <= 24; ++ppem) {
            auto font = Make(*LatinEngine(), face, -static_cast<int>(ppem));
            ASSERT_EQ(testfonts::ClassicAdvances(file, ppem, 0, 0x2FF), Advances(*font, 0, 0x2FF))
                << file << " at " << ppem << " px";
        }
    }
}

TEST(FontEngineFonts, MissingCharactersTakeTheMissingGlyphsAdvance) {
    auto font = Make(*LatinEngine(), L"Liberation Sans", -16);
    const std::vector<int> notdef = testfonts::ClassicAdvances(
        testfonts::Liberation("LiberationSans-Regular.ttf"), 16, 0xE000, 0xE000);  // private use: not mapped
    EXPECT_EQ(notdef, Advances(*font, 0x4E00, 0x4E00));
    EXPECT_EQ(notdef, Advances(*font, 0x10FFFF, 0x10FFFF));
    EXPECT_EQ(Advances(*font, 9, 9), notdef);  // a tab has no glyph either
}

TEST(FontEngineFonts, FaceNamesIgnoreCaseAndMissingFacesAreSubstituted) {
    EXPECT_EQ(L"DejaVu Sans", Make(*LatinEngine(), L"dejavu SANS", 12)->GetFaceName());
    auto substitute = Make(*LatinEngine(), L"No Such Face", 12);
    ASSERT_NE(nullptr, substitute);
    EXPECT_NE(L"No Such Face", substitute->GetFaceName());
    EXPECT_FALSE(substitute->GetFaceName().empty());
}

TEST(FontEngineFonts, TheCharacterSetOutweighsTheName) {
    REQUIRE_CJK();
    EXPECT_EQ(L"IPAexGothic", Make(*FullEngine(), L"DejaVu Sans", 12, charset::kShiftJis)->GetFaceName());
    EXPECT_EQ(L"IPAexGothic", Make(*FullEngine(), L"MS Gothic", 12, charset::kShiftJis)->GetFaceName());
    EXPECT_EQ(L"AR PL SungtiL GB", Make(*FullEngine(), L"SimSun", 12, charset::kGb2312)->GetFaceName());
    EXPECT_EQ(L"DejaVu Sans", Make(*FullEngine(), L"DejaVu Sans", 12, charset::kDefault)->GetFaceName());
    // With no face for the set, the named face is still made.
    EXPECT_EQ(L"DejaVu Sans", Make(*LatinEngine(), L"DejaVu Sans", 12, charset::kShiftJis)->GetFaceName());
}

TEST(FontEngineFonts, StylesPickTheMatchingFileOrAreSynthesised) {
    auto* engine = LatinEngine().get();
    FontRequest bold;
    bold.faceName = L"DejaVu Sans";
    bold.weight = 700;
    EXPECT_EQ(testfonts::DejaVu("DejaVuSans-Bold.ttf"), engine->ResolveFace(bold)->path);
    bold.italic = true;
    EXPECT_EQ(testfonts::DejaVu("DejaVuSans-BoldOblique.ttf"), engine->ResolveFace(bold)->path);
    bold.weight = 0;  // don't care: normal
    EXPECT_EQ(testfonts::DejaVu("DejaVuSans-Oblique.ttf"), engine->ResolveFace(bold)->path);

    // Liberation Mono has no bold file here: bold is synthesised, one pixel wider per glyph.
    auto regular = Make(*engine, L"Liberation Mono", -15);
    auto emboldened = Make(*engine, L"Liberation Mono", -15, 0, 700);
    const std::vector<int> r = Advances(*regular, 0x20, 0x7E);
    const std::vector<int> b = Advances(*emboldened, 0x20, 0x7E);
    for (size_t i = 0; i < r.size(); ++i) {
        EXPECT_EQ(r[i] + 1, b[i]);
    }
    EXPECT_EQ(700, emboldened->GetMetrics().weight);
}

TEST(FontEngineFonts, KerningPairsComeFromTheFormatZeroTable) {
    auto dejaVu = Make(*LatinEngine(), L"DejaVu Sans", -21);
    const std::vector<KerningPair> pairs = dejaVu->GetKerningPairs();
    EXPECT_EQ(2727u, pairs.size());
    EXPECT_EQ(907u, Make(*LatinEngine(), L"Liberation Sans", 24)->GetKerningPairs().size());
    EXPECT_TRUE(Make(*LatinEngine(), L"DejaVu Sans Mono", 24)->GetKerningPairs().empty());
    const auto av = std::find_if(pairs.begin(), pairs.end(),
                                 [](const KerningPair& p) { return p.first == 'A' && p.second == 'V'; });
    ASSERT_NE(pairs.end(), av);
    EXPECT_LT(av->amount, 0);
    // Larger sizes kern more: the same pair at 4x the size.
    const std::vector<KerningPair> large = Make(*LatinEngine(), L"DejaVu Sans", -84)->GetKerningPairs();
    const auto avLarge = std::find_if(large.begin(), large.end(),
                                      [](const KerningPair& p) { return p.first == 'A' && p.second == 'V'; });
    ASSERT_NE(large.end(), avLarge);
    EXPECT_LT(avLarge->amount, av->amount * 3);
}

TEST(FontEngineFonts, SurviveTheirEngineAndFaceSharing) {
    std::shared_ptr<PlatformFont> font;
    {
        auto engine = testfonts::MakeEngine({testfonts::DejaVu("DejaVuSans.ttf")});
        font = Make(*engine, L"DejaVu Sans", -12);
        auto same = Make(*engine, L"DejaVu Sans", -30);
        EXPECT_NE(Advances(*font, 'M', 'M'), Advances(*same, 'M', 'M'));
    }
    EXPECT_EQ(testfonts::ClassicAdvances(testfonts::DejaVu("DejaVuSans.ttf"), 12, 'A', 'Z'),
              Advances(*font, 'A', 'Z'));
}

TEST(FontEngineFonts, AnEngineWithoutFontsMakesNone) {
    auto empty = testfonts::MakeEngine({});
    EXPECT_EQ(nullptr, Make(*empty, L"DejaVu Sans", 12));
    EXPECT_TRUE(Enumerate(*empty, charset::kDefault).empty());
}
