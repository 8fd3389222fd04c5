// The stamped row loops: every functor under every wrapper, as the scalar reference and on the vector
// path of each instruction-set level, gathered in one table indexed by level, functor and wrapper.
#include <array>
#include <cstring>
#include <iterator>
#include <tuple>
#include <type_traits>
#include <utility>

#include "pixelops/PixelTransferKernelSet.h"
#include "pixelops/PixelTransferLoops.h"
#include "pixelops/PixelTransferWrappers.h"

namespace ulogui {
namespace pixelops {
namespace {

using namespace ULOPixelTransfer;

// In the order of the Functor and Wrapper enumerations, which index them.
using Functors = std::tuple<PixelCopy, PixelFullCopy, PixelCopyHighlight, PixelCopyDisabled, PixelCopyDarken,
                            PixelCopyRelative, PixelCopyRelativeOpacity>;
using Wrappers = std::tuple<PlainWrap, SourceAlphaWrap, SourceAlphaOpacityWrap, OpacityWrap, OntoAlphaWrap,
                            OpacityAllBytesWrap>;
// The vector kernel of each wrapper.
constexpr Kernel KernelSet::*kWrapperKernels[] = {
    &KernelSet::plainColour, &KernelSet::sourceAlpha, &KernelSet::sourceAlphaOpacity,
    &KernelSet::opacity,     &KernelSet::ontoAlpha,   &KernelSet::opacityAllBytes,
};

static_assert(std::tuple_size_v<Functors> == kFunctorCount && std::tuple_size_v<Wrappers> == kWrapperCount &&
                  std::size(kWrapperKernels) == kWrapperCount,
              "one entry per functor and per wrapper");

template <int I>
using FunctorOf = std::tuple_element_t<I, Functors>;
template <int I>
using WrapperOf = std::tuple_element_t<I, Wrappers>;

constexpr int kPlain = static_cast<int>(Wrapper::kPlain);
constexpr int kOpacityAllBytes = static_cast<int>(Wrapper::kOpacityAllBytes);

// Whether the source pixel itself is the kernel's input: its colour bytes are the functor's result
// and byte 3 its alpha. True for the two copies under the wrappers that read f[0..2] and the source's
// alpha; the full copy also under the all-bytes mix, which reads its alpha as f[3]. (PixelCopy under
// the all-bytes mix keeps the background's alpha as f[3], so it stays scalar.)
template <int F, int W>
constexpr bool kKernelReadsSource = (F == 0 && W != kOpacityAllBytes) || (F == 1 && W != kPlain);

// Whether the functor can first be run into a staging row that the kernel then mixes: any wrapper
// that reads f[0..2] and the source's alpha only.
template <int W>
constexpr bool kKernelCanStage = W != kPlain&& W != kOpacityAllBytes;

// Pixels per staging block: small enough for the stack and the first-level cache.
constexpr int kStagePixels = 256;

template <class F, class W>
void ScalarRowFn(Byte* dst, const Byte* src, int count, const CallConstants& c) {
    ScalarRow<F, W>(dst, src, count, c);
}

// The vector kernels of a level; a level built without a file of its own runs the 16-byte kernels.
template <Isa L>
const KernelSet& KernelsOf() {
#if defined(ULO_TRANSFER_VECTOR256)
    if constexpr (L == Isa::kAvx2) {
        return kVector256Kernels;
    }
#endif
#if defined(ULO_TRANSFER_VECTOR512)
    if constexpr (L == Isa::kAvx512) {
        return kVector512Kernels;
    }
#endif
    return kVector128Kernels;
}

template <Isa L, int F, int W>
void VectorRowFn(Byte* dst, const Byte* src, int count, const CallConstants& c) {
    using Functor = FunctorOf<F>;
    using Wrap = WrapperOf<W>;
    if constexpr (F == 1 && W == kPlain) {
        std::memmove(dst, src, static_cast<size_t>(count) * 4);
    } else if constexpr (kKernelReadsSource<F, W>) {
        const Kernel kernel = KernelsOf<L>().*kWrapperKernels[W];
        const int done = kernel(dst, src, count, c.k);
        ScalarRow<Functor, Wrap>(dst + 4 * done, src + 4 * done, count - done, c);
    } else if constexpr (kKernelCanStage<W>) {
        const Kernel kernel = KernelsOf<L>().*kWrapperKernels[W];
        const Functor functor = MakeFunctor<Functor>(c);
        Byte staged[kStagePixels * 4];
        for (int start = 0; start < count; start += kStagePixels) {
            const int n = count - start < kStagePixels ? count - start : kStagePixels;
            Byte* d = dst + 4 * start;
            const Byte* s = src + 4 * start;
            for (int x = 0; x < n; ++x) {
                Evaluate(functor, d + 4 * x, s + 4 * x, staged + 4 * x);
                staged[4 * x + 3] = s[4 * x + 3];
            }
            const int done = kernel(d, staged, n, c.k);
            ScalarRow<PixelCopy, Wrap>(d + 4 * done, staged + 4 * done, n - done, c);
        }
    } else {
        ScalarRow<Functor, Wrap>(dst, src, count, c);
    }
}

constexpr int kInstances = kFunctorCount * kWrapperCount;
using RowTable = std::array<RowRoutine, kInstances>;

template <size_t... I>
constexpr RowTable MakeScalarRows(std::index_sequence<I...>) {
    return {{&ScalarRowFn<FunctorOf<I / kWrapperCount>, WrapperOf<I % kWrapperCount>>...}};
}

template <Isa L, size_t... I>
constexpr RowTable MakeVectorRows(std::index_sequence<I...>) {
    return {{&VectorRowFn<L, I / kWrapperCount, I % kWrapperCount>...}};
}

// The dispatch table: [level][functor * kWrapperCount + wrapper].
const RowTable kRows[base::kIsaCount] = {
    MakeScalarRows(std::make_index_sequence<kInstances>()),
    MakeVectorRows<Isa::kSse2>(std::make_index_sequence<kInstances>()),
    MakeVectorRows<Isa::kAvx2>(std::make_index_sequence<kInstances>()),
    MakeVectorRows<Isa::kAvx512>(std::make_index_sequence<kInstances>()),
};

}  // namespace

RowRoutine FindRow(Isa isa, Functor functor, Wrapper wrapper) {
    return kRows[static_cast<int>(isa)]
                [static_cast<int>(functor) * kWrapperCount + static_cast<int>(wrapper)];
}

}  // namespace pixelops
}  // namespace ulogui
