// Kernel selection of the smooth scaler: a table of vector kernels per instruction-set level, read at
// the active level, and the test of whether a kernel applies to a job.
#include "resample/SmoothScaler.h"
#include "base/CpuFeatures.h"

namespace ulogui {
namespace resample {
namespace smooth {

namespace {

// A level's vector kernel for 4-byte pixels (null where the level has none of its own) and whether it
// needs neighbouring tap pairs along x (it loads both pixels of a pair at once).
struct VectorKernel {
    ColumnsKernel run;
    bool needsAdjacentPairs;
};

// The dispatch table: [base::Isa]. AVX-512 processors run the AVX2 kernel.
#if defined(ULO_SMOOTH_SCALER_X86)
constexpr VectorKernel kVectorKernels[base::kIsaCount] = {
    {nullptr, false}, {&ScaleColumnsSse2, false}, {&ScaleColumnsAvx2, true}, {nullptr, false}};
#else
constexpr VectorKernel kVectorKernels[base::kIsaCount] = {};
#endif

bool Applies(const VectorKernel& kernel, const Job& job) {
    return kernel.run != nullptr &&
           (job.format == PixelFormat::kRgb32 || job.format == PixelFormat::kRgba32) &&
           (job.xs->adjacentPairs || !kernel.needsAdjacentPairs);
}

}  // namespace

void ScaleColumns(const Job& job, int first, int last) {
    if (first >= last || job.rows <= 0) {
        return;
    }
    // The active level's kernel, or the widest one below it that applies.
    for (int level = static_cast<int>(base::ActiveIsa()); level > 0; --level) {
        if (Applies(kVectorKernels[level], job)) {
            kVectorKernels[level].run(job, first, last);
            return;
        }
    }
    ScaleColumnsScalar(job, first, last);
}

}  // namespace smooth
}  // namespace resample
}  // namespace ulogui
