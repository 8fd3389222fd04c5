#include "toolslib/MultiProc.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "WorkerPool.h"

namespace tools {
namespace multiproc {

ParallelLoopIteration::~ParallelLoopIteration() = default;

InterruptibleProgressingLoopIter::InterruptibleProgressingLoopIter(int count,
                                                                   const ULOInterruptor& interruptor,
                                                                   PIMProgress* progress)
    : count_(std::max(count, 0)), interruptor_(interruptor), progress_(progress) {}

InterruptibleProgressingLoopIter::~InterruptibleProgressingLoopIter() = default;

bool InterruptibleProgressingLoopIter::Claim(int& index) {
    int next = next_.load();
    if (next >= count_ || interrupted_.load()) {
        return false;
    }
    // One question per index handed out: a loop that is interrupted after k answers has run
    // exactly k iterations, whatever the number of threads.
    if (interruptor_.IsInterrupted()) {
        interrupted_.store(true);
        return false;
    }
    // compare-exchange rather than fetch_add, so that the counter never passes count_ and cannot
    // wrap around for loops close to INT_MAX.
    while (!next_.compare_exchange_weak(next, next + 1)) {
        if (next >= count_) {
            return false;
        }
    }
    index = next;
    return true;
}

void InterruptibleProgressingLoopIter::Completed(int /*index*/) {
    if (progress_ != nullptr) {
        progress_->Step();
    }
}

ParallelSection::ParallelSection(ParallelLoopIteration& iteration, Body body)
    : iteration_(iteration), body_(std::move(body)) {}

namespace {

std::atomic<int> maxJobThreadCap{0};

// What one RunParallelSection call shares with its helper tasks. The helpers own it jointly with
// the caller, so a helper that a worker picks up after the call returned finds the run closed and
// leaves without touching the (by then destroyed) section.
struct SectionRun {
    explicit SectionRun(ParallelSection& s) : section(&s) {}

    ParallelSection* const section;  // dereferenced only by threads that entered before closing
    std::mutex mutex;
    std::condition_variable helperLeft;
    int helpersInside = 0;
    bool closed = false;
    std::atomic<bool> failed{false};
    std::exception_ptr error;  // written once, by the thread that set failed
};

// Claims and runs iterations until none is left or some thread failed. Never throws.
void RunIterations(SectionRun& run) noexcept {
    ParallelLoopIteration& iteration = run.section->GetIteration();
    const ParallelSection::Body& body = run.section->GetBody();
    try {
        int index = 0;
        while (!run.failed.load(std::memory_order_relaxed) && iteration.Claim(index)) {
            body(index);
            iteration.Completed(index);
        }
    } catch (...) {
        if (!run.failed.exchange(true)) {
            run.error = std::current_exception();
        }
    }
}

void HelpWith(const std::shared_ptr<SectionRun>& run) noexcept {
    {
        std::lock_guard<std::mutex> lock(run->mutex);
        if (run->closed || run->failed.load()) {
            return;
        }
        ++run->helpersInside;
    }
    RunIterations(*run);
    std::lock_guard<std::mutex> lock(run->mutex);
    if (--run->helpersInside == 0) {
        run->helperLeft.notify_all();
    }
}

void RunInline(ParallelSection& section) {
    ParallelLoopIteration& iteration = section.GetIteration();
    int index = 0;
    while (iteration.Claim(index)) {
        section.GetBody()(index);
        iteration.Completed(index);
    }
}

}  // namespace

void RunParallelSection(ParallelSection& section, int threadCount) {
    detail::WorkerPool* pool = threadCount > 1 ? detail::WorkerPool::Instance() : nullptr;
    const int helpers = pool != nullptr ? std::min(threadCount - 1, pool->GetWorkerCount()) : 0;
    if (helpers <= 0) {
        RunInline(section);
        return;
    }

    auto run = std::make_shared<SectionRun>(section);
    pool->Post([run] { HelpWith(run); }, helpers);
    // The caller works too: if every worker is busy (nested sections, many callers) it simply
    // runs all iterations itself, and it never waits for a helper that has not started.
    RunIterations(*run);
    std::exception_ptr error;
    {
        std::unique_lock<std::mutex> lock(run->mutex);
        run->helperLeft.wait(lock, [&] { return run->helpersInside == 0; });
        run->closed = true;
        // Take the exception out of the shared state, so that it is destroyed on this thread and
        // not by whichever worker drops the last reference to the run.
        error = std::move(run->error);
        run->error = nullptr;
    }
    if (error) {
        std::rethrow_exception(error);
    }
}

int GetOptimizedMaxJobThreadAllowed() {
    const int hardware = detail::HardwareThreadCount();
    const int cap = maxJobThreadCap.load();
    return cap > 0 ? std::min(cap, hardware) : hardware;
}

void SetMaxJobThreadAllowed(int maxThreads) {
    maxJobThreadCap.store(std::max(maxThreads, 0));
}

}  // namespace multiproc
}  // namespace tools
