// EnlargeSmooth and Resize against pixman, on random 32-bit pictures with alpha.
//
// Cases: 256 and 1024 pixel squares scaled by 2, 1.5, 0.5 and 0.39 (1024 -> 400, a ratio that is not a
// whole number). EnlargeSmooth runs at 1 and 2 worker threads; pixman runs on one thread with its
// bilinear filter (enlarging), its separable-convolution box filter (shrinking) and its nearest filter
// (beside eResizeNearest). Every benchmark reports Mpixel/s of output; a summary at the end prints the
// ratios the targets are stated in, from each case's best of several repetitions (a shared machine
// disturbs some of them).
#include <benchmark/benchmark.h>
#include <pixman.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "toolslib/MultiProc.h"
#include "ulogui/PictureBits.h"
#include "ulolib/Interruptor.h"

namespace {

struct Case {
    int source;
    int output;
};
const Case kCases[] = {{256, 512},   {256, 384},   {256, 128},  {256, 100},
                       {1024, 2048}, {1024, 1536}, {1024, 512}, {1024, 400}};

ULOPictureBits RandomPicture(int size) {
    ULOPictureBits picture(ULOSize(size, size), PICTBITS_ALPHA);
    std::mt19937 random(12345);
    unsigned char* p = picture.GetBits();
    for (int i = 0; i < picture.GetLineWidth(false) * size; ++i) {
        p[i] = static_cast<unsigned char>(random());
    }
    ULOPictureBits owned;
    owned.Swap(picture);
    return owned;
}

const ULOPictureBits& SourceOf(int size) {
    static const ULOPictureBits small = RandomPicture(256);
    static const ULOPictureBits large = RandomPicture(1024);
    return size == 256 ? small : large;
}

// CPU time of the whole process, summed over the timed operations only.
class CpuTime {
public:
    void Start() { start_ = Now(); }
    void Stop() { total_ += Now() - start_; }
    double Seconds() const { return total_; }

private:
    static double Now() {
        timespec t;
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
    }
    double start_ = 0;
    double total_ = 0;
};

// "Mpix/s": output pixels per elapsed second; "cpu Mpix/s": per second of CPU time, which other
// processes taking turns on the same cores do not inflate (for one thread, the fairer measure).
void SetOutputRate(benchmark::State& state, int output, const CpuTime& cpu) {
    const double megapixels = static_cast<double>(output) * output / 1e6;
    state.counters["Mpix/s"] = benchmark::Counter(megapixels, benchmark::Counter::kIsIterationInvariantRate);
    if (cpu.Seconds() > 0) {
        state.counters["cpu Mpix/s"] = megapixels * static_cast<double>(state.iterations()) / cpu.Seconds();
    }
}

void BM_EnlargeSmooth(benchmark::State& state) {
    const int source = static_cast<int>(state.range(0));
    const int output = static_cast<int>(state.range(1));
    tools::multiproc::SetMaxJobThreadAllowed(static_cast<int>(state.range(2)));
    const ULOPictureBits& picture = SourceOf(source);
    ULOPictureBits target(ULOSize(output, output), PICTBITS_ALPHA);
    CpuTime cpu;
    for (auto _ : state) {
        cpu.Start();
        picture.EnlargeSmooth(target, nullptr);
        cpu.Stop();
        benchmark::DoNotOptimize(target.GetBits());
    }
    tools::multiproc::SetMaxJobThreadAllowed(0);
    SetOutputRate(state, output, cpu);
}

// The same kind of column loop with pure arithmetic and no memory traffic: the speed-up two threads can
// reach on this machine at the moment, against which EnlargeSmooth's is to be read.
void BM_MachineScaling(benchmark::State& state) {
    const int threads = static_cast<int>(state.range(0));
    constexpr int kColumns = 64;
    std::vector<uint32_t> sums(kColumns);
    ULONullInterruptor never;
    for (auto _ : state) {
        tools::multiproc::InterruptibleProgressingLoopIter columns(kColumns, never, nullptr);
        tools::multiproc::ParallelSection section(columns, [&sums](int column) {
            uint32_t a = static_cast<uint32_t>(column) + 1, b = 12345;
            for (int i = 0; i < 200000; ++i) {
                a = a * 1664525u + b;
                b ^= a >> 7;
            }
            sums[column] = a + b;
        });
        tools::multiproc::RunParallelSection(section, threads);
        benchmark::DoNotOptimize(sums.data());
    }
    state.counters["rounds/s"] = benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate);
}

