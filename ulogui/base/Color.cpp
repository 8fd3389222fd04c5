// Arithmetic and derived colours of CLR. HLS conversion is in ColorHLS.cpp.
#include <algorithm>

#include "base/FloatToInteger.h"
#include "ulogui/Color.h"

using ulogui::base::TruncateToByte;

const CLR CLR::CLR_WHITE(255, 255, 255);
const CLR CLR::CLR_RED(255, 0, 0);

unsigned char DISABLED_CLR_COMPONENT[256] = {};
unsigned char HIGHLIGHT_CLR_COMPONENT[256] = {};

float MORE_INTENSE_KNEE_S = 0.5f;
float MORE_INTENSE_KNEE_IMAGE = 0.7f;
float MORE_INTENSE_LIMIT = 0.8f;

static_assert(sizeof(CLR) == 3, "a CLR must lie over the first three bytes of a pixel");

CLR CLR::operator+(const CLR& other) {
    return CLR(red + other.red, green + other.green, blue + other.blue);
}

CLR CLR::operator-(const CLR& other) {
    return CLR(red - other.red, green - other.green, blue - other.blue);
}

void CLR::operator+=(const CLR& other) {
    *this = *this + other;
}

void CLR::operator-=(const CLR& other) {
    *this = *this - other;
}

void CLR::operator*=(const float& factor) {
    red = TruncateToByte(static_cast<float>(red) * factor);
    green = TruncateToByte(static_cast<float>(green) * factor);
    blue = TruncateToByte(static_cast<float>(blue) * factor);
}

void CLR::SafeAdd(CLR other) {
    red = static_cast<unsigned char>(std::min(red + other.red, 255));
    green = static_cast<unsigned char>(std::min(green + other.green, 255));
    blue = static_cast<unsigned char>(std::min(blue + other.blue, 255));
}

void CLR::SafeSubtract(CLR other) {
    red = static_cast<unsigned char>(std::max(red - other.red, 0));
    green = static_cast<unsigned char>(std::max(green - other.green, 0));
    blue = static_cast<unsigned char>(std::max(blue - other.blue, 0));
}

namespace {

unsigned char LerpComponent(unsigned char a, unsigned char b, float t) {
    return TruncateToByte(static_cast<float>(b - a) * t + static_cast<float>(a));
}

// The parabola A s^2 + B s through (0, 0) and the knee, and the identity from the limit upwards. The
// constants are read once, on first use, so the curve stays one consistent piece for the whole run.
struct IntensityCurve {
    float A;
    float B;
    float limit;

    float operator()(float s) const {
        if (s >= limit) {
            return s;
        }
        return A * s * s + B * s;
    }
};

const IntensityCurve& GetIntensityCurve() {
    static const IntensityCurve curve = [] {
        const float a = MORE_INTENSE_KNEE_S;
        const float b = MORE_INTENSE_KNEE_IMAGE;
        const float c = MORE_INTENSE_LIMIT;
        const float k = 1.0f / ((a - c) * a);
        return IntensityCurve{(b - a) * k, (a * a - b * c) * k, c};
    }();
    return curve;
}

}  // namespace

CLR CLR::Lerp(const CLR& a, const CLR& b, float t) {
    CLR result;
    result.red = LerpComponent(a.red, b.red, t);
    result.green = LerpComponent(a.green, b.green, t);
    result.blue = LerpComponent(a.blue, b.blue, t);
    return result;
}

void CLR::MakeDisabledColor() {
    const float pull = 0.6f;
    const float keep = 0.4f;
    // Every component is pulled toward the table entry of the green component (the new green for blue),
    // which gives a desaturated blend that follows the green channel.
    red = TruncateToByte(DISABLED_CLR_COMPONENT[green] * pull + red * keep);
    green = TruncateToByte(DISABLED_CLR_COMPONENT[green] * pull + green * keep);
    blue = TruncateToByte(DISABLED_CLR_COMPONENT[green] * pull + blue * keep);
}

CLR CLR::MakeDisabledColor(const CLR& colour) {
    CLR result = colour;
    result.MakeDisabledColor();
    return result;
}

void CLR::MakeHighlightedColor() {
    red = HIGHLIGHT_CLR_COMPONENT[red];
    green = HIGHLIGHT_CLR_COMPONENT[green];
    blue = HIGHLIGHT_CLR_COMPONENT[blue];
}

CLR CLR::MakeHighlightedColor(const CLR& colour) {
    CLR result = colour;
    result.MakeHighlightedColor();
    return result;
}

void CLR::MakeMoreIntenseColor(float& /*h*/, float& l, float& s) {
    if (l == 0.0f) {
        return;
    }
    s = GetIntensityCurve()(s);
}

void CLR::MakeMoreIntenseColor() {
    float h;
    float l;
    float s;
    ToHLS(h, l, s);
    MakeMoreIntenseColor(h, l, s);
    FromHLS(h, l, s);
}

CLR CLR::MakeMoreIntenseColor(const CLR& colour) {
    CLR result = colour;
    result.MakeMoreIntenseColor();
    return result;
}
