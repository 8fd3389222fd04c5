// The draw-text call of the Linux backend: lines and prefixes, layout on a scripted font whose glyphs
// are bars of known coverage, and the FreeType glyph images and their cache on the test faces.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "font/TestFonts.h"
#include "platform/TextCanvas.h"
#include "platform/linux/GlyphCache.h"
#include "platform/linux/LevelBlend.h"
#include "platform/linux/SectionText.h"
#include "platform/linux/TextLines.h"

namespace {

namespace platform = ulogui::platform;
namespace ft = ulogui::platform::ft;

// "|" stands for the line ends between lines, "_" before a marked character.
std::string Lines(const wchar_t* text, bool prefixes) {
    const size_t length = std::wcslen(text);
    std::string out;
    ft::DrawnLine line;
    for (size_t pos = 0; pos < length;) {
        const ft::LineSpan span = ft::NextLine(text, length, pos);
        ft::PrepareLine(text + span.begin, text + span.end, prefixes, line);
        out += out.empty() && pos == 0 ? "" : "|";
        for (size_t i = 0; i < line.codes.size(); ++i) {
            out += (static_cast<std::ptrdiff_t>(i) == line.marked ? "_" : "") +
                   std::string(1, char(line.codes[i]));
        }
        pos = span.next;
    }
    return out;
}

TEST(TextLines, LineEndsAndPrefixes) {
    const struct {
        const wchar_t* text;
        bool prefixes;
        const char* lines;
    } cases[] = {
        {L"a\r\nb\n\rc", true, "a|b|c"}, {L"a\r\rb\n\nc", true, "a||b||c"},
        {L"a\nb\n", true, "a|b"},        {L"&File && Edit", true, "_File & Edit"},
        {L"&File", false, "&File"},      {L"a&b&c&", true, "a_bc&"},
        {L"&&&x", true, "&_x"},          {L"x&\ny", true, "x&|y"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Lines(c.text, c.prefixes), c.lines) << std::wstring(c.text).size();
    }
}

// A scripted font: cell height 10, ascent 8. A character c advances (c % 4) + 3 pixels; its glyph
// is a bar one pixel wide at its first column, of level c % 17 (level 16 for letters), from the
// cell's top to the baseline.
class BarFont : public platform::PlatformFont {
public:
    BarFont() {
        metrics_.height = 10;
        metrics_.ascent = 8;
        metrics_.descent = 2;
        metrics_.underlinePosition = -1;
        metrics_.underlineThickness = 1;
    }
    platform::FontMetrics metrics_;
    ULOString GetFaceName() const override { return L"Bar"; }
    const platform::FontRequest& GetRequest() const override { return request_; }
    platform::FontMetrics GetMetrics() const override { return metrics_; }
    void GetCharAdvances(uint32_t first, uint32_t last, int32_t* widths) const override {
        for (uint32_t c = first; c <= last; ++c) {
            widths[c - first] = static_cast<int32_t>(c % 4) + 3;
        }
    }
    std::vector<platform::KerningPair> GetKerningPairs() const override { return {}; }
    bool GetGlyphOutline(uint32_t, platform::GlyphOutline&) const override { return false; }
    bool GetGlyphMetrics(uint32_t, platform::GlyphMetrics&) const override { return false; }
    void GetGlyphImages(const uint32_t* codes, size_t count, platform::GlyphImagePtr* out) const override {
        for (size_t i = 0; i < count; ++i) {
            auto image = std::make_shared<platform::GlyphImage>();
            GetCharAdvances(codes[i], codes[i], &image->advance);
            image->top = 8;
            image->width = 1;
            image->height = 8;
            const bool letter = (codes[i] | 0x20) >= 'a' && (codes[i] | 0x20) <= 'z';
            image->levels.assign(8, static_cast<uint8_t>(letter ? 16 : codes[i] % 17));
            out[i] = std::move(image);
        }
    }

private:
    platform::FontRequest request_;
};

constexpr unsigned char kPaper = 0xEE;  // every byte of an untouched section pixel

struct Section {
    Section(int w, int h) : bytes(size_t(w) * h * 4, kPaper) {
        view = ulogui::raster::RasterView::TopDown(bytes.data(), w, h, w * 4, 4);
    }
    bool Touched(int x, int y) const { return view.Pixel(x, y)[3] == 0; }
    // The columns of row y that were touched, as a string of "x" and ".".
    std::string Row(int y) const {
        std::string s;
        for (int x = 0; x < view.Width(); ++x) {
            s += Touched(x, y) ? 'x' : '.';
        }
        return s;
    }
    std::vector<unsigned char> bytes;
    ulogui::raster::RasterView view;
};

int Draw(Section& s, const wchar_t* text, const ULORect& rect, unsigned format, bool opaque = false) {
    ft::TextPaint paint;
    paint.mode = opaque ? platform::BackgroundMode::kOpaque : platform::BackgroundMode::kTransparent;
    paint.text = CLR(0, 0, 0);
    paint.background = CLR(255, 255, 255);
    return ft::DrawTextOnSection(s.view, BarFont(), paint, text, std::wcslen(text), rect, format);
}

TEST(SectionText, AlignmentOffsets) {
    // "a" advances 4, "b" 5, "c" 6; the bar of a character is at its pen position.
    namespace dt = platform::drawtext;
    const struct {
        const wchar_t* text;
        unsigned format;
        ULORect rect;
        const char* row;  // a row of the bars
    } cases[] = {
        {L"ab", dt::kLeft, {2, 0, 20, 10}, "..x...x............."},
        {L"ab", dt::kRight, {2, 0, 20, 10}, "...........x...x...."},
        {L"ab", dt::kCenter, {2, 0, 20, 10}, "......x...x........."},   // (2 + 20 - 9) / 2 = 6
        {L"abc", dt::kCenter, {-4, 0, 2, 10}, ".x.................."},  // -17 / 2 = -8, not -9
        {L"abc", dt::kRight | dt::kCenter, {0, 0, 20, 10}, ".....x...x....x....."},
    };
    for (const auto& c : cases) {
        Section s(20, 10);
        Draw(s, c.text, c.rect, c.format | dt::kNoPrefix);
        EXPECT_EQ(s.Row(3), c.row) << c.format << " " << c.rect.left;
    }
}

TEST(SectionText, TouchedPixels) {
    // Bars, the mnemonic underline, line steps, the opaque cell, the font's underline and
    // strike-out, clipping to the rectangle: the touched pixels of whole sections.
    const struct {
        const wchar_t* text;
        ULORect rect;
        bool opaque, underline, strikeOut;
        std::vector<std::string> rows;
    } cases[] = {
        {L"a&b\nb",
         {0, 0, 10, 22},
         false,
         false,
         false,
         {"x...x.....", "x...x.....", "x...x.....", "x...x.....", "x...x.....", "x...x.....",
          "x...x.....", "x...x.....", "..........", "....xxxx..", "x.........", "x.........",
          "x.........", "x.........", "x.........", "x.........", "x.........", "x.........",
          "..........", "..........", "..........", ".........."}},
        // The second line is cut at the rectangle's bottom, and no third is drawn.
        {L"b\r\nb\rb",
         {1, 1, 10, 13},
         false,
         false,
         false,
         {"..........", ".x........", ".x........", ".x........", ".x........", ".x........",
          ".x........", ".x........", ".x........", "..........", "..........", ".x........",
          ".x........", "..........", "..........", "..........", "..........", "..........",
          "..........", "..........", "..........", ".........."}},
        // The opaque cell spans the advances and the cell's height, cut by the rectangle.
        {L"ab", {1, 2, 8, 22}, true, false, false, {"..........", "..........", ".xxxxxxx..", ".xxxxxxx..",
                                                    ".xxxxxxx..", ".xxxxxxx..", ".xxxxxxx..", ".xxxxxxx..",
                                                    ".xxxxxxx..", ".xxxxxxx..", ".xxxxxxx..", ".xxxxxxx..",
                                                    "..........", "..........", "..........", "..........",
                                                    "..........", "..........", "..........", "..........",
                                                    "..........", ".........."}},
        // Underline: top row 8 + 1 - 0 = 9; strike-out (position 3, thickness 2): 8 - 3 - 1 = 4.
        {L"&ab", {0, 0, 10, 22}, false, true, true, {"x...x.....", "x...x.....", "x...x.....", "x...x.....",
                                                     "xxxxxxxxx.", "xxxxxxxxx.", "x...x.....", "x...x.....",
                                                     "..........", "xxxxxxxxx.", "..........", "..........",
                                                     "..........", "..........", "..........", "..........",
                                                     "..........", "..........", "..........", "..........",
                                                     "..........", ".........."}},
    };
    for (const auto& c : cases) {
        Section s(10, 22);
        BarFont font;
        font.metrics_.underlined = c.underline;
        font.metrics_.struckOut = c.strikeOut;
        font.metrics_.strikeOutPosition = 3;
        font.metrics_.strikeOutThickness = 2;
        ft::TextPaint paint;
        paint.mode = c.opaque ? platform::BackgroundMode::kOpaque : platform::BackgroundMode::kTransparent;
        ft::DrawTextOnSection(s.view, font, paint, c.text, std::wcslen(c.text), c.rect, 0);
        for (int y = 0; y < 22; ++y) {
            EXPECT_EQ(s.Row(y), c.rows[static_cast<size_t>(y)])
                << "row " << y << " of " << std::wstring(c.text).size();
        }
        // Untouched pixels keep all four bytes.
        for (size_t i = 0; i < s.bytes.size(); i += 4) {
            if (s.bytes[i + 3] != 0) {
                ASSERT_EQ(s.bytes[i] & s.bytes[i + 1] & s.bytes[i + 2] & s.bytes[i + 3], kPaper);
            }
        }
    }
}

TEST(SectionText, CoverageLevelsBlackOnWhite) {
    // Characters U+0100 + k are bars of level k + 1; their advances are 3, 4, 5, 6 in turn.
    std::wstring text;
    for (wchar_t k = 0; k < 16; ++k) {
        text += static_cast<wchar_t>(0x100 + k);
    }
    Section s(80, 10);
    std::fill(s.bytes.begin(), s.bytes.end(), 255);
    Draw(s, text.c_str(), ULORect(0, 0, 80, 10), platform::drawtext::kNoPrefix);
    // Measured on the platform: levels 1 to 16 of black text on white.
    const int expected[16] = {248, 240, 233, 225, 217, 208, 199, 189, 178, 167, 154, 140, 124, 104, 77, 0};
    int pen = 0;
    for (int k = 0; k < 16; ++k) {
        const unsigned char* p = s.view.Pixel(pen, 5);
        EXPECT_EQ((std::vector<int>{p[0], p[1], p[2], p[3]}),
                  (std::vector<int>{expected[k], expected[k], expected[k], 0}))
            << "level " << k + 1;
        pen += (0x100 + k) % 4 + 3;
    }
}

TEST(LevelBlend, RowsMatchTheScalarReference) {
    std::srand(5);
    for (int round = 0; round < 300; ++round) {
        const ft::LevelBlend blend(CLR(std::rand() % 256, std::rand() % 256, std::rand() % 256));
        const int count = std::rand() % 40;
        std::vector<unsigned char> pixels(static_cast<size_t>(count) * 4);
        std::vector<uint8_t> levels(static_cast<size_t>(count));
        for (unsigned char& byte : pixels) {
            byte = static_cast<unsigned char>(std::rand());
        }
        for (uint8_t& level : levels) {
            level = static_cast<uint8_t>(std::rand() % 2 == 0 ? 0 : std::rand() % 17);
        }
        std::vector<unsigned char> reference = pixels;
        blend.Row(pixels.data(), levels.data(), count);
        blend.RowScalar(reference.data(), levels.data(), count);
        ASSERT_EQ(pixels, reference) << round;
    }
}

// A font of the test faces made through the engine, by face name and height (a LOGFONT height).
std::shared_ptr<platform::PlatformFont> MakeFont(const wchar_t* face, int32_t height) {
    platform::FontRequest request;
    request.faceName = face;
    request.height = height;
    request.pitchAndFamily = 0x22;
    return testfonts::LatinEngine()->CreateFontObject(request);
}

std::vector<platform::GlyphImagePtr> Images(const platform::PlatformFont& font,
                                            const std::vector<uint32_t>& codes) {
    std::vector<platform::GlyphImagePtr> images(codes.size());
    font.GetGlyphImages(codes.data(), codes.size(), images.data());
    return images;
}

std::vector<uint32_t> Printable() {
    std::vector<uint32_t> codes;
    for (uint32_t c = 0x20; c < 0x7F; ++c) {
        codes.push_back(c);
    }
    codes.push_back(0xD800);  // a surrogate half: the missing glyph
    return codes;
}

TEST(GlyphImages, RasterisedOnceWithTheAdvancesOfTheWidthTables) {
    REQUIRE_LATIN_FONTS();
    for (const wchar_t* face : {L"DejaVu Sans", L"Liberation Sans"}) {
        for (int32_t height : {-11, 13, 24}) {
            const auto font = MakeFont(face, height);
            const std::vector<uint32_t> codes = Printable();
            const auto first = Images(*font, codes);
            const auto again = Images(*MakeFont(face, height), codes);  // another font of that face and size
            for (size_t i = 0; i < codes.size(); ++i) {
                int32_t advance = 0;
                font->GetCharAdvances(codes[i], codes[i], &advance);
                EXPECT_EQ(first[i]->advance, advance) << codes[i];
                EXPECT_EQ(first[i], again[i]) << codes[i];
                ASSERT_EQ(first[i]->levels.size(), size_t(first[i]->width) * size_t(first[i]->height));
            }
        }
    }
}

TEST(GlyphImages, GreyUnlessTheFaceSaysOtherwise) {
    REQUIRE_LATIN_FONTS();
    // Liberation Sans asks for no grey from 9 to 16 pixels per em ('gasp'); DejaVu Sans always
    // for grey.
    const struct {
        const wchar_t* face;
        int32_t height;
        bool grey;
    } cases[] = {
        {L"Liberation Sans", -13, false}, {L"Liberation Sans", -20, true}, {L"DejaVu Sans", -13, true}};
    for (const auto& c : cases) {
        bool between = false;
        for (const auto& image : Images(*MakeFont(c.face, c.height), Printable())) {
            for (uint8_t level : image->levels) {
                ASSERT_LE(level, 16);
                between |= level != 0 && level != 16;
            }
        }
        EXPECT_EQ(between, c.grey) << c.height;
    }
}

TEST(GlyphCache, LeastRecentlyUsedLeaveFirst) {
    ft::GlyphCache cache(3 * ft::GlyphCache::kEntryOverhead + 30);
    auto image = [](size_t bytes) {
        auto made = std::make_shared<platform::GlyphImage>();
        made->levels.resize(bytes);
        return platform::GlyphImagePtr(made);
    };
    const ft::GlyphKey a{1, 10, 1, 0}, b{1, 10, 2, 0}, c{1, 10, 3, 0}, d{2, 10, 1, 0};
    const auto imageA = cache.Keep(a, image(10));
    cache.Keep(b, image(10));
    EXPECT_EQ(cache.Keep(a, image(10)), imageA);  // kept before: the first stays, and a is now recent
    cache.Keep(c, image(10));
    cache.Keep(d, image(10));  // over budget by one entry: b, the least recently used, goes
    platform::GlyphImagePtr found[4];
    const ft::GlyphKey keys[4] = {a, b, c, d};
    cache.Find(keys, 4, found);
    EXPECT_TRUE(found[0] && !found[1] && found[2] && found[3]);
    EXPECT_EQ(cache.Bytes(), 3 * ft::GlyphCache::CostOf(*imageA));
    cache.ForgetFace(1);
    EXPECT_EQ(cache.Count(), 1u);
    const auto big = image(1000);
    EXPECT_EQ(cache.Keep(b, big), big);
    EXPECT_EQ(cache.Count(), 1u);  // an image beyond the budget is handed out, not kept
    cache.SetBudget(0);
    EXPECT_EQ(cache.Bytes(), 0u);
}

TEST(TextCanvas, LargeGlyphsDrawOnlyWhatShows) {
    REQUIRE_LATIN_FONTS();
    testfonts::ScopedEngine engine(testfonts::LatinEngine());
    platform::FontRequest request;
    request.faceName = L"DejaVu Sans";
    request.height = -4000;
    HFONT handle = platform::CreateFontHandle(request);
    EXPECT_FALSE(Images(*platform::ResolveFont(handle), {'H'})[0]->kept);
    platform::TextCanvas canvas(60, 40);
    platform::SelectFont(canvas.Context(), handle);
    canvas.SetBackgroundMode(platform::BackgroundMode::kTransparent);
    // The window lies inside the left stem of the "H" (about 390 to 780 pixels right of the pen,
    // 0 to 2900 above the baseline, which is about 3700 below the cell's top).
    EXPECT_GT(canvas.DrawText(L"H", -1, ULORect(-400, -2000, 60, 40), 0), 4000);
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 60; ++x) {
            const unsigned char* p = canvas.Pixels().Pixel(x, y);
            ASSERT_EQ(p[0] | p[1] | p[2] | p[3], 0) << x << ", " << y;
        }
    }
    platform::DeleteFontHandle(handle);
}

TEST(GlyphImages, ThreadsShareTheCache) {
    REQUIRE_LATIN_FONTS();
    const auto font = MakeFont(L"DejaVu Sans", 17);
    const std::vector<uint32_t> codes = Printable();
    std::vector<std::vector<uint8_t>> reference;
    for (const auto& image : Images(*font, codes)) {
        reference.push_back(image->levels);
    }
    ft::GlyphCache& cache = ft::GlyphCache::Instance();
    const size_t budget = cache.Budget();
    cache.SetBudget(8 * 1024);  // images come and go while the threads draw
    std::vector<int> mismatches(4, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < 20; ++round) {
                const auto images = Images(*font, codes);
                for (size_t i = 0; i < codes.size(); ++i) {
                    mismatches[size_t(t)] += images[i]->levels != reference[i];
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    cache.SetBudget(budget);
    EXPECT_EQ(mismatches, std::vector<int>(4, 0));
}

}  // namespace
