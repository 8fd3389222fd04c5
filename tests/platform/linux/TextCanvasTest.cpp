// The draw-text call of the Linux backend: lines and prefixes, layout on a scripted font whose glyphs
// are bars of known coverage, the blend, and the FreeType glyph images and their cache.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "font/FakeFontEngine.h"
#include "font/TestFonts.h"
#include "golden/Golden.h"
#include "platform/TextCanvas.h"
#include "platform/linux/GlyphCache.h"
#include "platform/linux/LevelBlend.h"
#include "platform/linux/SectionText.h"
#include "platform/linux/TextLines.h"

namespace {

namespace platform = ulogui::platform;
namespace ft = ulogui::platform::ft;
namespace dt = ulogui::platform::drawtext;

// A scripted font: cell height 10, ascent 8. A character c advances (c % 4) + 3 pixels ("a" 4, "b" 5,
// "c" 6); its glyph is a bar one pixel wide at its pen position, of level c % 17 (16 for letters), from
// the cell's top to the baseline.
class BarFont : public testfonts::FakeFont {
public:
    BarFont() : FakeFont({}, [](const platform::FontRequest&, uint32_t c) { return int32_t(c % 4) + 3; }) {
        metrics.height = 10;
        metrics.ascent = 8;
        metrics.underlinePosition = -1;
        metrics.strikeOutPosition = 3;
        metrics.strikeOutThickness = 2;
    }
    void GetGlyphImages(const uint32_t* codes, size_t count, platform::GlyphImagePtr* out) const override {
        for (size_t i = 0; i < count; ++i) {
            auto image = std::make_shared<platform::GlyphImage>();
            image->advance = static_cast<int32_t>(codes[i] % 4) + 3;
            image->top = image->height = 8;
            image->width = 1;
            const bool letter = (codes[i] | 0x20) >= 'a' && (codes[i] | 0x20) <= 'z';
            image->levels.assign(8, static_cast<uint8_t>(letter ? 16 : codes[i] % 17));
            out[i] = std::move(image);
        }
    }
};

struct Section {
    explicit Section(int w = 20, unsigned char paper = 0xEE) : width(w), bytes(size_t(w) * 22 * 4, paper) {}
    ulogui::raster::RasterView View() {
        return ulogui::raster::RasterView::TopDown(bytes.data(), width, 22, width * 4, 4);
    }
    int width;
    std::vector<unsigned char> bytes;
};

// Centring halves the room left, rounding towards zero (13 / 2 = 6, -17 / 2 = -8); right wins over
// centre. The mnemonic underline lies one row under the baseline, the advance less one long. Lines step
// by the cell height, cut at the rectangle's bottom, and no line after the first that reaches past it.
// The opaque cell is the advances wide and the cell high, cut by the rectangle. The font's lines:
// underline top 8 + 1 - 0 = 9, strike-out 8 - 3 - 1 = 4 (2 rows).
TEST(SectionText, LinesPrefixesLayoutCoverageLevelsAndTheBlendsRowsMatchTheScalarReference) {
    enum { kOpaque = 1, kUnderline = 2, kStrikeOut = 4 };
    const struct {
        const char* name;
        const wchar_t* text;
        ULORect rect;
        unsigned format;
        int style;
    } cases[] = {
        {"left", L"ab", {2, 0, 20, 10}, dt::kLeft, 0},
        {"centre", L"ab", {2, 0, 20, 10}, dt::kCenter, 0},
        {"centre wider than the rectangle", L"abc", {-4, 0, 2, 10}, dt::kCenter, 0},
        {"right and centre", L"abc", {0, 0, 20, 10}, dt::kRight | dt::kCenter, 0},
        {"mnemonic and second line", L"a&b\nb", {0, 0, 10, 22}, 0, 0},
        {"lines cut at the bottom", L"b\r\nb\rb", {1, 1, 10, 13}, 0, 0},
        {"opaque cell", L"ab", {1, 2, 8, 22}, 0, kOpaque},
        {"underline and strike-out", L"&ab", {0, 0, 10, 22}, 0, kUnderline | kStrikeOut},
    };
    std::vector<golden::Image> images;
    for (const auto& c : cases) {
        Section s;
        BarFont font;
        font.metrics.underlined = (c.style & kUnderline) != 0;
        font.metrics.struckOut = (c.style & kStrikeOut) != 0;
        ft::TextPaint paint;
        paint.mode =
            c.style & kOpaque ? platform::BackgroundMode::kOpaque : platform::BackgroundMode::kTransparent;
        EXPECT_EQ(ft::DrawTextOnSection(s.View(), font, paint, c.text, std::wcslen(c.text), c.rect, c.format),
                  std::wcschr(c.text, L'\n') != nullptr ? 20 : 10);
        images.push_back({c.name, s.width, 22, 4, s.bytes});
    }
    golden::ExpectMatches("platform/section-text", images);
    // U+0100 + k is a bar of level k + 1, advancing 3, 4, 5, 6 in turn.
    std::wstring text;
    for (wchar_t k = 0; k < 16; ++k) {
        text += static_cast<wchar_t>(0x100 + k);
    }
    Section s(80, 255);
    ft::TextPaint paint;
    paint.mode = platform::BackgroundMode::kTransparent;
    ft::DrawTextOnSection(s.View(), BarFont(), paint, text.c_str(), 16, ULORect(0, 0, 80, 10), dt::kNoPrefix);
    // As measured on the platform for levels 1 to 16 of black text on white.
    const int expected[16] = {248, 240, 233, 225, 217, 208, 199, 189, 178, 167, 154, 140, 124, 104, 77, 0};
    for (int k = 0, pen = 0; k < 16; pen += (k++ % 4) + 3) {
        const unsigned char* p = s.View().Pixel(pen, 5);
        EXPECT_EQ(std::vector<int>(p, p + 4), std::vector<int>({expected[k], expected[k], expected[k], 0}))
            << k;
    }
    std::mt19937 random(5);
    for (int round = 0; round < 300; ++round) {
        const ft::LevelBlend blend(CLR(random() % 256, random() % 256, random() % 256));
        std::vector<uint8_t> levels(random() % 40), pixels(levels.size() * 4);
        std::generate(pixels.begin(), pixels.end(), random);
        std::generate(levels.begin(), levels.end(), [&] { return random() % 2 ? 0 : random() % 17; });
        std::vector<uint8_t> reference = pixels;
        blend.Row(pixels.data(), levels.data(), static_cast<int>(levels.size()));
        blend.RowScalar(reference.data(), levels.data(), static_cast<int>(levels.size()));
        ASSERT_EQ(pixels, reference) << round;
    }
    // "|" between lines, "_" before the marked character.
    const std::pair<const wchar_t*, const char*> lines[] = {
        {L"a\r\nb\n\rc", "a|b|c"}, {L"a\r\rb\n\nc", "a||b||c"},
        {L"a\nb\n", "a|b"},        {L"&File && Edit", "_File & Edit"},
        {L"a&b&c&", "a_bc&"},      {L"&&&x", "&_x"},
        {L"x&\ny", "x&|y"},
    };
    for (const auto& c : lines) {
        const size_t length = std::wcslen(c.first);
        std::string out;
        ft::DrawnLine line;
        for (size_t pos = 0; pos < length;) {
            const ft::LineSpan span = ft::NextLine(c.first, length, pos);
            ft::PrepareLine(c.first + span.begin, c.first + span.end, true, line);
            out += pos == 0 ? "" : "|";
            for (size_t i = 0; i < line.codes.size(); ++i) {
                out += (std::ptrdiff_t(i) == line.marked ? "_" : "") + std::string(1, char(line.codes[i]));
            }
            pos = span.next;
        }
        EXPECT_EQ(out, c.second);
    }
    ft::DrawnLine line;
    ft::PrepareLine(L"&a", L"&a" + 2, false, line);
    EXPECT_EQ(line.codes.size() * 10 + size_t(line.marked + 1), 20u);  // no prefixes: "&a", unmarked
}

std::vector<platform::GlyphImagePtr> Images(const platform::PlatformFont& font,
                                            const std::vector<uint32_t>& codes) {
    std::vector<platform::GlyphImagePtr> images(codes.size());
    font.GetGlyphImages(codes.data(), codes.size(), images.data());
    return images;
}

// U+0020..U+007E and a surrogate half (the missing glyph).
std::vector<uint32_t> Printable() {
    std::vector<uint32_t> codes;
    for (uint32_t c = 0x20; c <= 0x7F; ++c) {
        codes.push_back(c == 0x7F ? 0xD800 : c);
    }
    return codes;
}

TEST(GlyphImages, OncePerFaceSizeAndStyleWithTheWidthTablesAdvancesSharedByThreads) {
    REQUIRE_LATIN_FONTS();
    // Liberation Sans asks for no grey from 9 to 16 pixels per em ('gasp'); DejaVu Sans always for grey.
    const struct {
        const wchar_t* face;
        int32_t height;
        bool grey;
    } cases[] = {{L"DejaVu Sans", -13, true},
                 {L"DejaVu Sans", 24, true},
                 {L"Liberation Sans", -13, false},
                 {L"Liberation Sans", -20, true}};
    for (const auto& c : cases) {
        const auto font = testfonts::MakeFont(*testfonts::LatinEngine(), c.face, c.height);
        const std::vector<uint32_t> codes = Printable();
        const auto first = Images(*font, codes),
                   again = Images(*testfonts::MakeFont(*testfonts::LatinEngine(), c.face, c.height), codes);
        bool between = false;
        for (size_t i = 0; i < first.size(); ++i) {
            EXPECT_EQ(first[i]->advance, testfonts::Advances(*font, codes[i], codes[i])[0]) << i;
            EXPECT_EQ(first[i], again[i]) << i;  // another font of that face and size shares the image
            ASSERT_EQ(first[i]->levels.size(), size_t(first[i]->width) * size_t(first[i]->height));
            for (uint8_t level : first[i]->levels) {
                ASSERT_LE(level, 16);
                between |= level != 0 && level != 16;
            }
        }
        EXPECT_EQ(between, c.grey) << c.height;
    }
    // Threads share the cache, also while its images come and go.
    const auto shared = testfonts::MakeFont(*testfonts::LatinEngine(), L"DejaVu Sans", 17);
    std::vector<std::vector<uint8_t>> reference;
    for (const auto& image : Images(*shared, Printable())) {
        reference.push_back(image->levels);
    }
    ft::GlyphCache& cache = ft::GlyphCache::Instance();
    const size_t budget = cache.Budget();
    cache.SetBudget(8 * 1024);  // images come and go while the threads draw
    std::vector<int> mismatches(4, 0);
    std::vector<std::thread> threads;
    for (size_t t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < 20 * 96; ++round) {
                mismatches[t] += Images(*shared, {Printable()[size_t(round) % 96]})[0]->levels !=
                                 reference[size_t(round) % 96];
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    cache.SetBudget(budget);
    EXPECT_EQ(mismatches, std::vector<int>(4, 0));
}

TEST(GlyphCache, LeastRecentlyUsedLeaveFirstAndLargeGlyphsAreNotKeptButDrawnWhereTheyShow) {
    ft::GlyphCache cache(3 * ft::GlyphCache::kEntryOverhead + 30);
    auto image = [](size_t bytes) {
        auto made = std::make_shared<platform::GlyphImage>();
        made->levels.resize(bytes);
        return platform::GlyphImagePtr(made);
    };
    const ft::GlyphKey keys[4] = {{1, 10, 1, 0}, {1, 10, 2, 0}, {1, 10, 3, 0}, {2, 10, 1, 0}};
    const auto first = cache.Keep(keys[0], image(10));
    cache.Keep(keys[1], image(10));
    EXPECT_EQ(cache.Keep(keys[0], image(10)), first);  // kept before: the first stays, and is now recent
    cache.Keep(keys[2], image(10));
    cache.Keep(keys[3], image(10));  // over budget by one entry: keys[1], the least recently used, goes
    platform::GlyphImagePtr found[4];
    cache.Find(keys, 4, found);
    EXPECT_TRUE(found[0] && !found[1] && found[2] && found[3]);
    EXPECT_EQ(cache.Bytes(), 3 * ft::GlyphCache::CostOf(*first));
    cache.ForgetFace(1);
    const auto big = image(1000);
    EXPECT_EQ(cache.Keep(keys[1], big), big);  // beyond the budget: handed out, not kept
    EXPECT_EQ(cache.Count(), 1u);
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
    // The window lies in the left stem of the "H" (about 390 to 780 pixels right of the pen, up to
    // 2900 above the baseline, which lies about 3700 under the cell's top): all black, alpha 0.
    EXPECT_GT(canvas.DrawText(L"H", -1, ULORect(-400, -2000, 60, 40), 0), 4000);
    const unsigned char* bits = canvas.Pixels().Row(0);
    EXPECT_EQ(std::vector<unsigned char>(bits, bits + 60 * 40 * 4),
              std::vector<unsigned char>(60 * 40 * 4, 0));
    platform::DeleteFontHandle(handle);
}

}  // namespace
