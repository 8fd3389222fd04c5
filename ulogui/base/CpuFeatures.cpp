// The processor probe and the process-wide instruction-set level.
#include "base/CpuFeatures.h"

#include <atomic>

namespace ulogui {
namespace base {

namespace {

Isa ProbeBestIsa() {
#if defined(__x86_64__)
    __builtin_cpu_init();
    if (!__builtin_cpu_supports("avx2")) {
        return Isa::kSse2;
    }
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw")) {
        return Isa::kAvx512;
    }
    return Isa::kAvx2;
#else
    return Isa::kSse2;
#endif
}

// The forced level, or -1 while none is.
std::atomic<int> forced{-1};

}  // namespace

const char* IsaName(Isa isa) {
    static const char* const names[kIsaCount] = {"scalar", "sse2", "avx2", "avx512"};
    const int i = static_cast<int>(isa);
    return i < kIsaCount ? names[i] : "?";
}

Isa BestIsa() {
    static const Isa best = ProbeBestIsa();
    return best;
}

bool IsIsaAvailable(Isa isa) {
    return static_cast<int>(isa) <= static_cast<int>(BestIsa());
}

Isa ActiveIsa() {
    const int level = forced.load(std::memory_order_relaxed);
    return level < 0 ? BestIsa() : static_cast<Isa>(level);
}

void ForceIsa(Isa isa) {
    forced.store(static_cast<int>(IsIsaAvailable(isa) ? isa : BestIsa()), std::memory_order_relaxed);
}

}  // namespace base
}  // namespace ulogui
