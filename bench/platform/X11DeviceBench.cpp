// SetToDevice of a 1024 x 768 surface to a window of a private Xvfb, with MIT-SHM and with plain image
// requests, in frames per second beside memcpy of the same bytes (3 MiB a frame), the limit of any
// path that copies the pixels once. Target: with MIT-SHM at least 0.6 of memcpy.
#include <xcb/xcb.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include "bench/BenchSupport.h"
#include "platform/linux/XvfbServer.h"
#include "ulogui/PictureBits.h"
#include "ulogui/X11Device.h"

namespace {

using ulogui::platform::X11Device;

constexpr int kWidth = 1024;
constexpr int kHeight = 768;
constexpr size_t kFrameBytes = size_t{kWidth} * kHeight * 4;

void SetFrameRate(benchmark::State& state) {
    state.counters["frames"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

ulotest::XvfbServer& Server() {
    static ulotest::XvfbServer server(1280, 1024);
    return server;
}

void BM_SetToDevice(benchmark::State& state, bool sharedMemory) {
    ulogui::platform::X11DeviceOptions options;
    options.sharedMemory = sharedMemory;
    std::unique_ptr<X11Device> device;
    const ulo::ErrorCode error =
        X11Device::OpenWindow(Server().Display().c_str(), kWidth, kHeight, "bench", device, options);
    if (error.IsError() || device->UsesSharedMemory() != sharedMemory) {
        state.SkipWithError(error.IsError() ? "no window" : "MIT-SHM is not as asked");
        return;
    }
    // Drawing before the window is mapped would be thrown away by the server.
    for (int i = 0; i < 500; ++i) {
        xcb_generic_event_t* event = xcb_poll_for_event(device->GetConnection());
        const bool exposed = event != nullptr && (event->response_type & 0x7F) == XCB_EXPOSE;
        std::free(event);
        if (exposed) {
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ULOPictureBits surface(ULOSize(kWidth, kHeight), 0);
    surface.Fill(CLR(30, 60, 90), 0);
    const ULORect whole(0, 0, kWidth, kHeight);
    for (auto _ : state) {
        surface.SetToDevice(device.get(), &whole, 0, 0);
    }
    // At most two frames are still on their way: the device keeps no more in flight.
    if (device->Finish().IsError()) {
        state.SkipWithError("the server refused the frames");
    }
    SetFrameRate(state);
}

void BM_Memcpy(benchmark::State& state) {
    std::vector<unsigned char> from(kFrameBytes, 1);
    std::vector<unsigned char> to(kFrameBytes);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), kFrameBytes);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
    SetFrameRate(state);
}

}  // namespace

BENCHMARK_CAPTURE(BM_SetToDevice, SharedMemory, true)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SetToDevice, PlainPuts, false)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Memcpy)->UseRealTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    if (Server().Display().empty()) {
        std::fprintf(stderr, "%s\n", Server().Problem().c_str());
        return 1;
    }
    ulobench::RateCollector collector("frames");
    if (!ulobench::RunBenchmarks(argc, argv, collector)) {
        return 1;
    }
    // The collector keeps millions a second.
    const double shared = collector.rates["BM_SetToDevice/SharedMemory/real_time"] * 1e6;
    const double plain = collector.rates["BM_SetToDevice/PlainPuts/real_time"] * 1e6;
    const double copy = collector.rates["BM_Memcpy/real_time"] * 1e6;
    if (copy > 0.0) {
        std::printf("\n%-22s %10s %12s\n", "1024 x 768, 32-bit", "frames/s", "/ memcpy");
        std::printf("%-22s %10.0f %12.2f\n", "SetToDevice, MIT-SHM", shared, shared / copy);
        std::printf("%-22s %10.0f %12.2f\n", "SetToDevice, plain", plain, plain / copy);
        std::printf("%-22s %10.0f %12.2f\n", "memcpy", copy, 1.0);
    }
    return 0;
}
