#include "PngWrite.h"

#include <png.h>
#include <zlib.h>

#include <csetjmp>
#include <cstdio>
#include <memory>
#include <vector>

#include "ulogui/PictureBits.h"

namespace gallery {

namespace {

struct FileCloser {
    void operator()(FILE* f) const { std::fclose(f); }
};

// The classic interface, for the compression level the simplified one does not offer. libpng reports
// errors by longjmp, so this function holds no C++ object that a jump could skip.
bool EncodeRows(FILE* file, png_uint_32 width, png_uint_32 height, int colourType, png_bytepp rows,
                int level) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (info == nullptr) {
        png_destroy_write_struct(&png, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_init_io(png, file);
    png_set_compression_level(png, level);
    png_set_IHDR(png, info, width, height, 8, colourType, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_write_image(png, rows);
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return true;
}

bool WriteRows(const std::string& path, int width, int height, int colourType,
               const std::vector<png_bytep>& rows, int level, std::string& error) {
    std::unique_ptr<FILE, FileCloser> file(std::fopen(path.c_str(), "wb"));
    if (!file) {
        error = path + ": cannot create the file";
        return false;
    }
    if (!EncodeRows(file.get(), static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), colourType,
                    const_cast<png_bytepp>(rows.data()), level) ||
        std::fflush(file.get()) != 0) {
        error = path + ": cannot write the PNG file";
        return false;
    }
    return true;
}

}  // namespace

std::vector<uint8_t> RgbPixels(const ULOPictureBits& surface, int& width, int& height) {
    const ULOPictureBits raw = surface.GetRawPictureBits();
    const bool usable = raw.GetBytesPerPixel() == 4 && raw.GetBits() != nullptr;
    width = usable ? raw.GetWidth(true) : 0;
    height = usable ? raw.GetHeight(true) : 0;
    std::vector<uint8_t> rgb(static_cast<size_t>(width) * height * 3);
    for (int y = 0; y < height; ++y) {
        const unsigned char* in = raw.GetBits(0, y);
        uint8_t* out = &rgb[static_cast<size_t>(y) * width * 3];
        for (int x = 0; x < width; ++x, in += 4, out += 3) {
            out[0] = in[2];
            out[1] = in[1];
            out[2] = in[0];
        }
    }
    return rgb;
}

bool WritePng(const std::vector<uint8_t>& pixels, int width, int height, int channels,
              const std::string& path, bool small, std::string& error) {
    if (width < 1 || height < 1 || (channels != 3 && channels != 4) ||
        pixels.size() != static_cast<size_t>(width) * height * channels) {
        error = path + ": nothing to write";
        return false;
    }
    std::vector<png_bytep> rows(static_cast<size_t>(height));
    for (int y = 0; y < height; ++y) {
        rows[static_cast<size_t>(y)] =
            const_cast<png_bytep>(&pixels[static_cast<size_t>(y) * width * channels]);
    }
    return WriteRows(path, width, height, channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGBA, rows,
                     small ? Z_BEST_COMPRESSION : 3, error);
}

}  // namespace gallery
