#pragma once
// PNG files as 8-bit RGBA pixels, top row first, through libpng.
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace ulores {

struct RgbaImage {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> pixels;  // width * height * 4 bytes: red, green, blue, opacity

    const uint8_t* At(int x, int y) const { return &pixels[(static_cast<size_t>(y) * width + x) * 4]; }
    uint8_t* At(int x, int y) { return &pixels[(static_cast<size_t>(y) * width + x) * 4]; }
};

// Any PNG (palette, grey, 16-bit ...) converted to RGBA. Throws ToolError naming the file.
RgbaImage ReadPng(const std::string& path);

// Writes the image to an open stream. Throws ToolError naming `path` on failure.
void WritePng(const RgbaImage& image, FILE* out, const std::string& path);

}  // namespace ulores
