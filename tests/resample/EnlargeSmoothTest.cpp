// EnlargeSmooth: the exact real-valued formula as a reference (within the documented rounding, empty
// windows left alone), and every kernel (scalar and vector, the large scenarios split over threads) bit
// for bit against a per-pixel evaluation of the fixed-point definition.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "ResampleTestUtil.h"
#include "base/CpuFeatures.h"
#include "resample/SmoothScaler.h"

namespace {

using namespace resample_test;
namespace smooth = ulogui::resample::smooth;
namespace base = ulogui::base;

// Restores the instruction-set level a test forced.
class EnlargeSmoothTest : public ::testing::Test {
protected:
    void TearDown() override { base::ForceIsa(base::BestIsa()); }
};

// The channels a format filters, as the adapters read them: 32-bit pixels without the alpha flag have
// alpha 0.
std::vector<double> Channels(const ULOPictureBits& b, int x, int y) {
    const std::uint8_t* p = b.GetBits(x, y);
    std::vector<double> v(p, p + b.GetBytesPerPixel());
    if (v.size() == 4 && !(b.GetFlags() & PICTBITS_ALPHA)) {
        v[3] = 0;
    }
    return v;
}

struct Geometry {
    double scale;
    int offsetX;
    int offsetY;
    bool bilinear;
};

Geometry GeometryOf(const ULOPictureBits& src, int dw, int dh) {
    const int w = src.GetWidth(false);
    const int h = src.GetHeight(false);
    const float s = std::max(static_cast<float>(w) / dw, static_cast<float>(h) / dh);
    return {s, static_cast<int>((dw - w / s) * 0.5), static_cast<int>((dh - h / s) * 0.5), dw > w && dh > h};
}

// The output pixel by the real-valued description; empty when no part of its window is in the picture.
std::vector<double> Exact(const ULOPictureBits& src, const Geometry& g, int x, int y) {
    const int w = src.GetWidth(false);
    const int h = src.GetHeight(false);
    std::vector<double> sum(src.GetBytesPerPixel(), 0.0);
    if (g.bilinear) {
        const double px = g.offsetX + g.scale * (x + 0.5) - 0.5;
        const double py = g.offsetY + g.scale * (y + 0.5) - 0.5;
        const int x0 = std::min(std::max(static_cast<int>(std::floor(px)), 0), w - 1);
        const int x1 = std::min(static_cast<int>(std::ceil(px)), w - 1);
        const int y0 = std::min(std::max(static_cast<int>(std::floor(py)), 0), h - 1);
        const int y1 = std::min(static_cast<int>(std::ceil(py)), h - 1);
        const double fx = std::max(px - x0, 0.0);
        const double fy = std::max(py - y0, 0.0);
        const std::vector<double> p00 = Channels(src, x0, y0), p01 = Channels(src, x0, y1);
        const std::vector<double> p10 = Channels(src, x1, y0), p11 = Channels(src, x1, y1);
        for (size_t c = 0; c < sum.size(); ++c) {
            sum[c] = (1 - fx) * (1 - fy) * p00[c] + (1 - fx) * fy * p01[c] + fx * (1 - fy) * p10[c] +
                     fx * fy * p11[c];
        }
        return sum;
    }
    double total = 0;
    const double x0 = x * g.scale, x1 = (x + 1) * g.scale, y0 = y * g.scale, y1 = (y + 1) * g.scale;
    for (double cy = std::floor(y0); cy < y1; ++cy) {
        for (double cx = std::floor(x0); cx < x1; ++cx) {
            const int ix = static_cast<int>(cx) + g.offsetX;
            const int iy = static_cast<int>(cy) + g.offsetY;
            if (ix >= w || iy >= h) {
                continue;
            }
            const double weight =
                (std::min(cx + 1, x1) - std::max(cx, x0)) * (std::min(cy + 1, y1) - std::max(cy, y0));
            const std::vector<double> p = Channels(src, ix, iy);
            for (size_t c = 0; c < sum.size(); ++c) {
                sum[c] += weight * p[c];
            }
            total += weight;
        }
    }
    if (total <= 0) {
        return {};
    }
    for (double& v : sum) {
        v /= total;
    }
    return sum;
}

// The rectangle gives the size only: output (x, y) goes to target (x, y); an output larger than the
// target is cut at the target's edge.
TEST_F(EnlargeSmoothTest, TargetRectangleGivesTheSizeButNotThePosition) {
    TestBits src(ULOSize(6, 6), PICTBITS_MASK8);
    Paint(src, [](int, int, int) { return 77; });
    TestBits target(ULOSize(5, 5), PICTBITS_MASK8);
    Paint(target, [](int, int, int) { return 1; });
    const ULORect rect(10, 10, 13, 13), large(0, 0, 9, 9);
    src.EnlargeSmooth(target, &rect);
    EXPECT_EQ(
        Pixels(target),
        Concat(
            {{77, 77, 77, 1, 1}, {77, 77, 77, 1, 1}, {77, 77, 77, 1, 1}, {1, 1, 1, 1, 1}, {1, 1, 1, 1, 1}}));
    src.EnlargeSmooth(target, &large);
    EXPECT_EQ(Pixels(target), std::vector<std::uint8_t>(25, 77));
}

// Tap weights round to the nearest unit of 1 / 16384 (the sweeps cannot tell: their references read the
// same tables): a bilinear pair at p = 0.55 gives its first pixel 0.45 * 16384 = 7372.8, an area window
// of 1.1 cells its first cell 16384 / 1.1 = 14894.5.
TEST_F(EnlargeSmoothTest, TapWeightsRoundToTheNearestUnit) {
    EXPECT_EQ(smooth::BilinearTaps(3, 10, 0.3f, 0).weight[6], 7373);
    EXPECT_EQ(smooth::AreaTaps(11, 10, 1.1f, 0).weight[0], 14895);
}

struct Scenario {
    int flags;
    int w, h, dw, dh;
};

std::vector<Scenario> RandomScenarios(std::mt19937& random, int count, int maxSize) {
    const int flags[] = {PICTBITS_MASK8, PICTBITS_RGB24, 0, PICTBITS_ALPHA};
    std::vector<Scenario> all;
    for (int i = 0; i < count; ++i) {
        const auto size = [&] { return 1 + static_cast<int>(random() % maxSize); };
        all.push_back({flags[i % 4], size(), size(), size(), size()});
    }
    // Both modes for sure, at sizes that take the threads.
    all.push_back({PICTBITS_ALPHA, 50, 41, 130, 97});
    all.push_back({0, 333, 257, 130, 100});
    return all;
}

TEST_F(EnlargeSmoothTest, StaysWithinRoundingOfTheExactFormula) {
    std::mt19937 random(3);
    long pixels = 0;
    long roundedExactly = 0;
    for (const Scenario& s : RandomScenarios(random, 80, 40)) {
        TestBits src(ULOSize(s.w, s.h), s.flags);
        PaintRandom(src, random);
        TestBits target(ULOSize(s.dw, s.dh), s.flags);
        Paint(target, [](int, int, int) { return 0xEE; });
        src.EnlargeSmooth(target, nullptr);
        const Geometry g = GeometryOf(src, s.dw, s.dh);
        // Only moderate scales: the error bound grows with the number of cells per output pixel.
        if (g.scale > 4) {
            continue;
        }
        for (int y = 0; y < s.dh; ++y) {
            for (int x = 0; x < s.dw; ++x) {
                const std::vector<double> exact = Exact(src, g, x, y);
                const std::vector<std::uint8_t> got = Pixel(target, x, y);
                for (size_t c = 0; c < got.size(); ++c) {
                    if (exact.empty()) {
                        ASSERT_EQ(got[c], 0xEE) << "an empty window must not be written";
                        continue;
                    }
                    ASSERT_NEAR(got[c], exact[c], 0.6) << s.w << "x" << s.h << "->" << s.dw << "x" << s.dh;
                    ++pixels;
                    roundedExactly += got[c] == static_cast<int>(std::floor(exact[c] + 0.5));
                }
            }
        }
    }
    EXPECT_GT(pixels, 100000);
    EXPECT_GT(static_cast<double>(roundedExactly) / pixels, 0.99);
}

// The fixed-point definition evaluated pixel by pixel from the tap tables, without the kernels' strips
// and ring of rows.
std::vector<std::uint8_t> FixedPointReference(const ULOPictureBits& src, int dw, int dh,
                                              std::vector<std::uint8_t> out) {
    const Geometry g = GeometryOf(src, dw, dh);
    const int w = src.GetWidth(false);
    const int h = src.GetHeight(false);
    const smooth::AxisTaps xs = g.bilinear ? smooth::BilinearTaps(w, dw, g.scale, g.offsetX)
                                           : smooth::AreaTaps(w, dw, g.scale, g.offsetX);
    const smooth::AxisTaps ys = g.bilinear ? smooth::BilinearTaps(h, dh, g.scale, g.offsetY)
                                           : smooth::AreaTaps(h, dh, g.scale, g.offsetY);
    const int bpp = src.GetBytesPerPixel();
    for (int y = 0; y < ys.usable; ++y) {
        for (int x = 0; x < xs.usable; ++x) {
            for (int c = 0; c < bpp; ++c) {
                int v = 0;
                for (int ty = ys.start[y]; ty < ys.start[y + 1]; ++ty) {
                    int sum = 0;
                    for (int tx = xs.start[x]; tx < xs.start[x + 1]; ++tx) {
                        sum += xs.weight[tx] * static_cast<int>(Channels(src, xs.index[tx], ys.index[ty])[c]);
                    }
                    v += ys.weight[ty] * ((sum + 64) >> 7);
                }
                out[(static_cast<size_t>(y) * dw + x) * bpp + c] =
                    static_cast<std::uint8_t>((v + (1 << 20)) >> 21);
            }
        }
    }
    return out;
}

TEST_F(EnlargeSmoothTest, EveryKernelComputesTheFixedPointDefinition) {
    std::mt19937 random(11);
    std::vector<Scenario> scenarios = RandomScenarios(random, 60, 70);
    // Large outputs in both modes, with rows that are not 32-byte aligned.
    scenarios.push_back({PICTBITS_ALPHA, 300, 250, 1100, 1000});
    scenarios.push_back({0, 2203, 1900, 1101, 950});
    for (const Scenario& s : scenarios) {
        TestBits src(ULOSize(s.w, s.h), s.flags);
        PaintRandom(src, random);
        TestBits blank(ULOSize(s.dw, s.dh), s.flags);
        Paint(blank, [](int, int, int) { return 0xEE; });
        const std::vector<std::uint8_t> expected = FixedPointReference(src, s.dw, s.dh, Pixels(blank));
        for (int level = 0; level < base::kIsaCount && base::IsIsaAvailable(base::Isa(level)); ++level) {
            base::ForceIsa(base::Isa(level));
            TestBits target(ULOSize(s.dw, s.dh), s.flags);
            Paint(target, [](int, int, int) { return 0xEE; });
            src.EnlargeSmooth(target, nullptr);
            ASSERT_EQ(Pixels(target), expected) << base::IsaName(base::Isa(level)) << " " << s.w << "x" << s.h
                                                << "->" << s.dw << "x" << s.dh << " flags " << s.flags;
        }
    }
}

}  // namespace
