#pragma once
// Portable stand-ins for the Windows handle and value types that appear in the library's
// interface. On Linux each handle points to an object of the platform layer (ulogui/platform).
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
