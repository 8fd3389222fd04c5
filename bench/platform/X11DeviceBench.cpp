// SetToDevice of a 1024 x 768 surface to a window of a private Xvfb, with MIT-SHM and with plain image
// requests, in frames per second beside memcpy of the same bytes (3 MiB a frame), the limit of any
// path that copies the pixels once. Target: with MIT-SHM at least 0.6 of memcpy. Beside them, the
// server alone putting a ready shared segment into the window: the ceiling of any MIT-SHM path, since
// the server copies the pixels into the window once more.
#include <sys/ipc.h>
#include <sys/shm.h>
#include <xcb/shm.h>
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

// A window of the private server, shown and ready to draw on; null when that fails.
std::unique_ptr<X11Device> ShownWindow(bool sharedMemory) {
    ulogui::platform::X11DeviceOptions options;
    options.sharedMemory = sharedMemory;
    std::unique_ptr<X11Device> device;
    X11Device::OpenWindow(Server().Display().c_str(), kWidth, kHeight, "bench", device, options);
    if (device == nullptr || device->UsesSharedMemory() != sharedMemory) {
        return nullptr;
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
    return device;
}

void BM_SetToDevice(benchmark::State& state, bool sharedMemory) {
    const std::unique_ptr<X11Device> device = ShownWindow(sharedMemory);
    if (device == nullptr) {
        state.SkipWithError("no window with MIT-SHM as asked");
        return;
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

void BM_ServerPutOnly(benchmark::State& state) {
    const std::unique_ptr<X11Device> device = ShownWindow(true);
    if (device == nullptr) {
        state.SkipWithError("no window with MIT-SHM");
        return;
    }
    xcb_connection_t* connection = device->GetConnection();
    const int id = shmget(IPC_PRIVATE, kFrameBytes, IPC_CREAT | 0600);
    void* pixels = shmat(id, nullptr, 0);
    std::memset(pixels, 0x40, kFrameBytes);
    const xcb_shm_seg_t segment = xcb_generate_id(connection);
    std::free(xcb_request_check(connection, xcb_shm_attach_checked(connection, segment, id, 1)));
    shmctl(id, IPC_RMID, nullptr);
    const xcb_gcontext_t gc = xcb_generate_id(connection);
    const uint32_t noExposures = 0;
    xcb_create_gc(connection, gc, device->GetWindow(), XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    for (auto _ : state) {
        xcb_shm_put_image(connection, device->GetWindow(), gc, kWidth, kHeight, 0, 0, kWidth, kHeight, 0, 0,
                          24, XCB_IMAGE_FORMAT_Z_PIXMAP, 0, segment, 0);
        xcb_flush(connection);
    }
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    xcb_shm_detach(connection, segment);
    xcb_free_gc(connection, gc);
    shmdt(pixels);
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
BENCHMARK(BM_ServerPutOnly)->UseRealTime()->Unit(benchmark::kMillisecond);
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
    const double server = collector.rates["BM_ServerPutOnly/real_time"] * 1e6;
    const double copy = collector.rates["BM_Memcpy/real_time"] * 1e6;
    if (copy > 0.0) {
        std::printf("\n%-24s %10s %12s\n", "1024 x 768, 32-bit", "frames/s", "/ memcpy");
        std::printf("%-24s %10.0f %12.2f\n", "SetToDevice, MIT-SHM", shared, shared / copy);
        std::printf("%-24s %10.0f %12.2f\n", "SetToDevice, plain", plain, plain / copy);
        std::printf("%-24s %10.0f %12.2f\n", "server put alone", server, server / copy);
        std::printf("%-24s %10.0f %12.2f\n", "memcpy", copy, 1.0);
    }
    return 0;
}
