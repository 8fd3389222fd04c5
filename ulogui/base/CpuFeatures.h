#pragma once
// The instruction sets this processor runs, asked once, and the one level every vector path of the
// library runs at. Each library with vector code keeps a table of its kernels per level (the transfer
// loops, the smooth scaler) and reads the active level when it selects a kernel; code built for a wider
// instruction set lives in files of its own, compiled with that set's flags and entered only through
// such a table.
#include <cstdint>

namespace ulogui {
namespace base {

// Levels of vector code, each one including the ones before it.
enum class Isa : uint8_t {
    kScalar,  // plain C++: the reference every vector kernel is tested against
    kSse2,    // 16-byte vectors: SSE2, part of x86-64 itself; elsewhere the portable vector code
    kAvx2,    // 32-byte vectors: x86-64 with AVX2
    kAvx512,  // 64-byte vectors: x86-64 with AVX2, AVX-512F and AVX-512BW
};
constexpr int kIsaCount = 4;

// "scalar", "sse2", "avx2", "avx512".
const char* IsaName(Isa isa);

// Whether this processor runs the level. The processor is asked on the first call, once, whichever
// thread comes first.
bool IsIsaAvailable(Isa isa);
// The highest available level.
Isa BestIsa();

// The level kernels are selected for, process-wide: the best available one unless a test or benchmark
// forced another. Forcing a level the processor does not run forces the best available one instead.
// Selections made earlier keep their level.
Isa ActiveIsa();
void ForceIsa(Isa isa);

}  // namespace base
}  // namespace ulogui