void BM_Resize(benchmark::State& state, ULOPictureBits::EResizeMethod method) {
    const int source = static_cast<int>(state.range(0));
    const int output = static_cast<int>(state.range(1));
    const ULOPictureBits& picture = SourceOf(source);
    ULOPictureBits copy;
    CpuTime cpu;
    for (auto _ : state) {
        state.PauseTiming();
        {
            // A fresh copy of the source; the previous round's result is freed here, outside the timing.
            ULOPictureBits fresh;
            fresh.Clone(picture);
            copy.Swap(fresh);
        }
        state.ResumeTiming();
        // Allocating the new block and freeing the old one are part of the operation.
        cpu.Start();
        copy.Resize(output, output, method);
        cpu.Stop();
        benchmark::DoNotOptimize(copy.GetBits());
    }
    SetOutputRate(state, output, cpu);
}

void BM_ResizeNearest(benchmark::State& state) {
    BM_Resize(state, ULOPictureBits::eResizeNearest);
}

void BM_ResizeBox(benchmark::State& state) {
    BM_Resize(state, ULOPictureBits::eResizeBox);
}

enum class PixmanFilter { kNearest, kSmooth };

pixman_image_t* PixmanSource(const ULOPictureBits& picture, int output, PixmanFilter filter) {
    const int source = picture.GetWidth(false);
    pixman_image_t* from = pixman_image_create_bits(
        PIXMAN_a8r8g8b8, source, source,
        reinterpret_cast<uint32_t*>(const_cast<unsigned char*>(picture.GetBits())), source * 4);
    const double scale = static_cast<double>(source) / output;
    pixman_transform_t transform;
    pixman_transform_init_scale(&transform, pixman_double_to_fixed(scale), pixman_double_to_fixed(scale));
    pixman_image_set_transform(from, &transform);
    pixman_image_set_repeat(from, PIXMAN_REPEAT_PAD);
    if (filter == PixmanFilter::kNearest) {
        pixman_image_set_filter(from, PIXMAN_FILTER_NEAREST, nullptr, 0);
    } else if (output > source) {
        pixman_image_set_filter(from, PIXMAN_FILTER_BILINEAR, nullptr, 0);
    } else {
        int count = 0;
        pixman_fixed_t* params = pixman_filter_create_separable_convolution(
            &count, pixman_double_to_fixed(scale), pixman_double_to_fixed(scale), PIXMAN_KERNEL_BOX,
            PIXMAN_KERNEL_BOX, PIXMAN_KERNEL_BOX, PIXMAN_KERNEL_BOX, 4, 4);
        pixman_image_set_filter(from, PIXMAN_FILTER_SEPARABLE_CONVOLUTION, params, count);
        std::free(params);
    }
    return from;
}

// Smooth scaling: the same source and target every time, as for EnlargeSmooth.
void BM_PixmanSmooth(benchmark::State& state) {
    const int output = static_cast<int>(state.range(1));
    std::vector<uint32_t> out(static_cast<size_t>(output) * output);
    pixman_image_t* from =
        PixmanSource(SourceOf(static_cast<int>(state.range(0))), output, PixmanFilter::kSmooth);
    pixman_image_t* to = pixman_image_create_bits(PIXMAN_a8r8g8b8, output, output, out.data(), output * 4);
    CpuTime cpu;
    for (auto _ : state) {
        cpu.Start();
        pixman_image_composite32(PIXMAN_OP_SRC, from, nullptr, to, 0, 0, 0, 0, 0, 0, output, output);
        cpu.Stop();
        benchmark::DoNotOptimize(out.data());
    }
    pixman_image_unref(from);
    pixman_image_unref(to);
    SetOutputRate(state, output, cpu);
}

// Nearest: like Resize, every round starts from a fresh copy of the source made outside the timing,
// so that both meet the caches in the same state.
void BM_PixmanNearest(benchmark::State& state) {
    const int output = static_cast<int>(state.range(1));
    std::vector<uint32_t> out(static_cast<size_t>(output) * output);
    pixman_image_t* to = pixman_image_create_bits(PIXMAN_a8r8g8b8, output, output, out.data(), output * 4);
    const ULOPictureBits& picture = SourceOf(static_cast<int>(state.range(0)));
    CpuTime cpu;
    for (auto _ : state) {
        state.PauseTiming();
        ULOPictureBits copy;
        copy.Clone(picture);
        pixman_image_t* from = PixmanSource(copy, output, PixmanFilter::kNearest);
        state.ResumeTiming();
        cpu.Start();
        pixman_image_composite32(PIXMAN_OP_SRC, from, nullptr, to, 0, 0, 0, 0, 0, 0, output, output);
        cpu.Stop();
        benchmark::DoNotOptimize(out.data());
        state.PauseTiming();
        pixman_image_unref(from);
        state.ResumeTiming();
    }
    pixman_image_unref(to);
    SetOutputRate(state, output, cpu);
}

// Other processes may share the cores: every case runs several times, and the summary takes each
// case's best repetition (the "max" aggregate of Mpix/s; the time column of that line is the slowest).
constexpr int kRepetitions = 5;

