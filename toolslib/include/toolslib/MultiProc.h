#pragma once
// A persistent pool of worker threads that runs the iterations of a loop in parallel.
//
//   InterruptibleProgressingLoopIter iter(count, interruptor, &progress);
//   ParallelSection section(iter, [&](int i) { ... });
//   RunParallelSection(section, GetOptimizedMaxJobThreadAllowed());
//
// The calling thread always takes part, so nested sections and sections started from several
// threads at once cannot deadlock even when every worker is busy.
#include <atomic>
#include <boost/function.hpp>
#include <exception>
#include <memory>

#include "toolslib/Export.h"
#include "toolslib/Progress.h"
#include "ulolib/Interruptor.h"

namespace tools {
namespace multiproc {

// Hands out loop iterations to the threads of a section.
class TOOLSLIB_API ParallelLoopIteration {
public:
    virtual ~ParallelLoopIteration();
    // Stores the next iteration in index; false when there is none left (or the loop must stop).
    // Called concurrently.
    virtual bool Claim(int& index) = 0;
    // Called once after each iteration's body returned normally. Called concurrently.
    virtual void Completed(int /*index*/) {}
};

// Iterations 0..count-1; asks the interruptor before each one and steps the progress after it.
class TOOLSLIB_API InterruptibleProgressingLoopIter : public ParallelLoopIteration {
public:
    InterruptibleProgressingLoopIter(int count, const ULOInterruptor& interruptor, PIMProgress* progress);
    ~InterruptibleProgressingLoopIter() override;
    bool Claim(int& index) override;
    void Completed(int index) override;
    bool WasInterrupted() const { return interrupted_.load(); }

private:
    int count_;
    const ULOInterruptor& interruptor_;
    PIMProgress* progress_;
    std::atomic<int> next_{0};
    std::atomic<bool> interrupted_{false};
};

// A loop body bound to the iterations it runs over.
class TOOLSLIB_API ParallelSection {
public:
    using Body = boost::function<void(int)>;
    ParallelSection(ParallelLoopIteration& iteration, Body body);
    ParallelLoopIteration& GetIteration() const { return iteration_; }
    const Body& GetBody() const { return body_; }

private:
    ParallelLoopIteration& iteration_;
    Body body_;
};

// Runs the section on the calling thread and up to threadCount - 1 pool workers; returns when
// every iteration that was claimed has finished. The first exception a body throws stops the
// other threads from claiming more and is rethrown here once they have stopped.
TOOLSLIB_API void RunParallelSection(ParallelSection& section, int threadCount);

// The number of threads worth using for a loop: the hardware threads, at least 1 (capped by
// SetMaxJobThreadAllowed when set).
TOOLSLIB_API int GetOptimizedMaxJobThreadAllowed();
// Caps GetOptimizedMaxJobThreadAllowed (0 removes the cap); benchmarks and tests use it.
TOOLSLIB_API void SetMaxJobThreadAllowed(int maxThreads);

}  // namespace multiproc
}  // namespace tools
