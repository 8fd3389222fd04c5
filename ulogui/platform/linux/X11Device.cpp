// The X11 device: a window on an X server that pixel buffers are shown on.
#include "ulogui/X11Device.h"

#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "platform/DeviceCopy.h"
#include "platform/linux/X11Failure.h"
#include "platform/linux/X11PixelRows.h"
#include "platform/linux/X11SharedSegment.h"
#include "platform/linux/X11Window.h"

namespace ulogui {
namespace platform {

namespace {

constexpr int kCoordinateLimit = 32767;          // X coordinates and sizes are 16-bit
constexpr size_t kBandBytes = size_t{16} << 20;  // most bytes one put carries: larger images go in bands
constexpr size_t kRequestHeaderBytes = 32;       // a put request's fields, with the long-length word
constexpr int kSlots = 2;                        // puts in flight: the device fills one while the server
                                                 // reads the other
const CLR kWhite(255, 255, 255);

using ImageReply = std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)>;

CLR ColourAt(const uint8_t* pixel) {
    return CLR(pixel[2], pixel[1], pixel[0]);
}

// The columns and rows of the bands a copy is sent in, each at most `limitBytes`.
struct Band {
    int columns;
    int rows;
};

Band BandOf(const DeviceCopy& copy, size_t limitBytes) {
    const size_t columns =
        std::min<size_t>(static_cast<size_t>(copy.width), std::max<size_t>(limitBytes / 4, 1));
    const size_t rows =
        std::min<size_t>(static_cast<size_t>(copy.height), std::max<size_t>(limitBytes / (columns * 4), 1));
    return Band{static_cast<int>(columns), static_cast<int>(rows)};
}

}  // namespace

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
    x11::SharedSegment segments[kSlots];
    // Each slot's puts not yet known to be handled, and the request sent right after the last of them:
    // its reply tells that the server is done with them, without waiting for the puts sent later
    // (checking a put alone would wait for a round trip behind everything sent so far).
    std::vector<xcb_void_cookie_t> pending[kSlots];
    xcb_get_input_focus_cookie_t fence[kSlots] = {};
    int nextSlot = 0;
    std::vector<unsigned char> staging;  // the pixels of a plain put
    ulo::ErrorCode firstError;
    // What ReadAhead read, answered from until the next CopyBits or ReadAhead.
    ULORect snapshotArea;
    ImageReply snapshot{nullptr, &std::free};

    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    ~State() {
        if (connection == nullptr) {
            return;
        }
        if (!xcb_connection_has_error(connection)) {
            for (int slot = 0; slot < kSlots; ++slot) {
                for (const xcb_void_cookie_t& cookie : pending[slot]) {
                    xcb_discard_reply(connection, cookie.sequence);
                }
                if (!pending[slot].empty()) {
                    xcb_discard_reply(connection, fence[slot].sequence);
                }
            }
        }
        for (auto& segment : segments) {
            segment.Release();
        }
        if (!xcb_connection_has_error(connection)) {
            if (gc != 0) {
                xcb_free_gc(connection, gc);
            }
            if (ownsWindow) {
                xcb_destroy_window(connection, window);
            }
            xcb_flush(connection);
        }
        if (ownsConnection) {
            xcb_disconnect(connection);
        }
    }

    bool Lost() {
        if (!xcb_connection_has_error(connection)) {
            return false;
        }
        Record(x11::Failure(x11::kNoDisplay, "the connection to the X display was lost",
                            "ulogui::platform::X11Device", __LINE__));
        return true;
    }

    void Record(const ulo::ErrorCode& error) {
        if (firstError.IsOk()) {
            firstError = error;
        }
    }

