// The Linux font engine and ULOFont on the project's test fonts, through private fontconfig
// configurations: enumeration, face resolution, metrics, kerning, and widths against what FreeType's
// classic interpreter reports for the chosen face; the engine's batched advances (glyphs hinted once
// each, large batches shared by two threads with a face each) against one plain FreeType load per
// code point, in code-point order, with the engine's load flags, in a library of the test's own.
#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <map>

#include <ft2build.h>
#include FT_FREETYPE_H

#include "font/TestFonts.h"
#include "platform/linux/FaceCatalogue.h"
#include "platform/linux/SfntFacts.h"
#include "toolslib/MultiProc.h"
#include "ulogui/Font.h"

using namespace ulogui::platform;
using namespace testfonts;

namespace {

std::vector<FaceInfo> Enumerate(FontEngine& engine, uint8_t charSet) {
    std::vector<FaceInfo> faces;
    engine.EnumerateFaces(charSet, [&](const FaceInfo& f) {
        faces.push_back(f);
        return true;
    });
    return faces;
}

// A ULOFont's cached widths against the classic advances of the face file (control characters 0).
void ExpectWidths(const ULOFont& font, const std::string& file, unsigned ppem, unsigned first,
                  unsigned last) {
    const std::vector<int> expected = ClassicAdvances(file, ppem, first, last);
    ASSERT_EQ(last - first + 1, expected.size());
    for (unsigned c = first; c <= last; ++c) {
        const float want = c < 32 ? 0.0f : static_cast<float>(expected[c - first]);
        ASSERT_EQ(want, font.GetCharWidthW(static_cast<wchar_t>(c), true)) << std::hex << c;
    }
}

// One plain load per code point, in code order, with the engine's load flags.
std::vector<int> PlainAdvances(const std::string& file, unsigned ppem, uint32_t first, uint32_t last) {
    return ClassicAdvances(file, ppem, first, last,
                           FT_LOAD_TARGET_MONO | FT_LOAD_NO_AUTOHINT | FT_LOAD_IGNORE_GLOBAL_ADVANCE_WIDTH);
}

std::shared_ptr<PlatformFont> Ipaex(FontEngine& engine, int height, int weight = 400) {
    return MakeFont(engine, L"IPAexGothic", height, charset::kShiftJis, weight);
}

}  // namespace

TEST(FontEngineEnumeration, OneReportPerFamilyInAStableOrderWithCharacterSetsFromTheCodePageBits) {
    const std::vector<FaceInfo> ansi = Enumerate(*LatinEngine(), charset::kAnsi);
    std::map<std::wstring, int> families;  // pitch and family of the TrueType reports for character set 0
    std::vector<ULOString> names, again;
    for (const FaceInfo& f : ansi) {
        families[f.faceName] = f.trueType && f.charSet == 0 ? f.pitchAndFamily : -1;
        names.push_back(f.faceName);
    }
    const std::map<std::wstring, int> expected = {
        {L"DejaVu Sans", 0x22},     {L"DejaVu Sans Mono", 0x31}, {L"DejaVu Serif", 0x12},
        {L"Liberation Sans", 0x22}, {L"Liberation Serif", 0x12}, {L"Liberation Mono", 0x31},
    };
    EXPECT_EQ(families, expected);
    EXPECT_EQ(families.size(), ansi.size());  // one report per family, whatever the number of styles
    for (const FaceInfo& f : Enumerate(*MakeEngine(LatinFiles()), charset::kAnsi)) {
        again.push_back(f.faceName);
    }
    EXPECT_EQ(names, again);
    // After at most three families that fontconfig picks for the generic names, the rest is sorted.
    bool sorted = false;
    for (size_t start = 0; start <= 3 && !sorted; ++start) {
        sorted =
            std::is_sorted(names.begin() + start, names.end(),
                           [](const ULOString& a, const ULOString& b) { return a.CompareNoCase(b) < 0; });
    }
    EXPECT_TRUE(sorted) << "the families after the defaults are not in name order";

    int visits = 0;  // the visitor ends the enumeration
    LatinEngine()->EnumerateFaces(charset::kDefault, [&](const FaceInfo&) { return ++visits < 2; });
    EXPECT_EQ(2, visits);
    EXPECT_TRUE(Enumerate(*MakeEngine({}), charset::kDefault).empty());
    EXPECT_EQ(nullptr, MakeFont(*MakeEngine({}), L"DejaVu Sans", 12));
    REQUIRE_CJK_FONTS();
    // IPAex Gothic declares Latin-1 and JIS; AR PL SungtiL GB declares GB2312 only; DejaVu Sans
    // Latin-1, Cyrillic, Greek and others.
    auto listed = [](uint8_t charSet) {
        std::wstring list;
        for (const FaceInfo& f : Enumerate(*FullEngine(), charSet)) {
            list += f.faceName + (f.pitchAndFamily == 0x22 ? L";" : L"(not 0x22);");
        }
        return list;
    };
    EXPECT_EQ(L"IPAexGothic;", listed(charset::kShiftJis));
    EXPECT_EQ(L"AR PL SungtiL GB;", listed(charset::kGb2312));
    EXPECT_NE(std::wstring::npos, listed(charset::kAnsi).find(L"IPAexGothic;"));
    EXPECT_EQ(std::wstring::npos, listed(charset::kAnsi).find(L"AR PL"));
    for (uint8_t charSet : {charset::kGreek, charset::kRussian}) {
        EXPECT_NE(std::wstring::npos, listed(charSet).find(L"DejaVu Sans;")) << int(charSet);
    }
    const std::vector<FaceInfo> all = Enumerate(*FullEngine(), charset::kDefault);
    EXPECT_TRUE(std::any_of(all.begin(), all.end(), [](const FaceInfo& f) {
        return f.faceName == L"IPAexGothic" && f.charSet == charset::kShiftJis;
    }));
    EXPECT_TRUE(Enumerate(*LatinEngine(), charset::kShiftJis).empty());
}

