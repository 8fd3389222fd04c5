// Every lane of the blend stays below 2^16: text × w + pixel × (255 − w) ≤ 255 × 255, and the exact
// division by 255 of x < 65535 is (x + 1 + (x >> 8)) >> 8, which adds at most 255 more. The alpha
// lane blends a text alpha of 0 with weight 255 (level above 0: alpha 0) or 0 (level 0: kept), so
// the same arithmetic runs on all four bytes without a branch; glyph rows alternate between covered
// and uncovered pixels too often for a branch to be predicted.
#include "platform/linux/LevelBlend.h"

#include <cstring>

namespace ulogui {
namespace platform {
namespace ft {

// Black text on white gives 255 - weight: 0, 77, 104, 124, 140, 154, 167, 178, 189, 199, 208, 217,
// 225, 233, 240 for levels 16 down to 2 as measured, and 248 for level 1, where the measured curve
// (the background's share is about (1 - level / 16) ^ 0.43) leads.
const uint8_t kLevelWeights[GlyphImage::kFullCoverage + 1] = {0,  7,  15,  22,  30,  38,  47,  56, 66,
                                                              77, 88, 101, 115, 131, 151, 178, 255};

namespace {

constexpr uint64_t kLane = 0xFFFF;
constexpr uint64_t kAllFull = 0x00FF00FF00FF00FFull;

uint64_t Lanes(uint64_t b, uint64_t g, uint64_t r, uint64_t a) {
    return b | g << 16 | r << 32 | a << 48;
}

// A pixel's four bytes in the four lanes, and back.
uint64_t Spread(const unsigned char* p) {
    return Lanes(p[0], p[1], p[2], p[3]);
}
void Gather(uint64_t lanes, unsigned char* p) {
    for (int i = 0; i < 4; ++i) {
        p[i] = static_cast<unsigned char>(lanes >> (16 * i));
    }
}

// The blend of lanes with weights w (255 - w being the pixel's share), each lane divided by 255.
uint64_t Blend(uint64_t text, uint64_t w, uint64_t pixel) {
    uint64_t x = 0;
    for (int i = 0; i < 4; ++i) {
        const uint64_t wi = (w >> (16 * i)) & kLane;
        const uint64_t lane = ((text >> (16 * i)) & kLane) * wi + ((pixel >> (16 * i)) & kLane) * (255 - wi);
        x |= lane << (16 * i);
    }
    return ((x + 0x0001000100010001ull + ((x >> 8) & kAllFull)) >> 8) & kAllFull;
}

typedef uint16_t U16x8 __attribute__((vector_size(16)));
typedef uint64_t U64x2 __attribute__((vector_size(16)));
typedef uint8_t U8x8 __attribute__((vector_size(8)));

}  // namespace

LevelBlend::LevelBlend(const CLR& text) : text_(Lanes(text.blue, text.green, text.red, 0)) {
    for (int k = 0; k <= GlyphImage::kFullCoverage; ++k) {
        const uint64_t w = kLevelWeights[k];
        weights_[k] = Lanes(w, w, w, k == 0 ? 0 : 255);
    }
}

void LevelBlend::RowScalar(unsigned char* pixels, const uint8_t* levels, int count) const {
    for (int x = 0; x < count; ++x) {
        unsigned char* p = pixels + 4 * x;
        Gather(Blend(text_, weights_[levels[x]], Spread(p)), p);
    }
}

void LevelBlend::Row(unsigned char* pixels, const uint8_t* levels, int count) const {
    const U16x8 text = reinterpret_cast<U16x8>(U64x2{text_, text_});
    const U16x8 full = {255, 255, 255, 255, 255, 255, 255, 255};
    // Two pixels (8 bytes) at p with the weights of levels a and b.
    auto pair = [&](unsigned char* p, uint8_t a, uint8_t b) {
        const U16x8 w = reinterpret_cast<U16x8>(U64x2{weights_[a], weights_[b]});
        U8x8 bytes;
        std::memcpy(&bytes, p, 8);
        const U16x8 pixel = __builtin_convertvector(bytes, U16x8);
        const U16x8 sum = text * w + pixel * (full - w);
        const U16x8 quotient = (sum + 1 + (sum >> 8)) >> 8;
        bytes = __builtin_convertvector(quotient, U8x8);
        std::memcpy(p, &bytes, 8);
    };
    int x = 0;
    for (; x + 2 <= count; x += 2) {
        pair(pixels + 4 * x, levels[x], levels[x + 1]);
    }
    if (x < count) {
        // The last pixel of an odd row, beside a pixel of its own.
        unsigned char two[8] = {};
        std::memcpy(two, pixels + 4 * x, 4);
        pair(two, levels[x], 0);
        std::memcpy(pixels + 4 * x, two, 4);
    }
}

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
