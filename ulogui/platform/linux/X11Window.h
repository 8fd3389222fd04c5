#pragma once
// Connecting to an X display, and what the X11 device needs to know about a window: whether it can
// draw on it, and how its pixels are laid out.
#include <xcb/xcb.h>

#include <cstdint>
#include <string>

#include "ulolib/ErrorCode.h"

namespace ulogui {
namespace platform {
namespace x11 {

// How the device's pixels (blue, green, red, one more byte) are sent to a window.
struct WindowFormat {
    uint8_t depth = 24;
    uint32_t opaqueBits = 0;  // or-ed into every pixel: the alpha byte of a 32-bit window, kept opaque
};

// Connects to `display` (null: the X library's default). On failure `connection` is null.
ulo::ErrorCode Connect(const char* display, xcb_connection_t*& connection, int& screen);

// Checks that `window` exists and is true colour with 8 bits a channel in 32-bit pixels, laid out
// blue, green, red, X in memory as the device's pixels are.
ulo::ErrorCode DescribeWindow(xcb_connection_t* connection, xcb_window_t window, WindowFormat& format);

// Creates and maps a top-level window on `screen` that reports exposure, structure changes and keys,
// and asks the window manager for close requests instead of being killed.
ulo::ErrorCode CreateTopLevelWindow(xcb_connection_t* connection, int screen, int width, int height,
                                    xcb_window_t& window, uint32_t& closeAtom);

void SetWindowTitle(xcb_connection_t* connection, xcb_window_t window, const std::string& utf8Title);

}  // namespace x11
}  // namespace platform
}  // namespace ulogui
