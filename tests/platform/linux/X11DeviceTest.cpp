// The X11 device on a private Xvfb: what SetToDevice puts in a window, read back from the server, is
// exactly what it puts in the memory device; failures are reported, never fatal.
#include <xcb/xcb.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/XvfbServer.h"
#include "ulogui/PictureBits.h"
#include "ulogui/X11Device.h"

namespace {

using ulogui::platform::MemoryDevice;
using ulogui::platform::X11Device;
using ulogui::platform::X11DeviceOptions;

constexpr int kWidth = 640;
constexpr int kHeight = 480;

bool WaitForExpose(xcb_connection_t* connection) {
    for (int i = 0; i < 500; ++i, std::this_thread::sleep_for(std::chrono::milliseconds(10))) {
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection)) {
            const bool exposed = (event->response_type & 0x7F) == XCB_EXPOSE;
            std::free(event);
            if (exposed) {
                return true;
            }
        }
    }
    return false;
}

// A mapped 32-bit window (the server's ARGB visual), made by the test's own connection.
xcb_window_t Make32BitWindow(xcb_connection_t* connection) {
    xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    for (auto d = xcb_screen_allowed_depths_iterator(screen); d.rem > 0; xcb_depth_next(&d)) {
        if (d.data->depth != 32 || d.data->visuals_len == 0) {
            continue;
        }
        const xcb_visualid_t visual = xcb_depth_visuals(d.data)->visual_id;
        const xcb_colormap_t colormap = xcb_generate_id(connection);
        xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, colormap, screen->root, visual);
        const xcb_window_t window = xcb_generate_id(connection);
        const uint32_t values[] = {0, 0, XCB_EVENT_MASK_EXPOSURE, colormap};
        xcb_create_window(
            connection, 32, window, screen->root, 0, 0, kWidth, kHeight, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
            visual, XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values);
        xcb_map_window(connection, window);
        xcb_flush(connection);
        return window;
    }
    return 0;
}

// The window's pixels as the server holds them, row by row from the top.
std::vector<uint32_t> ReadWindow(xcb_connection_t* connection, xcb_window_t window) {
    xcb_get_image_reply_t* reply = xcb_get_image_reply(
        connection, xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, kWidth, kHeight, ~0u),
        nullptr);
    std::vector<uint32_t> pixels;
    if (reply != nullptr && xcb_get_image_data_length(reply) == kWidth * kHeight * 4) {
        pixels.resize(static_cast<size_t>(kWidth) * kHeight);
        std::memcpy(pixels.data(), xcb_get_image_data(reply), pixels.size() * 4);
    }
    std::free(reply);
    return pixels;
}

struct Transfer {
    const char* name;
    std::vector<std::string> serverArguments;
    bool sharedMemory;  // asked for
    bool attach32Bit;   // a 32-bit window of the host's connection instead of the device's own window
    bool expectSharedMemory;
};

class X11DeviceSweep : public ::testing::TestWithParam<Transfer> {};

