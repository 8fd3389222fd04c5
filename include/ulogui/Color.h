#pragma once
// CLR: the library's colour value, an opaque 8-bit RGB triple. Its components lie in memory as
// blue, green, red, so a CLR matches the first three bytes of a 32-bit pixel byte for byte.
#include "ulogui/Export.h"

class ULODRAW_API CLR {
public:
    // Memory order is blue, green, red; constructors take red first.
    unsigned char blue;
    unsigned char green;
    unsigned char red;

    static const CLR CLR_WHITE;
    static const CLR CLR_RED;

    // Leaves the components uninitialised, like a plain struct, so that arrays of colours cost nothing.
    CLR() = default;
    // Keeps the low 8 bits of each argument; no clamping. constexpr so that colour constants are
    // initialised statically, before any other module's start-up code can read them.
    constexpr CLR(int r, int g, int b)
        : blue(static_cast<unsigned char>(b)),
          green(static_cast<unsigned char>(g)),
          red(static_cast<unsigned char>(r)) {}
    constexpr CLR(const CLR&) = default;

    const CLR& operator=(const CLR& other) {
        blue = other.blue;
        green = other.green;
        red = other.red;
        return *this;
    }
    bool operator==(const CLR& other) const {
        return red == other.red && green == other.green && blue == other.blue;
    }
    bool operator!=(const CLR& other) const { return !(*this == other); }

    // Componentwise arithmetic wrapping modulo 256.
    CLR operator+(const CLR& other);
    CLR operator-(const CLR& other);
    void operator+=(const CLR& other);
    void operator-=(const CLR& other);
    // Each component becomes the truncated product; the low 8 bits are kept, so results above 255 wrap.
    void operator*=(const float& factor);

    // Componentwise arithmetic saturating at 255 and 0.
    void SafeAdd(CLR other);
    void SafeSubtract(CLR other);

    // a + (b - a) * t per component with a signed difference; t is not clamped and the low 8 bits are kept.
    static CLR Lerp(const CLR& a, const CLR& b, float t);

    // Hue, lightness and saturation, each in 0..1. Pure red has hue 1.0, not 0.
    void ToHLS(float& h, float& l, float& s) const;
    void FromHLS(float h, float l, float s);

    // Derived colours for disabled, highlighted and more intense variants of a colour.
    void MakeDisabledColor();
    static CLR MakeDisabledColor(const CLR& colour);
    void MakeHighlightedColor();
    static CLR MakeHighlightedColor(const CLR& colour);
    void MakeMoreIntenseColor();
    static CLR MakeMoreIntenseColor(const CLR& colour);
    // Applies the intensity curve to the saturation of an HLS triple; nothing changes when l is 0.
    static void MakeMoreIntenseColor(float& h, float& l, float& s);

    bool IsValid() const { return true; }
};

// Lookup curves of the disabled and highlighted effects, indexed by a component value. The library
// only reads them: the host application fills them (they start zero-filled).
ULODRAW_API extern unsigned char DISABLED_CLR_COMPONENT[256];
ULODRAW_API extern unsigned char HIGHLIGHT_CLR_COMPONENT[256];

// The saturation curve of MakeMoreIntenseColor: a parabola through (0, 0) and
// (MORE_INTENSE_KNEE_S, MORE_INTENSE_KNEE_IMAGE), identity from MORE_INTENSE_LIMIT upwards. The host may
// tune the three values before the first call of MakeMoreIntenseColor, which fixes the curve for the rest
// of the process.
ULODRAW_API extern float MORE_INTENSE_KNEE_S;      // 0.5
ULODRAW_API extern float MORE_INTENSE_KNEE_IMAGE;  // 0.7
ULODRAW_API extern float MORE_INTENSE_LIMIT;       // 0.8