TEST(FontEngineFonts, SizesAdvancesKerningStylesAndNamesAreTheClassicEnginesAndOutliveTheEngine) {
    const std::tuple<const wchar_t*, std::string, int> faces[] = {
        {L"DejaVu Sans", DejaVu("DejaVuSans.ttf"), 400},
        {L"Liberation Sans", Liberation("LiberationSans-Regular.ttf"), 400},
        {L"DejaVu Serif", DejaVu("DejaVuSerif.ttf"), 400},
        {L"DejaVu Sans", DejaVu("DejaVuSans-Bold.ttf"), 700},
    };
    for (const auto& [face, file, weight] : faces) {
        for (unsigned ppem = 8; ppem <= 24; ++ppem) {
            auto font = MakeFont(*LatinEngine(), face, -static_cast<int>(ppem), 0, weight);
            ASSERT_EQ(ClassicAdvances(file, ppem, 0, 0x2FF), Advances(*font, 0, 0x2FF))
                << file << " at " << ppem << " px";
        }
    }
    // Characters without a glyph take the missing glyph's advance (U+E000, private use, is not mapped).
    auto font = MakeFont(*LatinEngine(), L"Liberation Sans", -16);
    const std::vector<int> notdef =
        ClassicAdvances(Liberation("LiberationSans-Regular.ttf"), 16, 0xE000, 0xE000);
    for (uint32_t c : {0x4E00u, 0x10FFFFu, 9u}) {  // a tab has no glyph either
        EXPECT_EQ(notdef, Advances(*font, c, c)) << c;
    }
    {
        auto engine = MakeEngine({DejaVu("DejaVuSans.ttf")});
        font = MakeFont(*engine, L"DejaVu Sans", -12);
        EXPECT_NE(Advances(*font, 'M', 'M'), Advances(*MakeFont(*engine, L"DejaVu Sans", -30), 'M', 'M'));
    }
    EXPECT_EQ(ClassicAdvances(DejaVu("DejaVuSans.ttf"), 12, 'A', 'Z'), Advances(*font, 'A', 'Z'));
    auto avAmount = [](const std::vector<KerningPair>& pairs) {
        const auto av = std::find_if(pairs.begin(), pairs.end(),
                                     [](const KerningPair& p) { return p.first == 'A' && p.second == 'V'; });
        return av == pairs.end() ? 0 : av->amount;
    };
    const std::vector<KerningPair> pairs = MakeFont(*LatinEngine(), L"DejaVu Sans", -21)->GetKerningPairs();
    EXPECT_EQ(2727u, pairs.size());
    EXPECT_EQ(907u, MakeFont(*LatinEngine(), L"Liberation Sans", 24)->GetKerningPairs().size());
    EXPECT_TRUE(MakeFont(*LatinEngine(), L"DejaVu Sans Mono", 24)->GetKerningPairs().empty());
    EXPECT_LT(avAmount(pairs), 0);
    // Larger sizes kern more: the same pair at 4x the size.
    EXPECT_LT(avAmount(MakeFont(*LatinEngine(), L"DejaVu Sans", -84)->GetKerningPairs()),
              avAmount(pairs) * 3);
    REQUIRE_LATIN_FONTS();
    struct Row {
        const wchar_t* face;
        int request;
        int height, ascent, descent, internalLeading;
        uint32_t ppem;
    };
    // Cell heights where rounding ascent and descent apart picks a size one smaller, then heights
    // where every rule agrees; the same at weight 400 and 700.
    const Row rows[] = {
        {L"DejaVu Sans", 17, 18, 14, 4, 2, 15},     {L"DejaVu Sans", 23, 24, 19, 5, 3, 20},
        {L"DejaVu Sans", 37, 38, 30, 8, 5, 32},     {L"DejaVu Sans", 38, 39, 31, 8, 5, 33},
        {L"Liberation Sans", 13, 14, 11, 3, 1, 12}, {L"Liberation Sans", 29, 30, 24, 6, 3, 26},
        {L"Liberation Sans", 33, 32, 26, 6, 3, 29}, {L"Liberation Sans", 40, 41, 33, 8, 4, 36},
        {L"DejaVu Sans", 13, 13, 10, 3, 2, 11},     {L"DejaVu Sans", 24, 24, 19, 5, 3, 21},
        {L"DejaVu Sans", -20, 24, 19, 5, 3, 20},    {L"Liberation Sans", 16, 16, 13, 3, 2, 14},
        {L"Liberation Sans", 24, 23, 19, 4, 2, 21},
    };
    for (const Row& r : rows) {
        for (int weight : {400, 700}) {
            const FontMetrics m = MakeFont(*LatinEngine(), r.face, r.request, 0, weight)->GetMetrics();
            EXPECT_EQ(std::make_tuple(r.height, r.ascent, r.descent, r.internalLeading, r.ppem),
                      std::make_tuple(m.height, m.ascent, m.descent, m.internalLeading, m.pixelsPerEm))
                << std::string(r.face, r.face + wcslen(r.face)) << " " << r.request << " weight " << weight;
        }
    }
    auto* engine = LatinEngine().get();
    FontRequest request;
    request.faceName = L"DejaVu Sans";
    const std::tuple<int, bool, const char*> styles[] = {
        {700, false, "DejaVuSans-Bold.ttf"},
        {700, true, "DejaVuSans-BoldOblique.ttf"},
        {0, true, "DejaVuSans-Oblique.ttf"},  // weight 0, don't care: normal
    };
    for (const auto& [weight, italic, file] : styles) {
        request.weight = weight;
        request.italic = italic;
        EXPECT_EQ(DejaVu(file), engine->ResolveFace(request)->path);
    }
    // Liberation Mono has no bold file here: bold is synthesised, one pixel wider per glyph, on average
    // and at most.
    const auto plain = MakeFont(*engine, L"Liberation Mono", -15),
               bold = MakeFont(*engine, L"Liberation Mono", -15, 0, 700);
    std::vector<int> widened = Advances(*plain, 0x20, 0x7E);
    std::transform(widened.begin(), widened.end(), widened.begin(), [](int w) { return w + 1; });
    EXPECT_EQ(widened, Advances(*bold, 0x20, 0x7E));
    EXPECT_EQ(
        std::make_tuple(plain->GetMetrics().averageCharWidth + 1, plain->GetMetrics().maxCharWidth + 1, 700),
        std::make_tuple(bold->GetMetrics().averageCharWidth, bold->GetMetrics().maxCharWidth,
                        bold->GetMetrics().weight));
    EXPECT_EQ(L"DejaVu Sans", MakeFont(*LatinEngine(), L"dejavu SANS", 12)->GetFaceName());
    const ULOString substitute = MakeFont(*LatinEngine(), L"No Such Face", 12)->GetFaceName();
    EXPECT_NE(L"No Such Face", substitute);
    EXPECT_FALSE(substitute.empty());
    // With no face for the set, the named face is still made.
    EXPECT_EQ(L"DejaVu Sans",
              MakeFont(*LatinEngine(), L"DejaVu Sans", 12, charset::kShiftJis)->GetFaceName());
    REQUIRE_CJK_FONTS();
    EXPECT_EQ(L"IPAexGothic", MakeFont(*FullEngine(), L"DejaVu Sans", 12, charset::kShiftJis)->GetFaceName());
    EXPECT_EQ(L"IPAexGothic", MakeFont(*FullEngine(), L"MS Gothic", 12, charset::kShiftJis)->GetFaceName());
    EXPECT_EQ(L"AR PL SungtiL GB", MakeFont(*FullEngine(), L"SimSun", 12, charset::kGb2312)->GetFaceName());
    EXPECT_EQ(L"DejaVu Sans", MakeFont(*FullEngine(), L"DejaVu Sans", 12, charset::kDefault)->GetFaceName());
}