    // Waits until the server has handled the puts of `slot`, keeping the first error it reported.
    void Settle(int slot) {
        if (pending[slot].empty()) {
            return;
        }
        std::free(xcb_get_input_focus_reply(connection, fence[slot], nullptr));
        for (const xcb_void_cookie_t& cookie : pending[slot]) {
            if (xcb_generic_error_t* error = xcb_request_check(connection, cookie)) {
                const int code = error->error_code;
                std::free(error);
                if (code == XCB_WINDOW || code == XCB_DRAWABLE) {
                    Record(x11::Failure(x11::kNotAWindow,
                                        "X window " + std::to_string(window) + " no longer exists",
                                        "ulogui::platform::X11Device::CopyBits", __LINE__));
                } else {
                    Record(x11::Failure(code == XCB_ALLOC ? x11::kOutOfMemory : x11::kServerError,
                                        "the X server refused to draw on window " + std::to_string(window) +
                                            " (X error " + std::to_string(code) + ")",
                                        "ulogui::platform::X11Device::CopyBits", __LINE__));
                }
            }
        }
        pending[slot].clear();
    }

    // Makes both segments hold `bytes`; a segment is replaced only after the server is done with it.
    // False when the server no longer takes shared memory.
    bool ReserveSegments(size_t bytes) {
        for (int slot = 0; slot < kSlots; ++slot) {
            if (segments[slot].Holds(bytes)) {
                continue;
            }
            Settle(slot);
            if (!segments[slot].Reserve(connection, bytes)) {
                return false;
            }
        }
        return true;
    }

    void SendPlainFromNowOn() {
        for (int slot = 0; slot < kSlots; ++slot) {
            Settle(slot);
            segments[slot].Release();
        }
        sharedMemory = false;
    }

    // Sends the band of `band.columns` x `band.rows` pixels whose top-left pixel is at (column, row) of
    // the copy. The device's pixel rows become the window's rows top-down; the fourth byte becomes the
    // window's own (opaque alpha for a 32-bit window, unused otherwise).
    void Put(const DeviceCopy& copy, int column, int row, Band band) {
        const int slot = nextSlot;
        nextSlot = (nextSlot + 1) % kSlots;
        const size_t rowBytes = static_cast<size_t>(band.columns) * 4;
        const size_t bytes = rowBytes * static_cast<size_t>(band.rows);
        // The server may still be reading this slot's segment; with plain puts, waiting for the puts
        // before the last keeps the requests (and the errors to check) from piling up.
        Settle(slot);
        if (!sharedMemory) {
            staging.resize(bytes);
        }
        unsigned char* target = sharedMemory ? segments[slot].Data() : staging.data();
        // Another process reads the shared segment: it is written around this thread's caches.
        x11::WriteBand(copy, column, row, band.columns, band.rows, format.opaqueBits, sharedMemory, target);
        const auto columns = static_cast<uint16_t>(band.columns);
        const auto rows = static_cast<uint16_t>(band.rows);
        const auto x = static_cast<int16_t>(copy.destX + column);
        const auto y = static_cast<int16_t>(copy.destY + row);
        pending[slot].push_back(
            sharedMemory
                ? xcb_shm_put_image_checked(connection, window, gc, columns, rows, 0, 0, columns, rows, x, y,
                                            format.depth, XCB_IMAGE_FORMAT_Z_PIXMAP, 0, segments[slot].Id(),
                                            0)
                : xcb_put_image_checked(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, gc, columns, rows, x,
                                        y, 0, format.depth, static_cast<uint32_t>(bytes), target));
        fence[slot] = xcb_get_input_focus(connection);
        // Sent now, so that the server draws this band while the next one is being prepared.
        xcb_flush(connection);
    }

