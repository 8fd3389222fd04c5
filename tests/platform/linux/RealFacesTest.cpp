// The Linux font engine and ULOFont on the project's test fonts, through private fontconfig
// configurations: enumeration, face resolution, metrics, kerning, and widths against what FreeType's
// classic interpreter reports for the chosen face; the engine's batched advances (glyphs hinted once
// each, large batches shared by two threads with a face each) against one plain FreeType load per
// code point, in code-point order, with the engine's load flags, in a library of the test's own.
// Then the table-derived facts on values taken from real faces, and native outline records from a
// hand-made FreeType outline.
#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <map>
#include <sstream>

#include <ft2build.h>
#include FT_FREETYPE_H

#include "font/TestFonts.h"
#include "platform/linux/FaceCatalogue.h"
#include "platform/linux/NativeOutline.h"
#include "platform/linux/SfntFacts.h"
#include "toolslib/MultiProc.h"
#include "ulogui/Font.h"

using namespace ulogui::platform;
using namespace ulogui::platform::ft;
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

// The engine's load flags, for one plain load per code point in code order.
constexpr int32_t kEngineLoad =
    FT_LOAD_TARGET_MONO | FT_LOAD_NO_AUTOHINT | FT_LOAD_IGNORE_GLOBAL_ADVANCE_WIDTH;

std::shared_ptr<PlatformFont> Ipaex(FontEngine& engine, int height, int weight = 400) {
    return MakeFont(engine, L"IPAexGothic", height, charset::kShiftJis, weight);
}

// A 'kern' table of version 0 with format-0 subtables {coverage, declared pair count (which may
// lie), then left, right, value of each pair}.
std::vector<uint8_t> KernTable(const std::vector<std::vector<int>>& subtables) {
    std::vector<uint8_t> t;
    auto put = [&](int v) { t.insert(t.end(), {static_cast<uint8_t>(v >> 8), static_cast<uint8_t>(v)}); };
    put(0);
    put(static_cast<int>(subtables.size()));
    for (const std::vector<int>& sub : subtables) {
        for (int v : {0, static_cast<int>(14 + 2 * (sub.size() - 2)), sub[0], sub[1], 0, 0, 0}) {
            put(v);
        }
        std::for_each(sub.begin() + 2, sub.end(), put);
    }
    return t;
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
    // Larger sizes kern more: the same pair (negative) at 4x the size.
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
    // Punctuation and kana, ideographs, full- and half-width forms, Latin.
    for (const auto& [first, last] :
         {std::pair(0x3000u, 0x30FFu), {0x4E00u, 0x4FFFu}, {0xFF00u, 0xFFEFu}, {32u, 255u}}) {
        ExpectWidths(japanese, IpaexGothic(), 16, first, last);
    }

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
                EXPECT_EQ(ClassicAdvances(file, ppem, first, last, kEngineLoad), Advances(*font, first, last))
                    << std::hex << first;
            }
            // A second font of the size reads the cache; synthesised bold adds its pixel to each.
            std::vector<int> widened = ClassicAdvances(file, ppem, 0x3000, 0x9FFF, kEngineLoad);
            EXPECT_EQ(widened, Advances(*Ipaex(*engine, height), 0x3000, 0x9FFF));
            std::transform(widened.begin(), widened.end(), widened.begin(), [](int w) { return w + 1; });
            EXPECT_EQ(widened, Advances(*Ipaex(*engine, height, 700), 0x3000, 0x9FFF));
        }
    }
}

