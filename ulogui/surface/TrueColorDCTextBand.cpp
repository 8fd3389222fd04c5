// The band of text output: filling the platform's section from the surface and putting it back.
#include <cstdint>
#include <cstring>

#include "base/FloatToInteger.h"
#include "surface/TextBand.h"

using ulogui::base::TruncateToByte;
using ulogui::raster::RasterView;

namespace ulogui {
namespace surface {

namespace {

// Applies write(surfacePixel, sectionPixel) to every pixel of the band, rows in section order.
template <typename Write>
void ForEachBandPixel(const RasterView& section, const RasterView& surface, ULOPoint origin,
                      const Write& write) {
    const int width = section.Width();
    for (int y = 0; y < section.Height(); ++y) {
        unsigned char* to = surface.Pixel(origin.x, origin.y + y);
        const unsigned char* from = section.Row(y);
        for (int x = 0; x < width; ++x) {
            write(to + 4 * x, from + 4 * x);
        }
    }
}

// The colour bytes mixed as surface * (1 - opacity) + section * opacity, truncated; alpha stays.
struct OpacityMix {
    explicit OpacityMix(float opacity) : o(opacity), keep(1.0f - opacity) {}
    void operator()(unsigned char* dst, const unsigned char* src) const {
        for (int i = 0; i < 3; ++i) {
            dst[i] = TruncateToByte(static_cast<float>(dst[i]) * keep + static_cast<float>(src[i]) * o);
        }
    }
    float o;
    float keep;
};

// The alpha composite. The platform wrote alpha 0 into every pixel it touched; the others still
// have the backdrop's 255 and are skipped. The text's coverage is read back from how far the pixel
// moved from the backdrop towards the text's grey.
struct AlphaComposite {
    explicit AlphaComposite(const TextBandMode& mode)
        : colour{static_cast<float>(mode.colour.blue), static_cast<float>(mode.colour.green),
                 static_cast<float>(mode.colour.red)},
          bytes{mode.colour.blue, mode.colour.green, mode.colour.red},
          grey(mode.grey),
          darkText(mode.darkText),
          opacity(mode.opacity == 0.0f ? 1.0f : mode.opacity) {}

    void operator()(unsigned char* dst, const unsigned char* src) const {
        if (src[3] == 255) {
            return;
        }
        const int lum = ((src[0] + src[1] + src[2]) * 85) >> 8;
        // 0 is full text, 255 none; the low 8 bits are kept, as a byte keeps them.
        const unsigned char cover = static_cast<unsigned char>(darkText ? (lum - grey) * 255 / (255 - grey)
                                                                        : (grey - lum) * 255 / grey);
        const float a = opacity * (1.0f - static_cast<float>(cover) / 255.0f);
        if (dst[3] == 255) {
            std::memcpy(dst, bytes, 3);
            dst[3] = TruncateToByte((1.0f - a) * 255.0f);
            return;
        }
        const float t = (1.0f - a) * (1.0f - static_cast<float>(dst[3]) / 255.0f);
        const float s = t + a;
        for (int i = 0; i < 3; ++i) {
            dst[i] = TruncateToByte((static_cast<float>(dst[i]) * t + colour[i] * a) / s);
        }
        dst[3] = TruncateToByte((1.0f - s) * 255.0f);
    }

    float colour[3];
    unsigned char bytes[3];
    int grey;
    bool darkText;
    float opacity;
};

// Whether the band at origin lies on the surface (text output only makes such bands).
bool OnSurface(const RasterView& section, const RasterView& surface, ULOPoint origin) {
    return !section.IsEmpty() && origin.x >= 0 && origin.y >= 0 &&
           static_cast<int64_t>(origin.x) + section.Width() <= surface.Width() &&
           static_cast<int64_t>(origin.y) + section.Height() <= surface.Height();
}

void CopyRows(const RasterView& to, ULOPoint toOrigin, const RasterView& from, ULOPoint fromOrigin, int width,
              int height) {
    const size_t bytes = static_cast<size_t>(width) * 4;
    for (int y = 0; y < height; ++y) {
        std::memcpy(to.Pixel(toOrigin.x, toOrigin.y + y), from.Pixel(fromOrigin.x, fromOrigin.y + y), bytes);
    }
}

}  // namespace

TextBandMode TextBandMode::For(bool alpha, const CLR& colour, float opacity) {
    TextBandMode mode;
    mode.alpha = alpha;
    mode.grey = ((colour.blue + colour.green + colour.red) * 85) >> 8;
    mode.darkText = mode.grey < 127;
    mode.opacity = opacity;
    mode.colour = colour;
    return mode;
}

void FillTextBand(const RasterView& section, const RasterView& surface, ULOPoint origin,
                  const TextBandMode& mode) {
    if (!OnSurface(section, surface, origin)) {
        return;
    }
    if (!mode.alpha) {
        CopyRows(section, ULOPoint(0, 0), surface, origin, section.Width(), section.Height());
        return;
    }
    const unsigned char v = mode.darkText ? 255 : 0;
    const unsigned char backdrop[4] = {v, v, v, 255};
    for (int y = 0; y < section.Height(); ++y) {
        unsigned char* p = section.Row(y);
        for (int x = 0; x < section.Width(); ++x) {
            std::memcpy(p + 4 * x, backdrop, 4);
        }
    }
}

void PutTextBandBack(const RasterView& section, const RasterView& surface, ULOPoint origin,
                     const TextBandMode& mode) {
    if (!OnSurface(section, surface, origin)) {
        return;
    }
    if (mode.alpha) {
        ForEachBandPixel(section, surface, origin, AlphaComposite(mode));
    } else if (mode.opacity == 1.0f || mode.opacity == 0.0f) {
        CopyRows(surface, origin, section, ULOPoint(0, 0), section.Width(), section.Height());
    } else {
        ForEachBandPixel(section, surface, origin, OpacityMix(mode.opacity));
    }
}

}  // namespace surface
}  // namespace ulogui