// The choice of face and the widths of a font on a Latin face follow from the font's own rules
// (FontObject) and the engine's enumeration, advances and sizes (above); a double-byte face's choice
// and widths are compared here.
TEST(FontOnRealFaces, ThePreferredAvailableFaceIsChosenAndDoubleByteFontsCacheTheIdeographs) {
    REQUIRE_CJK_FONTS();
    ScopedEngine scoped(FullEngine());
    ULOFont japanese({L"MS UI Gothic"}, -16, 3, 1.0f, false, false, false);
    EXPECT_TRUE(japanese.IsNonANSIFontOK());
    EXPECT_EQ(L"IPAexGothic", japanese.GetChosenFace());  // the only JIS face, sans like the wanted one
    ASSERT_TRUE(japanese.HasUnicodeExtraWidths());
    const std::string file = IpaexGothic();
    ExpectWidths(japanese, file, 16, 0x3000, 0x30FF);  // punctuation, kana
    ExpectWidths(japanese, file, 16, 0x4E00, 0x4FFF);  // ideographs
    ExpectWidths(japanese, file, 16, 0xFF00, 0xFFEF);  // full- and half-width forms
    ExpectWidths(japanese, file, 16, 32, 255);

    ULOFont chinese({L"SimSun", L"AR PL SungtiL GB"}, -14, 7, 1.0f, false, false, false);
    EXPECT_TRUE(chinese.IsNonANSIFontOK());
    EXPECT_EQ(L"AR PL SungtiL GB", chinese.GetChosenFace());
    ExpectWidths(chinese, ArphicGb(), 14, 0x4E00, 0x4EFF);
}

