// The fills, gradations, scrolling, shadows and textures of the drawing surface beside their nearest
// peers, at 64 x 64, 256 x 256 and 1024 x 1024 pixels:
//   FillRectAlpha (0.7)                  beside pixman OVER of a solid colour with alpha 0.7 -> x8r8g8b8
//   FillRectHorizontalGradation          beside pixman SRC of a horizontal linear gradient -> a8r8g8b8
//   FillRectTopLeftToBottomRightGradation beside the same (no peer of its own: it is meant to cost what
//                                        the horizontal one costs)
//   FillRectVerticalGradation            beside pixman OVER of a vertical linear gradient with alpha
//   ScrollArea by one row, by one pixel  beside one memmove of as many bytes, shifted by as much
//   FillRectWithTexture (32 x 32)        beside pixman SRC of a repeating 32 x 32 x8r8g8b8 source
//   DrawShadow (size 8)                  around a side x side rectangle; no peer
// After the runs a table gives Mpixel/s, the ratios and the targets.
#include <benchmark/benchmark.h>
#include <pixman.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "bench/BenchSupport.h"
#include "ulogui/TrueColorDC.h"

namespace {

const CLR kFrom(40, 80, 160);
const CLR kTo(250, 200, 20);

int Side(const benchmark::State& state) {
    return static_cast<int>(state.range(0));
}

void SetPixelRate(benchmark::State& state, double pixelsPerIteration) {
    state.counters["pixels"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * pixelsPerIteration, benchmark::Counter::kIsRate);
}

// A surface of side x side whose pixels all differ, so that no pass sees a flat picture.
class NoisySurface : public ULOTrueColorDCBase {
public:
    explicit NoisySurface(int side) : ULOTrueColorDCBase(ULORect(0, 0, side, side), false, false) {
        uint32_t seed = 12345;
        for (int i = 0; i < side * side * 4; ++i) {
            seed = seed * 1664525u + 1013904223u;
            GetBits()[i] = static_cast<unsigned char>(seed >> 24);
        }
    }
};

// ---- ours ----

void BM_FillRectAlpha(benchmark::State& state) {
    const int side = Side(state);
    NoisySurface dc(side);
    const ULORect all(0, 0, side, side);
    for (auto _ : state) {
        dc.FillRectAlpha(&all, kFrom, 0.7f);
        benchmark::DoNotOptimize(dc.GetBits());
        benchmark::ClobberMemory();
    }
    SetPixelRate(state, static_cast<double>(side) * side);
}

template <void (ULOTrueColorDCBase::*Member)(const ULORect*, const ULORect*, const CLR&, const CLR&, float,
                                             float)>
void BM_Gradation(benchmark::State& state) {
    const int side = Side(state);
    NoisySurface dc(side);
    const ULORect all(0, 0, side, side);
    for (auto _ : state) {
        (dc.*Member)(&all, &all, kFrom, kTo, 0.3f, 0.8f);
        benchmark::DoNotOptimize(dc.GetBits());
        benchmark::ClobberMemory();
    }
    SetPixelRate(state, static_cast<double>(side) * side);
}
void BM_HorizontalGradation(benchmark::State& state) {
    BM_Gradation<&ULOTrueColorDCBase::FillRectHorizontalGradation>(state);
}
void BM_DiagonalGradation(benchmark::State& state) {
    BM_Gradation<&ULOTrueColorDCBase::FillRectTopLeftToBottomRightGradation>(state);
}
void BM_VerticalGradation(benchmark::State& state) {
    BM_Gradation<&ULOTrueColorDCBase::FillRectVerticalGradation>(state);
}

// Scrolls back and forth, so that the contents stay the same.
void Scroll(benchmark::State& state, ULOSize offset) {
    const int side = Side(state);
    NoisySurface dc(side);
    const ULOSize back(-offset.cx, -offset.cy);
    for (auto _ : state) {
        dc.ScrollArea(offset);
        dc.ScrollArea(back);
        benchmark::DoNotOptimize(dc.GetBits());
        benchmark::ClobberMemory();
    }
    SetPixelRate(state, 2.0 * side * side);
}
void BM_ScrollRow(benchmark::State& state) {
    Scroll(state, ULOSize(0, 1));
}
void BM_ScrollPixel(benchmark::State& state) {
    Scroll(state, ULOSize(1, 0));
}

void BM_Texture(benchmark::State& state) {
    const int side = Side(state);
    NoisySurface dc(side);
    const NoisySurface noise(32);
    const ULOPicture tile(noise.GetBits(), 32, 32, 0);
    const ULORect all(0, 0, side, side);
    for (auto _ : state) {
        dc.FillRectWithTexture(tile, all, ULOPoint(5, 7), 1.0f);
        benchmark::DoNotOptimize(dc.GetBits());
        benchmark::ClobberMemory();
    }
    SetPixelRate(state, static_cast<double>(side) * side);
}

// The pixels of both bands are counted: 2 x side x size.
void BM_Shadow(benchmark::State& state) {
    const int side = Side(state);
    const int size = 8;
    NoisySurface dc(side + 2 * size);
    const ULORect rect(size / 2, size / 2, size / 2 + side, size / 2 + side);
    for (auto _ : state) {
        dc.DrawShadow(&rect, nullptr, size, 0.4f);
        benchmark::DoNotOptimize(dc.GetBits());
        benchmark::ClobberMemory();
    }
    SetPixelRate(state, 2.0 * side * size);
}

// ---- peers ----

// One memmove per pass of as many bytes as the scroll moves, shifted by as much, back and forth.
void Memmove(benchmark::State& state, bool byRow) {
    const int side = Side(state);
    std::vector<unsigned char> bytes(static_cast<size_t>(side) * side * 4, 1);
    const size_t shift = byRow ? static_cast<size_t>(side) * 4 : 4;
    const size_t count = byRow ? bytes.size() - shift : static_cast<size_t>(side) * (side - 1) * 4;
    for (auto _ : state) {
        std::memmove(bytes.data(), bytes.data() + shift, count);
        std::memmove(bytes.data() + shift, bytes.data(), count);
        benchmark::DoNotOptimize(bytes.data());
        benchmark::ClobberMemory();
    }
    SetPixelRate(state, 2.0 * side * side);
}
void BM_MemmoveRow(benchmark::State& state) {
    Memmove(state, true);
}
void BM_MemmovePixel(benchmark::State& state) {
    Memmove(state, false);
}

std::vector<uint32_t> Noise(int pixels) {
    std::vector<uint32_t> v(static_cast<size_t>(pixels));
    uint32_t seed = 777;
    for (uint32_t& p : v) {
        seed = seed * 1664525u + 1013904223u;
        p = seed;
    }
    return v;
}

// Composites `src` onto a side x side destination of `format` every pass.
void Composite(benchmark::State& state, pixman_op_t op, pixman_image_t* src, pixman_format_code_t format) {
    const int side = Side(state);
    std::vector<uint32_t> pixels = Noise(side * side);
    pixman_image_t* dst = pixman_image_create_bits(format, side, side, pixels.data(), side * 4);
    for (auto _ : state) {
        pixman_image_composite32(op, src, nullptr, dst, 0, 0, 0, 0, 0, 0, side, side);
        benchmark::DoNotOptimize(pixels.data());
        benchmark::ClobberMemory();
    }
    pixman_image_unref(dst);
    pixman_image_unref(src);
    SetPixelRate(state, static_cast<double>(side) * side);
}

void BM_PixmanOverSolid(benchmark::State& state) {
    const pixman_color_t colour = {0x6F00, 0x3800, 0x1C00, 0xB300};  // premultiplied, alpha 0.7
    Composite(state, PIXMAN_OP_OVER, pixman_image_create_solid_fill(&colour), PIXMAN_x8r8g8b8);
}

// A two-stop linear gradient from (0, 0) to `end`, its colours with the given alphas (premultiplied).
pixman_image_t* Gradient(pixman_point_fixed_t end, double alphaFrom, double alphaTo) {
    const auto colour = [](const CLR& c, double a) {
        return pixman_color_t{static_cast<uint16_t>(c.red * 257 * a),
                              static_cast<uint16_t>(c.green * 257 * a),
                              static_cast<uint16_t>(c.blue * 257 * a), static_cast<uint16_t>(65535 * a)};
    };
    const pixman_gradient_stop_t stops[2] = {{pixman_double_to_fixed(0), colour(kFrom, alphaFrom)},
                                             {pixman_double_to_fixed(1), colour(kTo, alphaTo)}};
    const pixman_point_fixed_t start = {0, 0};
    return pixman_image_create_linear_gradient(&start, &end, stops, 2);
}

void BM_PixmanHorizontalGradient(benchmark::State& state) {
    const pixman_point_fixed_t end = {pixman_int_to_fixed(Side(state)), 0};
    Composite(state, PIXMAN_OP_SRC, Gradient(end, 0.3, 0.8), PIXMAN_a8r8g8b8);
}

void BM_PixmanVerticalGradient(benchmark::State& state) {
    const pixman_point_fixed_t end = {0, pixman_int_to_fixed(Side(state))};
    Composite(state, PIXMAN_OP_OVER, Gradient(end, 0.3, 0.8), PIXMAN_x8r8g8b8);
}

void BM_PixmanRepeat(benchmark::State& state) {
    static std::vector<uint32_t> tile = Noise(32 * 32);
    pixman_image_t* src = pixman_image_create_bits(PIXMAN_x8r8g8b8, 32, 32, tile.data(), 32 * 4);
    pixman_image_set_repeat(src, PIXMAN_REPEAT_NORMAL);
    Composite(state, PIXMAN_OP_SRC, src, PIXMAN_x8r8g8b8);
}

#define ULO_SIDES ->Arg(64)->Arg(256)->Arg(1024)
BENCHMARK(BM_FillRectAlpha) ULO_SIDES;
BENCHMARK(BM_PixmanOverSolid) ULO_SIDES;
BENCHMARK(BM_HorizontalGradation) ULO_SIDES;
BENCHMARK(BM_DiagonalGradation) ULO_SIDES;
BENCHMARK(BM_PixmanHorizontalGradient) ULO_SIDES;
BENCHMARK(BM_VerticalGradation) ULO_SIDES;
BENCHMARK(BM_PixmanVerticalGradient) ULO_SIDES;
BENCHMARK(BM_ScrollRow) ULO_SIDES;
BENCHMARK(BM_MemmoveRow) ULO_SIDES;
BENCHMARK(BM_ScrollPixel) ULO_SIDES;
BENCHMARK(BM_MemmovePixel) ULO_SIDES;
BENCHMARK(BM_Texture) ULO_SIDES;
BENCHMARK(BM_PixmanRepeat) ULO_SIDES;
BENCHMARK(BM_Shadow)->Arg(256);

}  // namespace

