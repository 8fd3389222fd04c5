#pragma once
// PNG files of the gallery: surfaces written as RGB, and the icon generator's RGBA pictures.
#include <cstdint>
#include <string>
#include <vector>

class ULOPictureBits;

namespace gallery {

// The colour bytes of a 32-bit buffer's stored (device) pixels as RGB, top row first; the alpha byte
// is dropped. Empty for other buffers.
std::vector<uint8_t> RgbPixels(const ULOPictureBits& surface, int& width, int& height);

// Writes width x height pixels of `channels` bytes (3: RGB, 4: RGBA), top row first, as an 8-bit
// PNG. `small` trades time for a smaller file (the golden references, the pictures). Returns false
// and sets `error` to a one-line reason on failure.
bool WritePng(const std::vector<uint8_t>& pixels, int width, int height, int channels,
              const std::string& path, bool small, std::string& error);

inline bool WriteSurfacePng(const ULOPictureBits& surface, const std::string& path, bool small,
                            std::string& error) {
    int width = 0, height = 0;
    const std::vector<uint8_t> rgb = RgbPixels(surface, width, height);
    return WritePng(rgb, width, height, 3, path, small, error);
}

}  // namespace gallery
