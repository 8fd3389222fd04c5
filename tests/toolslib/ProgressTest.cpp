#include <gtest/gtest.h>

#include <mutex>
#include <thread>
#include <vector>

#include "toolslib/Progress.h"

namespace {

// Records every position reported to the observer hook.
class RecordingProgress : public PIMProgress {
public:
    std::vector<long> positions;
    long lastSteps = -1;

protected:
    void OnStep(long position, long steps) override {
        std::lock_guard<std::mutex> lock(mutex_);
        positions.push_back(position);
        lastSteps = steps;
    }

private:
    std::mutex mutex_;
};

}  // namespace

TEST(PIMProgress, CountsStepsFromManyThreadsWithoutLosingAny) {
    constexpr int kThreads = 4, kStepsEach = 5000;
    RecordingProgress progress;
    progress.SetSteps(kThreads * kStepsEach);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < kStepsEach; ++i) {
                progress.Step();
            }
        });
    }
    for (std::thread& t : threads) {
        t.join();
    }
    EXPECT_EQ(progress.GetPosition(), kThreads * kStepsEach);
    EXPECT_EQ(progress.lastSteps, kThreads * kStepsEach);
    // Each position is reported exactly once.
    std::vector<int> seen(kThreads * kStepsEach + 1, 0);
    for (long p : progress.positions) {
        ASSERT_GE(p, 1);
        ASSERT_LE(p, kThreads * kStepsEach);
        ++seen[p];
    }
    for (size_t p = 1; p < seen.size(); ++p) {
        ASSERT_EQ(seen[p], 1) << p;
    }
}

TEST(PIMProgress, SetStepsStartsANewCount) {
    PIMProgress progress;
    EXPECT_EQ(progress.GetSteps(), 0);
    EXPECT_EQ(progress.GetPosition(), 0);
    progress.SetSteps(3);
    progress.Step();
    progress.Step();
    EXPECT_EQ(progress.GetPosition(), 2);
    progress.SetSteps(10);
    EXPECT_EQ(progress.GetSteps(), 10);
    EXPECT_EQ(progress.GetPosition(), 0);
    progress.SetSteps(-5);
    EXPECT_EQ(progress.GetSteps(), 0);
}
