#pragma once
// The native outline buffer of GetGlyphOutlineW (GGO_NATIVE) read into a GlyphOutline: polygon
// records (TTPOLYGONHEADER: byte count, type, start point), each followed by curve records
// (TTPOLYCURVE: type, point count, points) up to its byte count.
#include <cstddef>
#include <cstdint>

#include "platform/FontEngine.h"

namespace ulogui {
namespace platform {
namespace gdi {

// Reads size bytes of records into out (cleared first). Records that claim more bytes than are
// left, or fewer than their own header, end the reading: what was read before them is kept.
void ReadNativeOutline(const uint8_t* buffer, size_t size, GlyphOutline& out);

}  // namespace gdi
}  // namespace platform
}  // namespace ulogui
