#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/toolslib/ParallelTestUtil.h"
#include "toolslib/MultiProc.h"

using namespace tools::multiproc;
using toolslib_test::RunCounts;

namespace {

struct CustomError {
    int code;
};

constexpr int kCount = 20000;
constexpr int kFailingIndex = 17;

}  // namespace

TEST(ParallelSectionFailure, ExceptionReachesTheCallerAfterTheOtherJobsStopped) {
    for (int threads : {1, 2, 4}) {
        ULONullInterruptor never;
        InterruptibleProgressingLoopIter iter(kCount, never, nullptr);
        std::atomic<int> inside{0}, runs{0};
        ParallelSection section(iter, [&](int i) {
            ++inside;
            ++runs;
            std::this_thread::sleep_for(std::chrono::microseconds(50));
            if (i == kFailingIndex) {
                --inside;
                throw std::runtime_error("column " + std::to_string(i) + " failed");
            }
            --inside;
        });
        try {
            RunParallelSection(section, threads);
            ADD_FAILURE() << "no exception, threads " << threads;
        } catch (const std::runtime_error& e) {
            EXPECT_STREQ(e.what(), "column 17 failed");
            // Every thread that took part has left the body before the exception came back.
            EXPECT_EQ(inside.load(), 0);
        }
        // Running all of them would take a second; the loop stopped long before.
        EXPECT_LT(runs.load(), kCount / 2) << "threads " << threads;
    }
}

TEST(ParallelSectionFailure, AnyExceptionTypeIsRethrownUnchanged) {
    ULONullInterruptor never;
    InterruptibleProgressingLoopIter iter(1000, never, nullptr);
    ParallelSection section(iter, [](int i) {
        if (i == 500) {
            throw CustomError{i};
        }
    });
    try {
        RunParallelSection(section, 3);
        ADD_FAILURE() << "no exception";
    } catch (const CustomError& e) {
        EXPECT_EQ(e.code, 500);
    }
}

TEST(ParallelSectionFailure, OnlyOneOfManyExceptionsComesBack) {
    ULONullInterruptor never;
    InterruptibleProgressingLoopIter iter(5000, never, nullptr);
    ParallelSection section(iter, [](int i) { throw std::out_of_range(std::to_string(i)); });
    EXPECT_THROW(RunParallelSection(section, 4), std::out_of_range);
}

TEST(ParallelSectionFailure, ProgressCountsOnlyCompletedIterations) {
    ULONullInterruptor never;
    PIMProgress progress;
    InterruptibleProgressingLoopIter iter(10, never, &progress);
    ParallelSection section(iter, [](int i) {
        if (i == 3) {
            throw std::logic_error("stop");
        }
    });
    EXPECT_THROW(RunParallelSection(section, 1), std::logic_error);
    EXPECT_EQ(progress.GetPosition(), 3);
}

TEST(ParallelSectionFailure, ThrowingInterruptorIsReportedLikeABody) {
    class BrokenInterruptor : public ULOInterruptor {
    public:
        bool IsInterrupted() const override { throw std::runtime_error("interruptor broke"); }
    };
    BrokenInterruptor broken;
    InterruptibleProgressingLoopIter iter(100, broken, nullptr);
    ParallelSection section(iter, [](int) {});
    EXPECT_THROW(RunParallelSection(section, 3), std::runtime_error);
}

TEST(ParallelSectionFailure, NestedExceptionCrossesBothSections) {
    ULONullInterruptor never;
    InterruptibleProgressingLoopIter outerIter(8, never, nullptr);
    ParallelSection outer(outerIter, [&](int o) {
        InterruptibleProgressingLoopIter innerIter(100, never, nullptr);
        ParallelSection inner(innerIter, [o](int i) {
            if (o == 5 && i == 42) {
                throw std::runtime_error("inner 5/42");
            }
        });
        RunParallelSection(inner, 3);
    });
    try {
        RunParallelSection(outer, 3);
        ADD_FAILURE() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "inner 5/42");
    }
}

TEST(ParallelSectionFailure, PoolStaysUsableAfterFailures) {
    ULONullInterruptor never;
    for (int round = 0; round < 50; ++round) {
        InterruptibleProgressingLoopIter failing(100, never, nullptr);
        ParallelSection bad(failing, [](int i) {
            if (i % 7 == 3) {
                throw std::runtime_error("bad");
            }
        });
        EXPECT_THROW(RunParallelSection(bad, 4), std::runtime_error);
    }
    RunCounts counts(50000);
    InterruptibleProgressingLoopIter iter(50000, never, nullptr);
    ParallelSection good(iter, [&](int i) { counts.Hit(i); });
    RunParallelSection(good, 4);
    EXPECT_EQ(counts.FirstIndexNotRun(1), -1);
}
