// The transfer kernels on 64-byte vectors. This file alone is compiled for AVX-512BW; nothing else may
// be compiled here, since code from it runs only after the processor check.
#include "pixelops/PixelTransferKernels.h"

namespace ulogui {
namespace pixelops {

const KernelSet kVector512Kernels = MakeKernelSet<64>();

}  // namespace pixelops
}  // namespace ulogui
