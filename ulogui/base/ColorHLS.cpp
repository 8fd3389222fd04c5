// Conversion of CLR to and from hue, lightness and saturation, all in 0..1, in single precision.
#include <algorithm>

#include "base/FloatToInteger.h"
#include "ulogui/Color.h"

using ulogui::base::TruncateToByte;

void CLR::ToHLS(float& h, float& l, float& s) const {
    const float r = red;
    const float g = green;
    const float b = blue;
    const float max = std::max(std::max(r, g), b);
    const float min = std::min(std::min(r, g), b);
    l = (max + min) / 510.0f;
    if (max == min) {
        s = 0.0f;
        h = 0.0f;
        return;
    }
    const float d = max - min;
    const float sum = max + min;
    const float rc = (max - r) / d;
    const float gc = (max - g) / d;
    const float bc = (max - b) / d;
    s = l <= 0.5f ? d / sum : d / (510.0f - sum);

    // Multiplied by the float nearest 1/6, not divided by 6. The tests are separate so that on a tie
    // the later one wins (blue over green over red).
    const float sixth = 0.16666667f;
    if (r == max) {
        h = (bc + 6.0f - gc) * sixth;
    }
    if (g == max) {
        h = (rc + 2.0f - bc) * sixth;
    }
    if (b == max) {
        h = (gc + 4.0f - rc) * sixth;
    }
    // Strictly greater: a red maximum with equal green and blue (pure red) keeps hue exactly 1.0.
    if (h > 1.0f) {
        h -= 1.0f;
    }
}

namespace {

float HueToChannel(float m1, float m2, float x) {
    if (x > 360.0f) {
        x -= 360.0f;
    } else if (x < 0.0f) {
        x += 360.0f;
    }
    if (x < 60.0f) {
        return m1 + (m2 - m1) * x / 60.0f;
    }
    if (x < 180.0f) {
        return m2;
    }
    if (x < 240.0f) {
        return m1 + (m2 - m1) * (240.0f - x) / 60.0f;
    }
    return m1;
}

unsigned char ChannelToByte(float value) {
    // Clamped below only: a lightness above 1 wraps like any other out-of-range product.
    return TruncateToByte(std::max(value, 0.0f) * 255.0f);
}

}  // namespace

void CLR::FromHLS(float h, float l, float s) {
    if (s == 0.0f) {
        const unsigned char grey = TruncateToByte(l * 255.0f);
        red = green = blue = grey;
        return;
    }
    const float m2 = l <= 0.5f ? l * s + l : l + s - l * s;
    const float m1 = 2.0f * l - m2;
    const float deg = h * 360.0f;
    red = ChannelToByte(HueToChannel(m1, m2, deg + 120.0f));
    green = ChannelToByte(HueToChannel(m1, m2, deg));
    blue = ChannelToByte(HueToChannel(m1, m2, deg - 120.0f));
}
