#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "toolslib/MultiProc.h"
#include "toolslib/Progress.h"

using namespace tools::multiproc;

namespace {

// One counter per iteration, to prove which iterations ran, and exactly once.
struct RunCounts {
    explicit RunCounts(int count) : hits(static_cast<size_t>(count)) {}
    void Hit(int index) { ++hits[static_cast<size_t>(index)]; }
    // Whether exactly the iterations that `ran` accepts ran, each once.
    bool Are(const std::function<bool(int)>& ran = [](int) { return true; }) const {
        int i = 0;
        return std::all_of(hits.begin(), hits.end(),
                           [&](const std::atomic<int>& h) { return h == ran(i++); });
    }
    std::vector<std::atomic<int>> hits;
};

// Answers whatever the function says.
struct AskingInterruptor : ULOInterruptor {
    explicit AskingInterruptor(std::function<bool()> answer) : answer_(std::move(answer)) {}
    bool IsInterrupted() const override { return answer_(); }
    std::function<bool()> answer_;
};

const ULONullInterruptor never{};

// Runs `body` over `count` iterations on `threads` threads.
void RunLoop(int count, int threads, const ParallelSection::Body& body, PIMProgress* progress = nullptr) {
    InterruptibleProgressingLoopIter iter(count, never, progress);
    ParallelSection section(iter, body);
    RunParallelSection(section, threads);
}

// Runs `count` iterations on `threads` threads; true when each ran exactly once and was counted.
bool RunCountedLoop(int count, int threads) {
    RunCounts counts(count);
    PIMProgress progress;
    RunLoop(
        count, threads, [&](int i) { counts.Hit(i); }, &progress);
    return counts.Are() && progress.GetPosition() == count;
}

// Three levels of sections, each on four threads.
bool RunNestedLoops() {
    constexpr int kOuter = 24, kMiddle = 6, kInner = 50;
    RunCounts counts(kOuter * kMiddle * kInner);
    RunLoop(kOuter, 4, [&](int o) {
        RunLoop(kMiddle, 4, [&](int m) {
            RunLoop(kInner, 4, [&](int i) { counts.Hit((o * kMiddle + m) * kInner + i); });
        });
    });
    return counts.Are();
}

}  // namespace

TEST(ParallelSection, EveryIterationRunsOnceAlsoForConcurrentCallersNestedSectionsAndCustomIterations) {
    for (int threads : {-3, 0, 1, 2, 3, 8, 64}) {
        for (int count : {0, 1, 2, 7, 100000}) {
            EXPECT_TRUE(RunCountedLoop(count, threads)) << "threads " << threads << " count " << count;
        }
    }
    // Helpers queued for a section that finished long ago must find it closed; many tiny sections in a
    // row, with sections on the stack, let the sanitizer see any late access.
    for (int round = 0; round < 3000; ++round) {
        ASSERT_TRUE(RunCountedLoop(round % 3, 8)) << "round " << round;
    }
    std::atomic<int> failures{0};
    std::vector<std::thread> callers;
    for (int c = 0; c < 6; ++c) {
        callers.emplace_back([&failures, c] {
            for (int round = 0; round < 20; ++round) {
                failures += !RunCountedLoop(3000 + round * 37, 2 + (c + round) % 4);
            }
            failures += !RunNestedLoops();
        });
    }
    for (std::thread& t : callers) {
        t.join();
    }
    EXPECT_EQ(failures.load(), 0);
    // Hands out the even numbers below 2000.
    class EvenNumbers : public ParallelLoopIteration {
    public:
        explicit EvenNumbers(RunCounts& completed) : completed_(completed) {}
        bool Claim(int& index) override {
            index = next_.fetch_add(2);
            return index < 2000;
        }
        void Completed(int index) override { completed_.Hit(index); }

    private:
        RunCounts& completed_;
        std::atomic<int> next_{0};
    };
    RunCounts ran(2000), completed(2000);
    EvenNumbers iter(completed);
    ParallelSection section(iter, [&](int i) { ran.Hit(i); });
    RunParallelSection(section, 3);
    const auto even = [](int i) { return i % 2 == 0; };
    EXPECT_TRUE(ran.Are(even) && completed.Are(even));
}

