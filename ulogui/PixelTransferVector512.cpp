// The transfer kernels on 64-byte vectors. This file alone is compiled for AVX-512BW; nothing else may
// be compiled here, since code from it runs only after the processor check.
#include "ulogui/PixelTransferKernels.h"

namespace ulogui {
namespace transfer {
namespace detail {

const KernelSet kVector512Kernels = MakeKernelSet<64>();

}  // namespace detail
}  // namespace transfer
}  // namespace ulogui
