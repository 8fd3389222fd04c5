#pragma once
// The transfer loops: every functor of ULOPixelTransfer stamped into a row loop under every blending
// wrapper, and the tables that pick one loop per drawing call. The drawing members of the surface run
// the loop a call selects row by row; nothing in a loop branches on the mode.
//
// Each loop exists as the scalar reference and, where it pays, on a vector path per instruction-set
// level (16-byte vectors on every machine; 32-byte vectors on x86-64 processors with AVX2, 64-byte
// vectors on those with AVX-512BW). The vector paths give bit-identical results; a selection takes the
// level active at the time (base::ActiveIsa).
#include <cstdint>

#include "base/CpuFeatures.h"
#include "raster/RasterView.h"
#include "ulogui/Geometry.h"
#include "ulogui/PixelTransfer.h"

class ULOPictureBits;

namespace ulogui {
namespace pixelops {

// The functors of ULOPixelTransfer.
enum class Functor : uint8_t {
    kCopy,             // PixelCopy
    kFullCopy,         // PixelFullCopy
    kHighlight,        // PixelCopyHighlight
    kDisabled,         // PixelCopyDisabled
    kDarken,           // PixelCopyDarken
    kRelative,         // PixelCopyRelative
    kRelativeOpacity,  // PixelCopyRelativeOpacity
};
constexpr int kFunctorCount = 7;

// How the functor's result f is mixed with the background (see docs/pixel-transfer.md).
enum class Wrapper : uint8_t {
    kPlain,               // W0: out = f
    kSourceAlpha,         // W1: by the source's alpha, shift by 8
    kSourceAlphaOpacity,  // W2: by the source's alpha scaled by the opacity, shift by 8
    kOpacity,             // W3: by the opacity, divided by 255; colour bytes only
    kOntoAlpha,           // W4: composited onto a destination with alpha, writes alpha too
    kOpacityAllBytes,     // W3 over all four bytes: the opacity loop of full-copy sources
};
constexpr int kWrapperCount = 6;

// The instruction-set levels a loop runs at (base/CpuFeatures.h).
using base::Isa;

// The integer weight of an opacity, computed once per call: trunc(opacity * 255) in single precision,
// held to 0..255 (an opacity outside 0..1 acts as the nearer bound, a NaN as 0).
int OpacityWeight(float opacity);

// What one call fixes for all its pixels.
struct CallConstants {
    int k = 255;                   // the opacity weight of W2, W3 and W4
    float relativeOpacity = 1.0f;  // the state of PixelCopyRelativeOpacity
};

// One row of `count` pixels: dst[i] becomes the wrapper's mix of the functor's result for (dst[i],
// src[i]). dst and src are 4-byte pixels; they must not overlap unless they are the same row.
using RowRoutine = void (*)(unsigned char* dst, const unsigned char* src, int count, const CallConstants& c);

// The stamped instance of `functor` under `wrapper` at an available level `isa`.
RowRoutine FindRow(Isa isa, Functor functor, Wrapper wrapper);

// A selected loop: one stamped instance with the constants of its call. The default loop draws nothing.
class Loop {
public:
    Loop() = default;
    // The instance of `functor` under `wrapper` at the active level. `opacity` gives the weight k,
    // `relativeOpacity` the state of PixelCopyRelativeOpacity (ignored by the other functors).
    Loop(Functor functor, Wrapper wrapper, float opacity, float relativeOpacity = 1.0f);
    // The same at the given level, or at the best available one when the processor does not run it
    // (tests and benchmarks compare levels with it).
    Loop(Functor functor, Wrapper wrapper, float opacity, float relativeOpacity, Isa isa);

    bool IsEmpty() const { return row_ == nullptr; }
    Functor GetFunctor() const { return functor_; }
    Wrapper GetWrapper() const { return wrapper_; }
    Isa GetIsa() const { return isa_; }
    const CallConstants& GetConstants() const { return constants_; }

    void RunRow(unsigned char* dst, const unsigned char* src, int count) const {
        if (row_ != nullptr && count > 0) {
            row_(dst, src, count, constants_);
        }
    }

    // Runs the loop over `dstRect` of `dst`, reading the source from `src` at `srcOrigin` for the
    // rectangle's top-left pixel. The rectangle is cut to both views; rows are walked in memory order.
    // Returns false (and changes nothing) unless both are views of 4-byte pixels.
    bool Run(const raster::RasterView& dst, const ULORect& dstRect, const raster::RasterView& src,
             ULOPoint srcOrigin) const;
    // The same on two buffers, by their stored sizes.
    bool Run(ULOPictureBits& dst, const ULORect& dstRect, const ULOPictureBits& src,
             ULOPoint srcOrigin) const;

private:
    RowRoutine row_ = nullptr;
    CallConstants constants_;
    Functor functor_ = Functor::kCopy;
    Wrapper wrapper_ = Wrapper::kPlain;
    Isa isa_ = Isa::kScalar;
};

// The wrapper for a source with or without alpha, a destination with or without alpha and an opacity:
// W0 or W3 for sources without alpha, W1 or W2 onto destinations without alpha, W4 onto destinations
// with alpha ("opacity exactly 1.0" picks W0 and W1).
Wrapper SelectWrapper(bool sourceAlpha, bool destinationAlpha, float opacity);

// The loop of `functor` under the wrapper SelectWrapper gives. The relative-opacity functor scales its
// offsets by `relativeOpacity`; pass the drawing opacity there and 1.0 as `opacity` to scale offsets
// without also mixing the result, or the other way round to mix a plain offset by the opacity.
Loop SelectLoop(Functor functor, bool sourceAlpha, bool destinationAlpha, float opacity,
                float relativeOpacity = 1.0f);

// Source-buffer flag of pixels that are copied whole, alpha included, whatever the copy type.
constexpr int kFullCopySourceFlag = 0x2;

// How picture drawing treats a source.
struct PictureTransfer {
    enum class Route : uint8_t {
        kNothing,   // an unknown copy type: nothing is drawn
        kFullCopy,  // flag 0x2: PixelFullCopy, plain at opacity 1.0, else mixed by the opacity
        kMask,      // a one-byte mask: painted in CLR_LABEL_TEXT by the mask routine, opacity 1.0
        kLoop,      // the copy type's functor under the wrapper of the three facts
    };
    Route route = Route::kNothing;
    Loop loop;  // empty for kNothing and kMask
};

// The dispatcher of picture drawing: the source's flags first (0x2, then PICTBITS_MASK8), then the copy
// type and the wrapper table. Decided once per call.
PictureTransfer SelectPictureTransfer(int sourceFlags, bool destinationAlpha, float opacity, int copyType);

}  // namespace pixelops
}  // namespace ulogui
