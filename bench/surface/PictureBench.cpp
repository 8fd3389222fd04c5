// Picture drawing beside pixman, in one run:
//   icon      a 64 x 64 picture with alpha drawn at many positions (some cut by the edges) on a 256 x 256
//             surface without alpha, per call, beside pixman_image_composite32 OVER a8r8g8b8 ->
//             x8r8g8b8 of the same icon: with the images made once, with both images made and released
//             in every call, and the making and releasing alone; and the transfer rows alone for the
//             same positions;
//   overhead  DrawPicture of a whole 256 x 256 and 1024 x 1024 source under each wrapper beside the
//             transfer loop's own walk (Loop::Run) over the same buffers: what the master adds;
//   magnified a 32 x 32 picture with alpha drawn onto a surface magnified 1.5 times (scaled to 48 x 48
//             with EnlargeSmooth, then drawn) beside pixman's bilinear-filtered scale of the same icon
//             composited OVER.
// Pixels are random, so no path meets only opaque or only transparent pixels. After the usual table a
// summary gives the rates and the ratios (targets: icon at least 2x pixman per call; overhead at most
// 5 % at 256 x 256; magnified at least pixman's rate).
#include <benchmark/benchmark.h>
#include <pixman.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench/BenchSupport.h"
#include "buffer/BufferView.h"
#include "pixelops/PixelTransferLoops.h"
#include "ulogui/Magnify.h"
#include "ulogui/TrueColorDC.h"

