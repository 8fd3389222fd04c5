#pragma once
// What an X11 device holds (its connection, window, shared segments, the requests in flight) and how it
// sends bands of pixels to the window and reads pixels back.
#include <xcb/xcb.h>

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <vector>

#include "platform/DeviceCopy.h"
#include "platform/linux/X11SharedSegment.h"
#include "platform/linux/X11Window.h"
#include "ulogui/X11Device.h"

namespace ulogui {
namespace platform {

namespace x11 {

constexpr int kCoordinateLimit = 32767;          // X coordinates and sizes are 16-bit
constexpr size_t kBandBytes = size_t{16} << 20;  // most bytes one put carries: larger images go in bands
constexpr int kSlots = 2;  // puts in flight: the device fills one segment while the server reads the other

using ImageReply = std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)>;

// The columns and rows of the bands a copy is sent in.
struct Band {
    int columns;
    int rows;
};

// Bands of at most `limitBytes`: whole rows when one fits.
Band BandOf(const DeviceCopy& copy, size_t limitBytes);

}  // namespace x11

struct X11Device::State {
    xcb_connection_t* connection = nullptr;
    bool ownsConnection = false;
    xcb_window_t window = 0;
    bool ownsWindow = false;
    uint32_t closeAtom = 0;
    x11::WindowFormat format;
    xcb_gcontext_t gc = 0;
    bool sharedMemory = false;
    size_t plainBandBytes = 0;  // image bytes one plain put request may carry
    x11::SharedSegment segments[x11::kSlots];
    // Each slot's puts not yet known to be handled, and the request sent right after the last of them:
    // its reply tells that the server is done with them, without waiting for the puts sent later
    // (checking a put alone would wait for a round trip behind everything sent so far).
    std::vector<xcb_void_cookie_t> pending[x11::kSlots];
    xcb_get_input_focus_cookie_t fence[x11::kSlots] = {};
    int nextSlot = 0;
    std::vector<unsigned char> staging;  // the pixels of a plain put
    ulo::ErrorCode firstError;           // the first since the last Finish
    // What ReadAhead read, answered from until the next CopyBits or ReadAhead.
    ULORect snapshotArea;
    x11::ImageReply snapshot{nullptr, &std::free};

    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State();

    // True (and the error kept) when the connection is broken.
    bool Lost();
    // Keeps the first error since the last Finish.
    void Record(const ulo::ErrorCode& error);
    // Waits until the server has handled the puts of `slot`, keeping the first error it reported.
    void Settle(int slot);
    // Makes both segments hold `bytes`; a segment is replaced only after the server is done with it.
    // False when the server no longer takes shared memory.
    bool ReserveSegments(size_t bytes);
    // Gives up the shared segments (after the server is done with them) for plain puts.
    void SendPlainFromNowOn();
    // Sends the band of `band.columns` x `band.rows` pixels whose top-left pixel is at (column, row) of
    // the copy. The device's pixel rows become the window's rows top-down; the fourth byte becomes the
    // window's own (opaque alpha for a 32-bit window, unused otherwise).
    void Put(const DeviceCopy& copy, int column, int row, x11::Band band);
    // Checks the window and readies the device's own resources on it.
    ulo::ErrorCode Start(const X11DeviceOptions& options);
    // The window's pixels in the rectangle, or null when the server cannot give them (outside the window,
    // not viewable).
    x11::ImageReply ReadImage(int x, int y, int width, int height) const;
};

}  // namespace platform
}  // namespace ulogui
