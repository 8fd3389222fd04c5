#pragma once
// A window on an X server as a device for ULOPictureBits::SetToDevice (Linux builds only).
//
// Pixels go to the window with the MIT-SHM extension where the server offers it (one copy into memory
// the server reads itself), and as plain image requests otherwise. The window must be 24-bit true
// colour (or 32-bit, whose alpha the device keeps opaque); docs/x11-device.md shows a host's window loop.
//
// Drawing is asynchronous, as all X drawing is: CopyBits returns once the pixels are on their way and
// the caller's buffer is free again; Finish waits until the server has drawn them. One thread uses a
// device at a time.
#include <cstdint>
#include <memory>
#include <string>

#include "ulogui/Device.h"
#include "ulogui/Export.h"
#include "ulolib/ErrorCode.h"

struct xcb_connection_t;

namespace ulogui {
namespace platform {

struct X11DeviceOptions {
    // Send pixels through MIT-SHM when the server offers it; false always sends plain image requests.
    bool sharedMemory = true;
};

class ULODRAW_API X11Device : public Device {
public:
    // Draws on `window` through the host's own connection, which must outlive the device.
    static ulo::ErrorCode Attach(xcb_connection_t* connection, uint32_t window,
                                 std::unique_ptr<X11Device>& device,
                                 const X11DeviceOptions& options = X11DeviceOptions());
    // Connects to `display` (":0"; null: the X library's default) and draws on `window` of that display,
    // made by any client (an Xlib host passes DisplayString(display) and its Window).
    static ulo::ErrorCode Open(const char* display, uint32_t window, std::unique_ptr<X11Device>& device,
                               const X11DeviceOptions& options = X11DeviceOptions());
    // Connects to `display`, creates a top-level window of width x height pixels with a black
    // background and the title `utf8Title`, and maps it. The window belongs to the device; its events
    // (exposure, structure changes, keys, the window manager's close request) arrive on GetConnection().
    static ulo::ErrorCode OpenWindow(const char* display, int width, int height, const std::string& utf8Title,
                                     std::unique_ptr<X11Device>& device,
                                     const X11DeviceOptions& options = X11DeviceOptions());

    ~X11Device() override;
    X11Device(const X11Device&) = delete;
    X11Device& operator=(const X11Device&) = delete;

    xcb_connection_t* GetConnection() const;
    uint32_t GetWindow() const;
    // Whether pixels go through MIT-SHM (false when the server lacks it or refused the memory).
    bool UsesSharedMemory() const;
    // The atom of the window manager's close request (WM_DELETE_WINDOW) for a window made by
    // OpenWindow: a client message whose first value is this atom asks the host to close. 0 otherwise.
    uint32_t GetCloseAtom() const;
    void SetTitle(const std::string& utf8Title);

    // Waits until the server has handled everything sent so far. Returns the first error the server
    // reported for the device's requests since the previous Finish (a window that no longer exists, a
    // lost connection), or no error.
    ulo::ErrorCode Finish();

    // The colour the window shows at (x, y): white outside the window, where it is not viewable, or
    // when the server does not answer.
    CLR GetPixel(int x, int y) const override;
    // Reads the part of `area` inside the window in one request.
    void ReadAhead(const ULORect& area) override;
    // Accepts what the memory device accepts (uncompressed bottom-up 32-bit RGB) and sends the pixels
    // inside the window's coordinate space (0 to 32767); the server clips to the window. Returns the
    // number of rows sent.
    int CopyBits(int destX, int destY, int width, int height, int srcX, int srcY, int startScan,
                 int scanLines, const void* bits, const BitmapInfoHeader& header, unsigned colorUse) override;

private:
    struct State;
    explicit X11Device(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace platform
}  // namespace ulogui
