#pragma once
// The smooth scaler behind ULOPictureBits::EnlargeSmooth (docs/resampling.md).
//
// Both of its modes are separable filters: a per-axis list of taps (source coordinate and weight) for
// every output column and row. Area averaging gives each source cell its exact coverage of the output
// pixel's window; bilinear interpolation gives the two neighbours 1 - f and f. Weights are fixed point
// and sum to kWeightOne along each axis, so the output is defined bit for bit by integer arithmetic:
//
//     h   = (sum over x taps of wx * P + 2^6) >> 7             (per source row and channel)
//     out = (sum over y taps of wy * h + 2^20) >> 21
//
// which is the weighted mean rounded half up, with 7 fraction bits kept between the two passes. Integer
// sums do not depend on the order of their terms, so the vector kernel, the scalar kernel and a
// straightforward per-pixel evaluation all give the same bytes.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "raster/RasterView.h"

namespace ulogui {
namespace resample {
namespace smooth {

constexpr int kWeightBits = 14;
constexpr int kWeightOne = 1 << kWeightBits;
constexpr int kHorizontalShift = 7;
constexpr int kVerticalShift = 2 * kWeightBits - kHorizontalShift;

// The taps of one axis. Output i has taps [start[i], start[i + 1]); their count is even, or zero when
// the output's window lies wholly outside the picture. Taps go in pairs of neighbouring source
// coordinates (k, k + 1), a pair being filled up with a weight-0 neighbour where needed, so that a
// vector kernel can load both pixels of a pair at once; only a 1-pixel source cannot have that.
// Source coordinates of an output rise with the tap.
struct AxisTaps {
    std::vector<std::int32_t> start;
    std::vector<std::int32_t> index;
    std::vector<std::int16_t> weight;
    // Two neighbouring taps' weights as one 32-bit word (the first in the low half), per pair.
    std::vector<std::int32_t> pairWeight;
    // With one pair per output: output i's pair weight four times over (at 4 * i).
    std::vector<std::int32_t> columnWeight;
    // The same taps as runs of runLength (a multiple of 4) neighbouring source pixels from runStart[i],
    // the taps outside an output's own being weight 0; empty when the source is shorter than a run. The
    // weights come in blocks of four taps, each laid out as w0 w1 w0 w1 w0 w1 w0 w1 w2 w3 w2 w3 ...
    // (16 values), ready to multiply two interleaved pairs of 4-channel pixels.
    int runLength = 0;
    std::vector<std::int32_t> runStart;
    std::vector<std::int16_t> runWeight;
    // With one pair per output, when the pairs of every four outputs 4q..4q+3 lie within eight
    // neighbouring source pixels from quadStart[q]: where each pair's two pixels sit among those eight
    // (8 values per quad), and the pair weights of outputs 4q and 4q+2, then 4q+1 and 4q+3, four times
    // each (16 values per quad). Empty otherwise.
    std::vector<std::int32_t> quadStart;
    std::vector<std::int32_t> quadPermute;
    std::vector<std::int32_t> quadWeight;
    // Largest last - first source coordinate + 1 of any output: how many source rows one output row
    // may need at once.
    int maxSpan = 1;
    // Outputs [0, usable) have taps; the outputs after them (if any) have none.
    int usable = 0;
    // Every pair is (k, k + 1).
    bool adjacentPairs = true;
    // Every output has exactly one pair (true of bilinear taps).
    bool onePair = true;

    int TapCount(int i) const { return start[i + 1] - start[i]; }
};

// Exact-coverage area averaging: output i covers [i * scale, (i + 1) * scale) of the source, shifted by
// `offset` source pixels; cells at offset-shifted coordinates >= sourceLength lie outside and are left
// out. The remaining coverages are normalised to kWeightOne.
AxisTaps AreaTaps(int sourceLength, int outputLength, double scale, int offset);
// Bilinear: position p = offset + scale * (i + 0.5) - 0.5, neighbours floor(p) and ceil(p) clamped to
// the picture, weights 1 - f and f.
AxisTaps BilinearTaps(int sourceLength, int outputLength, double scale, int offset);

enum class PixelFormat { kMask, kRgb24, kRgb32, kRgba32 };

struct Job {
    const AxisTaps* xs = nullptr;
    const AxisTaps* ys = nullptr;
    PixelFormat format = PixelFormat::kRgba32;
    // Read only; a view of the whole picture.
    raster::RasterView source;
    raster::RasterView target;
    // Output rows [0, rows) are computed; columns are given per call.
    int rows = 0;
};

// Computes output columns [first, last) of rows [0, job.rows) and writes them to the target, with the
// widest kernel that applies at the active instruction-set level (base/CpuFeatures.h): a vector kernel
// for 4-byte pixels, the scalar kernel for everything else.
void ScaleColumns(const Job& job, int first, int last);

// The kernels, called with first < last and job.rows > 0. The scalar kernel handles every format and is
// the reference the others are tested against. The vector kernels (x86-64 only, each in a file built
// for its instruction set) handle what ScaleColumns gives them: 4-byte pixels, and for AVX2 only
// columns whose tap pairs are neighbours (AxisTaps::adjacentPairs).
using ColumnsKernel = void (*)(const Job& job, int first, int last);
void ScaleColumnsScalar(const Job& job, int first, int last);
void ScaleColumnsSse2(const Job& job, int first, int last);
void ScaleColumnsAvx2(const Job& job, int first, int last);

}  // namespace smooth
}  // namespace resample
}  // namespace ulogui
