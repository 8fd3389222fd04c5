// Text output beside cairo, in one run:
//   - TextOutW of the 30-character label "The quick brown fox jumps over" in DejaVu Sans at 13 pixels
//     per em (a font of cell height 15) onto a 256 x 20 surface, and cairo_show_text of the same text,
//     face and size onto a 256 x 20 image surface, both with warm glyph caches;
//   - the same with cold caches: the glyph cache emptied before each TextOutW, and for cairo a scaled
//     font of a new size each time (13 + k * 2^-20 pixels: the same pixel size once rounded, but a
//     new font with an empty glyph cache), so both rasterise every glyph again;
//   - MultiLineTextOut of a 500-character paragraph into 300 x 200, beside cairo_show_text of the
//     same lines at the same places.
// After the usual table the run prints the time per call and the ratio of the times, ours / cairo's
// (the target: at most 1 for the warm label).
#include <benchmark/benchmark.h>
#include <cairo-ft.h>
#include <cairo.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <boost/make_shared.hpp>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/BenchSupport.h"
#include "font/TestFonts.h"
#include "platform/linux/GlyphCache.h"
#include "ulogui/Font.h"
#include "ulogui/TrueColorDC.h"

namespace {

const wchar_t* const kLabel = L"The quick brown fox jumps over";
constexpr int kCellHeight = 15;  // DejaVu Sans: 13 pixels per em
constexpr double kPixelsPerEm = 13.0;

std::string Utf8(const std::wstring& text) {
    return ULOString(text).ToUtf8();
}

// A paragraph of 500 characters.
std::wstring Paragraph() {
    std::wstring text;
    while (text.size() < 500) {
        text +=
            L"Pack my box with five dozen liquor jugs, then the quick brown fox jumps over the lazy dog. ";
    }
    return text.substr(0, 500);
}

// The engine over the test faces and a font of DejaVu Sans, for the life of the run.
struct Fonts {
    testfonts::ScopedEngine engine{testfonts::LatinEngine()};
    boost::shared_ptr<ULOFont> font = boost::make_shared<ULOFont>(std::vector<ULOString>{L"DejaVu Sans"},
                                                                  kCellHeight, 0, 1.0f, false, false, false);
};
Fonts& TheFonts() {
    static Fonts fonts;
    return fonts;
}

// cairo with DejaVu Sans from the same file, through its FreeType backend.
class Cairo {
public:
    Cairo(int width, int height) {
        FT_Init_FreeType(&library_);
        FT_New_Face(library_, testfonts::DejaVu("DejaVuSans.ttf").c_str(), 0, &face_);
        fontFace_ = cairo_ft_font_face_create_for_ft_face(face_, 0);
        surface_ = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
        cr_ = cairo_create(surface_);
        cairo_set_font_face(cr_, fontFace_);
        cairo_set_font_size(cr_, kPixelsPerEm);
        cairo_set_source_rgb(cr_, 0, 0, 0);
    }
    ~Cairo() {
        cairo_destroy(cr_);
        cairo_surface_destroy(surface_);
        cairo_font_face_destroy(fontFace_);
        FT_Done_Face(face_);
        FT_Done_FreeType(library_);
    }
    Cairo(const Cairo&) = delete;
    Cairo& operator=(const Cairo&) = delete;

