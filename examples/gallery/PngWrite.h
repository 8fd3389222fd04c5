#pragma once
// PNG files of the gallery: surfaces written as RGB, and RGBA images (the icon generator's).
#include <cstdint>
#include <string>
#include <vector>

class ULOPictureBits;

namespace gallery {

// Writes the colour bytes of a 32-bit buffer (its stored, device-pixel size; the alpha byte is not
// written) as an 8-bit RGB PNG. `small` trades time for a smaller file (the golden references).
// Returns false and sets `error` to a one-line reason on failure.
bool WriteSurfacePng(const ULOPictureBits& surface, const std::string& path, bool small, std::string& error);

// Writes width x height RGBA pixels, top row first (red, green, blue, opacity).
bool WriteRgbaPng(const std::vector<uint8_t>& rgba, int width, int height, const std::string& path,
                  std::string& error);

}  // namespace gallery
