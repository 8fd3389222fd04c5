#pragma once
// Helpers shared by the parallel-loop tests.
#include <atomic>
#include <memory>
#include <vector>

#include "ulolib/Interruptor.h"

namespace toolslib_test {

// One counter per iteration, to prove that every iteration ran exactly once.
class RunCounts {
public:
    explicit RunCounts(int count) : counts_(new std::atomic<int>[count]), size_(count) {
        for (int i = 0; i < count; ++i) {
            counts_[i] = 0;
        }
    }
    void Hit(int index) { counts_[index].fetch_add(1); }
    int Get(int index) const { return counts_[index].load(); }
    // The first index whose count is not `expected`, or -1.
    int FirstIndexNotRun(int expected) const {
        for (int i = 0; i < size_; ++i) {
            if (counts_[i].load() != expected) {
                return i;
            }
        }
        return -1;
    }

private:
    std::unique_ptr<std::atomic<int>[]> counts_;
    int size_;
};

// Answers "not interrupted" to the first `answersBeforeStop` questions and "interrupted" to the rest.
class CountdownInterruptor : public ULOInterruptor {
public:
    explicit CountdownInterruptor(int answersBeforeStop) : remaining_(answersBeforeStop) {}
    bool IsInterrupted() const override { return remaining_.fetch_sub(1) <= 0; }

private:
    mutable std::atomic<int> remaining_;
};

}  // namespace toolslib_test
