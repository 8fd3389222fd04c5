#pragma once
// Helpers of the resampling tests: buffers of each format filled from a function or at random, their
// pixels read back, and operations kept as golden blocks.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "golden/Golden.h"
#include "ulogui/PictureBits.h"

namespace resample_test {

// The three pixel formats; the 32-bit one with its alpha flag set.
constexpr int kFormats[] = {PICTBITS_MASK8, PICTBITS_RGB24, PICTBITS_ALPHA};

// Exposes what the tests check about ownership and strides.
class TestBits : public ULOPictureBits {
public:
    using ULOPictureBits::ULOPictureBits;
    bool OwnsBits() const { return ownsBits; }
};

using PixelFunction = std::function<std::uint8_t(int x, int y, int channel)>;

inline void Paint(ULOPictureBits& b, const PixelFunction& f) {
    for (int y = 0; y < b.GetHeight(false); ++y) {
        for (int x = 0; x < b.GetWidth(false); ++x) {
            for (int c = 0; c < b.GetBytesPerPixel(); ++c) {
                b.GetBits(x, y)[c] = f(x, y, c);
            }
        }
    }
}

// Every byte of the block, padding included.
inline void PaintRandom(ULOPictureBits& b, std::mt19937& random) {
    for (int i = 0; i < b.GetLineWidth(false) * b.GetHeight(false); ++i) {
        b.GetBits()[i] = static_cast<std::uint8_t>(random());
    }
}

// The pixels of the picture (no padding), row by row from the top.
inline std::vector<std::uint8_t> Pixels(const ULOPictureBits& b) {
    std::vector<std::uint8_t> all;
    for (int y = 0; y < b.GetHeight(false); ++y) {
        const std::uint8_t* p = b.GetBits(0, y);
        all.insert(all.end(), p, p + b.GetWidth(false) * b.GetBytesPerPixel());
    }
    return all;
}

inline std::vector<std::uint8_t> Block(const ULOPictureBits& b) {
    const std::uint8_t* p = b.GetBits();
    return std::vector<std::uint8_t>(p, p + b.GetLineWidth(false) * b.GetHeight(false));
}

// A byte that differs between neighbouring pixels and channels, so that a pixel taken from the wrong
// place shows.
inline std::uint8_t Distinct(int x, int y, int c) {
    return static_cast<std::uint8_t>(x * 37 + y * 101 + c * 53 + 7);
}

// The pixels as a golden image; a large one as its 64-bit FNV-1a digest (an 8-byte image).
inline golden::Image Picture(const std::string& name, const ULOPictureBits& b) {
    return {name, b.GetWidth(false), b.GetHeight(false), b.GetBytesPerPixel(), Pixels(b)};
}
inline golden::Image Digest(const std::string& name, const ULOPictureBits& b) {
    std::uint64_t h = 14695981039346656037ull;
    for (const std::uint8_t v : Pixels(b)) {
        h = (h ^ v) * 1099511628211ull;
    }
    golden::Image image{name + " digest", 8, 1, 1, {}};
    for (int i = 0; i < 8; ++i) {
        image.bytes.push_back(static_cast<std::uint8_t>(h >> (8 * i)));
    }
    return image;
}

// An operation on a fresh w x h buffer of Distinct pixels, kept as its pixels (or its whole block, padding
// included, when the padding is known) with the size it leaves in the row's name.
struct Operation {
    std::string name;
    int w, h, flags;
    std::function<void(TestBits&)> run;
    bool wholeBlock = false;
};

inline void ExpectOperations(const std::string& family, const std::vector<Operation>& operations) {
    std::vector<golden::Image> images;
    for (const Operation& o : operations) {
        TestBits b(ULOSize(o.w, o.h), o.flags);
        Paint(b, Distinct);
        o.run(b);
        const std::string size = std::to_string(b.GetWidth(false)) + "x" + std::to_string(b.GetHeight(false));
        const int rowBytes = o.wholeBlock ? b.GetLineWidth(false) : b.GetWidth(false) * b.GetBytesPerPixel();
        images.push_back({o.name + " flags " + std::to_string(o.flags) + " -> " + size, rowBytes,
                          b.GetHeight(false), 1, o.wholeBlock ? Block(b) : Pixels(b)});
    }
    golden::ExpectMatches(family, images);
}

}  // namespace resample_test
