#include "PngWrite.h"

#include <png.h>
#include <zlib.h>

#include <csetjmp>
#include <cstdio>
#include <memory>

#include "ulogui/PictureBits.h"

namespace gallery {

namespace {

struct FileCloser {
    void operator()(FILE* f) const { std::fclose(f); }
};

// The classic interface, for the compression level the simplified one does not offer.
bool WriteRows(const std::string& path, int width, int height, int colourType,
               const std::vector<png_bytep>& rows, int level, std::string& error) {
    std::unique_ptr<FILE, FileCloser> file(std::fopen(path.c_str(), "wb"));
    if (!file) {
        error = path + ": cannot create the file";
        return false;
    }
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (info == nullptr) {
        png_destroy_write_struct(&png, nullptr);
        error = path + ": out of memory";
        return false;
    }
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        error = path + ": cannot write the PNG file";
        return false;
    }
    png_init_io(png, file.get());
    png_set_compression_level(png, level);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8, colourType,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_write_image(png, const_cast<png_bytepp>(rows.data()));
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    if (std::fflush(file.get()) != 0) {
        error = path + ": cannot write the file";
        return false;
    }
    return true;
}

}  // namespace

bool WriteSurfacePng(const ULOPictureBits& surface, const std::string& path, bool small, std::string& error) {
    const ULOPictureBits raw = surface.GetRawPictureBits();
    const int width = raw.GetWidth(true);
    const int height = raw.GetHeight(true);
    if (raw.GetBytesPerPixel() != 4 || width < 1 || height < 1) {
        error = path + ": nothing to write (not a 32-bit picture)";
        return false;
    }
    std::vector<png_byte> rgb(static_cast<size_t>(width) * height * 3);
    std::vector<png_bytep> rows(static_cast<size_t>(height));
    for (int y = 0; y < height; ++y) {
        const unsigned char* in = raw.GetBits(0, y);
        png_bytep out = &rgb[static_cast<size_t>(y) * width * 3];
        rows[static_cast<size_t>(y)] = out;
        for (int x = 0; x < width; ++x, in += 4, out += 3) {
            out[0] = in[2];
            out[1] = in[1];
            out[2] = in[0];
        }
    }
    return WriteRows(path, width, height, PNG_COLOR_TYPE_RGB, rows, small ? Z_BEST_COMPRESSION : 3, error);
}

bool WriteRgbaPng(const std::vector<uint8_t>& rgba, int width, int height, const std::string& path,
                  std::string& error) {
    std::vector<png_bytep> rows(static_cast<size_t>(height));
    for (int y = 0; y < height; ++y) {
        rows[static_cast<size_t>(y)] = const_cast<png_bytep>(&rgba[static_cast<size_t>(y) * width * 4]);
    }
    return WriteRows(path, width, height, PNG_COLOR_TYPE_RGBA, rows, Z_BEST_COMPRESSION, error);
}

}  // namespace gallery
