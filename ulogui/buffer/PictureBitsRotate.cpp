// Rotation (exact quarter turns of square buffers, resampled otherwise) and ApplyTransformation. Both
// rotations work in a scratch block and copy it back over the buffer's own block.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include <boost/math/policies/error_handling.hpp>

#include "resample/ResampleBlock.h"
#include "ulogui/GUIMath.h"
#include "ulogui/PictureBits.h"

using namespace ulogui::resample;

namespace {

enum class QuarterTurn { kNone, k90, k180, k270 };

QuarterTurn QuarterTurnOf(float degrees) {
    const auto isNear = [degrees](double angle) {
        return std::fabs(static_cast<double>(degrees) - angle) < 1e-5;
    };
    if (isNear(90.0)) {
        return QuarterTurn::k90;
    }
    if (isNear(180.0)) {
        return QuarterTurn::k180;
    }
    if (isNear(270.0)) {
        return QuarterTurn::k270;
    }
    return QuarterTurn::kNone;
}

}  // namespace

void ULOPictureBits::Rotate90(float degrees) {
    if (std::fabs(degrees) < 1e-5f) {
        return;
    }
    const QuarterTurn turn = QuarterTurnOf(degrees);
    if (turn == QuarterTurn::kNone || !IsWellFormed(bits, width, height, lineWidth, bytesPerPixel, flags)) {
        return;
    }
    const ulogui::raster::RasterView block = ViewOf(bits, width, height, lineWidth, bytesPerPixel);
    if (block.BlockSize() == 0) {
        return;
    }
    // The scratch starts as a copy, so row padding and anything not written keep their bytes.
    std::vector<unsigned char> scratch(bits, bits + block.BlockSize());
    const std::int64_t bpp = bytesPerPixel;
    for (std::int64_t r = 0; r < height; ++r) {
        for (std::int64_t c = 0; c < width; ++c) {
            // Memory rows and columns; meant for square buffers, where every target lies inside.
            std::int64_t toRow = 0;
            std::int64_t toColumn = 0;
            switch (turn) {
                case QuarterTurn::k90:
                    toRow = c;
                    toColumn = height - 1 - r;
                    break;
                case QuarterTurn::k180:
                    toRow = height - 1 - r;
                    toColumn = width - 1 - c;
                    break;
                default:
                    toRow = width - 1 - c;
                    toColumn = r;
                    break;
            }
            const std::int64_t to = toRow * lineWidth + toColumn * bpp;
            if (block.Holds(to, bpp)) {
                std::memcpy(scratch.data() + to, bits + r * lineWidth + c * bpp,
                            static_cast<std::size_t>(bpp));
            }
        }
    }
    std::memcpy(bits, scratch.data(), scratch.size());
}

void ULOPictureBits::Rotate(float degrees) {
    if (!std::isfinite(degrees)) {
        return;
    }
    if (width == height) {
        const float quarters = degrees / 90;
        const int rounded = TruncateSaturated(static_cast<double>(quarters) + 0.5);
        if (std::fabs(static_cast<double>(rounded) - static_cast<double>(quarters)) < 0.01) {
            Rotate90(degrees);
            return;
        }
    }
    if (!IsWellFormed(bits, width, height, lineWidth, bytesPerPixel, flags)) {
        return;
    }
    const ulogui::raster::RasterView block = ViewOf(bits, width, height, lineWidth, bytesPerPixel);
    if (block.BlockSize() == 0 || !block.RowsHoldPixels()) {
        return;
    }
    const ULOPoint centre(width / 2, height / 2);
    const float angle = static_cast<float>(-(static_cast<double>(degrees / 180) * 3.14159265359));
    std::vector<unsigned char> scratch(block.BlockSize(), 255);
    const std::int64_t bpp = bytesPerPixel;
    // 4-byte pixels are addressed with rows of width * 4 bytes, the stride of a 32-bit buffer.
    const std::int64_t rowBytes = bpp == 4 ? static_cast<std::int64_t>(width) * 4 : lineWidth;
    for (int r = 0; r < height; ++r) {
        for (int c = 0; c < width; ++c) {
            ULOPoint p(c, r);
            try {
                ULOGUIMath::RotatePoint(&p, centre, angle);
            } catch (const boost::math::rounding_error&) {
                continue;  // a coordinate beyond the int range is outside the picture anyway
            }
            if (p.x < 0 || p.x >= width || p.y < 0 || p.y >= height) {
                continue;
            }
            const unsigned char* from = bits + p.y * rowBytes + p.x * bpp;
            unsigned char* to = scratch.data() + r * rowBytes + c * bpp;
            if (bpp != 4) {
                std::memcpy(to, from, static_cast<std::size_t>(bpp));
                continue;
            }
            // The source is mixed over what the scratch holds, each weighted by its opacity.
            const int sourceAlpha = from[3];
            const int scratchAlpha = to[3];
            const int sum = sourceAlpha + scratchAlpha;
            const double divisor = sum != 0 ? sum : 1;
            for (int k = 0; k < 3; ++k) {
                to[k] = static_cast<unsigned char>(static_cast<int>(
                    ((255 - scratchAlpha) * to[k] + (255 - sourceAlpha) * from[k]) / divisor));
            }
            to[3] = static_cast<unsigned char>(sourceAlpha);
        }
    }
    std::memcpy(bits, scratch.data(), scratch.size());
}

void ULOPictureBits::ApplyTransformation(ULOPictureTransform transform) {
    if (transform.rotation > 0) {
        Rotate(transform.rotation);
    }
    Mirror(transform.mirrorHorizontally, transform.mirrorVertically);
}
