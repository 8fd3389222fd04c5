// Text output on the test faces: what holds whatever the anti-aliasing (which pixels change, where the
// band lies, alignment as shifts of the same image, solid lines and boxes, the composites of pixels
// whose section value is known), golden labels, wrapping, bad input and threads.
#include <boost/make_shared.hpp>
#include <cstdlib>
#include <fstream>

#include "SurfaceTestSupport.h"
#include "font/TestFonts.h"
#include "surface/TextLines.h"
#include "ulogui/Font.h"
#include "ulogui/Palette.h"

namespace {

using namespace surfacetest;
using FontPtr = boost::shared_ptr<ULOFont>;
const CLR kWhite(255, 255, 255), kBlack(0, 0, 0), kRed(255, 0, 0);

FontPtr Font(const wchar_t* face, int height, bool italic = false, bool underline = false) {
    return boost::make_shared<ULOFont>(std::vector<ULOString>{face}, height, 0, 1.0f, italic, underline,
                                       false);
}

// A surface filled with one pixel.
struct Surface : ULOTrueColorDCBase {
    Surface(int w, int h, const CLR& c = kWhite, unsigned char alpha = 0, bool withAlpha = false,
            bool magnified = false)
        : ULOTrueColorDCBase(ULORect(0, 0, w, h), withAlpha, magnified) {
        FillAll(*this, c, alpha);
        blank = Pixels(*this);
    }
    // The box around the pixels that changed (empty when none), and how many pixels equal p.
    ULORect Changed() const {
        ULORect box(INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN);
        const std::vector<Pixel> now = Pixels(*this);
        for (int i = 0, w = GetWidth(true); i < int(now.size()); ++i) {
            if (now[size_t(i)] != blank[size_t(i)]) {
                box = ULORect(std::min(box.left, i % w), std::min(box.top, i / w),
                              std::max(box.right, i % w + 1), std::max(box.bottom, i / w + 1));
            }
        }
        return box.IsEmpty() ? ULORect() : box;
    }
    int Count(const Pixel& p) const {
        const std::vector<Pixel> now = Pixels(*this);
        return int(std::count(now.begin(), now.end(), p));
    }
    std::vector<Pixel> blank;
};

class TextOutTest : public MagnifierTest {
protected:
    void SetUp() override {
        MagnifierTest::SetUp();
        REQUIRE_LATIN_FONTS();
    }
    void TearDown() override {
        ulogui::SetHighlightOverflowingTexts(false);
        MagnifierTest::TearDown();
    }
    testfonts::ScopedEngine engine_{testfonts::LatinEngine()};
};

TEST_F(TextOutTest, BandAlignmentResultMnemonicBoxRedAndFontHeight) {
    const FontPtr font = Font(L"DejaVu Sans", 15);
    const int w = static_cast<int>(std::ceil(font->GetStringRealWidth(L"Hello", 0)));
    // Left-aligned on (10, 5, 110, 35): the image every case is a shift of, in the band's 15 rows.
    Surface reference(120, 40);
    const ULORect rect(10, 5, 110, 35);
    EXPECT_EQ(reference.TextOutW(font, &rect, L"Hello", 0, kBlack, 1.0f, 0, kWhite), w);
    const ULORect drawn = reference.Changed();
    EXPECT_TRUE(drawn.top >= 20 && drawn.bottom <= 35 && drawn.left >= 10 && drawn.right <= 10 + w + 1);
    const struct {
        int flags;
        ULORect rect;
        int shiftX, shiftY, result;
    } cases[] = {
        {0x4, rect, 100 - w, 0, w},
        {0x6, rect, 100 - w, 0, w},
        {0x2, rect, (100 - w) / 2, 0, w},
        {0x50, {10, -5, 110, 25}, 0, -10, w},     // other bits are ignored
        {0x4, {10, 5, 500, 200}, 109 - w, 4, w},  // right and bottom beyond: one pixel inside, 119 and 39
        {0, {10, 5, 10 + w - 3, 35}, 0, 0, w - 3},
    };
    for (const auto& c : cases) {
        Surface dc(120, 40);
        EXPECT_EQ(dc.TextOutW(font, &c.rect, L"Hello", c.flags, kBlack, 1.0f, 0, kWhite), c.result);
        const ULORect moved = dc.Changed();
        ASSERT_EQ(moved, ULORect(drawn.left + c.shiftX, drawn.top + c.shiftY,
                                 std::min(drawn.right + c.shiftX, c.rect.right), drawn.bottom + c.shiftY));
        for (int i = 0; i < moved.Width() * moved.Height(); ++i) {
            const int x = moved.left + i % moved.Width(), y = moved.top + i / moved.Width();
            ASSERT_EQ(PixelAt(dc, x, y), PixelAt(reference, x - c.shiftX, y - c.shiftY)) << c.flags;
        }
    }
    // Mnemonics, the opaque box and red for overflowing words.
    const FontPtr liberation = Font(L"Liberation Sans", 17);  // 15 pixels per em: no grey
    const int ascent = ulogui::platform::ResolveFont(liberation->GetRegularFont())->GetMetrics().ascent;
    const ULORect band(0, 0, 90, 24);  // rows 7 to 23
    // The marked "H" is underlined one row under the baseline, its advance less one long.
    Surface marked(90, 30);
    marked.SetEnableMnemonic(true);
    EXPECT_EQ(marked.TextOutW(liberation, &band, L"&Hu", 0, kBlack, 1.0f, 0, kWhite),
              static_cast<int>(std::ceil(liberation->GetStringRealWidth(L"&Hu", 0))));
    for (int x = 0; x < 90; ++x) {
        ASSERT_EQ(PixelAt(marked, x, 7 + ascent + 1),
                  Bgra(x < liberation->GetCharWidthW(L'H', true) - 1 ? kBlack : kWhite, 0));
    }
    // Flag 0x8: a box of the first colour over the text cell, the glyphs in the second.
    const CLR box(30, 160, 90), glyphs(200, 10, 60);
    Surface boxed(90, 30);
    const int width = boxed.TextOutW(liberation, &band, L"Hu", 0x8, box, 1.0f, 0, glyphs);
    EXPECT_EQ(boxed.Changed(), ULORect(0, 7, width, 24));
    EXPECT_GT(boxed.Count(Bgra(glyphs, 0)), 40);
    EXPECT_EQ(boxed.Count(Bgra(box, 0)) + boxed.Count(Bgra(glyphs, 0)), 17 * width);
    // A word that does not fit shows in red; one that fits keeps its colour.
    ulogui::SetHighlightOverflowingTexts(true);
    for (const wchar_t* text : {L"Hu", L"Overflowing"}) {
        Surface s(90, 30);
        const ULORect narrow(0, 0, 60, 24);
        s.TextOutW(liberation, &narrow, text, 0, kBlack, 1.0f, 0, kWhite);
        const bool red = text[2] != 0;
        EXPECT_GT(s.Count(Bgra(red ? kRed : kBlack, 0)), 20);
        EXPECT_EQ(s.Count(Bgra(red ? kBlack : kRed, 0)), 0);
    }
    SetMagnifier(2.0f);
    // The font height is converted only on unmagnified surfaces. Unmagnified: a band of 30 rows (15 at m =
    // 2), the cell at its top. Magnified: the rectangle doubles, the band is the font's 15 rows at the
    // bottom.
    for (const bool magnified : {false, true}) {
        Surface dc(50, 30, kWhite, 0, false, magnified);
        const ULORect whole(0, 0, 50, 30);
        EXPECT_GT(dc.TextOutW(Font(L"DejaVu Sans", 15), &whole, L"Hg", 0x8, kBlack, 1.0f, 0, kWhite), 0);
        EXPECT_EQ(dc.Changed().top, magnified ? 45 : 0);
        EXPECT_LE(dc.Changed().bottom, magnified ? 60 : 16);
    }
}

TEST_F(TextOutTest, TheBandAndTheClippedPartArePutBackAsTheyShouldBe) {
    const FontPtr font = Font(L"DejaVu Sans", 15);
    const ULORect rect(10, 5, 70, 25), clip(20, 0, 50, 30);
    for (const int m : {1, 2}) {
        SetMagnifier(float(m));
        for (const bool alpha : {false, true}) {
            // Alpha bytes of a surface without alpha come back 0 (opaque) from the copies.
            Surface dc(80, 30, CLR(40, 90, 140), alpha ? 100 : 0, alpha, m == 2);
            Surface twin(80, 30, CLR(40, 90, 140), alpha ? 100 : 0, alpha, m == 2);
            EXPECT_EQ(dc.TextOutClipped(font, &rect, &clip, L"Hello", 0x2, kBlack, 0.7f, 0, kWhite),
                      twin.TextOutW(font, &rect, L"Hello", 0x2, kBlack, 0.7f, 0, kWhite));
            const std::vector<Pixel> drawn = Pixels(twin), after = Pixels(dc);
            const ULORect inside(20 * m, 5 * m, 50 * m, 25 * m);
            for (size_t i = 0; i < after.size(); ++i) {
                const ULOPoint p(int(i) % (80 * m), int(i) / (80 * m));
                ASSERT_EQ(after[i], inside.Contains(p) ? drawn[i] : dc.blank[i]) << p.x << ", " << p.y;
            }
            EXPECT_NE(after, dc.blank);
        }
    }
    Surface plain(80, 30);
    const ULORect huge(INT32_MIN, 0, INT32_MAX, 30);
    EXPECT_EQ(plain.TextOutClipped(font, &rect, nullptr, L"Hello", 0, kBlack, 1.0f, 0, kWhite), 0);
    EXPECT_EQ(plain.TextOutClipped(font, &huge, &clip, L"Hello", 0, kBlack, 1.0f, 0, kWhite), 0);
    // Putting the band back.
    // Flag 0x8 with colours whose section pixels are known: the box is exactly `box`, the glyphs (no
    // grey at 12 pixels per em) exactly `glyphs`. A twin on white with opacity 1 shows which is which.
    const FontPtr liberation = Font(L"Liberation Sans", 13);
    const CLR box(30, 60, 90), glyphs(10, 10, 10), under(203, 151, 101);
    const ULORect cell(0, 0, 60, 14);
    Surface twin(60, 14);
    twin.TextOutW(liberation, &cell, L"Hi", 0x8, box, 1.0f, 0, glyphs);
    // Worked by hand in single precision. grey(box) = 59, so the backdrop is white; a glyph pixel's
    // cover is (9 - 59) * 255 / 196 = -65, kept as 191; a box pixel's 0.
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
        Surface dc(60, 14, under, c.underAlpha, c.alpha);
        dc.TextOutW(liberation, &cell, L"Hi", 0x8, box, c.opacity, 0, glyphs);
        const std::vector<Pixel> section = Pixels(twin), after = Pixels(dc);
        for (size_t i = 0; i < after.size(); ++i) {
            const Pixel expected = section[i] == Bgra(box, 0)      ? c.onBox
                                   : section[i] == Bgra(glyphs, 0) ? c.onGlyph
                                                                   : Bgra(under, c.underAlpha);
            ASSERT_EQ(after[i], expected) << i << (c.alpha ? " alpha" : "");
        }
    }
    // Without flag 0x8, dark text goes onto white and light text onto black: untouched pixels keep
    // their alpha, touched ones take the text colour.
    for (const CLR& ink : {CLR(20, 20, 20), CLR(240, 240, 100)}) {
        Surface dc(60, 14, under, 255, true);
        dc.TextOutW(liberation, &cell, L"Hi", 0, ink, 1.0f, 0, kWhite);
        EXPECT_GT(dc.Count(Bgra(ink, 0)), 20);
        EXPECT_EQ(dc.Count(Bgra(ink, 0)) + dc.Count(Bgra(under, 255)), 60 * 14);
    }
}

