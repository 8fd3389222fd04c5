#pragma once
// Comparing a rendered sheet with its reference: exact outside the text regions, within a tolerance
// inside them (docs/gallery.md).
#include <cstdint>
#include <string>
#include <vector>

#include "ulogui/Geometry.h"

namespace gallery {

struct RgbImage {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgb;  // top row first
};

// False (and a reason in error) when the file is missing or not a PNG.
bool ReadRgbPng(const std::string& path, RgbImage& out, std::string& error);

// A text pixel may differ by this much per channel (the grey levels of anti-aliased glyph edges move
// between FreeType versions). A text region fails when more than kTextPixelsAllowed plus one in
// kTextAreaShare of its pixels go beyond that; any other pixel fails when it differs at all.
// On Windows the text is drawn by GDI itself while the references are the library's FreeType
// rendering on Linux: glyph edges may be a coverage level of GDI's gamma-shaped blend apart, which is
// up to about 100 per channel between coloured text and background (docs/windows.md).
#if defined(_WIN32)
constexpr int kTextTolerance = 100;
#else
constexpr int kTextTolerance = 40;
#endif
constexpr int kTextPixelsAllowed = 4;
constexpr int kTextAreaShare = 100;

struct Comparison {
    bool sizeDiffers = false;
    long exactDiffering = 0;  // outside text regions
    long textBeyond = 0;      // inside, beyond the tolerance
    int regionsFailed = 0;    // text regions with more of those than they allow
    bool Passed() const { return !sizeDiffers && exactDiffering == 0 && regionsFailed == 0; }
    RgbImage difference;  // the reference dimmed, exact differences red, text ones beyond tolerance yellow
};

Comparison CompareWithReference(const RgbImage& actual, const RgbImage& reference,
                                const std::vector<ULORect>& textRegions);

}  // namespace gallery
