// The scalar kernel of the smooth scaler, for every pixel format: plain integer loops over the strip
// (SmoothScalerStrip.h), one channel at a time. It is the reference the vector kernels are tested
// against.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "resample/SmoothScaler.h"
#include "resample/SmoothScalerStrip.h"

namespace ulogui {
namespace resample {
namespace smooth {

namespace {

// Pixel adapters: how many channels a format filters, and how it reads and writes them.
struct MaskPixel {
    static constexpr int kChannels = 1;
    static constexpr int kBytes = 1;
    static void Load(const unsigned char* p, std::int32_t* v) { v[0] = p[0]; }
    static void Store(unsigned char* p, const std::int32_t* v) { p[0] = static_cast<unsigned char>(v[0]); }
};

struct Rgb24Pixel {
    static constexpr int kChannels = 3;
    static constexpr int kBytes = 3;
    static void Load(const unsigned char* p, std::int32_t* v) {
        v[0] = p[0];
        v[1] = p[1];
        v[2] = p[2];
    }
    static void Store(unsigned char* p, const std::int32_t* v) {
        p[0] = static_cast<unsigned char>(v[0]);
        p[1] = static_cast<unsigned char>(v[1]);
        p[2] = static_cast<unsigned char>(v[2]);
    }
};

// A 4-byte pixel without PICTBITS_ALPHA: its alpha reads as 0, so the output's alpha byte is 0.
struct Rgb32Pixel {
    static constexpr int kChannels = 3;
    static constexpr int kBytes = 4;
    static void Load(const unsigned char* p, std::int32_t* v) { Rgb24Pixel::Load(p, v); }
    static void Store(unsigned char* p, const std::int32_t* v) {
        Rgb24Pixel::Store(p, v);
        p[3] = 0;
    }
};

struct Rgba32Pixel {
    static constexpr int kChannels = 4;
    static constexpr int kBytes = 4;
    static void Load(const unsigned char* p, std::int32_t* v) {
        for (int c = 0; c < 4; ++c) {
            v[c] = p[c];
        }
    }
    static void Store(unsigned char* p, const std::int32_t* v) {
        for (int c = 0; c < 4; ++c) {
            p[c] = static_cast<unsigned char>(v[c]);
        }
    }
};

template <typename Pixel>
void ScaleStrip(const Job& job, int first, int last) {
    constexpr int C = Pixel::kChannels;
    const AxisTaps& xs = *job.xs;
    const AxisTaps& ys = *job.ys;
    const int columns = last - first;
    StripRing<std::int32_t> ring(job, first, last, C);
    // The horizontal pass of one source row.
    const auto filterRow = [&](std::int32_t r, std::int32_t* out) {
        const unsigned char* row = ring.SourceRow(r);
        for (int x = 0; x < columns; ++x) {
            std::int32_t sum[C] = {};
            for (int t = xs.start[first + x]; t < xs.start[first + x + 1]; ++t) {
                std::int32_t v[C];
                Pixel::Load(row + static_cast<std::ptrdiff_t>(xs.index[t]) * Pixel::kBytes, v);
                for (int c = 0; c < C; ++c) {
                    sum[c] += xs.weight[t] * v[c];
                }
            }
            for (int c = 0; c < C; ++c) {
                out[x * C + c] = (sum[c] + (1 << (kHorizontalShift - 1))) >> kHorizontalShift;
            }
        }
    };
    for (int y = 0; y < job.rows; ++y) {
        ring.Prepare(y, filterRow);
        unsigned char* out = ring.TargetRow(y, Pixel::kBytes);
        for (int x = 0; x < columns; ++x) {
            std::int32_t sum[C] = {};
            for (int t = ys.start[y]; t < ys.start[y + 1]; ++t) {
                const std::int32_t* h = ring.Row(ys.index[t]) + x * C;
                for (int c = 0; c < C; ++c) {
                    sum[c] += ys.weight[t] * h[c];
                }
            }
            for (int c = 0; c < C; ++c) {
                sum[c] = (sum[c] + (1 << (kVerticalShift - 1))) >> kVerticalShift;
            }
            Pixel::Store(out + static_cast<std::ptrdiff_t>(x) * Pixel::kBytes, sum);
        }
    }
}

}  // namespace

void ScaleColumnsScalar(const Job& job, int first, int last) {
    switch (job.format) {
        case PixelFormat::kMask:
            ScaleStrip<MaskPixel>(job, first, last);
            break;
        case PixelFormat::kRgb24:
            ScaleStrip<Rgb24Pixel>(job, first, last);
            break;
        case PixelFormat::kRgb32:
            ScaleStrip<Rgb32Pixel>(job, first, last);
            break;
        case PixelFormat::kRgba32:
            ScaleStrip<Rgba32Pixel>(job, first, last);
            break;
    }
}

}  // namespace smooth
}  // namespace resample
}  // namespace ulogui
