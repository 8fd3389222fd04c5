// The outline members next to cairo stroking the same shapes on an image surface of the same size
// (300 x 300, one-pixel lines unless said): an anti-aliased 100-pixel line at about 30 degrees, a
// horizontal 100-pixel line, a 256 x 256 rectangle outline, the 30-degree line dashed 4 on 4 off, and a
// full arc of radius 50 and thickness 4 (smooth). After the usual table the run prints the time per
// primitive of each and the ratio cairo / ours (the target: at least 3).
#include <benchmark/benchmark.h>
#include <cairo.h>

#include <cstdio>
#include <string>

#include "bench/BenchSupport.h"
#include "ulogui/TrueColorDC.h"

namespace {

constexpr int kSide = 300;
const char* const kPrimitives[] = {"Line30", "Horizontal", "Rect256", "Dashed", "Arc"};
const CLR kInk(200, 100, 50);

void SetCallRate(benchmark::State& state) {
    state.counters["calls"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void Ours(benchmark::State& state, int primitive) {
    ULOTrueColorDCBase dc(ULORect(0, 0, kSide, kSide), false, false);
    for (auto _ : state) {
        switch (primitive) {
            case 0:
                dc.DrawLine(ULOPoint(10, 10), ULOPoint(97, 60), kInk);
                break;
            case 1:
                dc.DrawHorizontalLine(ULOPoint(10, 20), 100, kInk);
                break;
            case 2:
                dc.DrawRect(ULORect(10, 10, 266, 266), kInk);
                break;
            case 3:
                dc.DrawLine(ULOPoint(10, 10), ULOPoint(97, 60), kInk, 4, 4);
                break;
            default:
                dc.DrawArc(kInk, ULORect(), ULOPoint(150, 150), 50.0f, 0.0f, 6.2831855f, 4.0f,
                           ULOTrueColorDCBase::eRadiusIsMiddle, true);
                break;
        }
        benchmark::DoNotOptimize(dc.GetBits());
        benchmark::ClobberMemory();
    }
    SetCallRate(state);
}

void Cairo(benchmark::State& state, int primitive) {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kSide, kSide);
    cairo_t* cr = cairo_create(surface);
    cairo_set_source_rgb(cr, 200 / 255.0, 100 / 255.0, 50 / 255.0);
    const double dash[] = {4.0, 4.0};
    // Pixel centres lie at half coordinates in cairo; the thin lines sit on them as ours do.
    for (auto _ : state) {
        cairo_set_line_width(cr, 1.0);
        switch (primitive) {
            case 0:
                cairo_move_to(cr, 10.5, 10.5);
                cairo_line_to(cr, 97.5, 60.5);
                break;
            case 1:
                cairo_move_to(cr, 10.0, 20.5);
                cairo_line_to(cr, 110.0, 20.5);
                break;
            case 2:
                cairo_rectangle(cr, 10.5, 10.5, 255.0, 255.0);
                break;
            case 3:
                cairo_set_dash(cr, dash, 2, 0.0);
                cairo_move_to(cr, 10.5, 10.5);
                cairo_line_to(cr, 97.5, 60.5);
                break;
            default:
                cairo_set_line_width(cr, 4.0);
                cairo_arc(cr, 150.0, 150.0, 50.0, 0.0, 6.283185307179586);
                break;
        }
        cairo_stroke(cr);
        cairo_set_dash(cr, nullptr, 0, 0.0);
        benchmark::DoNotOptimize(cairo_image_surface_get_data(surface));
        benchmark::ClobberMemory();
    }
    cairo_destroy(cr);
    cairo_surface_destroy(surface);
    SetCallRate(state);
}

void RegisterAll() {
    for (int p = 0; p < 5; ++p) {
        benchmark::RegisterBenchmark((std::string("Ours/") + kPrimitives[p]).c_str(), Ours, p);
        benchmark::RegisterBenchmark((std::string("Cairo/") + kPrimitives[p]).c_str(), Cairo, p);
    }
}

}  // namespace

int main(int argc, char** argv) {
    RegisterAll();
    ulobench::RateCollector collector("calls");
    if (!ulobench::RunBenchmarks(argc, argv, collector)) {
        return 1;
    }
    std::printf("\n%-12s %14s %14s %14s\n", "primitive", "ours ns/call", "cairo ns/call", "cairo/ours");
    for (const char* primitive : kPrimitives) {
        const double ours = collector.rates[std::string("Ours/") + primitive];
        const double cairo = collector.rates[std::string("Cairo/") + primitive];
        if (ours <= 0.0 || cairo <= 0.0) {
            continue;  // filtered out of this run
        }
        // Rates are in millions of calls a second.
        std::printf("%-12s %14.0f %14.0f %14.2f\n", primitive, 1e3 / ours, 1e3 / cairo, ours / cairo);
    }
    return 0;
}
