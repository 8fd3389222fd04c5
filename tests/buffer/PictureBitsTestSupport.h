#pragma once
// Helpers shared by the pixel buffer tests. Ownership mistakes show in the sanitizer build: a block
// freed twice or used after free aborts, a block never freed is reported as a leak.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "ulogui/PictureBits.h"

// Exposes the ownership flag and Reset, which subclasses use.
class ExposedBits : public ULOPictureBits {
public:
    using ULOPictureBits::Reset;
    using ULOPictureBits::ULOPictureBits;
    bool OwnsBits() const { return ownsBits; }
};

// Width, height, stride, bytes per pixel, flags and block, to compare all at once.
using Shape = std::tuple<int, int, int, int, int, const unsigned char*>;

inline Shape ShapeOf(const ULOPictureBits& b) {
    return Shape(b.GetWidth(false), b.GetHeight(false), b.GetLineWidth(false), b.GetBytesPerPixel(),
                 b.GetFlags(), b.GetBits());
}

// The whole block, row padding included.
inline std::vector<unsigned char> Bytes(const ULOPictureBits& b) {
    const unsigned char* bits = b.GetBits();
    return std::vector<unsigned char>(bits, bits + b.GetLineWidth(false) * b.GetHeight(false));
}
