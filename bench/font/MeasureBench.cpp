// Wrapping and truncation against the text length (100, 1,000 and 10,000 characters): both must
// grow linearly, also where the exact prefix measurement has to walk most of the text.
#include <benchmark/benchmark.h>

#include "font/KnownWidthFont.h"

namespace {

// Words of three to nine letters, separated by spaces, and a tab every tabEvery words (0: none).
ULOString Words(size_t length, int tabEvery) {
    ULOString s;
    int word = 0;
    while (s.size() < length) {
        for (int i = 0; i < 3 + word % 7 && s.size() < length; ++i) {
            s += static_cast<wchar_t>(L'a' + (word + i) % 26);
        }
        ++word;
        if (s.size() < length) {
            s += tabEvery > 0 && word % tabEvery == 0 ? L'\t' : L' ';
        }
    }
    return s;
}

void SetUp(benchmark::State& state) {
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The break near the end of a long line: the fast pass walks the text, the exact pass a word.
void BM_MaxWordOffset(benchmark::State& state) {
    auto font = measuretest::KnownFont(1.0f);
    const ULOString text = Words(static_cast<size_t>(state.range(0)), 0);
    const int room = static_cast<int>(font->GetStringRealWidthSingleLine(text, 0.0f) * 0.9f);
    for (auto _ : state) {
        benchmark::DoNotOptimize(font->GetMaxWordOffset(room, text, 0.0f));
    }
    SetUp(state);
}
BENCHMARK(BM_MaxWordOffset)->Arg(100)->Arg(1000)->Arg(10000)->Complexity();

// At a magnifier below 1 the fast pass takes each tab as more room than the line gives it and stops
// early: with a tab after every word the exact pass goes on over the last 14% of the text (some 1,400
// prefixes of the 10,000-character text), which measuring each prefix anew would make quadratic.
void BM_MaxWordOffsetExactPassWalksTheText(benchmark::State& state) {
    auto font = measuretest::KnownFont(0.5f);
    const ULOString text = L"\t" + Words(static_cast<size_t>(state.range(0)) - 1, 1);
    const int room = static_cast<int>(font->GetStringRealWidthSingleLine(text, 0.0f) * 0.9f);
    for (auto _ : state) {
        benchmark::DoNotOptimize(font->GetMaxWordOffset(room, text, 0.0f));
    }
    SetUp(state);
}
BENCHMARK(BM_MaxWordOffsetExactPassWalksTheText)->Arg(100)->Arg(1000)->Arg(10000)->Complexity();

// Half of the text removed from the end, with and without tabs (each removed tab needs the width of
// the text before it).
void Truncate(benchmark::State& state, int tabEvery) {
    auto font = measuretest::KnownFont(1.0f);
    const ULOString text = Words(static_cast<size_t>(state.range(0)), tabEvery);
    const int room = static_cast<int>(font->GetStringRealWidthSingleLine(text, 0.0f) / 2.0f);
    const ULOString ellipsis = L"...";
    ULOString out;
    for (auto _ : state) {
        benchmark::DoNotOptimize(font->TruncateString(text, out, room, ellipsis));
    }
    SetUp(state);
}
void BM_TruncateString(benchmark::State& state) {
    Truncate(state, 0);
}
void BM_TruncateStringWithTabs(benchmark::State& state) {
    Truncate(state, 3);
}
BENCHMARK(BM_TruncateString)->Arg(100)->Arg(1000)->Arg(10000)->Complexity();
BENCHMARK(BM_TruncateStringWithTabs)->Arg(100)->Arg(1000)->Arg(10000)->Complexity();

// A path of short components none of whose shortenings fit: every middle component is tried.
void BM_TruncatePath(benchmark::State& state) {
    auto font = measuretest::KnownFont(1.0f);
    ULOString path = Words(static_cast<size_t>(state.range(0)), 0);
    for (wchar_t& c : path) {
        c = c == L' ' ? L'/' : c;
    }
    const ULOString ellipsis = L"...";
    ULOString out;
    for (auto _ : state) {
        benchmark::DoNotOptimize(font->TruncatePath(path, out, 40, ellipsis));
    }
    SetUp(state);
}
BENCHMARK(BM_TruncatePath)->Arg(100)->Arg(1000)->Arg(10000)->Complexity();

}  // namespace

BENCHMARK_MAIN();
