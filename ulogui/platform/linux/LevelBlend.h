#pragma once
// The colour of text blended into a section's pixels by coverage level: (text × w + pixel × (255 − w))
// / 255 per colour byte, w the level's weight (kLevelWeights), truncating; alpha 0 where the level is
// not 0, kept where it is. Level 0 has weight 0 and so leaves the colour as it is.
#include <cstdint>

#include "platform/FontEngine.h"
#include "ulogui/Color.h"

namespace ulogui {
namespace platform {
namespace ft {

// The weight (0..255) of the text colour in a pixel of each coverage level: the platform's
// gamma-shaped blend for dark text on a light background, measured, used for every colour pair.
extern const uint8_t kLevelWeights[GlyphImage::kFullCoverage + 1];

class LevelBlend {
public:
    explicit LevelBlend(const CLR& text);

    // count pixels (4 bytes each) by count levels, two at a time in 16-bit vector lanes.
    void Row(unsigned char* pixels, const uint8_t* levels, int count) const;
    // The same one pixel at a time in 16-bit lanes of a 64-bit word: the reference of Row.
    void RowScalar(unsigned char* pixels, const uint8_t* levels, int count) const;

private:
    uint64_t text_;                                    // blue, green, red, 0 in 16-bit lanes
    uint64_t weights_[GlyphImage::kFullCoverage + 1];  // w, w, w and 255 (or 0 for level 0) in lanes
};

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
