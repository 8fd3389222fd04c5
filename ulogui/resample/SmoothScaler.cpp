// Kernel selection of the smooth scaler: the best kernel the processor can run, unless a test or
// benchmark chose another.
#include <atomic>

#include "resample/SmoothScaler.h"

namespace ulogui {
namespace resample {
namespace smooth {

namespace {

Kernel BestKernel() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2")) {
        return Kernel::kAvx2;
    }
#endif
#if defined(__SSE2__)
    return Kernel::kSse2;
#else
    return Kernel::kScalar;
#endif
}

std::atomic<Kernel>& Selected() {
    static std::atomic<Kernel> selected{BestKernel()};
    return selected;
}

}  // namespace

bool IsKernelAvailable(Kernel kernel) {
    switch (kernel) {
        case Kernel::kScalar:
            return true;
        case Kernel::kSse2:
#if defined(__SSE2__)
            return true;
#else
            return false;
#endif
        case Kernel::kAvx2:
            return BestKernel() == Kernel::kAvx2;
    }
    return false;
}

void SelectKernel(Kernel kernel) {
    if (IsKernelAvailable(kernel)) {
        Selected().store(kernel);
    }
}

void SelectBestKernel() {
    Selected().store(BestKernel());
}

Kernel SelectedKernel() {
    return Selected().load();
}

void ScaleColumns(const Job& job, int first, int last) {
    bool done = false;
    switch (Selected().load(std::memory_order_relaxed)) {
        case Kernel::kAvx2:
            done = ScaleColumnsAvx2(job, first, last);
            break;
        case Kernel::kSse2:
            done = ScaleColumnsSse2(job, first, last);
            break;
        case Kernel::kScalar:
            break;
    }
    if (!done) {
        ScaleColumnsScalar(job, first, last);
    }
}

}  // namespace smooth
}  // namespace resample
}  // namespace ulogui
