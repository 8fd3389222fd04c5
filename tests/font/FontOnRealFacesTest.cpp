// ULOFont end to end on the project's test fonts: face choice, width tables and the double-byte
// languages against what FreeType's classic interpreter reports for the chosen face.
#include <gtest/gtest.h>

#include "TestFonts.h"
#include "ulogui/Font.h"
#include "ulogui/platform/linux/SfntFacts.h"

using namespace ulogui::platform;

namespace {

void ExpectWidths(const ULOFont& font, const std::string& file, unsigned ppem, unsigned first,
                  unsigned last) {
    const std::vector<int> expected = testfonts::ClassicAdvances(file, ppem, first, last);
    ASSERT_EQ(last - first + 1, expected.size());
    for (unsigned c = first; c <= last; ++c) {
        const float want = c < 32 ? 0.0f : static_cast<float>(expected[c - first]);
        ASSERT_EQ(want, font.GetCharWidthW(static_cast<wchar_t>(c), true)) << std::hex << c;
    }
}

}  // namespace

TEST(FontOnRealFaces, ThePreferredAvailableFaceIsChosenAndMeasured) {
    testfonts::ScopedEngine scoped(testfonts::LatinEngine());
    ULOFont font({L"No Such Face", L"Liberation Sans", L"DejaVu Sans"}, 16, 0, 2.0f, false, false, false);
    ASSERT_TRUE(font.IsValid());
    EXPECT_EQ(L"Liberation Sans", font.GetChosenFace());
    // A cell height of 16 is 14 pixels per em for Liberation Sans.
    const uint32_t ppem = ft::PixelsPerEmForHeight(16, ft::VerticalDesign{2048, 1854, 434});
    ASSERT_EQ(14u, ppem);
    ExpectWidths(font, testfonts::Liberation("LiberationSans-Regular.ttf"), ppem, 0, 255);
    EXPECT_EQ(font.GetCharWidthW(L'W', true) / 2.0f, font.GetCharWidthW(L'W', false));

    ULOFont first({L"DejaVu Sans", L"Liberation Sans"}, -16, 0, 1.0f, false, false, false);
    EXPECT_EQ(L"DejaVu Sans", first.GetChosenFace());
    ExpectWidths(first, testfonts::DejaVu("DejaVuSans.ttf"), 16, 32, 255);
}

TEST(FontOnRealFaces, BoldFontsMeasureTheBoldFace) {
    testfonts::ScopedEngine scoped(testfonts::LatinEngine());
    std::vector<ULOString> wanted = {L"DejaVu Sans"};
    bool found = false;
    ULOString chosen;
    HFONT bold = ULOFont::CreateWindowsFont(nullptr, -13, 0, 0, 0, 700, 0, 0, 0, 0, 4, 0, 0, 0x22, wanted,
                                            found, chosen);
    ASSERT_TRUE(found);
    std::vector<int32_t> widths(95);
    ResolveFont(bold)->GetCharAdvances(32, 126, widths.data());
    const std::vector<int> expected =
        testfonts::ClassicAdvances(testfonts::DejaVu("DejaVuSans-Bold.ttf"), 13, 32, 126);
    EXPECT_EQ(expected, std::vector<int>(widths.begin(), widths.end()));
    DeleteFontHandle(bold);
}

TEST(FontOnRealFaces, JapaneseFontsFindASubstituteAndCacheTheIdeographs) {
    if (!testfonts::HaveCjkFonts()) {
        GTEST_SKIP() << "fonts-ipaexfont-gothic missing (scripts/bootstrap)";
    }
    testfonts::ScopedEngine scoped(testfonts::FullEngine());
    ULOFont font({L"MS UI Gothic"}, -16, 3, 1.0f, false, false, false);
    EXPECT_TRUE(font.IsNonANSIFontOK());
    EXPECT_EQ(L"IPAexGothic", font.GetChosenFace());  // the only JIS face, sans like the wanted one
    ASSERT_TRUE(font.HasUnicodeExtraWidths());
    const std::string file = testfonts::IpaexGothic();
    ExpectWidths(font, file, 16, 0x3000, 0x30FF);  // punctuation, kana
    ExpectWidths(font, file, 16, 0x4E00, 0x4FFF);  // ideographs
    ExpectWidths(font, file, 16, 0xFF00, 0xFFEF);  // full- and half-width forms
    ExpectWidths(font, file, 16, 32, 255);
}

TEST(FontOnRealFaces, ChineseFontsUseTheGb2312Face) {
    if (!testfonts::HaveCjkFonts()) {
        GTEST_SKIP() << "fonts-arphic-gbsn00lp missing (scripts/bootstrap)";
    }
    testfonts::ScopedEngine scoped(testfonts::FullEngine());
    ULOFont font({L"SimSun", L"AR PL SungtiL GB"}, -14, 7, 1.0f, false, false, false);
    EXPECT_TRUE(font.IsNonANSIFontOK());
    EXPECT_EQ(L"AR PL SungtiL GB", font.GetChosenFace());
    ExpectWidths(font, testfonts::ArphicGb(), 14, 0x4E00, 0x4EFF);
}

TEST(FontOnRealFaces, AMissingDoubleByteFaceIsReported) {
    testfonts::ScopedEngine scoped(testfonts::LatinEngine());
    ULOFont japanese({L"MS Gothic"}, 16, 3, 1.0f, false, false, false);
    EXPECT_FALSE(japanese.IsNonANSIFontOK());
    EXPECT_EQ(L"MS Gothic", japanese.GetChosenFace());
    EXPECT_TRUE(japanese.IsValid());  // the platform still made a font of some face
    ULOFont latin({L"MS Gothic"}, 16, 0, 1.0f, false, false, false);
    EXPECT_TRUE(latin.IsNonANSIFontOK());
}