namespace {

using namespace ulogui::pixelops;

constexpr int kSurface = 256;
constexpr int kIcon = 64;
constexpr int kSmallIcon = 32;
constexpr float kMagnifier = 1.5f;

std::vector<uint32_t> RandomPixels(int count, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<uint32_t> pixels(static_cast<size_t>(count));
    for (uint32_t& p : pixels) {
        p = random();
    }
    return pixels;
}

unsigned char* Bytes(std::vector<uint32_t>& pixels) {
    return reinterpret_cast<unsigned char*>(pixels.data());
}

// Where the icons go: spread over the surface and a little past its edges.
std::vector<ULOPoint> Positions(int size, int icon) {
    std::mt19937 random(7);
    std::vector<ULOPoint> points(257);
    for (ULOPoint& p : points) {
        p = ULOPoint(static_cast<int>(random() % (size + icon / 2)) - icon / 4,
                     static_cast<int>(random() % (size + icon / 2)) - icon / 4);
    }
    return points;
}

void SetRate(benchmark::State& state, double perIteration) {
    state.counters["rate"] = benchmark::Counter(static_cast<double>(state.iterations()) * perIteration,
                                                benchmark::Counter::kIsRate);
}

// ---- icon ----

void BM_IconDraw(benchmark::State& state) {
    std::vector<uint32_t> pixels = RandomPixels(kIcon * kIcon, 1);
    const ULOPictureBits icon(Bytes(pixels), kIcon, kIcon, 4 * kIcon, PICTBITS_ALPHA);
    ULOTrueColorDCBase dc(ULORect(0, 0, kSurface, kSurface), false, false);
    const std::vector<ULOPoint> positions = Positions(kSurface, kIcon);
    size_t next = 0;
    for (auto _ : state) {
        dc.DrawPicture(icon, positions[next], ULOTrueColorDCBase::eCopyNormal, 1.0f);
        next = next + 1 < positions.size() ? next + 1 : 0;
        benchmark::ClobberMemory();
    }
    SetRate(state, 1.0);
}

// The transfer rows alone for the same icon and positions (Loop::Run clips them): what the draws cost
// without the master around them.
void BM_IconRows(benchmark::State& state) {
    std::vector<uint32_t> pixels = RandomPixels(kIcon * kIcon, 1);
    const ULOPictureBits icon(Bytes(pixels), kIcon, kIcon, 4 * kIcon, PICTBITS_ALPHA);
    ULOTrueColorDCBase dc(ULORect(0, 0, kSurface, kSurface), false, false);
    const std::vector<ULOPoint> positions = Positions(kSurface, kIcon);
    const Loop loop = SelectLoop(Functor::kCopy, true, false, 1.0f);
    const ulogui::raster::RasterView canvas = ulogui::buffer::ViewOf(dc);
    const ulogui::raster::RasterView from = ulogui::buffer::ViewOf(icon);
    size_t next = 0;
    for (auto _ : state) {
        const ULOPoint p = positions[next];
        loop.Run(canvas, ULORect(p.x, p.y, p.x + kIcon, p.y + kIcon), from, ULOPoint(0, 0));
        next = next + 1 < positions.size() ? next + 1 : 0;
        benchmark::ClobberMemory();
    }
    SetRate(state, 1.0);
}

enum class PixmanSetup { kOnce, kEveryCall, kAlone };

void BM_PixmanIcon(benchmark::State& state, PixmanSetup setup) {
    std::vector<uint32_t> icon = RandomPixels(kIcon * kIcon, 1);
    std::vector<uint32_t> surface(static_cast<size_t>(kSurface) * kSurface, 0);
    const std::vector<ULOPoint> positions = Positions(kSurface, kIcon);
    const auto make = [&](pixman_image_t*& src, pixman_image_t*& dst) {
        src = pixman_image_create_bits(PIXMAN_a8r8g8b8, kIcon, kIcon, icon.data(), 4 * kIcon);
        dst = pixman_image_create_bits(PIXMAN_x8r8g8b8, kSurface, kSurface, surface.data(), 4 * kSurface);
    };
    pixman_image_t* src = nullptr;
    pixman_image_t* dst = nullptr;
    make(src, dst);
    size_t next = 0;
    for (auto _ : state) {
        if (setup != PixmanSetup::kOnce) {
            pixman_image_unref(src);
            pixman_image_unref(dst);
            make(src, dst);
        }
        if (setup != PixmanSetup::kAlone) {
            const ULOPoint p = positions[next];
            pixman_image_composite32(PIXMAN_OP_OVER, src, nullptr, dst, 0, 0, 0, 0, p.x, p.y, kIcon, kIcon);
        }
        next = next + 1 < positions.size() ? next + 1 : 0;
        benchmark::ClobberMemory();
    }
    pixman_image_unref(src);
    pixman_image_unref(dst);
    SetRate(state, 1.0);
}

// ---- overhead ----

struct WrapperCase {
    const char* name;
    int sourceFlags;
    bool surfaceAlpha;
    float opacity;
};

const WrapperCase kWrappers[] = {
    {"W0", 0, false, 1.0f}, {"W1", PICTBITS_ALPHA, false, 1.0f}, {"W2", PICTBITS_ALPHA, false, 0.7f},
    {"W3", 0, false, 0.7f}, {"W4", PICTBITS_ALPHA, true, 1.0f},
};

void BM_Master(benchmark::State& state, const WrapperCase& c, bool rowsAlone) {
    const int side = static_cast<int>(state.range(0));
    std::vector<uint32_t> pixels = RandomPixels(side * side, 3);
    const ULOPictureBits source(Bytes(pixels), side, side, 4 * side, c.sourceFlags);
    ULOTrueColorDCBase dc(ULORect(0, 0, side, side), c.surfaceAlpha, false);
    const ULORect all(0, 0, side, side);
    const Loop loop = SelectLoop(Functor::kCopy, c.sourceFlags != 0, c.surfaceAlpha, c.opacity);
    const ulogui::raster::RasterView canvas = ulogui::buffer::ViewOf(dc);
    const ulogui::raster::RasterView from = ulogui::buffer::ViewOf(source);
    for (auto _ : state) {
        if (rowsAlone) {
            loop.Run(canvas, all, from, ULOPoint(0, 0));
        } else {
            dc.DrawPicture(source, ULOPoint(0, 0), ULOTrueColorDCBase::eCopyNormal, c.opacity);
        }
        benchmark::ClobberMemory();
    }
    SetRate(state, static_cast<double>(side) * side);
}

// The fixed cost of one call: a single pixel drawn.
void BM_OnePixel(benchmark::State& state) {
    std::vector<uint32_t> pixels = RandomPixels(1, 4);
    const ULOPictureBits dot(Bytes(pixels), 1, 1, 4, PICTBITS_ALPHA);
    ULOTrueColorDCBase dc(ULORect(0, 0, kSurface, kSurface), false, false);
    for (auto _ : state) {
        dc.DrawPicture(dot, ULOPoint(5, 5), ULOTrueColorDCBase::eCopyNormal, 1.0f);
        benchmark::ClobberMemory();
    }
    SetRate(state, 1.0);
}

// ---- magnified ----

void BM_MagnifiedDraw(benchmark::State& state) {
    magnify::GetMagnifier() = kMagnifier;
    std::vector<uint32_t> pixels = RandomPixels(kSmallIcon * kSmallIcon, 5);
    const ULOPictureBits icon(Bytes(pixels), kSmallIcon, kSmallIcon, 4 * kSmallIcon, PICTBITS_ALPHA);
    const int logical = static_cast<int>(kSurface / kMagnifier);
    ULOTrueColorDCBase dc(ULORect(0, 0, logical, logical), false, true);
    const std::vector<ULOPoint> positions = Positions(logical, kSmallIcon);
    size_t next = 0;
    for (auto _ : state) {
        dc.DrawPicture(icon, positions[next], ULOTrueColorDCBase::eCopyNormal, 1.0f);
        next = next + 1 < positions.size() ? next + 1 : 0;
        benchmark::ClobberMemory();
    }
    magnify::GetMagnifier() = 1.0f;
    SetRate(state, 1.0);
}

void BM_PixmanScaled(benchmark::State& state) {
    std::vector<uint32_t> icon = RandomPixels(kSmallIcon * kSmallIcon, 5);
    std::vector<uint32_t> surface(static_cast<size_t>(kSurface) * kSurface, 0);
    pixman_image_t* src =
        pixman_image_create_bits(PIXMAN_a8r8g8b8, kSmallIcon, kSmallIcon, icon.data(), 4 * kSmallIcon);
    pixman_image_t* dst =
        pixman_image_create_bits(PIXMAN_x8r8g8b8, kSurface, kSurface, surface.data(), 4 * kSurface);
    pixman_transform_t scale;
    pixman_transform_init_scale(&scale, pixman_double_to_fixed(1.0 / kMagnifier),
                                pixman_double_to_fixed(1.0 / kMagnifier));
    pixman_image_set_transform(src, &scale);
    pixman_image_set_filter(src, PIXMAN_FILTER_BILINEAR, nullptr, 0);
    const int scaled = static_cast<int>(kSmallIcon * kMagnifier + 0.5f);
    const std::vector<ULOPoint> positions = Positions(kSurface, scaled);
    size_t next = 0;
    for (auto _ : state) {
        const ULOPoint p = positions[next];
        pixman_image_composite32(PIXMAN_OP_OVER, src, nullptr, dst, 0, 0, 0, 0, p.x, p.y, scaled, scaled);
        next = next + 1 < positions.size() ? next + 1 : 0;
        benchmark::ClobberMemory();
    }
    pixman_image_unref(src);
    pixman_image_unref(dst);
    SetRate(state, 1.0);
}

void Register() {
    benchmark::RegisterBenchmark("icon/DrawPicture", BM_IconDraw);
    benchmark::RegisterBenchmark("icon/pixman", BM_PixmanIcon, PixmanSetup::kOnce);
    benchmark::RegisterBenchmark("icon/rows", BM_IconRows);
    benchmark::RegisterBenchmark("icon/pixman+setup", BM_PixmanIcon, PixmanSetup::kEveryCall);
    benchmark::RegisterBenchmark("icon/pixman_setup_alone", BM_PixmanIcon, PixmanSetup::kAlone);
    for (const WrapperCase& c : kWrappers) {
        for (bool rowsAlone : {false, true}) {
            const std::string name =
                std::string("overhead/") + c.name + (rowsAlone ? "/rows" : "/DrawPicture");
            benchmark::RegisterBenchmark(name.c_str(), BM_Master, c, rowsAlone)->Arg(256)->Arg(1024);
        }
    }
    benchmark::RegisterBenchmark("overhead/one_pixel", BM_OnePixel);
    benchmark::RegisterBenchmark("magnified/DrawPicture", BM_MagnifiedDraw);
    benchmark::RegisterBenchmark("magnified/pixman_bilinear", BM_PixmanScaled);
}

}  // namespace

