#pragma once
// The Windows handle and value types that appear in the library's interface. On Windows they are
// the real ones; elsewhere portable stand-ins, where each handle points to an object of the
// platform layer (ulogui/platform).
#if defined(_WIN32)
// The types only (windef.h, wingdi.h): HDC, HFONT, HINSTANCE, FIXED, POINTFX. The rest of
// windows.h, with its user-interface macros, is left to the host.
#include <windef.h>
#include <wingdi.h>
#else
#include <cstdint>

namespace ulogui {
namespace platform {
class Device;        // something pixels can be read from and copied to (memory framebuffer, window)
class PlatformFont;  // a font created by the platform font engine
}  // namespace platform
}  // namespace ulogui

using HDC = ulogui::platform::Device*;
using HFONT = ulogui::platform::PlatformFont*;
using HINSTANCE = void*;

// 16.16 fixed-point number, as glyph outlines deliver coordinates.
struct FIXED {
    uint16_t fract = 0;
    int16_t value = 0;
};

struct tagPOINTFX {
    FIXED x;
    FIXED y;
};
using POINTFX = tagPOINTFX;
#endif
