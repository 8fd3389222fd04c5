#pragma once
// What a Device::CopyBits call puts on a device, worked out once for every device: which device pixels
// change and which image pixels go there. Devices differ only in how they store the rows.
#include <cstddef>

#include "ulogui/Device.h"

namespace ulogui {
namespace platform {

// The arguments of Device::CopyBits, as the Windows call SetDIBitsToDevice takes them.
struct CopyBitsCall {
    int destX;
    int destY;
    int width;
    int height;
    int srcX;
    int srcY;
    int startScan;
    int scanLines;
    const void* bits;
    const BitmapInfoHeader& header;
    unsigned colorUse;
};

// A rectangle of device pixels and the image pixels that go there. The image is bottom-up, so going
// down one device row goes back one image row in memory: `stride` is negative.
struct DeviceCopy {
    int destX = 0;
    int destY = 0;
    int width = 0;
    int height = 0;
    const unsigned char* top = nullptr;  // the image pixel that lands on (destX, destY)
    std::ptrdiff_t stride = 0;           // bytes from one copied row to the row below it

    bool IsEmpty() const { return width <= 0 || height <= 0; }
    const unsigned char* Row(int k) const { return top + stride * k; }
};

// The part of `call` that lands on a device of deviceWidth x deviceHeight pixels: the rows present in
// `bits`, the columns inside the image, the pixels inside the device. Only uncompressed bottom-up
// 32-bit RGB images are copied; anything else gives an empty copy.
DeviceCopy PlanDeviceCopy(const CopyBitsCall& call, int deviceWidth, int deviceHeight);

}  // namespace platform
}  // namespace ulogui
