#include "ImageCompare.h"

#include <png.h>

#include <algorithm>
#include <cstdlib>

namespace gallery {

bool ReadRgbPng(const std::string& path, RgbImage& out, std::string& error) {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png, path.c_str())) {
        error = path + ": " + png.message;
        return false;
    }
    png.format = PNG_FORMAT_RGB;
    out.width = static_cast<int>(png.width);
    out.height = static_cast<int>(png.height);
    out.rgb.resize(PNG_IMAGE_SIZE(png));
    if (!png_image_finish_read(&png, nullptr, out.rgb.data(), 0, nullptr)) {
        error = path + ": " + png.message;
        png_image_free(&png);
        return false;
    }
    return true;
}

Comparison CompareWithReference(const RgbImage& actual, const RgbImage& reference,
                                const std::vector<ULORect>& textRegions) {
    Comparison result;
    result.difference = actual;
    if (actual.width != reference.width || actual.height != reference.height) {
        result.sizeDiffers = true;
        return result;
    }
    const int w = actual.width, h = actual.height;
    const auto clipped = [w, h](const ULORect& r) {
        return ULORect(std::max(r.left, 0), std::max(r.top, 0), std::min(r.right, w), std::min(r.bottom, h));
    };
    std::vector<uint8_t> isText(static_cast<size_t>(w) * h, 0);
    for (const ULORect& region : textRegions) {
        const ULORect r = clipped(region);
        for (int y = r.top; y < r.bottom; ++y) {
            std::fill_n(&isText[static_cast<size_t>(y) * w + r.left], std::max(r.right - r.left, 0), 1);
        }
    }
    // 0: equal or within the text tolerance, 1: beyond it in text, 2: differs elsewhere.
    std::vector<uint8_t> verdict(isText.size(), 0);
    for (size_t i = 0; i < isText.size(); ++i) {
        const uint8_t* a = &actual.rgb[i * 3];
        const uint8_t* e = &reference.rgb[i * 3];
        int most = 0;
        for (int c = 0; c < 3; ++c) {
            most = std::max(most, std::abs(a[c] - e[c]));
        }
        verdict[i] = isText[i] ? (most > kTextTolerance ? 1 : 0) : (most > 0 ? 2 : 0);
        result.textBeyond += verdict[i] == 1;
        result.exactDiffering += verdict[i] == 2;
        uint8_t* d = &result.difference.rgb[i * 3];
        d[0] = verdict[i] ? 255 : e[0] / 4;
        d[1] = verdict[i] == 1 ? 255 : (verdict[i] ? 0 : e[1] / 4);
        d[2] = verdict[i] ? 0 : e[2] / 4;
    }
    for (const ULORect& region : textRegions) {
        const ULORect r = clipped(region);
        long beyond = 0, area = 0;
        for (int y = r.top; y < r.bottom; ++y) {
            for (int x = r.left; x < r.right; ++x, ++area) {
                beyond += verdict[static_cast<size_t>(y) * w + x] == 1;
            }
        }
        result.regionsFailed += beyond > kTextPixelsAllowed + area / kTextAreaShare;
    }
    return result;
}

}  // namespace gallery
