// ulogallery --window on a private Xvfb, driven the way a user drives it: keys, a resize, the window
// manager's close request. After every frame the window, read back from the server, must hold exactly
// the PNG the gallery writes for the same sheet, language and magnification, and black beyond it.
// usage: gallery_window_test ULOGALLERY RESOURCES
#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "ImageCompare.h"
#include "platform/linux/XvfbServer.h"

namespace {

const char kLooks[] = " -l en -l fr -m 1.0 -m 1.25";

xcb_keycode_t KeycodeOf(xcb_connection_t* connection, xcb_keysym_t symbol) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const int count = setup->max_keycode - setup->min_keycode + 1;
    xcb_get_keyboard_mapping_reply_t* reply = xcb_get_keyboard_mapping_reply(
        connection, xcb_get_keyboard_mapping(connection, setup->min_keycode, static_cast<uint8_t>(count)),
        nullptr);
    xcb_keycode_t found = 0;
    if (reply != nullptr) {
        const xcb_keysym_t* syms = xcb_get_keyboard_mapping_keysyms(reply);
        for (int k = 0; k < count && found == 0; ++k) {
            if (syms[k * reply->keysyms_per_keycode] == symbol) {
                found = static_cast<xcb_keycode_t>(setup->min_keycode + k);
            }
        }
    }
    std::free(reply);
    return found;
}

xcb_atom_t Atom(xcb_connection_t* connection, const char* name) {
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr);
    const xcb_atom_t atom = reply != nullptr ? reply->atom : 0;
    std::free(reply);
    return atom;
}

// The one top-level window on the server (there is no window manager) and its title.
xcb_window_t GalleryWindow(xcb_connection_t* connection, std::string& title) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_query_tree_reply_t* tree =
        xcb_query_tree_reply(connection, xcb_query_tree(connection, root), nullptr);
    const xcb_window_t window =
        tree != nullptr && xcb_query_tree_children_length(tree) == 1 ? xcb_query_tree_children(tree)[0] : 0;
    std::free(tree);
    xcb_get_property_reply_t* name =
        xcb_get_property_reply(connection,
                               xcb_get_property(connection, 0, window, Atom(connection, "_NET_WM_NAME"),
                                                XCB_GET_PROPERTY_TYPE_ANY, 0, 256),
                               nullptr);
    if (name != nullptr) {
        title.assign(static_cast<const char*>(xcb_get_property_value(name)),
                     xcb_get_property_value_length(name));
    }
    std::free(name);
    return window;
}

// Differing pixels between the window and the sheet's PNG (placed at the top left, black beyond).
long CompareWindow(xcb_connection_t* connection, xcb_window_t window, const std::string& png) {
    gallery::RgbImage sheet;
    std::string error;
    if (!gallery::ReadRgbPng(png, sheet, error)) {
        std::printf("FAIL %s\n", error.c_str());
        return -1;
    }
    xcb_get_geometry_reply_t* geometry =
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr);
    const int width = geometry != nullptr ? geometry->width : 0,
              height = geometry != nullptr ? geometry->height : 0;
    std::free(geometry);
    xcb_get_image_reply_t* image =
        xcb_get_image_reply(connection,
                            xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0,
                                          static_cast<uint16_t>(width), static_cast<uint16_t>(height), ~0u),
                            nullptr);
    long differing = -1;
    if (image != nullptr && width >= sheet.width && height >= sheet.height &&
        xcb_get_image_data_length(image) == width * height * 4) {
        differing = 0;
        const uint8_t* shown = xcb_get_image_data(image);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x, shown += 4) {
                const bool inside = x < sheet.width && y < sheet.height;
                const uint8_t* rgb = &sheet.rgb[(static_cast<size_t>(y) * sheet.width + x) * 3];
                differing += inside ? shown[2] != rgb[0] || shown[1] != rgb[1] || shown[0] != rgb[2]
                                    : (shown[0] | shown[1] | shown[2]) != 0;
            }
        }
    }
    std::free(image);
    return differing;
}

struct Step {
    xcb_keysym_t key;
    bool resizeFirst;  // shrink and regrow the window before the key: only exposure redraws what stays
    const char* shown;
    bool partial;  // fewer tiles sent than the sheet has
};