TEST_F(TextOutTest, MultiLineTextOut) {
    const FontPtr font = Font(L"Liberation Sans", 13);
    const wchar_t* text = L"one two three four five six";
    // Under two font heights: one TextOutW.
    Surface dc(60, 80), lines(60, 80);
    const ULORect low(0, 0, 60, 25), rect(0, 0, 60, 39);
    EXPECT_EQ(dc.MultiLineTextOut(font, &low, text, 0, kBlack, 1.0f, 0, kWhite),
              lines.TextOutW(font, &low, text, 0, kBlack, 1.0f, 0, kWhite));
    // Lines of 13 rows from the top, each as TextOutW draws it; the results add up. With the highlight
    // on, the last line that has room shows in red, with more text to come.
    for (const bool highlight : {false, true}) {
        ulogui::SetHighlightOverflowingTexts(highlight);
        Surface multi(60, 80), single(60, 80);
        const int total = multi.MultiLineTextOut(font, &rect, text, 0, kBlack, 1.0f, 0, kWhite);
        int sum = 0;
        ULOString rest = text;
        for (int line = 0; line < 2; ++line) {
            const int n = font->GetMaxWordOffset(60, rest, 0);
            const ULORect box(0, 13 * line, 60, 13 * line + 13);
            sum += single.TextOutW(font, &box, rest.substr(0, size_t(n)).c_str(), 0,
                                   highlight && line == 1 ? kRed : kBlack, 1.0f, 0, kWhite);
            rest = rest.substr(size_t(n) + 1);  // and the space
        }
        EXPECT_EQ(total, sum);
        EXPECT_TRUE(Pixels(multi) == Pixels(single)) << highlight;
    }
    // The wrap of a window of the text is the wrap of the whole rest, wherever the window ends.
    const FontPtr dejavu = Font(L"DejaVu Sans", 15);
    std::srand(17);
    const wchar_t pieces[] = L"  \t\r\n-abcdefghij";
    for (int round = 0; round < 60; ++round) {
        ULOString random;
        const int spread = 1 + std::rand() % 1000;  // how rare the breaks are
        while (random.size() < 900 + size_t(round) * 70) {
            random += std::rand() % spread == 0 ? pieces[std::rand() % 6] : pieces[6 + std::rand() % 11];
        }
        const int width = std::rand() % 3 == 0 ? 100000 : 20 + std::rand() % 400;
        for (size_t pos : {size_t(0), size_t(std::rand()) % random.size()}) {
            ASSERT_EQ(ulogui::surface::FirstLineLength(*dejavu, width, random, pos),
                      dejavu->GetMaxWordOffset(width, random.substr(pos), 0))
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

TEST_F(TextOutTest, BadInputIsSurvived) {
    const FontPtr font = Font(L"DejaVu Sans", 15), missing = Font(L"No Such Face", 15);  // a substitute draws
    const FontPtr fonts[] = {font, missing, boost::make_shared<ULOFont>(0u, 0, 1.0f),
                             Font(L"DejaVu Sans", -15, true), FontPtr()};
    const ULORect rects[] = {{0, 0, 40, 20},   {0, 0, 0, 20},    {0, 0, 1, 20},
                             {5, 5, 5, 5},     {30, 30, 90, 90}, {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX},
                             {-50, -9, 2, 10}, {39, 0, 41, 20},  {41, 0, 99, 20},
                             {0, 19, 40, 400}};
    const wchar_t* texts[] = {L"", L"\n\n\n", L"a\xD800 b\xDC00", L"&", L"x\ty\r\nz&&&"};
    int drawn = 0;
    for (int variant = 0; variant < 4; ++variant) {
        SetMagnifier(variant & 2 ? 1.5f : 1.0f);
        for (const FontPtr& f : fonts) {
            for (const ULORect& r : rects) {
                for (const wchar_t* text : texts) {
                    for (const float opacity : {0.5f, std::nanf(""), -1.0f, 2.0f, 1e30f}) {
                        Surface dc(40, 20, CLR(9, 9, 9), 255, variant & 1, variant & 2);
                        dc.SetEnableMnemonic(variant & 1);
                        EXPECT_LE(dc.TextOutW(f, &r, text, 0x1AE, kWhite, opacity, 7, kBlack), 60);
                        drawn += dc.Changed() != ULORect();
                        dc.MultiLineTextOut(f, &r, text, 0, kWhite, opacity, -7, kBlack);
                        dc.TextOutClipped(f, &r, &rects[4], text, 0, kWhite, opacity, 0, kBlack);
                    }
                    EXPECT_EQ(Surface(4, 4).TextOutW(f, &r, nullptr, 0, kWhite, 1.0f, 0, kBlack), 0);
                }
            }
        }
    }
    EXPECT_GT(drawn, 100);
    Surface dc(40, 20, kBlack);
    dc.TextOutW(missing, &rects[0], L"Hi", 0, kWhite, 1.0f, 0, kBlack);
    EXPECT_NE(dc.Changed(), ULORect());
}

// The same labels drawn on four threads at once, each on its own surfaces with its own magnifier,
// against the same labels drawn on this thread.
TEST_F(TextOutTest, ThreadsDrawWhatOneThreadDraws) {
    const FontPtr fonts[] = {Font(L"DejaVu Sans", 15), Font(L"Liberation Sans", 17, true, true)};
    auto draw = [&](int thread) {
        magnify::GetMagnifier() = 1.0f + 0.25f * float(thread);
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

// Whole labels against images in tests/data/text (8-bit PGM of the blue byte, black text on white).
// Tolerance: every pixel within 24 grey levels and at most 3 % of the pixels differing at all, so that a
// change of the rasteriser's anti-aliasing passes and a misplaced glyph does not. On Windows GDI draws
// the text: a coverage level of its own apart, up to 100, in at most 8 % (docs/windows.md).
// ULO_WRITE_GOLDEN=1 rewrites them.
#if defined(_WIN32)
constexpr int kGreyTolerance = 100, kDifferingPercent = 8;
#else
constexpr int kGreyTolerance = 24, kDifferingPercent = 3;
#endif
TEST_F(TextOutTest, GoldenLabels) {
    const struct {
        const char* file;
        FontPtr font;
        const wchar_t* text;
        int flags;
    } cases[] = {
        {"ok-dejavu15.pgm", Font(L"DejaVu Sans", 15), L"OK, Cancel", 0x2},
        {"file-liberation17-mnemonic.pgm", Font(L"Liberation Sans", 17), L"&File && Edit", 0},
        {"wavy-dejavu20-italic-underline.pgm", Font(L"DejaVu Sans", 20), L"Wavy (g)", 0x1A4},
    };
    for (const auto& c : cases) {
        Surface dc(96, 24);
        dc.SetEnableMnemonic(c.text[0] == L'&');
        const ULORect rect(2, 0, 94, 24);
        dc.TextOutW(c.font, &rect, c.text, c.flags, kBlack, 1.0f, 0, kWhite);
        std::string grey = "P5\n96 24\n255\n";
        for (const Pixel& p : Pixels(dc)) {
            grey += static_cast<char>(p[0]);
        }
        const std::string path = std::string(ULO_TEST_DATA_DIR) + "/text/" + c.file;
        if (std::getenv("ULO_WRITE_GOLDEN") != nullptr) {
            std::ofstream(path, std::ios::binary) << grey;
        }
        std::ifstream in(path, std::ios::binary);
        const std::string golden{std::istreambuf_iterator<char>(in), {}};
        ASSERT_EQ(golden.size(), grey.size()) << path;
        int differing = 0;
        for (size_t i = 0; i < grey.size(); ++i) {
            const int d =
                std::abs(static_cast<unsigned char>(grey[i]) - static_cast<unsigned char>(golden[i]));
            EXPECT_LE(d, kGreyTolerance) << c.file << " byte " << i;
            differing += d != 0;
        }
        EXPECT_LE(differing * 100, kDifferingPercent * int(grey.size())) << c.file;
    }
}

}  // namespace
