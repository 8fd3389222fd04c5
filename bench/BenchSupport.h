#pragma once
// What the benchmark programs share: the memset baseline, a reporter that keeps each run's rate for a
// summary table printed after the console one, and the run that feeds it.
#include <benchmark/benchmark.h>

#include <cstring>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace ulobench {

// memset of all of `bytes` per iteration, the value changing each time so no pass can be skipped: the
// memory-bandwidth baseline the pixel loops are read against. The caller sets the counters.
inline void MemsetLoop(benchmark::State& state, std::vector<unsigned char>& bytes) {
    int value = 0;
    for (auto _ : state) {
        std::memset(bytes.data(), value++ & 0xFF, bytes.size());
        benchmark::DoNotOptimize(bytes.data());
        benchmark::ClobberMemory();
    }
}

// Keeps one rate counter of every run in millions per second ("BM_FillRect/64" -> Mpixel/s) while the
// console shows the usual table. With repetitions the median is kept.
class RateCollector : public benchmark::ConsoleReporter {
public:
    explicit RateCollector(std::string counter) : counter_(std::move(counter)) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const auto found = run.counters.find(counter_);
            if (found == run.counters.end()) {
                continue;
            }
            const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            if (run.run_type == Run::RT_Iteration || median) {
                const std::string name = run.run_name.str();
                if (median || medians_.count(name) == 0) {
                    rates[name] = found->second.value / 1e6;
                }
                if (median) {
                    medians_.insert(name);
                }
            }
        }
    }

    std::map<std::string, double> rates;

private:
    std::string counter_;
    std::set<std::string> medians_;
};

// Reads the benchmark options from the command line and runs every registered benchmark through
// `reporter`. False when the command line holds arguments the library does not know.
inline bool RunBenchmarks(int& argc, char** argv, benchmark::BenchmarkReporter& reporter) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return false;
    }
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return true;
}

}  // namespace ulobench
