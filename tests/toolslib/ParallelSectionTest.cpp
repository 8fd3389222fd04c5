#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "tests/toolslib/ParallelTestUtil.h"
#include "toolslib/MultiProc.h"

using namespace tools::multiproc;
using toolslib_test::CountdownInterruptor;
using toolslib_test::RunCounts;

namespace {

// Runs `count` iterations on `threads` threads and returns the first iteration not run exactly
// once (-1 when all were), checking the progress on the way.
int RunCountedLoop(int count, int threads) {
    RunCounts counts(count);
    ULONullInterruptor never;
    PIMProgress progress;
    progress.SetSteps(count);
    InterruptibleProgressingLoopIter iter(count, never, &progress);
    ParallelSection section(iter, [&](int i) { counts.Hit(i); });
    RunParallelSection(section, threads);
    EXPECT_EQ(progress.GetPosition(), count);
    EXPECT_FALSE(iter.WasInterrupted());
    return counts.FirstIndexNotRun(1);
}

}  // namespace

TEST(ParallelSection, EveryIterationRunsExactlyOnce) {
    for (int threads : {-3, 0, 1, 2, 3, 8, 64}) {
        for (int count : {0, 1, 2, 7, 100000}) {
            EXPECT_EQ(RunCountedLoop(count, threads), -1) << "threads " << threads << " count " << count;
        }
    }
}

TEST(ParallelSection, ConcurrentCallersDoNotInterfere) {
    constexpr int kCallers = 6;
    std::vector<int> failures(kCallers, 0);
    std::vector<std::thread> callers;
    for (int c = 0; c < kCallers; ++c) {
        callers.emplace_back([&failures, c] {
            for (int round = 0; round < 20; ++round) {
                if (RunCountedLoop(3000 + round * 37, 2 + (c + round) % 4) != -1) {
                    ++failures[c];
                }
            }
        });
    }
    for (std::thread& t : callers) {
        t.join();
    }
    for (int c = 0; c < kCallers; ++c) {
        EXPECT_EQ(failures[c], 0) << "caller " << c;
    }
}

// Helpers queued for a section that finished long ago must find it closed; many tiny sections in
// a row, with sections on the stack, let a sanitizer see any late access.
TEST(ParallelSection, ManyTinySectionsBackToBack) {
    for (int round = 0; round < 3000; ++round) {
        ASSERT_EQ(RunCountedLoop(round % 3, 8), -1) << "round " << round;
    }
}

TEST(ParallelSection, NestedSectionsCompleteWithoutDeadlock) {
    constexpr int kOuter = 24, kMiddle = 6, kInner = 50;
    RunCounts counts(kOuter * kMiddle * kInner);
    ULONullInterruptor never;
    InterruptibleProgressingLoopIter outerIter(kOuter, never, nullptr);
    ParallelSection outer(outerIter, [&](int o) {
        InterruptibleProgressingLoopIter middleIter(kMiddle, never, nullptr);
        ParallelSection middle(middleIter, [&](int m) {
            InterruptibleProgressingLoopIter innerIter(kInner, never, nullptr);
            ParallelSection inner(innerIter, [&](int i) { counts.Hit((o * kMiddle + m) * kInner + i); });
            RunParallelSection(inner, 4);
        });
        RunParallelSection(middle, 4);
    });
    RunParallelSection(outer, 4);
    EXPECT_EQ(counts.FirstIndexNotRun(1), -1);
}

TEST(ParallelSection, NestedSectionsFromConcurrentCallers) {
    std::vector<std::thread> callers;
    std::atomic<int> failures{0};
    for (int c = 0; c < 4; ++c) {
        callers.emplace_back([&failures] {
            ULONullInterruptor never;
            InterruptibleProgressingLoopIter outerIter(16, never, nullptr);
            ParallelSection outer(outerIter, [&](int) {
                if (RunCountedLoop(500, 3) != -1) {
                    ++failures;
                }
            });
            RunParallelSection(outer, 3);
        });
    }
    for (std::thread& t : callers) {
        t.join();
    }
    EXPECT_EQ(failures.load(), 0);
}

TEST(ParallelSection, OneThreadOrFewerRunsOnTheCaller) {
    for (int threads : {-1, 0, 1}) {
        std::set<std::thread::id> seen;
        ULONullInterruptor never;
        InterruptibleProgressingLoopIter iter(200, never, nullptr);
        ParallelSection section(iter, [&](int) { seen.insert(std::this_thread::get_id()); });
        RunParallelSection(section, threads);
        EXPECT_EQ(seen, std::set<std::thread::id>{std::this_thread::get_id()}) << "threads " << threads;
    }
}

