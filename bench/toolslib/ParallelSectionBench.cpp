// Cost of the parallel loop itself: an empty section, and a loop of short iterations like the
// columns of a small picture, at 1 and 2 threads.
#include <benchmark/benchmark.h>

#include <vector>

#include "toolslib/MultiProc.h"

using namespace tools::multiproc;

namespace {

void BM_EmptySection(benchmark::State& state) {
    const int threads = static_cast<int>(state.range(0));
    ULONullInterruptor never;
    for (auto _ : state) {
        InterruptibleProgressingLoopIter iter(0, never, nullptr);
        ParallelSection section(iter, [](int) {});
        RunParallelSection(section, threads);
    }
}
BENCHMARK(BM_EmptySection)->Arg(1)->Arg(2)->UseRealTime();

// 64 iterations of about 256 multiply-adds each: too little work to hide much scheduling cost.
void BM_SmallWorkload(benchmark::State& state) {
    const int threads = static_cast<int>(state.range(0));
    constexpr int kColumns = 64, kRows = 256;
    std::vector<float> source(kColumns * kRows, 1.5f);
    std::vector<float> target(kColumns, 0.0f);
    ULONullInterruptor never;
    PIMProgress progress;
    for (auto _ : state) {
        progress.SetSteps(kColumns);
        InterruptibleProgressingLoopIter iter(kColumns, never, &progress);
        ParallelSection section(iter, [&](int column) {
            float sum = 0.0f;
            for (int row = 0; row < kRows; ++row) {
                sum += source[column * kRows + row] * static_cast<float>(row);
            }
            target[column] = sum;
        });
        RunParallelSection(section, threads);
        benchmark::DoNotOptimize(target.data());
    }
    state.SetItemsProcessed(state.iterations() * kColumns);
}
BENCHMARK(BM_SmallWorkload)->Arg(1)->Arg(2)->UseRealTime();

// The same work as a plain loop, as the baseline for the two above.
void BM_SmallWorkloadPlainLoop(benchmark::State& state) {
    constexpr int kColumns = 64, kRows = 256;
    std::vector<float> source(kColumns * kRows, 1.5f);
    std::vector<float> target(kColumns, 0.0f);
    for (auto _ : state) {
        for (int column = 0; column < kColumns; ++column) {
            float sum = 0.0f;
            for (int row = 0; row < kRows; ++row) {
                sum += source[column * kRows + row] * static_cast<float>(row);
            }
            target[column] = sum;
        }
        benchmark::DoNotOptimize(target.data());
    }
    state.SetItemsProcessed(state.iterations() * kColumns);
}
BENCHMARK(BM_SmallWorkloadPlainLoop);

}  // namespace

BENCHMARK_MAIN();
