// The transfer kernels on 16-byte vectors, which every supported processor has.
#include "ulogui/PixelTransferKernels.h"

namespace ulogui {
namespace transfer {
namespace detail {

const KernelSet kVector128Kernels = MakeKernelSet<16>();

}  // namespace detail
}  // namespace transfer
}  // namespace ulogui
