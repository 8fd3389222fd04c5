// Clipping a CopyBits call to the image rows handed over, the image and the device.
#include "platform/DeviceCopy.h"

#include <algorithm>
#include <cstdint>

namespace ulogui {
namespace platform {

DeviceCopy PlanDeviceCopy(const CopyBitsCall& call, int deviceWidth, int deviceHeight) {
    const BitmapInfoHeader& header = call.header;
    if (call.bits == nullptr || header.size != sizeof(BitmapInfoHeader) || header.planes != 1 ||
        header.bitCount != 32 || header.compression != kCompressionRGB || call.colorUse != kColorUseRGB ||
        header.width <= 0 || header.height <= 0 || call.width <= 0 || call.height <= 0 ||
        call.startScan < 0 || call.scanLines <= 0) {
        return DeviceCopy();
    }
    // Everything in 64 bits: the sums of two ints must not wrap.
    const int64_t srcX = call.srcX, srcY = call.srcY, destX = call.destX, destY = call.destY;
    const int64_t height = call.height;
    // Image rows (counted from the bottom) present in `bits` and in the image.
    const int64_t firstRow = call.startScan;
    const int64_t endRow = std::min<int64_t>(firstRow + call.scanLines, header.height);
    // Device row k of the rectangle shows image row srcY + height - 1 - k: the rectangle's top row is
    // its highest image row.
    const int64_t k0 = std::max({int64_t{0}, srcY + height - endRow, -destY});
    const int64_t k1 = std::min({height - 1, srcY + height - 1 - firstRow, deviceHeight - 1 - destY});
    const int64_t j0 = std::max({int64_t{0}, -srcX, -destX});
    const int64_t j1 =
        std::min({int64_t{call.width} - 1, int64_t{header.width} - 1 - srcX, deviceWidth - 1 - destX});
    if (k0 > k1 || j0 > j1) {
        return DeviceCopy();
    }
    const int64_t imageStride = int64_t{header.width} * 4;
    DeviceCopy copy;
    copy.destX = static_cast<int>(destX + j0);
    copy.destY = static_cast<int>(destY + k0);
    copy.width = static_cast<int>(j1 - j0 + 1);
    copy.height = static_cast<int>(k1 - k0 + 1);
    copy.stride = static_cast<std::ptrdiff_t>(-imageStride);
    copy.top =
        static_cast<const unsigned char*>(call.bits) +
        static_cast<std::ptrdiff_t>((srcY + height - 1 - k0 - firstRow) * imageStride + (srcX + j0) * 4);
    return copy;
}

}  // namespace platform
}  // namespace ulogui