TEST_P(X11DeviceSweep, WindowShowsWhatTheMemoryDeviceShows) {
    const Transfer& setup = GetParam();
    ulotest::XvfbServer server(kWidth + 64, kHeight + 64, setup.serverArguments);
    ASSERT_FALSE(server.Display().empty()) << server.Problem();
    X11DeviceOptions options;
    options.sharedMemory = setup.sharedMemory;
    std::unique_ptr<X11Device> device;
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> host(nullptr, &xcb_disconnect);
    if (setup.attach32Bit) {
        host.reset(xcb_connect(server.Display().c_str(), nullptr));
        const xcb_window_t window = Make32BitWindow(host.get());
        ASSERT_TRUE(window != 0 && WaitForExpose(host.get()));
        ASSERT_TRUE(X11Device::Attach(host.get(), window, device, options).IsOk());
    } else {
        ASSERT_TRUE(X11Device::OpenWindow(server.Display().c_str(), kWidth, kHeight, "sweep", device, options)
                        .IsOk());
        ASSERT_TRUE(WaitForExpose(device->GetConnection()));
    }
    EXPECT_EQ(device->UsesSharedMemory(), setup.expectSharedMemory);

    MemoryDevice memory(kWidth, kHeight, CLR(0, 0, 0));
    std::mt19937 random(21);
    auto between = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    const int formats[] = {0, PICTBITS_ALPHA, PICTBITS_RGB24, PICTBITS_MASK8};
    for (int i = 0; i < 80; ++i) {
        // First noise over the whole window, so that alpha pixels compose over something (a picture
        // larger than the window and than the 4 MiB request limit of one server); then pictures of
        // every format (1- and 3-byte ones one pixel wide often enough to reach the device) at random
        // places, whole or in part.
        const int flags = i == 0 ? 0 : formats[between(0, 3)];
        const bool narrow = (flags & (PICTBITS_RGB24 | PICTBITS_MASK8)) != 0 && between(0, 1) == 0;
        const ULOSize size =
            i == 0 ? ULOSize(1100, 1000) : ULOSize(narrow ? 1 : between(1, 90), between(1, 90));
        ULOPictureBits picture(size, flags);
        for (int b = 0; b < picture.GetLineWidth(false) * size.cy; ++b) {
            picture.GetBits()[b] = static_cast<unsigned char>(random());
        }
        ULOPictureBits twin;
        twin.Clone(picture);
        const ULORect part(between(-5, size.cx), between(-5, size.cy), between(0, size.cx + 5),
                           between(0, size.cy + 5));
        const ULORect* rect = i == 0 || between(0, 4) == 0 ? nullptr : &part;
        const int x = i == 0 ? 0 : between(-40, kWidth), y = i == 0 ? 0 : between(-40, kHeight);
        picture.SetToDevice(device.get(), rect, x, y);
        twin.SetToDevice(memory.GetHDC(), rect, x, y);
        ASSERT_EQ(std::memcmp(picture.GetBits(), twin.GetBits(),
                              static_cast<size_t>(picture.GetLineWidth(false)) * size.cy),
                  0)
            << "picture " << i << " was composed over other colours than the memory device shows";
    }
    ASSERT_TRUE(device->Finish().IsOk());

    const std::vector<uint32_t> window = ReadWindow(device->GetConnection(), device->GetWindow());
    ASSERT_EQ(window.size(), static_cast<size_t>(kWidth) * kHeight);
    for (size_t i = 0; i < window.size(); ++i) {
        const int x = static_cast<int>(i % kWidth), y = static_cast<int>(i / kWidth);
        const CLR c = memory.GetPixel(x, y);
        // A 32-bit window is kept opaque.
        ASSERT_EQ(window[i] | (setup.attach32Bit ? 0 : 0xFF000000u),
                  0xFF000000u | c.red << 16 | c.green << 8 | c.blue)
            << "at " << x << "," << y;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Transfers, X11DeviceSweep,
    ::testing::Values(
        Transfer{"SharedMemory", {}, true, false, true}, Transfer{"PlainPuts", {}, false, false, false},
        // A server without MIT-SHM and with a request limit of 4 MiB: plain puts in bands.
        Transfer{
            "NoSharedMemoryOnServer", {"-extension", "MIT-SHM", "-maxbigreqsize", "1"}, true, true, false},
        Transfer{"SharedMemory32BitWindow", {}, true, true, true}),
    [](const ::testing::TestParamInfo<Transfer>& p) { return std::string(p.param.name); });

TEST(X11DeviceErrorTest, MissingDisplaysWindowsAndServersAreReported) {
    std::unique_ptr<X11Device> device;
    for (const std::string& display : {ulotest::UnusedDisplay(), std::string("no display")}) {
        const ulo::ErrorCode error = X11Device::OpenWindow(display.c_str(), 10, 10, "", device);
        EXPECT_EQ(error.GetResultCode(), 0x80070037u) << display;  // ERROR_DEV_NOT_EXIST
        EXPECT_EQ(error.GetMessage().ToUtf8().rfind("No X display was found at \"" + display + "\": ", 0), 0u)
            << error.GetMessage().ToUtf8();
        EXPECT_EQ(device, nullptr);
    }
    EXPECT_EQ(X11Device::Attach(nullptr, 1, device).GetResultCode(), 0x80070037u);

    auto server = std::make_unique<ulotest::XvfbServer>(64, 64);
    ASSERT_FALSE(server->Display().empty()) << server->Problem();
    EXPECT_EQ(X11Device::Open(server->Display().c_str(), 0x7FFFFF, device).GetResultCode(), 0x80070006u);
    EXPECT_EQ(X11Device::OpenWindow(server->Display().c_str(), 0, 10, "", device).GetResultCode(),
              0x80070057u);

    // A window destroyed behind the device's back: the put fails on the server, Finish says so once.
    ULOPictureBits picture(ULOSize(8, 8), PICTBITS_ALPHA);
    picture.Fill(CLR(1, 2, 3), 128);
    const ulo::ErrorCode opened = X11Device::OpenWindow(server->Display().c_str(), 32, 32, "", device);
    ASSERT_TRUE(opened.IsOk()) << opened.GetMessage().ToUtf8();
    xcb_destroy_window(device->GetConnection(), device->GetWindow());
    picture.SetToDevice(device.get(), nullptr, 0, 0);
    EXPECT_EQ(device->Finish().GetResultCode(), 0x80070006u);
    EXPECT_TRUE(device->Finish().IsOk());

    // The server goes away: drawing does nothing, reads give white, Finish reports the lost display.
    server.reset();
    picture.SetToDevice(device.get(), nullptr, 0, 0);
    EXPECT_EQ(device->GetPixel(0, 0), CLR(255, 255, 255));
    EXPECT_EQ(device->Finish().GetResultCode(), 0x80070037u);
}

}  // namespace
