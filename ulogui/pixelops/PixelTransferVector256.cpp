// The transfer kernels on 32-byte vectors. This file alone is compiled for AVX2; nothing else may be
// compiled here, since code from it runs only after the processor check.
#include "pixelops/PixelTransferKernels.h"

namespace ulogui {
namespace pixelops {

const KernelSet kVector256Kernels = MakeKernelSet<32>();

}  // namespace pixelops
}  // namespace ulogui
