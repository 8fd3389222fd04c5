#pragma once
// PIMProgress: counts the steps of a long operation; Step may be called from any thread.
#include <atomic>

#include "toolslib/Export.h"

class TOOLSLIB_API PIMProgress {
public:
    PIMProgress() = default;
    virtual ~PIMProgress();
    PIMProgress(const PIMProgress&) = delete;
    PIMProgress& operator=(const PIMProgress&) = delete;

    void SetSteps(long steps);
    void Step();
    long GetSteps() const { return steps_.load(); }
    long GetPosition() const { return position_.load(); }

protected:
    // Called after each step with the new position; observers override it. Must be thread-safe.
    virtual void OnStep(long /*position*/, long /*steps*/) {}

private:
    std::atomic<long> steps_{0};
    std::atomic<long> position_{0};
};
