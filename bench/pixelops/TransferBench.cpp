// The blending wrappers with PixelCopy, on the scalar reference and at each vector level, beside
// pixman's compositing of the same number of pixels:
//   W0 (plain)                   beside pixman SRC a8r8g8b8 -> x8r8g8b8
//   W1, W2 (source alpha)        beside pixman OVER a8r8g8b8 -> x8r8g8b8
//   W3 (opacity)                 beside pixman OVER of a solid colour with constant alpha, and OVER of
//                                an x8r8g8b8 picture through a constant-alpha mask
//   W4 (onto a destination with alpha) beside pixman OVER a8r8g8b8 -> a8r8g8b8
// at 64 x 64, 256 x 256 and 1024 x 1024. Sources and destinations hold random bytes, so no wrapper
// and no pixman fast path meets only opaque or only transparent pixels. After the runs a table gives
// Mpixel/s and the ratios to pixman.
#include <benchmark/benchmark.h>
#include <pixman.h>

#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "bench/BenchSupport.h"
#include "pixelops/PixelTransferLoops.h"
#include "ulogui/PictureBits.h"

namespace {

using namespace ulogui::pixelops;

const int kSizes[] = {64, 256, 1024};

struct Images {
    explicit Images(int size) : side(size), src(Random(size, 1)), dst(Random(size, 2)) {}
    static std::vector<uint32_t> Random(int size, unsigned seed) {
        std::mt19937 random(seed);
        std::vector<uint32_t> pixels(static_cast<size_t>(size) * size);
        for (uint32_t& p : pixels) {
            p = random();
        }
        return pixels;
    }
    int side;
    std::vector<uint32_t> src;
    std::vector<uint32_t> dst;
};

struct WrapperCase {
    const char* name;
    Wrapper wrapper;
    float opacity;
};

const WrapperCase kWrappers[] = {
    {"W0", Wrapper::kPlain, 1.0f},
    {"W1", Wrapper::kSourceAlpha, 1.0f},
    {"W2", Wrapper::kSourceAlphaOpacity, 0.7f},
    {"W3", Wrapper::kOpacity, 0.7f},
    {"W4", Wrapper::kOntoAlpha, 1.0f},
};

void RunWrapper(benchmark::State& state, Wrapper wrapper, float opacity, Isa isa) {
    Images images(static_cast<int>(state.range(0)));
    const int n = images.side;
    ULOPictureBits dst(reinterpret_cast<unsigned char*>(images.dst.data()), n, n, 4 * n, PICTBITS_ALPHA);
    const ULOPictureBits src(reinterpret_cast<unsigned char*>(images.src.data()), n, n, 4 * n,
                             PICTBITS_ALPHA);
    const Loop loop(Functor::kCopy, wrapper, opacity, 1.0f, isa);
    const ULORect all(0, 0, n, n);
    for (auto _ : state) {
        loop.Run(dst, all, src, ULOPoint(0, 0));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * n * n);
}

enum class PixmanCase { kSrcCopy, kOverOntoX888, kOverOntoA888, kOverSolid, kOverThroughConstantMask };

void RunPixman(benchmark::State& state, PixmanCase which) {
    Images images(static_cast<int>(state.range(0)));
    const int n = images.side;
    const pixman_format_code_t dstFormat =
        which == PixmanCase::kOverOntoA888 ? PIXMAN_a8r8g8b8 : PIXMAN_x8r8g8b8;
    const pixman_format_code_t srcFormat =
        which == PixmanCase::kOverThroughConstantMask ? PIXMAN_x8r8g8b8 : PIXMAN_a8r8g8b8;
    pixman_image_t* dst = pixman_image_create_bits(dstFormat, n, n, images.dst.data(), 4 * n);
    pixman_image_t* src = nullptr;
    pixman_image_t* mask = nullptr;
    const pixman_op_t op = which == PixmanCase::kSrcCopy ? PIXMAN_OP_SRC : PIXMAN_OP_OVER;
    if (which == PixmanCase::kOverSolid) {
        const pixman_color_t colour = {0x6000, 0x4000, 0x2000, 0xB300};  // premultiplied, alpha 0.7
        src = pixman_image_create_solid_fill(&colour);
    } else {
        src = pixman_image_create_bits(srcFormat, n, n, images.src.data(), 4 * n);
    }
    if (which == PixmanCase::kOverThroughConstantMask) {
        const pixman_color_t alpha = {0, 0, 0, 0xB300};
        mask = pixman_image_create_solid_fill(&alpha);
    }
    for (auto _ : state) {
        pixman_image_composite32(op, src, mask, dst, 0, 0, 0, 0, 0, 0, n, n);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * n * n);
    if (mask) {
        pixman_image_unref(mask);
    }
    pixman_image_unref(src);
    pixman_image_unref(dst);
}

const char* kPixmanNames[] = {"pixman_SRC_a8r8g8b8_onto_x8r8g8b8", "pixman_OVER_a8r8g8b8_onto_x8r8g8b8",
                              "pixman_OVER_a8r8g8b8_onto_a8r8g8b8", "pixman_OVER_solid_alpha_onto_x8r8g8b8",
                              "pixman_OVER_x8r8g8b8_const_mask_onto_x8r8g8b8"};

void RegisterAll() {
    const Isa best = ulogui::base::BestIsa();
    for (const WrapperCase& c : kWrappers) {
        for (int level = 0; level < ulogui::base::kIsaCount; ++level) {
            const Isa isa = static_cast<Isa>(level);
            if (!ulogui::base::IsIsaAvailable(isa)) {
                continue;
            }
            // The best level is the one the summary compares; the others show what each width brings.
            const std::string name =
                std::string(c.name) + "_" + (isa == best ? "simd" : ulogui::base::IsaName(isa));
            auto* b = benchmark::RegisterBenchmark(name.c_str(), [c, isa](benchmark::State& state) {
                RunWrapper(state, c.wrapper, c.opacity, isa);
            });
            for (int size : kSizes) {
                b->Arg(size);
            }
        }
    }
    for (int i = 0; i < 5; ++i) {
        const PixmanCase which = static_cast<PixmanCase>(i);
        auto* b = benchmark::RegisterBenchmark(kPixmanNames[i],
                                               [which](benchmark::State& state) { RunPixman(state, which); });
        for (int size : kSizes) {
            b->Arg(size);
        }
    }
}

void PrintSummary(const std::map<std::string, double>& rates) {
    struct Row {
        const char* wrapper;
        const char* pixman;
        double target;
    };
    const Row rows[] = {
        {"W0", kPixmanNames[0], 0.0}, {"W1", kPixmanNames[1], 1.5}, {"W2", kPixmanNames[1], 1.5},
        {"W3", kPixmanNames[3], 1.5}, {"W3", kPixmanNames[4], 0.0}, {"W4", kPixmanNames[2], 1.0},
    };
    std::printf("\n%-4s %6s %11s %11s %11s %8s %8s  %s\n", "", "size", "scalar", "simd", "pixman", "simd/px",
                "target", "pixman operation");
    for (const Row& row : rows) {
        for (int size : kSizes) {
            const std::string suffix = "/" + std::to_string(size);
            const auto get = [&](const std::string& name) {
                const auto it = rates.find(name + suffix);
                return it == rates.end() ? 0.0 : it->second;
            };
            const double scalar = get(std::string(row.wrapper) + "_scalar");
            const double simd = get(std::string(row.wrapper) + "_simd");
            const double pixman = get(row.pixman);
            char target[16] = "-";
            if (row.target > 0) {
                std::snprintf(target, sizeof target, ">= %.1f", row.target);
            }
            std::printf("%-4s %6d %11.0f %11.0f %11.0f %8.2f %8s  %s\n", row.wrapper, size, scalar, simd,
                        pixman, pixman > 0 ? simd / pixman : 0.0, target, row.pixman);
        }
    }
    std::printf("(Mpixel/s; simd is the best level on this machine, %s)\n",
                ulogui::base::IsaName(ulogui::base::BestIsa()));
}

}  // namespace

int main(int argc, char** argv) {
    RegisterAll();
    ulobench::RateCollector reporter("items_per_second");
    if (!ulobench::RunBenchmarks(argc, argv, reporter)) {
        return 1;
    }
    PrintSummary(reporter.rates);
    return 0;
}
