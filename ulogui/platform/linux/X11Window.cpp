// Connecting to a display, checking a window's visual, making a top-level window.
#include "platform/linux/X11Window.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/linux/X11Failure.h"

namespace ulogui {
namespace platform {
namespace x11 {

namespace {

template <class T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

template <class T>
Reply<T> Own(T* reply) {
    return Reply<T>(reply, &std::free);
}

std::string Quoted(const char* display) {
    return display != nullptr ? "\"" + std::string(display) + "\"" : std::string("(the default display)");
}

const char* WhyNoConnection(int xcbError) {
    switch (xcbError) {
        case XCB_CONN_CLOSED_PARSE_ERR:
            return "the display name is empty or not valid";
        case XCB_CONN_CLOSED_INVALID_SCREEN:
            return "the display has no such screen";
        case XCB_CONN_CLOSED_MEM_INSUFFICIENT:
            return "out of memory";
        default:
            return "no X server answers there, or it refused the connection";
    }
}

xcb_screen_t* ScreenAt(xcb_connection_t* connection, int index) {
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; it.rem > 0; xcb_screen_next(&it), ++i) {
        if (i == index) {
            return it.data;
        }
    }
    return nullptr;
}

const xcb_visualtype_t* FindVisual(xcb_connection_t* connection, xcb_visualid_t id, uint8_t depth) {
    for (xcb_screen_iterator_t s = xcb_setup_roots_iterator(xcb_get_setup(connection)); s.rem > 0;
         xcb_screen_next(&s)) {
        for (xcb_depth_iterator_t d = xcb_screen_allowed_depths_iterator(s.data); d.rem > 0;
             xcb_depth_next(&d)) {
            if (d.data->depth != depth) {
                continue;
            }
            for (xcb_visualtype_iterator_t v = xcb_depth_visuals_iterator(d.data); v.rem > 0;
                 xcb_visualtype_next(&v)) {
                if (v.data->visual_id == id) {
                    return v.data;
                }
            }
        }
    }
    return nullptr;
}

// Whether images of `depth` are 32 bits a pixel, least significant byte first: blue, green, red, X.
bool PixelsAreBgrx(xcb_connection_t* connection, uint8_t depth) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    if (setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST) {
        return false;
    }
    for (xcb_format_iterator_t f = xcb_setup_pixmap_formats_iterator(setup); f.rem > 0; xcb_format_next(&f)) {
        if (f.data->depth == depth) {
            return f.data->bits_per_pixel == 32;
        }
    }
    return false;
}

xcb_atom_t Atom(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie) {
    auto reply = Own(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_intern_atom_cookie_t Intern(xcb_connection_t* connection, const char* name) {
    return xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name);
}

}  // namespace

ulo::ErrorCode Connect(const char* display, xcb_connection_t*& connection, int& screen) {
    screen = 0;
    connection = xcb_connect(display, &screen);
    if (const int error = xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);  // a failed connection is still an object to free
        connection = nullptr;
        return Failure(kNoDisplay,
                       "No X display was found at " + Quoted(display) + ": " + WhyNoConnection(error),
                       "ulogui::platform::x11::Connect", __LINE__);
    }
    return ulo::ErrorCode::noError();
}

ulo::ErrorCode DescribeWindow(xcb_connection_t* connection, xcb_window_t window, WindowFormat& format) {
    const auto attributesCookie = xcb_get_window_attributes(connection, window);
    const auto geometryCookie = xcb_get_geometry(connection, window);
    auto attributes = Own(xcb_get_window_attributes_reply(connection, attributesCookie, nullptr));
    auto geometry = Own(xcb_get_geometry_reply(connection, geometryCookie, nullptr));
    if (attributes == nullptr || geometry == nullptr) {
        return Failure(kNotAWindow, "X window " + std::to_string(window) + " does not exist",
                       "ulogui::platform::x11::DescribeWindow", __LINE__);
    }
    const xcb_visualtype_t* visual = FindVisual(connection, attributes->visual, geometry->depth);
    const bool trueColour = visual != nullptr && visual->_class == XCB_VISUAL_CLASS_TRUE_COLOR &&
                            visual->red_mask == 0xFF0000 && visual->green_mask == 0xFF00 &&
                            visual->blue_mask == 0xFF;
    if (attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT || !trueColour ||
        (geometry->depth != 24 && geometry->depth != 32) || !PixelsAreBgrx(connection, geometry->depth)) {
        return Failure(kUnsupported,
                       "X window " + std::to_string(window) +
                           " is not 24- or 32-bit true colour with 32-bit pixels in the device's byte order",
                       "ulogui::platform::x11::DescribeWindow", __LINE__);
    }
    format.depth = geometry->depth;
    format.opaqueBits = geometry->depth == 32 ? 0xFF000000u : 0;
    return ulo::ErrorCode::noError();
}

ulo::ErrorCode CreateTopLevelWindow(xcb_connection_t* connection, int screenIndex, int width, int height,
                                    xcb_window_t& window, uint32_t& closeAtom) {
    xcb_screen_t* screen = ScreenAt(connection, screenIndex);
    if (screen == nullptr) {
        return Failure(kNoDisplay, "the X display has no screen " + std::to_string(screenIndex),
                       "ulogui::platform::x11::CreateTopLevelWindow", __LINE__);
    }
    const auto protocolsCookie = Intern(connection, "WM_PROTOCOLS");
    const auto deleteCookie = Intern(connection, "WM_DELETE_WINDOW");
    window = xcb_generate_id(connection);
    const uint32_t values[] = {screen->black_pixel, XCB_EVENT_MASK_EXPOSURE |
                                                        XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                                        XCB_EVENT_MASK_KEY_PRESS};
    const xcb_void_cookie_t created = xcb_create_window_checked(
        connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, static_cast<uint16_t>(width),
        static_cast<uint16_t>(height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
        XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    const xcb_atom_t protocols = Atom(connection, protocolsCookie);
    closeAtom = Atom(connection, deleteCookie);
    if (auto error = Own(xcb_request_check(connection, created))) {
        window = 0;
        return Failure(
            error->error_code == XCB_ALLOC ? kOutOfMemory : kServerError,
            "the X server could not create a window (X error " + std::to_string(error->error_code) + ")",
            "ulogui::platform::x11::CreateTopLevelWindow", __LINE__);
    }
    if (protocols != XCB_ATOM_NONE && closeAtom != XCB_ATOM_NONE) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, protocols, XCB_ATOM_ATOM, 32, 1,
                            &closeAtom);
    }
    xcb_map_window(connection, window);
    xcb_flush(connection);
    return ulo::ErrorCode::noError();
}

void SetWindowTitle(xcb_connection_t* connection, xcb_window_t window, const std::string& utf8Title) {
    const auto nameCookie = Intern(connection, "_NET_WM_NAME");
    const auto utf8Cookie = Intern(connection, "UTF8_STRING");
    const xcb_atom_t netName = Atom(connection, nameCookie);
    const xcb_atom_t utf8 = Atom(connection, utf8Cookie);
    const auto length = static_cast<uint32_t>(utf8Title.size());
    // The window manager's own name property first; the old one for those that read only that.
    if (netName != XCB_ATOM_NONE && utf8 != XCB_ATOM_NONE) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, netName, utf8, 8, length,
                            utf8Title.data());
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME,
                        utf8 != XCB_ATOM_NONE ? utf8 : xcb_atom_t{XCB_ATOM_STRING}, 8, length,
                        utf8Title.data());
    xcb_flush(connection);
}

}  // namespace x11
}  // namespace platform
}  // namespace ulogui
