#include "GalleryWindow.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "GalleryError.h"
#include "Sheets.h"
#include "ulogui/X11Device.h"

namespace gallery {
namespace {

using ulogui::platform::X11Device;

// A changed frame is compared with the one shown in tiles of this many device pixels a side; only
// tiles that differ are sent (adjacent ones in a row as one rectangle).
constexpr int kTile = 64;

// The keys (X keysyms: Latin letters are their lower-case ASCII codes).
constexpr uint32_t kKeyEscape = 0xFF1B;
constexpr uint32_t kKeySheet = 's';
constexpr uint32_t kKeyMagnification = 'm';
constexpr uint32_t kKeyLanguage = 'l';

// The first keysym of every keycode, so that a key press can be told by its symbol.
class KeyMap {
public:
    explicit KeyMap(xcb_connection_t* connection) {
        const xcb_setup_t* setup = xcb_get_setup(connection);
        first_ = setup->min_keycode;
        const int count = setup->max_keycode - setup->min_keycode + 1;
        xcb_get_keyboard_mapping_reply_t* reply = xcb_get_keyboard_mapping_reply(
            connection, xcb_get_keyboard_mapping(connection, setup->min_keycode, static_cast<uint8_t>(count)),
            nullptr);
        if (reply != nullptr && reply->keysyms_per_keycode > 0) {
            const xcb_keysym_t* syms = xcb_get_keyboard_mapping_keysyms(reply);
            const int length = xcb_get_keyboard_mapping_keysyms_length(reply);
            for (int k = 0; k < count && k * reply->keysyms_per_keycode < length; ++k) {
                symbols_.push_back(syms[k * reply->keysyms_per_keycode]);
            }
        }
        std::free(reply);
    }