TEST(ParallelSection, OneThreadOrFewerRunsOnTheCallerTwoShareTheCapHoldsAndProgressCountsStepsOnce) {
    for (int threads : {-1, 0, 1}) {
        std::set<std::thread::id> seen;
        RunLoop(200, threads, [&](int) { seen.insert(std::this_thread::get_id()); });
        EXPECT_EQ(seen, std::set<std::thread::id>{std::this_thread::get_id()}) << "threads " << threads;
    }
    // Each iteration waits (a few seconds at most) until a second thread, which only a pool worker can
    // be, has shown up.
    std::mutex mutex;
    std::set<std::thread::id> seen;
    RunLoop(2, 2, [&](int) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        std::unique_lock<std::mutex> lock(mutex);
        seen.insert(std::this_thread::get_id());
        while (seen.size() < 2 && std::chrono::steady_clock::now() < deadline) {
            lock.unlock();
            std::this_thread::yield();
            lock.lock();
        }
    });
    EXPECT_EQ(seen.size(), 2u);
    const int hardware = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    EXPECT_EQ(GetOptimizedMaxJobThreadAllowed(), hardware);
    for (auto [cap, expected] :
         {std::pair(1, 1), {hardware + 5, hardware}, {-4, hardware}, {1, 1}, {0, hardware}}) {
        SetMaxJobThreadAllowed(cap);
        EXPECT_EQ(GetOptimizedMaxJobThreadAllowed(), expected) << "cap " << cap;
    }
    // Records every position reported to the observer hook.
    class RecordingProgress : public PIMProgress {
    public:
        std::vector<int> seen;
        std::mutex mutex;

    protected:
        void OnStep(long position, long steps) override {
            std::lock_guard<std::mutex> lock(mutex);
            EXPECT_EQ(steps, static_cast<long>(seen.size()) - 1);
            ASSERT_TRUE(position >= 1 && position < steps + 1) << position;
            ++seen[static_cast<size_t>(position)];
        }
    };
    constexpr int kSteps = 20000;
    RecordingProgress progress;
    progress.seen.resize(kSteps + 1);
    progress.SetSteps(kSteps);
    RunLoop(kSteps, 4, [&](int) { progress.Step(); });  // from the caller and three pool workers
    EXPECT_EQ(progress.GetPosition(), kSteps);
    for (size_t p = 1; p < progress.seen.size(); ++p) {
        ASSERT_EQ(progress.seen[p], 1) << p;
    }
    progress.SetSteps(10);
    EXPECT_EQ(progress.GetPosition(), 0);
    progress.SetSteps(-5);
    EXPECT_EQ(progress.GetSteps(), 0);
}

TEST(ParallelLoopInterruption, StopsAndExceptionsEndTheLoopSoonAndExceptionsReachTheCallerUnchanged) {
    // One question per index handed out: a loop stopped after k answers ran exactly the first k, and
    // a loop given just enough answers finished uninterrupted.
    constexpr int kCount = 10000;
    for (auto [threads, allowed] : {std::pair(1, 137), {2, 137}, {4, 137}, {4, 0}, {1, kCount}}) {
        SCOPED_TRACE(testing::Message() << "threads " << threads << " allowed " << allowed);
        RunCounts counts(kCount);
        std::atomic<int> remaining{allowed};  // "not interrupted" to the first `allowed` questions
        AskingInterruptor interruptor([&] { return remaining.fetch_sub(1) <= 0; });
        PIMProgress progress;
        InterruptibleProgressingLoopIter iter(kCount, interruptor, &progress);
        ParallelSection section(iter, [&](int i) { counts.Hit(i); });
        RunParallelSection(section, threads);
        EXPECT_EQ(iter.WasInterrupted(), allowed < kCount);
        EXPECT_EQ(progress.GetPosition(), allowed);
        EXPECT_TRUE(counts.Are([allowed = allowed](int i) { return i < allowed; }));
        int ignored = -1;
        EXPECT_FALSE(iter.Claim(ignored)) << "a stopped loop stays stopped";
    }
    constexpr int kLong = 20000;
    for (int threads : {1, 2, 4}) {
        std::atomic<int> inside{0}, started{0};
        try {
            RunLoop(kLong, threads, [&](int i) {
                ++inside;
                ++started;
                // 50 microseconds of waiting (a sleep that short is no sleep at all on Windows).
                const auto until = std::chrono::steady_clock::now() + std::chrono::microseconds(50);
                while (std::chrono::steady_clock::now() < until) {
                }
                --inside;
                if (i == 17) {
                    throw i;  // of any type, to come back unchanged
                }
            });
            ADD_FAILURE() << "no exception, threads " << threads;
        } catch (int i) {
            EXPECT_EQ(i, 17);
            EXPECT_EQ(inside.load(), 0) << "every thread has left the body";
        }
        // Running all of them would take a second; the loop stopped long before.
        EXPECT_LT(started.load(), kLong / 2) << "threads " << threads;
    }
    // Progress counts only completed iterations.
    PIMProgress progress;
    EXPECT_THROW(RunLoop(
                     10, 1, [](int i) { i == 3 ? throw std::logic_error("stop") : void(); }, &progress),
                 std::logic_error);
    EXPECT_EQ(progress.GetPosition(), 3);

    AskingInterruptor broken([]() -> bool { throw std::runtime_error("interruptor broke"); });
    InterruptibleProgressingLoopIter brokenIter(100, broken, nullptr);
    ParallelSection brokenSection(brokenIter, [](int) {});
    EXPECT_THROW(RunParallelSection(brokenSection, 3), std::runtime_error);

    try {
        RunLoop(8, 3, [](int o) {
            RunLoop(100, 3,
                    [o](int i) { o == 5 && i == 42 ? throw std::runtime_error("inner 5/42") : void(); });
        });
        ADD_FAILURE() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "inner 5/42");
    }

    // Only one of many exceptions comes back, and nothing terminates.
    for (int round = 0; round < 50; ++round) {
        EXPECT_THROW(RunLoop(100, 4, [](int i) { i % 7 == 3 ? throw std::runtime_error("bad") : void(); }),
                     std::runtime_error);
    }
    EXPECT_TRUE(RunCountedLoop(50000, 4));
}