TEST(SfntFacts, CharacterSetsPitchAndFamilyAndHorizontalFormatZeroKerningNeverReadPastTheEnd) {
    // DejaVu Sans: Latin-1, Latin-2, Cyrillic, Greek, Turkish, Hebrew, Arabic, Baltic, Vietnamese,
    // plus bits 29/30 (Macintosh, OEM) that have no character set.
    EXPECT_EQ((std::vector<uint8_t>{0, 238, 204, 161, 162, 177, 178, 186, 163}),
              CharSetsFromCodePages(0x600001FF));
    EXPECT_EQ((std::vector<uint8_t>{0, 128}), CharSetsFromCodePages(0x00020001));  // IPAex Gothic
    EXPECT_EQ((std::vector<uint8_t>{134}), CharSetsFromCodePages(0x00040000));     // AR PL SungtiL GB
    EXPECT_EQ((std::vector<uint8_t>{129, 136, 130, 2}), CharSetsFromCodePages(0x80380000));
    EXPECT_TRUE(CharSetsFromCodePages(0).empty());
    EXPECT_EQ(17, CodePageBitOfCharSet(charset::kShiftJis));
    EXPECT_EQ(-1, CodePageBitOfCharSet(charset::kDefault));
    EXPECT_STREQ("zh-cn", LanguageOfCharSet(charset::kGb2312));
    EXPECT_EQ(nullptr, LanguageOfCharSet(77));
    const std::tuple<bool, uint8_t, uint8_t, uint16_t, int> cases[] = {
        {false, 2, 11, 0, 0x22},      // DejaVu Sans
        {true, 2, 11, 0, 0x31},       // DejaVu Sans Mono: fixed text face is modern
        {false, 2, 6, 0, 0x12},       // DejaVu Serif
        {false, 2, 2, 0x0105, 0x12},  // Liberation Serif
        {false, 2, 15, 0, 0x22},      // rounded sans
        {false, 2, 1, 0x0805, 0x22},  // AR PL SungtiL GB: no serif style, class sans
        {false, 0, 0, 0x0300, 0x12},  // no PANOSE, class modern serif
        {false, 3, 0, 0, 0x42},       // script
        {false, 5, 0, 0, 0x52},       // pictorial
        {true, 3, 0, 0, 0x41},        // a fixed script face stays script
        {false, 0, 0, 0, 0x02},       // nothing known
        {false, 9, 11, 0, 0x02},      // unknown PANOSE kind
        {false, 1, 0, 0x0C00, 0x52},  // symbolic class
    };
    for (const auto& [fixed, kind, serif, familyClass, expected] : cases) {
        EXPECT_EQ(expected, PitchAndFamilyOfFace(fixed, kind, serif, familyClass))
            << int(kind) << " " << int(serif);
    }
    // The second subtable is cross-stream: ignored.
    const std::vector<uint8_t> table =
        KernTable({{0x0001, 2, 36, 57, -150, 57, 36, -120}, {0x0005, 1, 1, 2, 40}, {0x0001, 1, 3, 4, 7}});
    std::vector<std::tuple<int, int, int>> pairs;
    for (const GlyphKerning& p : ParseKernTable(table.data(), table.size())) {
        pairs.emplace_back(p.left, p.right, p.value);
    }
    EXPECT_EQ(pairs, (std::vector<std::tuple<int, int, int>>{{36, 57, -150}, {57, 36, -120}, {3, 4, 7}}));
    const std::vector<uint8_t> lying = KernTable({{0x0001, 1000, 1, 2, 3, 4, 5, 6}});  // claims far more
    EXPECT_EQ(2u, ParseKernTable(lying.data(), lying.size()).size());
    for (const std::vector<uint8_t>* whole : {&table, &lying}) {
        for (size_t cut = 0; cut < whole->size(); ++cut) {
            // A copy of exactly cut bytes, so that AddressSanitizer sees any over-read.
            std::vector<uint8_t> prefix(whole->begin(), whole->begin() + static_cast<std::ptrdiff_t>(cut));
            EXPECT_LE(ParseKernTable(prefix.data(), prefix.size()).size(), 3u);
        }
    }
    std::vector<uint8_t> apple = {0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01};  // version 1.0: not read
    EXPECT_TRUE(ParseKernTable(apple.data(), apple.size()).empty());
    EXPECT_TRUE(ParseKernTable(nullptr, 0).empty());
    std::vector<uint8_t> zeroLength = {0, 0, 0, 5, 0, 0, 0, 0, 0x02, 0x01};  // format 2 with length 0
    EXPECT_TRUE(ParseKernTable(zeroLength.data(), zeroLength.size()).empty());
    // (-2100 - 1045) / 2048, (4305 + 1045) / 2048, (-3192 - 1045) / 2048, zero, no units per em.
    EXPECT_EQ(
        std::make_tuple(-1, 2, -2, 0, 0),
        std::make_tuple(ScaleKerning(-100, 21, 2048), ScaleKerning(205, 21, 2048),
                        ScaleKerning(-152, 21, 2048), ScaleKerning(0, 21, 2048), ScaleKerning(10, 21, 0)));
}

