// BlendWithPicture: a byte-wise mix of two blocks of the same layout.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "raster/PixelBlock.h"
#include "ulogui/PictureBits.h"

namespace {

// One byte of the mix: (other * w + own * (256 - w)) >> 8.
struct MixByte {
    unsigned w;
    unsigned char operator()(unsigned char own, unsigned char other) const {
        return static_cast<unsigned char>((other * w + own * (256u - w)) >> 8);
    }
};

template <typename Mix>
void MixBlocks(unsigned char* own, const unsigned char* other, std::size_t count, Mix mix) {
    for (std::size_t i = 0; i < count; ++i) {
        own[i] = mix(own[i], other[i]);
    }
}

}  // namespace

void ULOPictureBits::BlendWithPicture(const ULOPictureBits* other, float amount) {
    // Also refuses a NaN amount.
    if (other == nullptr || !(amount > 0)) {
        return;
    }
    // Both blocks are meant to have the same stride and height; only the bytes both have are touched.
    const std::size_t ownSize = bits != nullptr ? ulogui::raster::PixelBlockSize(lineWidth, height) : 0;
    const std::size_t otherSize =
        other->bits != nullptr ? ulogui::raster::PixelBlockSize(other->lineWidth, other->height) : 0;
    const std::size_t count = std::min(ownSize, otherSize);
    if (count == 0 || other->bits == bits) {
        return;
    }
    if (amount >= 0.996f) {
        std::memmove(bits, other->bits, count);
        return;
    }
    const unsigned w = static_cast<unsigned>(static_cast<int>(amount * 256));
    MixBlocks(bits, other->bits, count, MixByte{w});
}
