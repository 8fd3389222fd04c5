// The transfer kernels on 32-byte vectors. This file alone is compiled for AVX2; nothing else may be
// compiled here, since code from it runs only after the processor check.
#include "ulogui/PixelTransferKernels.h"

namespace ulogui {
namespace transfer {
namespace detail {

const KernelSet kVector256Kernels = MakeKernelSet<32>();

}  // namespace detail
}  // namespace transfer
}  // namespace ulogui