    // Upper-case Latin letters as lower case; 0 for a keycode without a symbol.
    uint32_t SymbolOf(uint8_t keycode) const {
        const int index = keycode - first_;
        if (index < 0 || index >= static_cast<int>(symbols_.size())) {
            return 0;
        }
        const uint32_t symbol = symbols_[static_cast<size_t>(index)];
        return symbol >= 'A' && symbol <= 'Z' ? symbol + ('a' - 'A') : symbol;
    }

private:
    int first_ = 0;
    std::vector<uint32_t> symbols_;
};

ULORect Intersection(const ULORect& a, const ULORect& b) {
    const ULORect r(std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                    std::min(a.bottom, b.bottom));
    return r.left < r.right && r.top < r.bottom ? r : ULORect(0, 0, 0, 0);
}

bool Contains(const ULORect& outer, const ULORect& inner) {
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

ULORect Bounds(const ULOPictureBits& bits) {
    return ULORect(0, 0, bits.GetWidth(true), bits.GetHeight(true));
}

// Whether `area` (inside both) holds the same pixels in both buffers.
bool SamePixels(const ULOPictureBits& a, const ULOPictureBits& b, const ULORect& area) {
    const size_t bytes = static_cast<size_t>(area.right - area.left) * 4;
    for (int y = area.top; y < area.bottom; ++y) {
        if (std::memcmp(a.GetBits(area.left, y), b.GetBits(area.left, y), bytes) != 0) {
            return false;
        }
    }
    return true;
}

class GalleryWindow {
public:
    GalleryWindow(const GalleryResources& resources, std::unique_ptr<X11Device> device)
        : resources_(resources),
          device_(std::move(device)),
          connection_(device_->GetConnection()),
          keys_(connection_) {}

    int Run() {
        ShowTitle();
        for (;;) {
            xcb_generic_event_t* event = xcb_wait_for_event(connection_);
            if (event == nullptr) {
                throw GalleryError("the connection to the X display was lost");
            }
            const bool goOn = Handle(*event);
            std::free(event);
            if (!goOn) {
                return 0;
            }
        }
    }

private:
    bool Handle(const xcb_generic_event_t& event) {
        switch (event.response_type & 0x7F) {
            case XCB_EXPOSE: {
                // Also the first frame: nothing is drawn before the window is viewable. A resize
                // uncovers (or, by the window's default gravity, clears) what must be drawn again, so
                // it arrives here too.
                const auto& e = reinterpret_cast<const xcb_expose_event_t&>(event);
                if (shown_ == nullptr) {
                    ShowFrame();
                } else {
                    const ULORect area = Intersection(ULORect(e.x, e.y, e.x + e.width, e.y + e.height),
                                                      Bounds(shown_->GetRawPictureBits()));
                    if (area.right > area.left) {
                        shown_->GetRawPictureBits().SetToDevice(device_.get(), &area, 0, 0);
                    }
                }
                break;
            }
            case XCB_KEY_PRESS: {
                const uint32_t symbol =
                    keys_.SymbolOf(reinterpret_cast<const xcb_key_press_event_t&>(event).detail);
                if (symbol == kKeyEscape) {
                    return false;
                }
                // Each key steps its choice on to the next, round to the first.
                const struct {
                    uint32_t key;
                    size_t* choice;
                    size_t count;
                } cycles[] = {{kKeySheet, &sheet_, Sheets().size()},
                              {kKeyMagnification, &magnification_, resources_.magnifications.size()},
                              {kKeyLanguage, &language_, resources_.languages.size()}};
                for (const auto& cycle : cycles) {
                    if (cycle.key == symbol && shown_ != nullptr) {
                        *cycle.choice = (*cycle.choice + 1) % cycle.count;
                        ShowTitle();
                        ShowFrame();
                    }
                }
                break;
            }
            case XCB_CLIENT_MESSAGE:
                return reinterpret_cast<const xcb_client_message_event_t&>(event).data.data32[0] !=
                       device_->GetCloseAtom();
            default:
                break;
        }
        return true;
    }

    void ShowTitle() {
        const LanguageResources& language = resources_.languages[language_];
        // 1.0, 1.25, 1.5, 2.0
        char magnification[16];
        std::snprintf(magnification, sizeof magnification, "%.2f", resources_.magnifications[magnification_]);
        const size_t length = std::strlen(magnification);
        if (length > 3 && magnification[length - 1] == '0') {
            magnification[length - 1] = '\0';
        }
        device_->SetTitle("ulogallery: " + language.texts.Get(Sheets()[sheet_].titleKey).ToUtf8() + ", " +
                          language.texts.Get("language.name").ToUtf8() + ", " + magnification +
                          " \xE2\x80\x94 S sheet, M magnification, L language, Esc quit");
    }

    // Renders the current look and sends the tiles that differ from the frame shown; what the
    // previous frame covered beyond the new one goes back to the window's background.
    void ShowFrame() {
        const Sheet& sheet = Sheets()[sheet_];
        std::unique_ptr<ULOTrueColorDCBase> next =
            RenderSheet(sheet, LookOf(resources_, language_, magnification_));
        ULOPictureBits now = next->GetRawPictureBits();
        const ULORect bounds = Bounds(now);
        int sent = 0, tiles = 0;
        if (shown_ == nullptr) {
            now.SetToDevice(device_.get(), nullptr, 0, 0);
            tiles = sent = ((bounds.right + kTile - 1) / kTile) * ((bounds.bottom + kTile - 1) / kTile);
        } else {
            const ULOPictureBits before = shown_->GetRawPictureBits();
            const ULORect common = Intersection(bounds, Bounds(before));
            ClearBeyond(bounds, Bounds(before));
            for (int top = 0; top < bounds.bottom; top += kTile) {
                ULORect run(0, 0, 0, 0);  // differing tiles next to each other in this row
                const auto send = [&]() {
                    if (run.right > run.left) {
                        now.SetToDevice(device_.get(), &run, 0, 0);
                    }
                    run = ULORect(0, 0, 0, 0);
                };
                for (int left = 0; left < bounds.right; left += kTile) {
                    const ULORect tile = Intersection(ULORect(left, top, left + kTile, top + kTile), bounds);
                    ++tiles;
                    if (Contains(common, tile) && SamePixels(now, before, tile)) {
                        send();
                        continue;
                    }
                    ++sent;
                    run = run.right > run.left ? ULORect(run.left, run.top, tile.right, tile.bottom) : tile;
                }
                send();
            }
        }
        const ulo::ErrorCode error = device_->Finish();
        if (error.IsError()) {
            throw GalleryError(error.GetMessage().ToUtf8());
        }
        // Finish waits for the device's own requests; a round trip covers the clears too, so that the
        // frame is on the screen when the line below says so.
        std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        shown_ = std::move(next);
        const std::string name =
            SheetFileName(sheet, resources_.languages[language_], resources_.magnifications[magnification_]);
        std::printf("shown %s: %d of %d tiles sent\n", name.substr(0, name.size() - 4).c_str(), sent, tiles);
        std::fflush(stdout);
    }

    void ClearBeyond(const ULORect& now, const ULORect& before) {
        const xcb_window_t window = device_->GetWindow();
        if (before.right > now.right) {
            xcb_clear_area(connection_, 0, window, static_cast<int16_t>(now.right), 0,
                           static_cast<uint16_t>(before.right - now.right),
                           static_cast<uint16_t>(before.bottom));
        }
        if (before.bottom > now.bottom) {
            xcb_clear_area(connection_, 0, window, 0, static_cast<int16_t>(now.bottom),
                           static_cast<uint16_t>(std::min(before.right, now.right)),
                           static_cast<uint16_t>(before.bottom - now.bottom));
        }
    }

    const GalleryResources& resources_;
    std::unique_ptr<X11Device> device_;
    xcb_connection_t* connection_;
    KeyMap keys_;
    size_t sheet_ = 0;
    size_t language_ = 0;
    size_t magnification_ = 0;
    std::unique_ptr<ULOTrueColorDCBase> shown_;
};

}  // namespace

int RunGalleryWindow(const GalleryResources& resources, const std::string& display) {
    // Large enough for every sheet at the largest magnification loaded.
    float largest = 1.0f;
    for (const float m : resources.magnifications) {
        largest = std::max(largest, m);
    }
    int width = 1, height = 1;
    for (const Sheet& sheet : Sheets()) {
        width = std::max(width, static_cast<int>(sheet.width * largest + 0.5f));
        height = std::max(height, static_cast<int>(sheet.height * largest + 0.5f));
    }
    std::unique_ptr<X11Device> device;
    const ulo::ErrorCode error = X11Device::OpenWindow(display.empty() ? nullptr : display.c_str(), width,
                                                       height, "ulogallery", device);
    if (error.IsError()) {
        throw GalleryError(error.GetMessage().ToUtf8());
    }
    return GalleryWindow(resources, std::move(device)).Run();
}

}  // namespace gallery
