// Text output on the test faces: what holds whatever the anti-aliasing (which pixels change, where the
// band lies, alignment as shifts of the same image, solid lines and boxes, the composites of pixels
// whose section value is known), a few golden labels, bad input, and threads.
#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "SurfaceTestSupport.h"
#include "font/TestFonts.h"
#include "surface/TextLines.h"
#include "ulogui/Font.h"
#include "ulogui/Palette.h"
#include "ulogui/TrueColorDC.h"

namespace {

using namespace surfacetest;
using FontPtr = boost::shared_ptr<ULOFont>;

const CLR kWhite(255, 255, 255);
const CLR kBlack(0, 0, 0);

FontPtr Font(const wchar_t* face, int height, bool italic = false, bool underline = false) {
    return boost::make_shared<ULOFont>(std::vector<ULOString>{face}, height, 0, 1.0f, italic, underline,
                                       false);
}

// Every pixel of the buffer, top row first.
std::vector<Pixel> Pixels(const ULOTrueColorDCBase& dc) {
    std::vector<Pixel> out;
    for (int y = 0; y < dc.GetHeight(true); ++y) {
        for (int x = 0; x < dc.GetWidth(true); ++x) {
            out.push_back(PixelAt(dc, x, y));
        }
    }
    return out;
}

void Fill(ULOTrueColorDCBase& dc, const CLR& colour, unsigned char alpha) {
    const ULORect all = dc.GetRect(true);
    dc.SetWorkingOnScreenSize(true);
    dc.FillRect(&all, colour, alpha);
    dc.SetWorkingOnScreenSize(false);
}

// The box around the pixels that differ from `before` (empty when none).
ULORect Changed(const ULOTrueColorDCBase& dc, const std::vector<Pixel>& before) {
    ULORect box(INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN);
    const int w = dc.GetWidth(true);
    for (int y = 0; y < dc.GetHeight(true); ++y) {
        for (int x = 0; x < w; ++x) {
            if (PixelAt(dc, x, y) != before[size_t(y) * w + x]) {
                box = ULORect(std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                              std::max(box.bottom, y + 1));
            }
        }
    }
    return box.IsEmpty() ? ULORect() : box;
}

class TextOutTest : public MagnifierTest {
protected:
    void SetUp() override {
        MagnifierTest::SetUp();
        ulogui::SetHighlightOverflowingTexts(false);
    }
    void TearDown() override {
        ulogui::SetHighlightOverflowingTexts(false);
        MagnifierTest::TearDown();
    }
    testfonts::ScopedEngine engine_{testfonts::LatinEngine()};
};

#define REQUIRE_FONTS()      \
    REQUIRE_LATIN_FONTS();   \
    if (HasFatalFailure()) { \
        return;              \
    }

TEST_F(TextOutTest, BandAlignmentAndResult) {
    REQUIRE_FONTS();
    const FontPtr font = Font(L"DejaVu Sans", 15);
    const int textWidth = static_cast<int>(std::ceil(font->GetStringRealWidth(L"Hello", 0)));
    // Left-aligned on (10, 5, 110, 35), the reference every case is a shift of.
    ULOTrueColorDCBase reference(ULORect(0, 0, 120, 40), false, false);
    Fill(reference, kWhite, 0);
    const std::vector<Pixel> blank = Pixels(reference);
    const ULORect rect(10, 5, 110, 35);
    EXPECT_EQ(reference.TextOutW(font, &rect, L"Hello", 0, kBlack, 1.0f, 0, kWhite), textWidth);
    const ULORect drawn = Changed(reference, blank);
    EXPECT_GE(drawn.top, 35 - 15);  // the band: the rectangle's bottom rows, one font height
    EXPECT_LE(drawn.bottom, 35);
    EXPECT_GE(drawn.left, 10);
    EXPECT_LE(drawn.right, 10 + textWidth + 1);
    const struct {
        int flags;
        ULORect rect;
        int shiftX, shiftY, result;
    } cases[] = {
        {0x4, {10, 5, 110, 35}, 100 - textWidth, 0, textWidth},
        {0x6, {10, 5, 110, 35}, 100 - textWidth, 0, textWidth},
        {0x2, {10, 5, 110, 35}, (100 - textWidth) / 2, 0, textWidth},
        {0x1F0 & ~0x1A0, {10, -5, 110, 25}, 0, -10, textWidth},  // other bits are ignored
        // Right and bottom beyond the surface come one pixel inside it: to 119 and 39.
        {0x4, {10, 5, 500, 200}, 109 - textWidth, 4, textWidth},
        {0, {10, 5, 10 + textWidth - 3, 35}, 0, 0, textWidth - 3},
    };
    for (const auto& c : cases) {
        ULOTrueColorDCBase dc(ULORect(0, 0, 120, 40), false, false);
        Fill(dc, kWhite, 0);
        EXPECT_EQ(dc.TextOutW(font, &c.rect, L"Hello", c.flags, kBlack, 1.0f, 0, kWhite), c.result);
        const ULORect moved = Changed(dc, blank);
        const ULORect visible(drawn.left + c.shiftX, drawn.top + c.shiftY,
                              std::min(drawn.right + c.shiftX, c.rect.right), drawn.bottom + c.shiftY);
        ASSERT_EQ(moved, visible) << c.flags;
        for (int y = moved.top; y < moved.bottom; ++y) {
            for (int x = moved.left; x < moved.right; ++x) {
                ASSERT_EQ(PixelAt(dc, x, y), PixelAt(reference, x - c.shiftX, y - c.shiftY)) << c.flags;
            }
        }
    }
}

TEST_F(TextOutTest, MnemonicOpaqueBoxAndRed) {
    REQUIRE_FONTS();
    const FontPtr font = Font(L"Liberation Sans", 17);  // no grey at this size
    const int ascent = ulogui::platform::ResolveFont(font->GetRegularFont())->GetMetrics().ascent;
    const CLR box(30, 160, 90), glyphs(200, 10, 60);
    ULOTrueColorDCBase dc(ULORect(0, 0, 90, 30), false, false);
    Fill(dc, kWhite, 0);
    const std::vector<Pixel> blank = Pixels(dc);
    const ULORect rect(0, 0, 90, 24);  // the band: rows 7 to 23
    // The underline of the marked "H": one row under the baseline, its advance less one long.
    const int advance = static_cast<int>(font->GetCharWidthW(L'H', true));
    dc.SetEnableMnemonic(true);
    EXPECT_EQ(dc.TextOutW(font, &rect, L"&Hu", 0, kBlack, 1.0f, 0, kWhite),
              static_cast<int>(std::ceil(font->GetStringRealWidth(L"&Hu", 0))));
    for (int x = 0; x < 90; ++x) {
        EXPECT_EQ(PixelAt(dc, x, 7 + ascent + 1), x < advance - 1 ? Bgra(kBlack, 0) : Bgra(kWhite, 0)) << x;
    }
    // Flag 0x8: a box of the first colour over the text cell, the glyphs in the second.
    Fill(dc, kWhite, 0);
    dc.SetEnableMnemonic(false);
    const int width = dc.TextOutW(font, &rect, L"Hu", 0x8, box, 1.0f, 0, glyphs);
    EXPECT_EQ(Changed(dc, blank), ULORect(0, 7, width, 24));
    int boxPixels = 0, glyphPixels = 0;
    for (int y = 7; y < 24; ++y) {
        for (int x = 0; x < width; ++x) {
            boxPixels += PixelAt(dc, x, y) == Bgra(box, 0);
            glyphPixels += PixelAt(dc, x, y) == Bgra(glyphs, 0);
        }
    }
    EXPECT_EQ(boxPixels + glyphPixels, 17 * width);
    EXPECT_GT(glyphPixels, 40);
    // A word that does not fit shows in red; one that fits keeps its colour.
    ulogui::SetHighlightOverflowingTexts(true);
    for (const wchar_t* text : {L"Hu", L"Overflowing"}) {
        Fill(dc, kWhite, 0);
        const ULORect narrow(0, 0, 60, 24);
        dc.TextOutW(font, &narrow, text, 0, kBlack, 1.0f, 0, kWhite);
        const bool red = std::wstring(text).size() > 2;
        int ink = 0;
        for (const Pixel& p : Pixels(dc)) {
            ink += p == Bgra(red ? CLR(255, 0, 0) : kBlack, 0);
            ASSERT_TRUE(!red || p[2] == 255) << "only red on white";
        }
        EXPECT_GT(ink, 20);
    }
}

TEST_F(TextOutTest, PuttingTheBandBack) {
    REQUIRE_FONTS();
    // Flag 0x8 with colours whose section pixels are known: the box is exactly `box`, the glyphs
    // (no grey at this size) exactly `glyphs`. A twin on white with opacity 1 shows which is which.
    const FontPtr font = Font(L"Liberation Sans", 13);
    const CLR box(30, 60, 90), glyphs(10, 10, 10), under(203, 151, 101);
    const ULORect rect(0, 0, 60, 14);
    ULOTrueColorDCBase twin(ULORect(0, 0, 60, 14), false, false);
    Fill(twin, kWhite, 0);
    twin.TextOutW(font, &rect, L"Hi", 0x8, box, 1.0f, 0, glyphs);
    // Composites worked by hand in single precision. grey(box) = 59, so the backdrop is white and the
    // cover of a glyph pixel is (9 - 59) * 255 / 196 = -65, kept as 191; of a box pixel 0.
    const struct {
        bool alpha;
        unsigned char underAlpha;
        float opacity;
        Pixel onBox, onGlyph;
    } cases[] = {
        {true, 91, 0.4f, {95, 104, 114, 54}, {99, 137, 177, 81}},
        {true, 255, 0.4f, {90, 60, 30, 153}, {90, 60, 30, 229}},
        {true, 91, 0.0f, {90, 60, 30, 0}, {97, 119, 143, 68}},
        {false, 77, 0.3f, {97, 123, 151, 77}, {73, 108, 145, 77}},  // (int)(under * 0.7 + section * 0.3)
        {false, 77, 1.0f, {90, 60, 30, 0}, {10, 10, 10, 0}},
    };
    for (const auto& c : cases) {
        ULOTrueColorDCBase dc(ULORect(0, 0, 60, 14), c.alpha, false);
        Fill(dc, under, c.underAlpha);
        dc.TextOutW(font, &rect, L"Hi", 0x8, box, c.opacity, 0, glyphs);
        int seen[2] = {0, 0};
        for (int y = 0; y < 14; ++y) {
            for (int x = 0; x < 60; ++x) {
                const Pixel section = PixelAt(twin, x, y);
                const Pixel expected = section == Bgra(box, 0)      ? c.onBox
                                       : section == Bgra(glyphs, 0) ? c.onGlyph
                                                                    : Bgra(under, c.underAlpha);
                ASSERT_EQ(PixelAt(dc, x, y), expected) << x << ", " << y << " alpha " << c.alpha;
                seen[0] += section == Bgra(box, 0);
                seen[1] += section == Bgra(glyphs, 0);
            }
        }
        EXPECT_TRUE(seen[0] > 0 && seen[1] > 0);
    }
    // Without flag 0x8, dark text goes onto white and light text onto black: untouched pixels keep
    // their alpha, and touched ones take the text colour.
    for (const CLR& ink : {CLR(20, 20, 20), CLR(240, 240, 100)}) {
        ULOTrueColorDCBase dc(ULORect(0, 0, 60, 14), true, false);
        Fill(dc, under, 255);
        dc.TextOutW(font, &rect, L"Hi", 0, ink, 1.0f, 0, kWhite);
        int inked = 0;
        for (const Pixel& p : Pixels(dc)) {
            ASSERT_TRUE(p == Bgra(under, 255) || p == Bgra(ink, 0));
            inked += p == Bgra(ink, 0);
        }
        EXPECT_GT(inked, 20);
    }
}

TEST_F(TextOutTest, FontHeightConvertedOnlyOnUnmagnifiedSurfaces) {
    REQUIRE_FONTS();
    const FontPtr font = Font(L"DejaVu Sans", 15);
    SetMagnifier(2.0f);
    const ULORect rect(0, 0, 50, 30);
    // Unmagnified: the band is 30 rows (15 at m = 2) and the text sits at its top. Magnified: the
    // rectangle doubles, the band is the font's 15 rows at the bottom.
    for (const bool magnified : {false, true}) {
        ULOTrueColorDCBase dc(ULORect(0, 0, 50, 30), false, magnified);
        Fill(dc, kWhite, 0);
        const std::vector<Pixel> blank = Pixels(dc);
        EXPECT_GT(dc.TextOutW(font, &rect, L"Hg", 0x8, kBlack, 1.0f, 0, kWhite), 0);
        const ULORect box = Changed(dc, blank);
        EXPECT_EQ(box.top, magnified ? 60 - 15 : 0) << magnified;
        EXPECT_LE(box.bottom, magnified ? 60 : 16) << magnified;
    }
}

TEST_F(TextOutTest, BadInputIsSurvived) {
    REQUIRE_FONTS();
    const FontPtr font = Font(L"DejaVu Sans", 15);
    const FontPtr missing = Font(L"No Such Face", 15);               // the substitute face draws
    const FontPtr empty = boost::make_shared<ULOFont>(0u, 0, 1.0f);  // no font resource file: no fonts
    const FontPtr negative = Font(L"DejaVu Sans", -15, true);
    const ULORect normal(0, 0, 40, 20), wide(INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX);
    const ULORect rects[] = {normal, {0, 0, 0, 20},    {0, 0, 1, 20},   {5, 5, 5, 5},    {30, 30, 90, 90},
                             wide,   {-50, -9, 2, 10}, {39, 0, 41, 20}, {41, 0, 99, 20}, {0, 19, 40, 400}};
    const wchar_t* texts[] = {L"", L"\n\n\n", L"a\xD800 b\xDC00", L"&", L"x\ty\r\nz&&&"};
    const float opacities[] = {0.5f, std::nanf(""), -1.0f, 2.0f, 1e30f};
    int drawn = 0;
    for (const bool alpha : {false, true}) {
        for (const bool magnified : {false, true}) {
            SetMagnifier(magnified ? 1.5f : 1.0f);
            ULOTrueColorDCBase dc(ULORect(0, 0, 40, 20), alpha, magnified);
            dc.SetEnableMnemonic(alpha);
            for (const FontPtr& f : {font, missing, empty, negative, FontPtr()}) {
                for (const ULORect& r : rects) {
                    for (const wchar_t* text : texts) {
                        for (const float opacity : opacities) {
                            Fill(dc, CLR(9, 9, 9), 255);
                            const std::vector<Pixel> blank = Pixels(dc);
                            const int result = dc.TextOutW(f, &r, text, 0x1AE, kWhite, opacity, 7, kBlack);
                            EXPECT_LE(result, 60);
                            drawn += Changed(dc, blank) != ULORect();
                            dc.MultiLineTextOut(f, &r, text, 0, kWhite, opacity, -7, kBlack);
                        }
                    }
                    EXPECT_EQ(dc.TextOutW(f, &r, nullptr, 0, kWhite, 1.0f, 0, kBlack), 0);
                    EXPECT_EQ(dc.MultiLineTextOut(f, nullptr, L"x", 0, kWhite, 1.0f, 0, kBlack), 0);
                }
            }
        }
    }
    EXPECT_GT(drawn, 100);
    ULOTrueColorDCBase dc(ULORect(0, 0, 40, 20), false, false);
    Fill(dc, kBlack, 0);
    const std::vector<Pixel> blank = Pixels(dc);
    dc.TextOutW(missing, &normal, L"Hi", 0, kWhite, 1.0f, 0, kBlack);
    EXPECT_NE(Changed(dc, blank), ULORect());
}

// The same labels drawn on four threads at once, each on its own surfaces with its own magnifier,
// against the same labels drawn on this thread.
TEST_F(TextOutTest, ThreadsDrawWhatOneThreadDraws) {
    REQUIRE_FONTS();
    const FontPtr fonts[] = {Font(L"DejaVu Sans", 15), Font(L"Liberation Sans", 17, true, true)};
    const float magnifiers[] = {1.0f, 1.25f, 1.5f, 2.0f};
    auto draw = [&](int thread) {
        magnify::GetMagnifier() = magnifiers[thread];
        std::vector<Pixel> all;
        for (int round = 0; round < 10; ++round) {
            ULOTrueColorDCBase dc(ULORect(0, 0, 90, 50), round % 2 == 0, true);
            const ULORect rect(2, 2, 88, 48);
            dc.MultiLineTextOut(fonts[round % 2], &rect, L"The quick brown fox jumps over the lazy dog",
                                0x20 * (round % 3), CLR(10 * round, 0, 200), round % 4 == 0 ? 0.5f : 1.0f, 0,
                                kWhite);
            const std::vector<Pixel> pixels = Pixels(dc);
            all.insert(all.end(), pixels.begin(), pixels.end());
        }
        return all;
    };
    std::vector<std::vector<Pixel>> alone, together(4);
    for (int t = 0; t < 4; ++t) {
        alone.push_back(draw(t));
    }
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] { together[size_t(t)] = draw(t); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(alone == together);
}

TEST_F(TextOutTest, MultiLineTextOut) {
    REQUIRE_FONTS();
    const FontPtr font = Font(L"Liberation Sans", 13);  // no grey: text pixels are the text colour
    const wchar_t* text = L"one two three four five six";
    ULOTrueColorDCBase dc(ULORect(0, 0, 60, 80), false, false);
    // Under two font heights: one TextOutW.
    ULORect rect(0, 0, 60, 25);
    Fill(dc, kWhite, 0);
    EXPECT_EQ(dc.MultiLineTextOut(font, &rect, text, 0, kBlack, 1.0f, 0, kWhite),
              dc.TextOutW(font, &rect, text, 0, kBlack, 1.0f, 0, kWhite));
    // Lines of 13 rows from the top, each drawn as TextOutW draws it; the results add up. With the
    // highlight on, the last line that has room shows in red, with more text to come.
    for (const bool highlight : {false, true}) {
        ulogui::SetHighlightOverflowingTexts(highlight);
        rect = ULORect(0, 0, 60, 39);
        Fill(dc, kWhite, 0);
        const int total = dc.MultiLineTextOut(font, &rect, text, 0, kBlack, 1.0f, 0, kWhite);
        ULOTrueColorDCBase lines(ULORect(0, 0, 60, 80), false, false);
        Fill(lines, kWhite, 0);
        int sum = 0, pos = 0;
        for (int line = 0; line < 2; ++line) {
            const ULOString rest = ULOString(text).substr(size_t(pos));
            const int n = font->GetMaxWordOffset(60, rest, 0);
            const ULORect box(0, 13 * line, 60, 13 * line + 13);
            const CLR ink = highlight && line == 1 ? CLR(255, 0, 0) : kBlack;
            sum += lines.TextOutW(font, &box, rest.substr(0, size_t(n)).c_str(), 0, ink, 1.0f, 0, kWhite);
            pos += n + 1;  // and the space
        }
        EXPECT_EQ(total, sum);
        EXPECT_TRUE(Pixels(dc) == Pixels(lines)) << highlight;
    }
}

// Through a temporary surface: inside rect and clip as TextOutW draws, elsewhere nothing changes.
TEST_F(TextOutTest, TextOutClippedPutsBackOnlyWhatTheClipAllows) {
    REQUIRE_FONTS();
    const FontPtr font = Font(L"DejaVu Sans", 15);
    const ULORect rect(10, 5, 70, 25), clip(20, 0, 50, 30);
    for (const float m : {1.0f, 2.0f}) {
        SetMagnifier(m);
        for (const bool alpha : {false, true}) {
            ULOTrueColorDCBase dc(ULORect(0, 0, 80, 30), alpha, m != 1.0f),
                twin(ULORect(0, 0, 80, 30), alpha, m != 1.0f);
            for (ULOTrueColorDCBase* s : {&dc, &twin}) {
                // Alpha bytes of a surface without alpha come back 0 (opaque) from the copies.
                Fill(*s, CLR(40, 90, 140), alpha ? 100 : 0);
                const ULORect stripe(0, 0, 80, 10);
                s->FillRect(&stripe, CLR(250, 250, 0), alpha ? 255 : 0);
            }
            const std::vector<Pixel> before = Pixels(dc);
            EXPECT_EQ(dc.TextOutClipped(font, &rect, &clip, L"Hello", 0x2, kBlack, 0.7f, 0, kWhite),
                      twin.TextOutW(font, &rect, L"Hello", 0x2, kBlack, 0.7f, 0, kWhite));
            const std::vector<Pixel> drawn = Pixels(twin), after = Pixels(dc);
            const ULORect inside(20 * int(m), 5 * int(m), 50 * int(m), 25 * int(m));
            for (size_t i = 0; i < after.size(); ++i) {
                const ULOPoint p(int(i % size_t(80 * m)), int(i / size_t(80 * m)));
                ASSERT_EQ(after[i], inside.Contains(p) ? drawn[i] : before[i])
                    << p.x << ", " << p.y << " m " << m;
            }
            EXPECT_NE(after, before);
        }
    }
    ULOTrueColorDCBase dc(ULORect(0, 0, 80, 30), false, false);
    EXPECT_EQ(dc.TextOutClipped(font, &rect, nullptr, L"Hello", 0, kBlack, 1.0f, 0, kWhite), 0);
    const ULORect huge(INT32_MIN, 0, INT32_MAX, 30);
    EXPECT_EQ(dc.TextOutClipped(font, &huge, &clip, L"Hello", 0, kBlack, 1.0f, 0, kWhite), 0);
}

// The wrap of a window of the text is the wrap of the whole rest, wherever the window ends.
TEST_F(TextOutTest, WrappingReadsWindowsOfLongTexts) {
    REQUIRE_FONTS();
    const FontPtr font = Font(L"DejaVu Sans", 15);
    std::srand(17);
    const wchar_t pieces[] = L"  \t\r\n-abcdefghij";
    for (int round = 0; round < 60; ++round) {
        ULOString text;
        const size_t length = 900 + size_t(std::rand() % 4000);
        const int spread = 1 + std::rand() % 1000;  // how rare the breaks are
        while (text.size() < length) {
            text += std::rand() % spread == 0 ? pieces[std::rand() % 6] : pieces[6 + std::rand() % 11];
        }
        const int width = std::rand() % 3 == 0 ? 100000 : 20 + std::rand() % 400;
        for (size_t pos : {size_t(0), size_t(std::rand()) % text.size()}) {
            ASSERT_EQ(ulogui::surface::FirstLineLength(*font, width, text, pos),
                      font->GetMaxWordOffset(width, text.substr(pos), 0))
                << round << " at " << pos;
        }
    }
}

TEST(TextOutDeathTest, ALineOf5000CharactersEndsTheProcess) {
    REQUIRE_LATIN_FONTS();
    testfonts::ScopedEngine engine(testfonts::LatinEngine());
    const FontPtr font = Font(L"DejaVu Sans", 15);
    ULOTrueColorDCBase dc(ULORect(0, 0, 10, 40), false, false);
    const ULORect rect(0, 0, 1000000, 40);
    const std::wstring text(4999, L'i');
    EXPECT_GT(dc.MultiLineTextOut(font, &rect, text.c_str(), 0, kBlack, 1.0f, 0, kWhite), 0);
    EXPECT_DEATH(
        dc.MultiLineTextOut(font, &rect, (text + L"i").c_str(), 0, kBlack, 1.0f, 0, kWhite),
        "MultiLineTextOut: a line of 5000 characters does not fit the line buffer of 5,000 characters");
}

// Whole labels against images kept in tests/data/text (8-bit grey PGM of the blue byte, text black on
// white). Tolerance: every pixel within 24 grey levels, at most 3 % of the pixels differing at all,
// so that a change of the rasteriser's anti-aliasing passes and a misplaced glyph does not.
TEST_F(TextOutTest, GoldenLabels) {
    REQUIRE_FONTS();
    const struct {
        const char* file;
        FontPtr font;
        const wchar_t* text;
        int flags;
        bool mnemonic;
    } cases[] = {
        {"ok-dejavu15.pgm", Font(L"DejaVu Sans", 15), L"OK, Cancel", 0x2, false},
        {"file-liberation17-mnemonic.pgm", Font(L"Liberation Sans", 17), L"&File && Edit", 0, true},
        {"wavy-dejavu20-italic-underline.pgm", Font(L"DejaVu Sans", 20), L"Wavy (g)", 0x1A4, false},
    };
    for (const auto& c : cases) {
        ULOTrueColorDCBase dc(ULORect(0, 0, 96, 24), false, false);
        Fill(dc, kWhite, 0);
        dc.SetEnableMnemonic(c.mnemonic);
        const ULORect rect(2, 0, 94, 24);
        dc.TextOutW(c.font, &rect, c.text, c.flags, kBlack, 1.0f, 0, kWhite);
        std::string grey;
        for (const Pixel& p : Pixels(dc)) {
            grey += static_cast<char>(p[0]);
        }
        const std::string path = std::string(ULO_TEST_DATA_DIR) + "/text/" + c.file;
        if (std::getenv("ULO_WRITE_GOLDEN") != nullptr) {
            std::ofstream(path, std::ios::binary) << "P5\n96 24\n255\n" << grey;
        }
        std::ifstream in(path, std::ios::binary);
        std::string magic, width, height, maxValue, golden;
        in >> magic >> width >> height >> maxValue;
        in.get();
        golden.assign(std::istreambuf_iterator<char>(in), {});
        ASSERT_EQ(golden.size(), grey.size()) << path;
        int differing = 0;
        for (size_t i = 0; i < grey.size(); ++i) {
            const int d =
                std::abs(static_cast<unsigned char>(grey[i]) - static_cast<unsigned char>(golden[i]));
            EXPECT_LE(d, 24) << c.file << " pixel " << i;
            differing += d != 0;
        }
        EXPECT_LE(differing * 100, 3 * static_cast<int>(grey.size())) << c.file;
    }
}

}  // namespace
