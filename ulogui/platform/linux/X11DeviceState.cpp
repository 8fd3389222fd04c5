// The X11 device's state: sending bands of pixels, waiting for the server, reading pixels back.
#include "platform/linux/X11DeviceState.h"

#include <xcb/shm.h>

#include <algorithm>
#include <string>

#include "platform/linux/X11Failure.h"
#include "platform/linux/X11PixelRows.h"

namespace ulogui {
namespace platform {

namespace x11 {

Band BandOf(const DeviceCopy& copy, size_t limitBytes) {
    const size_t columns =
        std::min<size_t>(static_cast<size_t>(copy.width), std::max<size_t>(limitBytes / 4, 1));
    const size_t rows =
        std::min<size_t>(static_cast<size_t>(copy.height), std::max<size_t>(limitBytes / (columns * 4), 1));
    return Band{static_cast<int>(columns), static_cast<int>(rows)};
}

}  // namespace x11

namespace {
constexpr size_t kRequestHeaderBytes = 32;  // a put request's fields, with the long-length word
}  // namespace

X11Device::State::~State() {
    if (connection == nullptr) {
        return;
    }
    if (!xcb_connection_has_error(connection)) {
        for (int slot = 0; slot < x11::kSlots; ++slot) {
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

bool X11Device::State::Lost() {
    if (!xcb_connection_has_error(connection)) {
        return false;
    }
    Record(x11::Failure(x11::kNoDisplay, "the connection to the X display was lost",
                        "ulogui::platform::X11Device", __LINE__));
    return true;
}

void X11Device::State::Record(const ulo::ErrorCode& error) {
    if (firstError.IsOk()) {
        firstError = error;
    }
}

void X11Device::State::Settle(int slot) {
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

bool X11Device::State::ReserveSegments(size_t bytes) {
    for (int slot = 0; slot < x11::kSlots; ++slot) {
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

void X11Device::State::SendPlainFromNowOn() {
    for (int slot = 0; slot < x11::kSlots; ++slot) {
        Settle(slot);
        segments[slot].Release();
    }
    sharedMemory = false;
}

void X11Device::State::Put(const DeviceCopy& copy, int column, int row, x11::Band band) {
    const int slot = nextSlot;
    nextSlot = (nextSlot + 1) % x11::kSlots;
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
                                        format.depth, XCB_IMAGE_FORMAT_Z_PIXMAP, 0, segments[slot].Id(), 0)
            : xcb_put_image_checked(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, gc, columns, rows, x, y, 0,
                                    format.depth, static_cast<uint32_t>(bytes), target));
    fence[slot] = xcb_get_input_focus(connection);
    // Sent now, so that the server draws this band while the next one is being prepared.
    xcb_flush(connection);
}

ulo::ErrorCode X11Device::State::Start(const X11DeviceOptions& options) {
    if (auto error = x11::DescribeWindow(connection, window, format); error.IsError()) {
        return error;
    }
    gc = xcb_generate_id(connection);
    const uint32_t noExposures = 0;  // puts must not flood the host with exposure events
    xcb_create_gc(connection, gc, window, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    sharedMemory = options.sharedMemory && x11::ServerTakesSharedMemory(connection);
    const size_t requestBytes = static_cast<size_t>(xcb_get_maximum_request_length(connection)) * 4;
    plainBandBytes = std::min(x11::kBandBytes,
                              requestBytes > kRequestHeaderBytes ? requestBytes - kRequestHeaderBytes : 4);
    return ulo::ErrorCode::noError();
}

x11::ImageReply X11Device::State::ReadImage(int x, int y, int width, int height) const {
    xcb_generic_error_t* error = nullptr;
    x11::ImageReply reply(
        xcb_get_image_reply(connection,
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

}  // namespace platform
}  // namespace ulogui
