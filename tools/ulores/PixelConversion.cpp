#include "PixelConversion.h"

#include <cstdio>

#include "ulogui/PictureBits.h"

namespace ulores {

namespace {

int BytesPerPixel(int flags) {
    return (flags & PICTBITS_MASK8) ? 1 : (flags & PICTBITS_RGB24) ? 3 : 4;
}

}  // namespace

bool FlagsFromFormatName(const std::string& name, int& flags) {
    if (name == "alpha32") {
        flags = PICTBITS_ALPHA;
    } else if (name == "rgb32") {
        flags = 0;
    } else if (name == "rgb24") {
        flags = PICTBITS_RGB24;
    } else if (name == "mask8") {
        flags = PICTBITS_MASK8;
    } else {
        return false;
    }
    return true;
}

std::string DescribeFlags(int flags) {
    std::string text = (flags & PICTBITS_MASK8)   ? "8-bit mask"
                       : (flags & PICTBITS_RGB24) ? "24-bit"
                       : (flags & PICTBITS_ALPHA) ? "32-bit with alpha"
                                                  : "32-bit";
    const int known = (flags & PICTBITS_MASK8)   ? PICTBITS_MASK8
                      : (flags & PICTBITS_RGB24) ? PICTBITS_RGB24
                                                 : PICTBITS_ALPHA;
    const int others = flags & ~known;
    if (others != 0) {
        char hex[16];
        std::snprintf(hex, sizeof hex, "0x%X", static_cast<unsigned>(others));
        text += std::string(", other bits ") + hex;
    }
    return text;
}

std::vector<uint8_t> ToStored(const RgbaImage& image, int x0, int width, int flags) {
    const int bpp = BytesPerPixel(flags);
    const int stride = ULOPictureUtil::ComputeLineWidth(width, flags);
    std::vector<uint8_t> out(static_cast<size_t>(stride) * image.height, 0);
    for (int y = 0; y < image.height; ++y) {
        uint8_t* row = &out[static_cast<size_t>(image.height - 1 - y) * stride];
        for (int x = 0; x < width; ++x) {
            const uint8_t* rgba = image.At(x0 + x, y);
            uint8_t* p = row + static_cast<size_t>(x) * bpp;
            const uint8_t transparency = static_cast<uint8_t>(255 - rgba[3]);
            if (bpp == 1) {
                p[0] = transparency;
                continue;
            }
            p[0] = rgba[2];
            p[1] = rgba[1];
            p[2] = rgba[0];
            if (bpp == 4) {
                p[3] = transparency;
            }
        }
    }
    return out;
}

RgbaImage FromStored(const unsigned char* bits, int width, int height, int lineWidth, int flags) {
    const int bpp = BytesPerPixel(flags);
    RgbaImage out;
    out.width = width;
    out.height = height;
    out.pixels.resize(static_cast<size_t>(width) * height * 4);
    for (int y = 0; y < height; ++y) {
        const unsigned char* row = bits + static_cast<size_t>(height - 1 - y) * lineWidth;
        for (int x = 0; x < width; ++x) {
            const unsigned char* p = row + static_cast<size_t>(x) * bpp;
            uint8_t* rgba = out.At(x, y);
            if (bpp == 1) {
                rgba[0] = rgba[1] = rgba[2] = 0;
                rgba[3] = static_cast<uint8_t>(255 - p[0]);
                continue;
            }
            rgba[0] = p[2];
            rgba[1] = p[1];
            rgba[2] = p[0];
            rgba[3] = bpp == 4 ? static_cast<uint8_t>(255 - p[3]) : 255;
        }
    }
    return out;
}

}  // namespace ulores
