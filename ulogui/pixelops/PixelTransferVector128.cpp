// The transfer kernels on 16-byte vectors, which every supported processor has.
#include "pixelops/PixelTransferKernels.h"

namespace ulogui {
namespace pixelops {

const KernelSet kVector128Kernels = MakeKernelSet<16>();

}  // namespace pixelops
}  // namespace ulogui