    // Checks the window and readies the device's own resources on it.
    ulo::ErrorCode Start(const X11DeviceOptions& options) {
        if (auto error = x11::DescribeWindow(connection, window, format); error.IsError()) {
            return error;
        }
        gc = xcb_generate_id(connection);
        const uint32_t noExposures = 0;  // puts must not flood the host with exposure events
        xcb_create_gc(connection, gc, window, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
        sharedMemory = options.sharedMemory && x11::ServerTakesSharedMemory(connection);
        const size_t requestBytes = static_cast<size_t>(xcb_get_maximum_request_length(connection)) * 4;
        plainBandBytes =
            std::min(kBandBytes, requestBytes > kRequestHeaderBytes ? requestBytes - kRequestHeaderBytes : 4);
        return ulo::ErrorCode::noError();
    }

    // The window's pixels in the rectangle, or null when the server cannot give them (outside the window,
    // not viewable).
    ImageReply ReadImage(int x, int y, int width, int height) const {
        xcb_generic_error_t* error = nullptr;
        ImageReply reply(xcb_get_image_reply(
                             connection,
                             xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window,
                                           static_cast<int16_t>(x), static_cast<int16_t>(y),
                                           static_cast<uint16_t>(width), static_cast<uint16_t>(height), ~0u),
                             &error),
                         &std::free);
        std::free(error);
        if (reply != nullptr && static_cast<size_t>(xcb_get_image_data_length(reply.get())) <
                                    static_cast<size_t>(width) * static_cast<size_t>(height) * 4) {
            reply.reset();
        }
        return reply;
    }
};

X11Device::X11Device(std::unique_ptr<State> state) : state_(std::move(state)) {}

X11Device::~X11Device() = default;

ulo::ErrorCode X11Device::Attach(xcb_connection_t* connection, uint32_t window,
                                 std::unique_ptr<X11Device>& device, const X11DeviceOptions& options) {
    device.reset();
    if (connection == nullptr || xcb_connection_has_error(connection)) {
        return x11::Failure(x11::kNoDisplay,
                            "No X display was found: the connection given is closed or missing",
                            "ulogui::platform::X11Device::Attach", __LINE__);
    }
    auto state = std::make_unique<State>();
    state->connection = connection;
    state->window = window;
    if (auto error = state->Start(options); error.IsError()) {
        return error;
    }
    device.reset(new X11Device(std::move(state)));
    return ulo::ErrorCode::noError();
}

ulo::ErrorCode X11Device::Open(const char* display, uint32_t window, std::unique_ptr<X11Device>& device,
                               const X11DeviceOptions& options) {
    device.reset();
    auto state = std::make_unique<State>();
    int screen = 0;
    if (auto error = x11::Connect(display, state->connection, screen); error.IsError()) {
        return error;
    }
    state->ownsConnection = true;
    state->window = window;
    if (auto error = state->Start(options); error.IsError()) {
        return error;
    }
    device.reset(new X11Device(std::move(state)));
    return ulo::ErrorCode::noError();
}

ulo::ErrorCode X11Device::OpenWindow(const char* display, int width, int height, const std::string& utf8Title,
                                     std::unique_ptr<X11Device>& device, const X11DeviceOptions& options) {
    device.reset();
    if (width < 1 || height < 1 || width > kCoordinateLimit || height > kCoordinateLimit) {
        return x11::Failure(x11::kInvalidArgument,
                            "an X window must be 1 to 32767 pixels wide and high, not " +
                                std::to_string(width) + " x " + std::to_string(height),
                            "ulogui::platform::X11Device::OpenWindow", __LINE__);
    }
    auto state = std::make_unique<State>();
    int screen = 0;
    if (auto error = x11::Connect(display, state->connection, screen); error.IsError()) {
        return error;
    }
    state->ownsConnection = true;
    if (auto error = x11::CreateTopLevelWindow(state->connection, screen, width, height, state->window,
                                               state->closeAtom);
        error.IsError()) {
        return error;
    }
    state->ownsWindow = true;
    x11::SetWindowTitle(state->connection, state->window, utf8Title);
    if (auto error = state->Start(options); error.IsError()) {
        return error;
    }
    device.reset(new X11Device(std::move(state)));
    return ulo::ErrorCode::noError();
}

xcb_connection_t* X11Device::GetConnection() const {
    return state_->connection;
}

