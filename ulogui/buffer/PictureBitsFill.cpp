// Whole-buffer pixel operations of ULOPictureBits: Fill, InvertAlpha and Mirror. The pixel size is
// chosen once per call; each per-pixel step is a small functor stamped into the row loop, which this
// file's -O3 build vectorises.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ulogui/PictureBits.h"

namespace {

// Stores one fixed pixel value.
struct StoreMask {
    static constexpr int kBytes = 1;
    unsigned char alpha;
    void operator()(unsigned char* p) const { p[0] = alpha; }
};

struct StoreRGB24 {
    static constexpr int kBytes = 3;
    unsigned char blue;
    unsigned char green;
    unsigned char red;
    void operator()(unsigned char* p) const {
        p[0] = blue;
        p[1] = green;
        p[2] = red;
    }
};

struct StoreRGBA32 {
    static constexpr int kBytes = 4;
    uint32_t pattern;  // blue, green, red, alpha in memory order
    void operator()(unsigned char* p) const { std::memcpy(p, &pattern, sizeof pattern); }
};

// Applies `store` to every pixel of every row, leaving the row padding alone.
template <typename Store>
void StoreEveryPixel(unsigned char* bits, int width, int height, std::ptrdiff_t lineWidth, Store store) {
    if (lineWidth == static_cast<std::ptrdiff_t>(width) * Store::kBytes) {
        // Unpadded rows (every 32-bit buffer) are one run: one long loop instead of many short ones.
        const std::ptrdiff_t pixels = static_cast<std::ptrdiff_t>(width) * height;
        for (std::ptrdiff_t i = 0; i < pixels; ++i) {
            store(bits + i * Store::kBytes);
        }
        return;
    }
    for (int row = 0; row < height; ++row) {
        unsigned char* p = bits + row * lineWidth;
        for (int x = 0; x < width; ++x) {
            store(p + static_cast<std::ptrdiff_t>(x) * Store::kBytes);
        }
    }
}

// Reverses the order of the pixels of one row.
template <int Bytes>
void ReverseRow(unsigned char* row, int width) {
    const int half = width / 2;
    for (int c = 0; c < half; ++c) {
        unsigned char* a = row + static_cast<std::ptrdiff_t>(c) * Bytes;
        unsigned char* b = row + static_cast<std::ptrdiff_t>(width - 1 - c) * Bytes;
        unsigned char scratch[Bytes];
        std::memcpy(scratch, a, Bytes);
        std::memcpy(a, b, Bytes);
        std::memcpy(b, scratch, Bytes);
    }
}

template <int Bytes>
void ReverseEveryRow(unsigned char* bits, int width, int height, std::ptrdiff_t lineWidth) {
    for (int row = 0; row < height; ++row) {
        ReverseRow<Bytes>(bits + row * lineWidth, width);
    }
}

}  // namespace

void ULOPictureBits::Fill(const CLR& colour, unsigned char alpha) {
    if (height < 1 || bits == nullptr) {
        return;
    }
    switch (bytesPerPixel) {
        case 1:
            StoreEveryPixel(bits, width, height, lineWidth, StoreMask{alpha});
            break;
        case 3:
            StoreEveryPixel(bits, width, height, lineWidth,
                            StoreRGB24{colour.blue, colour.green, colour.red});
            break;
        default: {
            const unsigned char pixel[4] = {colour.blue, colour.green, colour.red, alpha};
            StoreRGBA32 store{};
            std::memcpy(&store.pattern, pixel, sizeof pixel);
            StoreEveryPixel(bits, width, height, lineWidth, store);
            break;
        }
    }
}

void ULOPictureBits::InvertAlpha() {
    if (!(flags & PICTBITS_ALPHA) || bits == nullptr || width <= 0 || height <= 0 || lineWidth <= 0) {
        return;
    }
    // The pixels are taken as one unpadded run of 4-byte pixels, which a 32-bit buffer is. For other
    // buffers the run stops at the end of the block instead of running past it.
    const size_t pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
    const size_t pixelsInBlock = static_cast<size_t>(lineWidth) * static_cast<size_t>(height) / 4;
    const size_t count = std::min(pixels, pixelsInBlock);
    unsigned char* p = bits;
    for (size_t i = 0; i < count; ++i) {
        p[i * 4 + 3] = static_cast<unsigned char>(~p[i * 4 + 3]);
    }
}

void ULOPictureBits::Mirror(bool horizontally, bool vertically) {
    if (bits == nullptr) {
        return;
    }
    if (horizontally && height >= 1) {
        switch (bytesPerPixel) {
            case 1:
                ReverseEveryRow<1>(bits, width, height, lineWidth);
                break;
            case 3:
                ReverseEveryRow<3>(bits, width, height, lineWidth);
                break;
            default:
                ReverseEveryRow<4>(bits, width, height, lineWidth);
                break;
        }
    }
    if (vertically && height / 2 >= 1 && lineWidth > 0) {
        // Whole memory rows, padding included, exchanged in place.
        for (int row = 0; row < height / 2; ++row) {
            unsigned char* a = bits + static_cast<std::ptrdiff_t>(row) * lineWidth;
            unsigned char* b = bits + static_cast<std::ptrdiff_t>(height - 1 - row) * lineWidth;
            std::swap_ranges(a, a + lineWidth, b);
        }
    }
}
