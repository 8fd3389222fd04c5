// ULOGetGlyphOutline of 'O' and ULOGetGlyphWidth of a kerned pair at 20 pixels of DejaVu Sans,
// beside FreeType itself on an already open face: FT_Load_Char + FT_Outline_Decompose, and
// FT_Load_Char + FT_Get_Kerning. The peers load with the engine's interpreter (the classic one) and
// flags, so both sides hint the same glyph; the newer interpreter's time is shown beside. Target:
// at most twice FreeType's time per call.
#include <benchmark/benchmark.h>

#include <ft2build.h>
#include FT_DRIVER_H
#include FT_FREETYPE_H
#include FT_MODULE_H
#include FT_OUTLINE_H

#include <cstdio>

#include "bench/BenchSupport.h"
#include "font/TestFonts.h"
#include "ulogui/Glyph.h"

namespace {

constexpr int kPixels = 20;
constexpr FT_Int32 kLoadFlags = FT_LOAD_TARGET_MONO | FT_LOAD_NO_AUTOHINT | FT_LOAD_NO_BITMAP;

void CountCalls(benchmark::State& state) {
    state.counters["calls"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

// DejaVu Sans opened and sized once, with the classic interpreter (argument 35) or the newer (40).
class OpenFace {
public:
    explicit OpenFace(FT_UInt interpreter) {
        FT_Init_FreeType(&library_);
        FT_Property_Set(library_, "truetype", "interpreter-version", &interpreter);
        if (FT_New_Face(library_, testfonts::DejaVu("DejaVuSans.ttf").c_str(), 0, &face_) != 0) {
            face_ = nullptr;
            return;
        }
        FT_Set_Pixel_Sizes(face_, 0, kPixels);
    }
    ~OpenFace() { FT_Done_FreeType(library_); }
    OpenFace(const OpenFace&) = delete;
    OpenFace& operator=(const OpenFace&) = delete;
    FT_Face face() const { return face_; }

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

int CountPoint(const FT_Vector*, void* count) {
    ++*static_cast<int*>(count);
    return 0;
}
int CountConic(const FT_Vector*, const FT_Vector*, void* count) {
    *static_cast<int*>(count) += 2;
    return 0;
}
int CountCubic(const FT_Vector*, const FT_Vector*, const FT_Vector*, void* count) {
    *static_cast<int*>(count) += 3;
    return 0;
}

void BM_FreeTypeOutline(benchmark::State& state) {
    OpenFace open(static_cast<FT_UInt>(state.range(0)));
    if (!open.face()) {
        state.SkipWithError("fonts-dejavu-core missing");
        return;
    }
    const FT_Outline_Funcs funcs = {CountPoint, CountPoint, CountConic, CountCubic, 0, 0};
    for (auto _ : state) {
        int points = 0;
        FT_Load_Char(open.face(), 'O', kLoadFlags);
        FT_Outline_Decompose(&open.face()->glyph->outline, &funcs, &points);
        benchmark::DoNotOptimize(points);
    }
    CountCalls(state);
}
BENCHMARK(BM_FreeTypeOutline)->Arg(35)->Arg(40);

void BM_GetGlyphOutline(benchmark::State& state) {
    testfonts::ScopedEngine scoped(testfonts::LatinEngine());
    ULOGlyphOutline outline;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ULOGetGlyphOutline(&outline, L'O', L"DejaVu Sans", kPixels, 1, 0, 0));
    }
    if (outline.GetCount() != 2) {
        state.SkipWithError("no outline (fonts-dejavu-core missing?)");
    }
    CountCalls(state);
}
BENCHMARK(BM_GetGlyphOutline);

void BM_FreeTypeWidth(benchmark::State& state) {
    OpenFace open(static_cast<FT_UInt>(state.range(0)));
    if (!open.face()) {
        state.SkipWithError("fonts-dejavu-core missing");
        return;
    }
    for (auto _ : state) {
        FT_Vector kerning{};
        FT_Load_Char(open.face(), 'A', kLoadFlags);
        FT_Get_Kerning(open.face(), FT_Get_Char_Index(open.face(), 'A'), FT_Get_Char_Index(open.face(), 'V'),
                       FT_KERNING_UNSCALED, &kerning);
        benchmark::DoNotOptimize(open.face()->glyph->metrics.horiAdvance + kerning.x);
    }
    CountCalls(state);
}
BENCHMARK(BM_FreeTypeWidth)->Arg(35)->Arg(40);

void BM_GetGlyphWidth(benchmark::State& state) {
    testfonts::ScopedEngine scoped(testfonts::LatinEngine());
    for (auto _ : state) {
        benchmark::DoNotOptimize(ULOGetGlyphWidth(L'A', L'V', L"DejaVu Sans", kPixels, 1, 0, 0));
    }
    CountCalls(state);
}
BENCHMARK(BM_GetGlyphWidth);

}  // namespace

int main(int argc, char** argv) {
    ulobench::RateCollector collector("calls");
    if (!ulobench::RunBenchmarks(argc, argv, collector)) {
        return 1;
    }
    std::printf("\n%-20s %14s %14s %14s %12s\n", "call", "ours k/s", "FT v35 k/s", "FT v40 k/s", "time/v35");
    const char* rows[][3] = {{"ULOGetGlyphOutline", "BM_GetGlyphOutline", "BM_FreeTypeOutline"},
                             {"ULOGetGlyphWidth", "BM_GetGlyphWidth", "BM_FreeTypeWidth"}};
    for (const auto& row : rows) {
        const double ours = collector.rates[row[1]];
        const double classic = collector.rates[std::string(row[2]) + "/35"];
        const double newer = collector.rates[std::string(row[2]) + "/40"];
        if (ours <= 0.0 || classic <= 0.0) {
            continue;  // filtered out of this run
        }
        std::printf("%-20s %14.0f %14.0f %14.0f %12.2f  (target <= 2)\n", row[0], ours * 1e3, classic * 1e3,
                    newer * 1e3, classic / ours);
    }
    return 0;
}
