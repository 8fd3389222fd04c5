#pragma once
// The palette globals by index, for the code that copies the palette as a whole.
#include "ulogui/Palette.h"

namespace ulogui {
namespace base {

// Addresses of the 41 palette globals in palette order.
extern CLR* const kPaletteEntries[kPaletteSize];

}  // namespace base
}  // namespace ulogui
