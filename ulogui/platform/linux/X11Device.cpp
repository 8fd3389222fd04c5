// The X11 device: a window on an X server that pixel buffers are shown on.
#include "ulogui/X11Device.h"

#include <algorithm>
#include <string>

#include "platform/linux/X11DeviceState.h"
#include "platform/linux/X11Failure.h"

namespace ulogui {
namespace platform {

namespace {

const CLR kWhite(255, 255, 255);

CLR ColourAt(const uint8_t* pixel) {
    return CLR(pixel[2], pixel[1], pixel[0]);
}

}  // namespace

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
    if (width < 1 || height < 1 || width > x11::kCoordinateLimit || height > x11::kCoordinateLimit) {
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
        for (int slot = 0; slot < x11::kSlots; ++slot) {
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
    if (x < 0 || y < 0 || x > x11::kCoordinateLimit || y > x11::kCoordinateLimit ||
        xcb_connection_has_error(s.connection)) {
        return kWhite;
    }
    const x11::ImageReply reply = s.ReadImage(x, y, 1, 1);
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
        x11::kCoordinateLimit, x11::kCoordinateLimit);
    if (copy.IsEmpty()) {
        return 0;
    }
    if (s.sharedMemory) {
        const x11::Band band = x11::BandOf(copy, x11::kBandBytes);
        if (!s.ReserveSegments(static_cast<size_t>(band.columns) * static_cast<size_t>(band.rows) * 4)) {
            s.SendPlainFromNowOn();
        }
    }
    const x11::Band band = x11::BandOf(copy, s.sharedMemory ? x11::kBandBytes : s.plainBandBytes);
    for (int row = 0; row < copy.height; row += band.rows) {
        for (int column = 0; column < copy.width; column += band.columns) {
            s.Put(copy, column, row,
                  x11::Band{std::min(band.columns, copy.width - column),
                            std::min(band.rows, copy.height - row)});
        }
    }
    return copy.height;
}

}  // namespace platform
}  // namespace ulogui
