#include "toolslib/Progress.h"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>
#include <vector>

TEST(PIMProgress, CountsStepsFromManyThreadsAndReportsEachPositionOnce) {
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
    constexpr int kThreads = 4, kStepsEach = 5000;
    RecordingProgress progress;
    progress.seen.resize(kThreads * kStepsEach + 1);
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
    for (size_t p = 1; p < progress.seen.size(); ++p) {
        ASSERT_EQ(progress.seen[p], 1) << p;
    }
}

TEST(PIMProgress, SetStepsStartsANewCountAndRefusesNegativeSteps) {
    PIMProgress progress;
    progress.Step();
    progress.SetSteps(10);
    EXPECT_EQ(progress.GetPosition(), 0);
    progress.SetSteps(-5);
    EXPECT_EQ(progress.GetSteps(), 0);
}
