// The platform-bound members of ULOPictureBits: showing a buffer on a device, and asking whether its
// block is writable memory.
#include <algorithm>
#include <climits>
#include <cstdint>

#include "platform/DeviceOutput.h"
#include "platform/WritableMemory.h"
#include "ulogui/PictureBits.h"

namespace {

bool FitsInt(int64_t v) {
    return v >= INT_MIN && v <= INT_MAX;
}

// Composes a pixel over the colour the device shows: alpha 0 keeps the pixel, 255 all but lets the
// background through. Byte 3 stays.
void ComposeOverDevice(unsigned char* pixel, const CLR& device) {
    const int a = pixel[3];
    pixel[0] = static_cast<unsigned char>((pixel[0] * (255 - a) + device.blue * a) >> 8);
    pixel[1] = static_cast<unsigned char>((pixel[1] * (255 - a) + device.green * a) >> 8);
    pixel[2] = static_cast<unsigned char>((pixel[2] * (255 - a) + device.red * a) >> 8);
}

}  // namespace

void ULOPictureBits::SetToDevice(HDC dc, const ULORect* rect, int x, int y) {
    if (dc == nullptr || bits == nullptr || width <= 0 || height <= 0) {
        return;
    }
    // The device reads the block as rows of width 4-byte pixels; a block with shorter rows would be
    // read past its end, so it is not shown.
    if (static_cast<int64_t>(lineWidth) < static_cast<int64_t>(width) * 4) {
        return;
    }
    const ULORect whole(0, 0, width, height);
    const ULORect& part = rect != nullptr ? *rect : whole;
    // The far edges clamp to width - 1 and height - 1, one short of the whole picture, when the
    // rectangle reaches beyond it.
    const int left = std::max(part.left, 0);
    const int top = std::max(part.top, 0);
    const int right = part.right > width ? width - 1 : part.right;
    const int bottom = part.bottom > height ? height - 1 : part.bottom;
    if (!FitsInt(static_cast<int64_t>(x) + left) || !FitsInt(static_cast<int64_t>(x) + right) ||
        !FitsInt(static_cast<int64_t>(y) + top) || !FitsInt(static_cast<int64_t>(y) + bottom) ||
        !FitsInt(static_cast<int64_t>(right) - left) || !FitsInt(static_cast<int64_t>(bottom) - top) ||
        !FitsInt(static_cast<int64_t>(height) - bottom)) {
        return;
    }

    if ((flags & PICTBITS_ALPHA) && left < right && top < bottom) {
        ulogui::platform::ReadAheadOnDevice(dc, ULORect(x + left, y + top, x + right, y + bottom));
        // Memory rows are counted from bottom - top - 1 down to 0 as the device rows go from top to
        // bottom - 1, which is the picture's own row for a rectangle that reaches the bottom edge.
        int memoryRow = bottom - top - 1;
        for (int i = top; i < bottom; ++i, --memoryRow) {
            unsigned char* row = bits + static_cast<std::ptrdiff_t>(memoryRow) * lineWidth;
            for (int c = left; c < right; ++c) {
                unsigned char* pixel = row + static_cast<std::ptrdiff_t>(c) * 4;
                if (pixel[3] != 0) {
                    ComposeOverDevice(pixel, ulogui::platform::GetDevicePixel(dc, x + c, y + i));
                }
            }
        }
    }

    ulogui::platform::BitmapInfoHeader header;
    header.width = width;
    header.height = height;  // positive: bottom-up
    header.planes = 1;
    header.bitCount = 32;  // whatever the flags say
    header.compression = ulogui::platform::kCompressionRGB;
    header.sizeImage = 0;
    header.xPelsPerMeter = 1000;
    header.yPelsPerMeter = 1000;
    ulogui::platform::SetBitsToDevice(dc, x + left, y + top, right - left, bottom - top, left,
                                      height - bottom, 0, height, bits, header,
                                      ulogui::platform::kColorUseRGB);
}

bool ULOPictureBits::IsBadBitsPtr() const {
    const int64_t size = static_cast<int64_t>(lineWidth) * height;
    if (size == 0) {
        return false;
    }
    // A negative size stands for a range reaching to the end of the address space, which is never
    // wholly writable.
    if (size < 0 || bits == nullptr) {
        return true;
    }
    return !ulogui::platform::IsWritableRange(bits, static_cast<size_t>(size));
}
