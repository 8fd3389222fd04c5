// Construction of fonts from face names: language 0 (256 widths) and language 3 (256 + 30,448
// widths), on the project's test fonts through a private fontconfig configuration. Targets on the
// reference machine: 5 ms and 40 ms per font.
#include <benchmark/benchmark.h>

#include "font/TestFonts.h"
#include "ulogui/Font.h"

namespace {

void BM_FontLatin(benchmark::State& state) {
    testfonts::ScopedEngine scoped(testfonts::FullEngine());
    int height = 12;
    for (auto _ : state) {
        ULOFont font({L"Liberation Sans", L"DejaVu Sans"}, height, 0, 1.0f, false, false, false);
        benchmark::DoNotOptimize(font.GetCharWidthW(L'A', true));
    }
}
BENCHMARK(BM_FontLatin)->Unit(benchmark::kMillisecond);

void BM_FontJapanese(benchmark::State& state) {
    if (!testfonts::HaveCjkFonts()) {
        state.SkipWithError("fonts-ipaexfont-gothic missing");
        return;
    }
    testfonts::ScopedEngine scoped(testfonts::FullEngine());
    for (auto _ : state) {
        ULOFont font({L"MS UI Gothic"}, -16, 3, 1.0f, false, false, false);
        benchmark::DoNotOptimize(font.GetCharWidthW(0x4E00, true));
    }
}
BENCHMARK(BM_FontJapanese)->Unit(benchmark::kMillisecond);

// The first font of a size in a fresh engine: no width computed before.
void BM_FontJapaneseFirstOfItsSize(benchmark::State& state) {
    if (!testfonts::HaveCjkFonts()) {
        state.SkipWithError("fonts-ipaexfont-gothic missing");
        return;
    }
    for (auto _ : state) {
        state.PauseTiming();
        auto engine = testfonts::MakeEngine({testfonts::IpaexGothic()});
        testfonts::ScopedEngine scoped(engine);
        std::vector<ULOString> warm = {L"IPAexGothic"};
        bool found = false;
        ULOString chosen;
        ulogui::platform::DeleteFontHandle(ULOFont::CreateWindowsFont(nullptr, 8, 0, 0, 0, 400, 0, 0, 0, 128,
                                                                      4, 0, 0, 0x22, warm, found, chosen));
        state.ResumeTiming();
        ULOFont font({L"IPAexGothic"}, -16, 3, 1.0f, false, false, false);
        benchmark::DoNotOptimize(font.GetCharWidthW(0x4E00, true));
    }
}
BENCHMARK(BM_FontJapaneseFirstOfItsSize)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
