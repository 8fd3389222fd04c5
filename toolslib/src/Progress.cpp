#include "toolslib/Progress.h"

PIMProgress::~PIMProgress() = default;

void PIMProgress::SetSteps(long steps) {
    steps_.store(steps < 0 ? 0 : steps);
    position_.store(0);
}

void PIMProgress::Step() {
    const long position = position_.fetch_add(1) + 1;
    OnStep(position, steps_.load());
}