// The first frame, then one key each; the magnifications cycle 1.0, 1.25, 1.0.
const Step kSteps[] = {
    {0, false, "buttons-en-100", false},  {'m', false, "buttons-en-125", false},
    {'l', false, "buttons-fr-125", true}, {'l', true, "buttons-en-125", true},
    {'s', false, "text-en-125", false},   {'m', false, "text-en-100", false},
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: gallery_window_test ULOGALLERY RESOURCES\n");
        return 2;
    }
    const std::string program = argv[1], resources = argv[2];
    char scratch[] = "/tmp/gallery-window-XXXXXX";
    ulotest::XvfbServer server(1400, 1000);
    if (mkdtemp(scratch) == nullptr || server.Display().empty() ||
        std::system((program + " -r " + resources + " -o " + scratch + kLooks + " >/dev/null").c_str()) !=
            0) {
        std::printf("FAIL no sheets rendered or no Xvfb: %s\n", server.Problem().c_str());
        return 1;
    }
    xcb_connection_t* connection = xcb_connect(server.Display().c_str(), nullptr);
    // A program that never answers or never ends is caught by the test's time limit.
    FILE* gallery = popen(
        (program + " --window --display " + server.Display() + " -r " + resources + kLooks).c_str(), "r");
    if (xcb_connection_has_error(connection) || gallery == nullptr) {
        return 1;
    }

    int failures = 0;
    xcb_window_t shownIn = 0;
    for (const Step& step : kSteps) {
        if (step.resizeFirst) {
            xcb_get_geometry_reply_t* geometry =
                xcb_get_geometry_reply(connection, xcb_get_geometry(connection, shownIn), nullptr);
            const uint32_t small[] = {200, 100};
            const uint32_t large[] = {geometry != nullptr ? geometry->width : 1u,
                                      geometry != nullptr ? geometry->height : 1u};
            std::free(geometry);
            xcb_configure_window(connection, shownIn, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                                 small);
            xcb_configure_window(connection, shownIn, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                                 large);
        }
        if (step.key != 0) {
            xcb_key_press_event_t press{};
            press.response_type = XCB_KEY_PRESS;
            press.detail = KeycodeOf(connection, step.key);
            press.event = shownIn;
            press.same_screen = 1;
            xcb_send_event(connection, 0, shownIn, XCB_EVENT_MASK_KEY_PRESS,
                           reinterpret_cast<const char*>(&press));
            xcb_flush(connection);
        }
        char buffer[256] = "";
        std::string line = std::fgets(buffer, sizeof buffer, gallery) != nullptr ? buffer : "";
        line = line.substr(0, line.find('\n'));
        std::string title;
        shownIn = GalleryWindow(connection, title);
        // "shown buttons-en-100: 12 of 40 tiles sent"
        int sent = 0, tiles = 0;
        const bool named = line.rfind("shown " + std::string(step.shown) + ":", 0) == 0 &&
                           std::sscanf(line.c_str() + line.find(':'), ": %d of %d", &sent, &tiles) == 2;
        const long differing =
            CompareWindow(connection, shownIn, std::string(scratch) + "/" + step.shown + ".png");
        const bool ok = named && differing == 0 && (sent < tiles) == step.partial &&
                        title.find("M magnification") != std::string::npos;
        std::printf("%s %s: \"%s\", %ld pixels differ, title \"%s\"\n", ok ? "ok  " : "FAIL", step.shown,
                    line.c_str(), differing, title.c_str());
        failures += ok ? 0 : 1;
    }

    // The window manager's close button ends the program cleanly.
    xcb_client_message_event_t closeRequest{};
    closeRequest.response_type = XCB_CLIENT_MESSAGE;
    closeRequest.format = 32;
    closeRequest.window = shownIn;
    closeRequest.type = Atom(connection, "WM_PROTOCOLS");
    closeRequest.data.data32[0] = Atom(connection, "WM_DELETE_WINDOW");
    xcb_send_event(connection, 0, shownIn, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&closeRequest));
    xcb_flush(connection);
    const int status = pclose(gallery);
    std::printf("%s closed: exit %d\n", status == 0 ? "ok  " : "FAIL", status);
    failures += status == 0 ? 0 : 1;
    xcb_disconnect(connection);
    std::system(("rm -rf " + std::string(scratch)).c_str());
    return failures == 0 ? 0 : 1;
}
