#pragma once
// Between PNG pixels (RGBA, top row first, opacity) and stored pixels (bottom-up rows of blue, green,
// red and transparency = 255 - opacity, padded to four bytes).
#include <cstdint>
#include <string>
#include <vector>

#include "PngFile.h"

namespace ulores {

// "alpha32" (0x1), "rgb32" (0), "rgb24" (0x8), "mask8" (0x4); false for any other name.
bool FlagsFromFormatName(const std::string& name, int& flags);
// For listings: "32-bit with alpha", "24-bit" ..., with any other bits appended.
std::string DescribeFlags(int flags);

// The stored bytes of the columns [x0, x0 + width) of the image. 4-byte pixels keep the opacity in
// byte 3 as transparency whatever the flags; 24-bit pixels drop it; a mask keeps only it.
std::vector<uint8_t> ToStored(const RgbaImage& image, int x0, int width, int flags);

// The PNG pixels of a stored block: a 24-bit block is opaque, a mask is black with its opacity.
RgbaImage FromStored(const unsigned char* bits, int width, int height, int lineWidth, int flags);

}  // namespace ulores
