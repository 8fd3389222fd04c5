// FillRect over a whole surface next to memset of the same bytes and pixman_fill of the same pixels,
// at 64 x 64, 256 x 256 and 1024 x 1024. After the usual table the run prints each one's Mpixel/s and
// the ratios FillRect / memset and FillRect / pixman_fill (the target: FillRect at least as fast as
// pixman_fill).
#include <benchmark/benchmark.h>
#include <pixman.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "bench/BenchSupport.h"
#include "ulogui/TrueColorDC.h"

namespace {

void SetPixelRate(benchmark::State& state, int side) {
    state.counters["pixels"] = benchmark::Counter(static_cast<double>(state.iterations()) * side * side,
                                                  benchmark::Counter::kIsRate);
}

void BM_FillRect(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    ULOTrueColorDCBase dc(ULORect(0, 0, side, side), true, false);
    const ULORect all(0, 0, side, side);
    unsigned char alpha = 0;
    for (auto _ : state) {
        dc.FillRect(&all, CLR(10, 20, 30), alpha++);
        benchmark::DoNotOptimize(dc.GetBits());
        benchmark::ClobberMemory();
    }
    SetPixelRate(state, side);
}

void BM_Memset(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    std::vector<unsigned char> bytes(static_cast<size_t>(side) * side * 4);
    ulobench::MemsetLoop(state, bytes);
    SetPixelRate(state, side);
}

void BM_PixmanFill(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    std::vector<uint32_t> pixels(static_cast<size_t>(side) * side);
    uint32_t filler = 0x001E140A;
    for (auto _ : state) {
        pixman_fill(pixels.data(), side, 32, 0, 0, side, side, filler);
        filler += 0x01000000;
        benchmark::DoNotOptimize(pixels.data());
        benchmark::ClobberMemory();
    }
    SetPixelRate(state, side);
}

BENCHMARK(BM_FillRect)->Arg(64)->Arg(256)->Arg(1024);
BENCHMARK(BM_Memset)->Arg(64)->Arg(256)->Arg(1024);
BENCHMARK(BM_PixmanFill)->Arg(64)->Arg(256)->Arg(1024);

}  // namespace

int main(int argc, char** argv) {
    ulobench::RateCollector collector("pixels");
    if (!ulobench::RunBenchmarks(argc, argv, collector)) {
        return 1;
    }

    std::printf("\n%-6s %16s %16s %16s %14s %14s\n", "side", "FillRect Mpx/s", "memset Mpx/s", "pixman Mpx/s",
                "FillRect/mem", "FillRect/pix");
    for (const char* side : {"64", "256", "1024"}) {
        const double fill = collector.rates[std::string("BM_FillRect/") + side];
        const double mem = collector.rates[std::string("BM_Memset/") + side];
        const double pix = collector.rates[std::string("BM_PixmanFill/") + side];
        if (fill <= 0.0 || mem <= 0.0 || pix <= 0.0) {
            continue;  // filtered out of this run
        }
        std::printf("%-6s %16.0f %16.0f %16.0f %14.2f %14.2f\n", side, fill, mem, pix, fill / mem,
                    fill / pix);
    }
    return 0;
}
