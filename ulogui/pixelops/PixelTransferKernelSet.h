#pragma once
// The vector kernels of one instruction-set width, as the row loops call them (see
// PixelTransferKernels.h for what a kernel does).
namespace ulogui {
namespace pixelops {

// Mixes whole vectors of pixels of dst with fs (colour = the functor's result, byte 3 = the source's
// alpha) and returns how many pixels it did, a multiple of the vector's pixel count.
using Kernel = int (*)(unsigned char* dst, const unsigned char* fs, int count, int k);

struct KernelSet {
    Kernel plainColour;         // W0 with PixelCopy
    Kernel sourceAlpha;         // W1
    Kernel sourceAlphaOpacity;  // W2
    Kernel opacity;             // W3
    Kernel opacityAllBytes;     // W3 over all four bytes
    Kernel ontoAlpha;           // W4
};

// 16-byte vectors: SSE2 on x86-64, the base vector unit elsewhere.
extern const KernelSet kVector128Kernels;
#if defined(ULO_TRANSFER_VECTOR256)
// 32-byte vectors (AVX2); run only on processors that have it.
extern const KernelSet kVector256Kernels;
#endif
#if defined(ULO_TRANSFER_VECTOR512)
// 64-byte vectors (AVX-512BW); run only on processors that have it.
extern const KernelSet kVector512Kernels;
#endif

}  // namespace pixelops
}  // namespace ulogui