uint32_t X11Device::GetWindow() const {
    return state_->window;
}

bool X11Device::UsesSharedMemory() const {
    return state_->sharedMemory;
}

uint32_t X11Device::GetCloseAtom() const {
    return state_->closeAtom;
}

void X11Device::SetTitle(const std::string& utf8Title) {
    if (!state_->Lost()) {
        x11::SetWindowTitle(state_->connection, state_->window, utf8Title);
    }
}

ulo::ErrorCode X11Device::Finish() {
    State& s = *state_;
    if (!s.Lost()) {
        for (int slot = 0; slot < kSlots; ++slot) {
            s.Settle(slot);
        }
        s.Lost();
    }
    ulo::ErrorCode error = s.firstError;
    s.firstError = ulo::ErrorCode::noError();
    return error;
}

CLR X11Device::GetPixel(int x, int y) const {
    const State& s = *state_;
    if (s.snapshot != nullptr && s.snapshotArea.Contains(ULOPoint(x, y))) {
        const size_t index =
            static_cast<size_t>(y - s.snapshotArea.top) * static_cast<size_t>(s.snapshotArea.Width()) +
            static_cast<size_t>(x - s.snapshotArea.left);
        return ColourAt(xcb_get_image_data(s.snapshot.get()) + index * 4);
    }
    if (x < 0 || y < 0 || x > kCoordinateLimit || y > kCoordinateLimit ||
        xcb_connection_has_error(s.connection)) {
        return kWhite;
    }
    const ImageReply reply = s.ReadImage(x, y, 1, 1);
    return reply != nullptr ? ColourAt(xcb_get_image_data(reply.get())) : kWhite;
}

void X11Device::ReadAhead(const ULORect& area) {
    State& s = *state_;
    s.snapshot.reset();
    if (s.Lost()) {
        return;
    }
    std::unique_ptr<xcb_get_geometry_reply_t, decltype(&std::free)> geometry(
        xcb_get_geometry_reply(s.connection, xcb_get_geometry(s.connection, s.window), nullptr), &std::free);
    if (geometry == nullptr) {
        return;
    }
    const ULORect inside(std::max(area.left, 0), std::max(area.top, 0),
                         std::min<int>(area.right, geometry->width),
                         std::min<int>(area.bottom, geometry->height));
    if (inside.IsEmpty()) {
        return;
    }
    // Where the window cannot be read as a whole (partly off the screen), GetPixel reads point by point.
    s.snapshot = s.ReadImage(inside.left, inside.top, inside.Width(), inside.Height());
    s.snapshotArea = inside;
}

int X11Device::CopyBits(int destX, int destY, int width, int height, int srcX, int srcY, int startScan,
                        int scanLines, const void* bits, const BitmapInfoHeader& header, unsigned colorUse) {
    State& s = *state_;
    s.snapshot.reset();
    if (s.Lost()) {
        return 0;
    }
    const DeviceCopy copy = PlanDeviceCopy(
        {destX, destY, width, height, srcX, srcY, startScan, scanLines, bits, header, colorUse},
        kCoordinateLimit, kCoordinateLimit);
    if (copy.IsEmpty()) {
        return 0;
    }
    if (s.sharedMemory) {
        const Band band = BandOf(copy, kBandBytes);
        if (!s.ReserveSegments(static_cast<size_t>(band.columns) * static_cast<size_t>(band.rows) * 4)) {
            s.SendPlainFromNowOn();
        }
    }
    const Band band = BandOf(copy, s.sharedMemory ? kBandBytes : s.plainBandBytes);
    for (int row = 0; row < copy.height; row += band.rows) {
        for (int column = 0; column < copy.width; column += band.columns) {
            s.Put(copy, column, row,
                  Band{std::min(band.columns, copy.width - column), std::min(band.rows, copy.height - row)});
        }
    }
    return copy.height;
}

}  // namespace platform
}  // namespace ulogui