TEST(SfntHeights, ACellHeightTakesTheLargestSizeWhoseCellFitsAsTheClassicEngineDoesUnlessAVdmxGroupListsIt) {
    for (const VerticalDesign& design :
         {VerticalDesign{2048, 1901, 483}, VerticalDesign{2048, 1854, 434}, VerticalDesign{1000, 880, 120},
          VerticalDesign{1024, 900, 124}, VerticalDesign{2048, 1802, 401}}) {
        const int64_t cell = static_cast<int64_t>(design.winAscent) + design.winDescent;
        for (int32_t h = 4; h <= 400; ++h) {
            const uint32_t ppem = PixelsPerEmForHeight(h, design);
            ASSERT_LE(ScaleRounded(cell, ppem, design.unitsPerEm), h) << "height " << h;
            ASSERT_GT(ScaleRounded(cell, ppem + 1, design.unitsPerEm), h) << "height " << h;
        }
    }
    // Character heights (negative), the default size, and the scale's rounding.
    const VerticalDesign dejaVu{2048, 1901, 483};
    EXPECT_EQ(20u, PixelsPerEmForHeight(-20, dejaVu));
    EXPECT_EQ(16u, PixelsPerEmForHeight(0, dejaVu));
    EXPECT_EQ(std::make_tuple(19, 5, -5, 0),
              std::make_tuple(ScaleRounded(1901, 21, 2048), ScaleRounded(483, 21, 2048),
                              ScaleRounded(-483, 21, 2048), ScaleRounded(100, 21, 0)));
    // Wild heights and degenerate designs stay in range.
    EXPECT_EQ(kMaxPixelsPerEm, PixelsPerEmForHeight(INT32_MIN, dejaVu));
    EXPECT_EQ(kMaxPixelsPerEm, PixelsPerEmForHeight(INT32_MAX, dejaVu));
    EXPECT_EQ(1u, PixelsPerEmForHeight(1, dejaVu));
    EXPECT_EQ(30u, PixelsPerEmForHeight(30, VerticalDesign{2048, 0, 0}));
    EXPECT_EQ(30u, PixelsPerEmForHeight(30, VerticalDesign{0, 10, 10}));
    // Version 1, 3 records, 3 ratio ranges: all glyphs (skipped), 2:1 (not square), 1:1 with its group
    // at 24: 3 records for 10..12 pixels per em of yMax/yMin 9/-2, 10/-3, 11/-3.
    const std::vector<uint8_t> table = {0,   1,   0, 3,  0, 3,  0,   0,   0, 0,  1,  2,  1,   1,  1, 1,
                                        1,   1,   0, 0,  0, 0,  0,   24,  0, 3,  10, 12, 0,   10, 0, 9,
                                        255, 254, 0, 11, 0, 10, 255, 253, 0, 12, 0,  11, 255, 253};
    const VdmxGroup group = ParseVdmxTable(table.data(), table.size());
    ASSERT_EQ(3u, group.records.size());
    // Exact cell; between two cells (the smaller); below and beyond the listed cells (the design);
    // a listed character height; one outside the group's sizes.
    const std::pair<int32_t, std::tuple<uint32_t, int, int, int>> cases[] = {
        {13, {11, 10, 3, 2}}, {12, {10, 9, 2, 1}},   {10, {9, 8, 2, 1}},
        {20, {17, 16, 4, 3}}, {-11, {11, 10, 3, 2}}, {-13, {13, 12, 3, 2}},
    };
    for (const auto& [height, expected] : cases) {
        const FontSize size = SizeForHeight(height, dejaVu, group);
        EXPECT_EQ(expected,
                  std::make_tuple(size.pixelsPerEm, size.ascent, size.descent, size.internalLeading))
            << height;
    }
    for (size_t cut = 0; cut < table.size(); ++cut) {
        std::vector<uint8_t> prefix(table.begin(), table.begin() + static_cast<std::ptrdiff_t>(cut));
        EXPECT_LE(ParseVdmxTable(prefix.data(), prefix.size()).records.size(), 3u);
    }
    EXPECT_TRUE(ParseVdmxTable(nullptr, 0).records.empty());
}

// Each kind of run, contour end and degenerate contour, and the fixed-point coordinates.
TEST(NativeOutline, RunsBecomeLineAndSplineRecordsAndOpenEndsCloseOnTheStart) {
    constexpr char on = FT_CURVE_TAG_ON, q = FT_CURVE_TAG_CONIC, c = FT_CURVE_TAG_CUBIC;
    // In 26.6: a single point (dropped); lines, then quadratic controls up to the contour's end; a
    // spline, then a line; two cubic segments, the second closing on the start.
    FT_Vector points[] = {{64, 64},  {0, 0},     {640, 0},   {640, 32},   {640, 640}, {-32, 640},
                          {0, 0},    {320, 320}, {640, 0},   {640, -320}, {0, 0},     {64, 64},
                          {128, 64}, {192, 0},   {256, -64}, {320, -64}};
    char tags[] = {on, on, on, on, q, q, on, q, on, on, on, c, c, on, c, c};
    short ends[] = {0, 5, 9, 15};
    const FT_Outline outline = {4, 16, points, tags, ends, 0};
    GlyphOutline records;
    ft::NativeOutlineRecords(outline, records);
    std::ostringstream text;
    auto put = [&](const POINTFX& p) {
        text << "(" << p.x.value + p.x.fract / 65536.0 << "," << p.y.value + p.y.fract / 65536.0 << ")";
    };
    for (const GlyphOutline::Polygon& polygon : records.polygons) {
        put(polygon.start);
        for (uint32_t i = 0; i < polygon.curveCount; ++i) {
            const GlyphOutline::Curve& curve = records.curves[polygon.firstCurve + i];
            text << " LQC"[static_cast<int>(curve.kind)];
            for (uint32_t p = 0; p < curve.pointCount; ++p) {
                put(records.points[curve.firstPoint + p]);
            }
        }
        text << "|";
    }
    EXPECT_EQ(
        "(0,0)L(10,0)(10,0.5)Q(10,10)(-0.5,10)(0,0)|(0,0)Q(5,5)(10,0)L(10,-5)|"
        "(0,0)C(1,1)(2,1)(3,0)C(4,-1)(5,-1)(0,0)|",
        text.str());
    // A fraction counts up from the integer below; the FIXED range saturates.
    const FIXED quarter = ft::FixedFrom26Dot6(-16), high = ft::FixedFrom26Dot6(FT_Pos{1} << 40),
                low = ft::FixedFrom26Dot6(-(FT_Pos{1} << 40));
    EXPECT_EQ(std::make_tuple(-1, 0xC000, 32767, 0xFFFF, -32768, 0),
              std::make_tuple(quarter.value, quarter.fract, high.value, high.fract, low.value, low.fract));
}