int main(int argc, char** argv) {
    Register();
    ulobench::RateCollector collector("rate");
    if (!ulobench::RunBenchmarks(argc, argv, collector)) {
        return 1;
    }
    auto& r = collector.rates;
    const auto ratio = [](double a, double b) { return b > 0.0 ? a / b : 0.0; };
    std::printf("\nicon 64x64 with alpha onto 256x256, draws/s (millions)\n");
    std::printf("  DrawPicture %.3f  rows alone %.3f  pixman %.3f  pixman+setup %.3f  setup alone %.3f\n",
                r["icon/DrawPicture"], r["icon/rows"], r["icon/pixman"], r["icon/pixman+setup"],
                r["icon/pixman_setup_alone"]);
    std::printf(
        "  DrawPicture / pixman: %.2f per composite, %.2f per call with its image set-up (target >= 2)\n",
        ratio(r["icon/DrawPicture"], r["icon/pixman"]), ratio(r["icon/DrawPicture"], r["icon/pixman+setup"]));
    std::printf("  rows alone / pixman: %.2f per composite\n", ratio(r["icon/rows"], r["icon/pixman"]));
    std::printf(
        "\nmaster overhead: DrawPicture of a whole source vs the transfer rows alone (target <= 5 %% at "
        "256)\n");
    for (const WrapperCase& c : kWrappers) {
        for (const char* side : {"256", "1024"}) {
            const double master = r[std::string("overhead/") + c.name + "/DrawPicture/" + side];
            const double rows = r[std::string("overhead/") + c.name + "/rows/" + side];
            if (master > 0.0 && rows > 0.0) {
                std::printf("  %s %5s: %8.0f vs %8.0f Mpixel/s, overhead %+.1f %%\n", c.name, side, master,
                            rows, 100.0 * (rows / master - 1.0));
            }
        }
    }
    std::printf("  one call drawing a single pixel: %.0f ns\n",
                r["overhead/one_pixel"] > 0.0 ? 1e3 / r["overhead/one_pixel"] : 0.0);
    std::printf("\n32x32 icon onto a 1.5x surface (scaled to 48x48 and drawn), draws/s (millions)\n");
    std::printf("  DrawPicture %.3f  pixman bilinear OVER %.3f  ratio %.2f (target >= 1)\n",
                r["magnified/DrawPicture"], r["magnified/pixman_bilinear"],
                ratio(r["magnified/DrawPicture"], r["magnified/pixman_bilinear"]));
    return 0;
}
