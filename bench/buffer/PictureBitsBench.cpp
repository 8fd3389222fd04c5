// Fill and Mirror of 32-bit buffers next to memset and memcpy of the same bytes, so that one run shows
// how close the pixel loops come to the machine's memory bandwidth (compare the bytes_per_second of
// each pair; the Fill/memset ratio at 1024 x 1024 should be at least 0.5).
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "bench/BenchSupport.h"
#include "ulogui/PictureBits.h"

namespace {

void BM_Fill(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    ULOPictureBits buffer(ULOSize(side, side), PICTBITS_ALPHA);
    unsigned char alpha = 0;
    for (auto _ : state) {
        buffer.Fill(CLR(10, 20, 30), alpha++);
        benchmark::DoNotOptimize(buffer.GetBits());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * buffer.GetLineWidth(false) * side);
}

void BM_Memset(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    std::vector<unsigned char> bytes(static_cast<size_t>(side) * side * 4);
    ulobench::MemsetLoop(state, bytes);
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes.size()));
}

void BM_MirrorHorizontally(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    ULOPictureBits buffer(ULOSize(side, side), PICTBITS_ALPHA);
    buffer.Fill(CLR(1, 2, 3), 4);
    for (auto _ : state) {
        buffer.Mirror(true, false);
        benchmark::DoNotOptimize(buffer.GetBits());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * buffer.GetLineWidth(false) * side);
}

void BM_MirrorVertically(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    ULOPictureBits buffer(ULOSize(side, side), PICTBITS_ALPHA);
    buffer.Fill(CLR(1, 2, 3), 4);
    for (auto _ : state) {
        buffer.Mirror(false, true);
        benchmark::DoNotOptimize(buffer.GetBits());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * buffer.GetLineWidth(false) * side);
}

// A mirror reads and writes every byte once, like a copy.
void BM_Memcpy(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    const size_t size = static_cast<size_t>(side) * side * 4;
    std::vector<unsigned char> from(size, 1);
    std::vector<unsigned char> to(size);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), size);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(size));
}

}  // namespace

BENCHMARK(BM_Fill)->Arg(64)->Arg(256)->Arg(1024);
BENCHMARK(BM_Memset)->Arg(64)->Arg(256)->Arg(1024);
BENCHMARK(BM_MirrorHorizontally)->Arg(64)->Arg(256)->Arg(1024);
BENCHMARK(BM_MirrorVertically)->Arg(64)->Arg(256)->Arg(1024);
BENCHMARK(BM_Memcpy)->Arg(64)->Arg(256)->Arg(1024);

BENCHMARK_MAIN();