int main(int argc, char** argv) {
    ulobench::RateCollector collector("pixels");
    if (!ulobench::RunBenchmarks(argc, argv, collector)) {
        return 1;
    }
    struct Row {
        const char* ours;
        const char* peer;
        const char* target;  // at 64, 256 / at 1024
    };
    const Row rows[] = {
        {"BM_FillRectAlpha", "BM_PixmanOverSolid", ">= 1.5 / 1.0"},
        {"BM_HorizontalGradation", "BM_PixmanHorizontalGradient", ">= 2.0"},
        {"BM_DiagonalGradation", "BM_PixmanHorizontalGradient", "-"},
        {"BM_VerticalGradation", "BM_PixmanVerticalGradient", ">= 1.5 / 1.0"},
        {"BM_ScrollRow", "BM_MemmoveRow", ">= 0.8"},
        {"BM_ScrollPixel", "BM_MemmovePixel", ">= 0.8"},
        {"BM_Texture", "BM_PixmanRepeat", ">= 1.0"},
        {"BM_Shadow", "", "-"},
    };
    std::printf("\n%-24s %6s %12s %12s %8s  %-13s %s\n", "member", "side", "Mpixel/s", "peer Mpx/s", "ratio",
                "target", "peer");
    for (const Row& row : rows) {
        for (const char* side : {"64", "256", "1024"}) {
            const double ours = collector.rates[std::string(row.ours) + "/" + side];
            const double peer = row.peer[0] ? collector.rates[std::string(row.peer) + "/" + side] : 0.0;
            if (ours <= 0.0) {
                continue;  // filtered out of this run, or not measured at this size
            }
            std::printf("%-24s %6s %12.0f %12.0f %8.2f  %-13s %s\n", row.ours + 3, side, ours, peer,
                        peer > 0.0 ? ours / peer : 0.0, row.target, row.peer[0] ? row.peer + 3 : "");
        }
    }
    return 0;
}