TEST(ParallelSection, TwoThreadsReallyShareTheWork) {
    // Each iteration waits (at most a few seconds) until a second thread has shown up, which only
    // a pool worker can be.
    std::mutex mutex;
    std::set<std::thread::id> seen;
    ULONullInterruptor never;
    InterruptibleProgressingLoopIter iter(2, never, nullptr);
    ParallelSection section(iter, [&](int) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        {
            std::lock_guard<std::mutex> lock(mutex);
            seen.insert(std::this_thread::get_id());
        }
        while (std::chrono::steady_clock::now() < deadline) {
            std::lock_guard<std::mutex> lock(mutex);
            if (seen.size() >= 2) {
                break;
            }
        }
    });
    RunParallelSection(section, 2);
    EXPECT_EQ(seen.size(), 2u);
}

TEST(ParallelSection, CompletedIsCalledOncePerIterationOfACustomIteration) {
    // Hands out the even numbers below 2000, to check that the section uses what Claim gives.
    class EvenNumbers : public ParallelLoopIteration {
    public:
        explicit EvenNumbers(RunCounts& completed) : completed_(completed) {}
        bool Claim(int& index) override {
            const int n = next_.fetch_add(2);
            if (n >= 2000) {
                return false;
            }
            index = n;
            return true;
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
    for (int i = 0; i < 2000; ++i) {
        ASSERT_EQ(ran.Get(i), 1 - i % 2) << i;
        ASSERT_EQ(completed.Get(i), 1 - i % 2) << i;
    }
}

TEST(ParallelLoopInterruption, StopsHandingOutIndicesOnceInterrupted) {
    for (int threads : {1, 2, 4}) {
        constexpr int kAllowed = 137;
        RunCounts counts(10000);
        CountdownInterruptor interruptor(kAllowed);
        PIMProgress progress;
        InterruptibleProgressingLoopIter iter(10000, interruptor, &progress);
        ParallelSection section(iter, [&](int i) { counts.Hit(i); });
        RunParallelSection(section, threads);

        // One question per index handed out: exactly the first kAllowed indices ran.
        EXPECT_TRUE(iter.WasInterrupted());
        EXPECT_EQ(progress.GetPosition(), kAllowed);
        for (int i = 0; i < 10000; ++i) {
            ASSERT_EQ(counts.Get(i), i < kAllowed ? 1 : 0) << "threads " << threads << " index " << i;
        }
        int ignored = -1;
        EXPECT_FALSE(iter.Claim(ignored)) << "an interrupted loop stays stopped";
    }
}

TEST(ParallelLoopInterruption, InterruptedFromTheStartRunsNothing) {
    CountdownInterruptor interruptor(0);
    std::atomic<int> runs{0};
    InterruptibleProgressingLoopIter iter(100, interruptor, nullptr);
    ParallelSection section(iter, [&](int) { ++runs; });
    RunParallelSection(section, 4);
    EXPECT_EQ(runs.load(), 0);
    EXPECT_TRUE(iter.WasInterrupted());
}

TEST(ParallelLoopInterruption, InterruptionRaisedByTheBodyStopsTheLoopSoon) {
    // The flag is raised by the body itself after k iterations; at most the iterations already
    // handed out to the other threads may still run.
    class FlagInterruptor : public ULOInterruptor {
    public:
        bool IsInterrupted() const override { return flag.load(); }
        std::atomic<bool> flag{false};
    };
    constexpr int kThreads = 4, kStopAfter = 50;
    FlagInterruptor interruptor;
    std::atomic<int> runs{0};
    InterruptibleProgressingLoopIter iter(100000, interruptor, nullptr);
    ParallelSection section(iter, [&](int) {
        if (++runs == kStopAfter) {
            interruptor.flag = true;
        }
    });
    RunParallelSection(section, kThreads);
    EXPECT_GE(runs.load(), kStopAfter);
    EXPECT_LT(runs.load(), kStopAfter + kThreads);
    EXPECT_TRUE(iter.WasInterrupted());
}

TEST(ParallelLoopInterruption, FinishedLoopIsNotReportedAsInterrupted) {
    CountdownInterruptor interruptor(10);  // exactly enough answers for the 10 iterations
    InterruptibleProgressingLoopIter iter(10, interruptor, nullptr);
    ParallelSection section(iter, [](int) {});
    RunParallelSection(section, 1);
    EXPECT_FALSE(iter.WasInterrupted());
}

TEST(JobThreadCount, FollowsTheHardwareAndTheCap) {
    const unsigned hw = std::thread::hardware_concurrency();
    const int hardware = hw == 0 ? 1 : static_cast<int>(hw);
    EXPECT_EQ(GetOptimizedMaxJobThreadAllowed(), hardware);
    SetMaxJobThreadAllowed(1);
    EXPECT_EQ(GetOptimizedMaxJobThreadAllowed(), 1);
    SetMaxJobThreadAllowed(hardware + 5);
    EXPECT_EQ(GetOptimizedMaxJobThreadAllowed(), hardware);
    SetMaxJobThreadAllowed(-4);
    EXPECT_EQ(GetOptimizedMaxJobThreadAllowed(), hardware);
    SetMaxJobThreadAllowed(1);
    SetMaxJobThreadAllowed(0);
    EXPECT_EQ(GetOptimizedMaxJobThreadAllowed(), hardware);
}
