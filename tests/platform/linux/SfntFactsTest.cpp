// The table-derived facts of the Linux font engine, on values taken from real faces, and native
// outline records from a hand-made FreeType outline.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "platform/FontEngine.h"
#include "platform/linux/NativeOutline.h"
#include "platform/linux/SfntFacts.h"

using namespace ulogui::platform;
using namespace ulogui::platform::ft;

namespace {

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