double Best(const std::vector<double>& values) {
    return values.empty() ? 0.0 : *std::max_element(values.begin(), values.end());
}

void Configure(benchmark::internal::Benchmark* b) {
    b->UseRealTime()
        ->Unit(benchmark::kMillisecond)
        ->Repetitions(kRepetitions)
        ->DisplayAggregatesOnly(true)
        ->ComputeStatistics("max", Best);
}

void RegisterAll() {
    Configure(benchmark::RegisterBenchmark("MachineScaling", BM_MachineScaling)->Arg(1)->Arg(2));
    for (const Case& c : kCases) {
        for (int threads : {1, 2}) {
            Configure(benchmark::RegisterBenchmark("EnlargeSmooth", BM_EnlargeSmooth)
                          ->Args({c.source, c.output, threads}));
        }
        Configure(benchmark::RegisterBenchmark("PixmanSmooth", BM_PixmanSmooth)->Args({c.source, c.output}));
        Configure(
            benchmark::RegisterBenchmark("ResizeNearest", BM_ResizeNearest)->Args({c.source, c.output}));
        Configure(
            benchmark::RegisterBenchmark("PixmanNearest", BM_PixmanNearest)->Args({c.source, c.output}));
        Configure(benchmark::RegisterBenchmark("ResizeBox", BM_ResizeBox)->Args({c.source, c.output}));
    }
}

// Keeps each case's best rates for the summary.
class CollectingReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "max") {
                continue;
            }
            // The name without its "/repeats:N" part.
            std::string name = run.run_name.str();
            const std::size_t repeats = name.find("/repeats:");
            if (repeats != std::string::npos) {
                name.erase(repeats, name.find('/', repeats + 1) - repeats);
            }
            auto elapsed = run.counters.find("Mpix/s");
            if (elapsed == run.counters.end()) {
                elapsed = run.counters.find("rounds/s");
            }
            const auto cpu = run.counters.find("cpu Mpix/s");
            if (elapsed != run.counters.end()) {
                rates[name] = elapsed->second.value;
            }
            if (cpu != run.counters.end()) {
                cpuRates[name] = cpu->second.value;
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> rates;
    std::map<std::string, double> cpuRates;
};

void PrintSummary(const CollectingReporter& r) {
    const auto get = [](const std::map<std::string, double>& from, const std::string& name) {
        const auto it = from.find(name);
        return it == from.end() ? 0.0 : it->second;
    };
    const auto ratio = [](double a, double b) { return b > 0 ? a / b : 0.0; };
    std::printf(
        "\nMpixel/s of output, best of %d repetitions. One-thread figures per second of CPU time (other "
        "processes\n"
        "on the cores do not count), the thread speed-up from elapsed time. Targets: smooth >= pixman when\n"
        "enlarging, >= 4x pixman for 1024 -> 400; nearest >= pixman; 2 threads >= 1.7x 1 thread (1024 "
        "sources).\n",
        kRepetitions);
    const double machine =
        ratio(get(r.rates, "MachineScaling/2/real_time"), get(r.rates, "MachineScaling/1/real_time"));
    std::printf("Two threads on pure arithmetic reach %.2fx one thread on this machine right now.\n",
                machine);
    std::printf("%11s | %8s %8s %6s | %8s %8s %6s | %8s %8s %6s | %7s\n", "case", "smooth", "pixman", "ratio",
                "1 thr", "2 thr", "x2/x1", "nearest", "pixman", "ratio", "box");
    for (const Case& c : kCases) {
        const std::string size = "/" + std::to_string(c.source) + "/" + std::to_string(c.output);
        const std::string one = "EnlargeSmooth" + size + "/1/real_time";
        const std::string two = "EnlargeSmooth" + size + "/2/real_time";
        const double smooth = get(r.cpuRates, one);
        const double pixman = get(r.cpuRates, "PixmanSmooth" + size + "/real_time");
        const double nearest = get(r.cpuRates, "ResizeNearest" + size + "/real_time");
        const double pixmanNearest = get(r.cpuRates, "PixmanNearest" + size + "/real_time");
        std::printf("%4d->%-5d | %8.1f %8.1f %6.2f | %8.1f %8.1f %6.2f | %8.1f %8.1f %6.2f | %7.1f\n",
                    c.source, c.output, smooth, pixman, ratio(smooth, pixman), get(r.rates, one),
                    get(r.rates, two), ratio(get(r.rates, two), get(r.rates, one)), nearest, pixmanNearest,
                    ratio(nearest, pixmanNearest), get(r.cpuRates, "ResizeBox" + size + "/real_time"));
    }
}

}  // namespace

int main(int argc, char** argv) {
    RegisterAll();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    CollectingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    PrintSummary(reporter);
    benchmark::Shutdown();
    return 0;
}