    void Show(const std::string& utf8, double x, double baseline) {
        cairo_move_to(cr_, x, baseline);
        cairo_show_text(cr_, utf8.c_str());
    }
    void Size(double size) { cairo_set_font_size(cr_, size); }
    void Flush() { cairo_surface_flush(surface_); }

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
    cairo_font_face_t* fontFace_ = nullptr;
    cairo_surface_t* surface_ = nullptr;
    cairo_t* cr_ = nullptr;
};

void CountCalls(benchmark::State& state) {
    state.counters["calls"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void TextOutLabel(benchmark::State& state, bool cold) {
    Fonts& fonts = TheFonts();
    ULOTrueColorDCBase dc(ULORect(0, 0, 256, 20), false, false);
    const ULORect rect(0, 0, 256, 20);
    dc.TextOutW(fonts.font, &rect, kLabel, 0, CLR(0, 0, 0), 1.0f, 0, CLR(255, 255, 255));
    for (auto _ : state) {
        if (cold) {
            ulogui::platform::ft::GlyphCache::Instance().Clear();
        }
        benchmark::DoNotOptimize(
            dc.TextOutW(fonts.font, &rect, kLabel, 0, CLR(0, 0, 0), 1.0f, 0, CLR(255, 255, 255)));
        benchmark::ClobberMemory();
    }
    CountCalls(state);
}
void BM_TextOutWarm(benchmark::State& state) {
    TextOutLabel(state, false);
}
void BM_TextOutCold(benchmark::State& state) {
    TextOutLabel(state, true);
}

void CairoLabel(benchmark::State& state, bool cold) {
    Cairo cairo(256, 20);
    const std::string label = Utf8(kLabel);
    cairo.Show(label, 0, 17);
    long k = 0;
    for (auto _ : state) {
        if (cold) {
            cairo.Size(kPixelsPerEm + static_cast<double>(++k) / (1 << 20));
        }
        cairo.Show(label, 0, 17);
        cairo.Flush();
        benchmark::ClobberMemory();
    }
    CountCalls(state);
}
void BM_CairoWarm(benchmark::State& state) {
    CairoLabel(state, false);
}
void BM_CairoCold(benchmark::State& state) {
    CairoLabel(state, true);
}

void BM_MultiLineTextOut(benchmark::State& state) {
    Fonts& fonts = TheFonts();
    ULOTrueColorDCBase dc(ULORect(0, 0, 300, 200), false, false);
    const ULORect rect(0, 0, 300, 200);
    const std::wstring text = Paragraph();
    for (auto _ : state) {
        benchmark::DoNotOptimize(dc.MultiLineTextOut(fonts.font, &rect, text.c_str(), 0, CLR(0, 0, 0), 1.0f,
                                                     0, CLR(255, 255, 255)));
        benchmark::ClobberMemory();
    }
    CountCalls(state);
}

// The lines MultiLineTextOut draws, as it wraps them.
std::vector<std::string> WrappedLines() {
    const ULOFont& font = *TheFonts().font;
    const ULOString text = Paragraph();
    std::vector<std::string> lines;
    size_t pos = 0;
    for (int top = 0; top + kCellHeight < 200 && pos < text.size(); top += kCellHeight) {
        const int n = font.GetMaxWordOffset(300, text.substr(pos), 0);
        const size_t count = n != 0 ? static_cast<size_t>(n) : text.size() - pos;
        lines.push_back(Utf8(text.substr(pos, count)));
        pos += count;
        while (pos < text.size() && text[pos] == L' ') {
            ++pos;
        }
        if (n == 0) {
            break;
        }
    }
    return lines;
}

void BM_CairoLines(benchmark::State& state) {
    Cairo cairo(300, 200);
    const std::vector<std::string> lines = WrappedLines();
    for (auto _ : state) {
        for (size_t i = 0; i < lines.size(); ++i) {
            cairo.Show(lines[i], 0, 12 + kCellHeight * static_cast<double>(i));
        }
        cairo.Flush();
        benchmark::ClobberMemory();
    }
    state.counters["lines"] = static_cast<double>(lines.size());
    CountCalls(state);
}

BENCHMARK(BM_TextOutWarm);
BENCHMARK(BM_CairoWarm);
BENCHMARK(BM_TextOutCold);
BENCHMARK(BM_CairoCold);
BENCHMARK(BM_MultiLineTextOut);
BENCHMARK(BM_CairoLines);

}  // namespace

int main(int argc, char** argv) {
    if (!testfonts::MissingLatinFile().empty()) {
        std::fprintf(stderr, "%s missing (scripts/bootstrap installs the test fonts)\n",
                     testfonts::MissingLatinFile().c_str());
        return 1;
    }
    ulobench::RateCollector collector("calls");
    if (!ulobench::RunBenchmarks(argc, argv, collector)) {
        return 1;
    }
    std::printf("\n%-28s %12s %12s %10s\n", "case", "ours us", "cairo us", "time ratio");
    const struct {
        const char* name;
        const char* ours;
        const char* peer;
    } rows[] = {
        {"label, warm caches", "BM_TextOutWarm", "BM_CairoWarm"},
        {"label, cold caches", "BM_TextOutCold", "BM_CairoCold"},
        {"500-character paragraph", "BM_MultiLineTextOut", "BM_CairoLines"},
    };
    for (const auto& row : rows) {
        const double ours = collector.rates[row.ours];
        const double peer = collector.rates[row.peer];
        if (ours <= 0.0 || peer <= 0.0) {
            continue;  // filtered out of this run
        }
        // Rates are millions of calls a second: the time per call is their inverse.
        std::printf("%-28s %12.2f %12.2f %10.2f\n", row.name, 1.0 / ours, 1.0 / peer, peer / ours);
    }
    return 0;
}