// The ranges a Japanese font fills, at two sizes, with two threads and with one; a small run first
// leaves part of the glyphs known, so the large batch mixes cached and new glyphs.
TEST(FontEngineAdvanceBatches, EveryCjkWidthEqualsThePlainPerGlyphLoad) {
    REQUIRE_CJK_FONTS();
    const std::string file = IpaexGothic();
    const std::pair<uint32_t, uint32_t> ranges[] = {
        {0x4E00, 0x4E7F}, {0x3000, 0x9FFF}, {0xF900, 0xFFEF}, {0, 255}};
    for (const int threads : {1, 0}) {  // one thread, then the default
        tools::multiproc::SetMaxJobThreadAllowed(threads);
        for (const int height : {-16, -11}) {
            auto engine = MakeEngine({file});
            auto font = Ipaex(*engine, height);
            ASSERT_TRUE(font);
            const unsigned ppem = font->GetMetrics().pixelsPerEm;
            SCOPED_TRACE(testing::Message() << "threads cap " << threads << ", ppem " << ppem);
            for (const auto& [first, last] : ranges) {
                EXPECT_EQ(PlainAdvances(file, ppem, first, last), Advances(*font, first, last))
                    << std::hex << first;
            }
            // A second font of the size reads the cache; synthesised bold adds its pixel to each.
            std::vector<int> widened = PlainAdvances(file, ppem, 0x3000, 0x9FFF);
            EXPECT_EQ(widened, Advances(*Ipaex(*engine, height), 0x3000, 0x9FFF));
            std::transform(widened.begin(), widened.end(), widened.begin(), [](int w) { return w + 1; });
            EXPECT_EQ(widened, Advances(*Ipaex(*engine, height, 700), 0x3000, 0x9FFF));
        }
    }
}
