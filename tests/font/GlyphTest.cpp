// The glyph functions on the project's Latin faces: outlines, widths with kerning, the face list,
// and the input they must survive.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cwchar>
#include <vector>

#include "font/GlyphFonts.h"
#include "font/TestFonts.h"
#include "ulogui/Glyph.h"

// Outlines compare whole (ULOArray_NOSTL compares its items); found by argument-dependent lookup.
static bool operator==(const ULOGlyphVertex& u, const ULOGlyphVertex& v) {
    return u.x == v.x && u.y == v.y && u.onCurve == v.onCurve;
}

namespace {

const std::pair<const wchar_t*, std::string> kFaces[] = {
    {L"DejaVu Sans", testfonts::DejaVu("DejaVuSans.ttf")},
    {L"Liberation Sans", testfonts::Liberation("LiberationSans-Regular.ttf")},
};

}  // namespace

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
    EXPECT_NE(names.end(), std::find(names.begin(), names.end(), L"DejaVu Sans"));
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
