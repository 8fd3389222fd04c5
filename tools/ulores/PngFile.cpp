#include "PngFile.h"

#include <png.h>

#include "ToolError.h"

namespace ulores {

namespace {

// Larger pictures are surely a mistake in a manifest of interface pictures.
constexpr uint32_t kMaxSide = 16384;

}  // namespace

RgbaImage ReadPng(const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) {
        throw ToolError(path + ": cannot read the PNG file: " + image.message);
    }
    if (image.width == 0 || image.height == 0 || image.width > kMaxSide || image.height > kMaxSide) {
        const std::string size = std::to_string(image.width) + " x " + std::to_string(image.height);
        png_image_free(&image);
        throw ToolError(path + ": the picture is " + size + " pixels; sides of 1 to " +
                        std::to_string(kMaxSide) + " are allowed");
    }
    image.format = PNG_FORMAT_RGBA;
    RgbaImage out;
    out.width = static_cast<int>(image.width);
    out.height = static_cast<int>(image.height);
    out.pixels.resize(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, out.pixels.data(), 0, nullptr)) {
        const std::string why = image.message;
        png_image_free(&image);
        throw ToolError(path + ": cannot decode the PNG file: " + why);
    }
    return out;
}

void WritePng(const RgbaImage& in, FILE* out, const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(in.width);
    image.height = static_cast<png_uint_32>(in.height);
    image.format = PNG_FORMAT_RGBA;
    if (!png_image_write_to_stdio(&image, out, 0, in.pixels.data(), 0, nullptr)) {
        throw ToolError(path + ": cannot write the PNG file: " + image.message);
    }
}

}  // namespace ulores
