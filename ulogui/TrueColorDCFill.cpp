// The reference drawing members of the surface: a filled rectangle and a single pixel.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ulogui/DrawingFrame.h"
#include "ulogui/TrueColorDC.h"

using ulogui::surface::DeviceCanvas;
using ulogui::surface::DeviceConversion;
using ulogui::surface::DrawingFrame;

namespace {

// Writes one fixed pixel: colour and alpha in memory order.
struct StorePixel {
    uint32_t pattern;
    void operator()(unsigned char* p) const { std::memcpy(p, &pattern, sizeof pattern); }
};

// Applies `pixel` to `count` consecutive 4-byte pixels. This file is built for vectorising, so a
// store of a fixed pattern becomes wide stores.
template <typename PixelOp>
void ForEachPixelInRow(unsigned char* row, int count, PixelOp pixel) {
    for (int x = 0; x < count; ++x) {
        pixel(row + static_cast<std::ptrdiff_t>(x) * 4);
    }
}

}  // namespace

void ULOTrueColorDCBase::FillRect(const ULORect* rect, const CLR& colour, unsigned char alpha) {
    if (rect == nullptr || rect->IsEmpty()) {
        return;
    }
    const DrawingFrame frame(*this);
    const DeviceCanvas& canvas = frame.Canvas();
    ULORect area = frame.ToDevice(*rect);
    if (!canvas.Clip(area)) {
        return;
    }
    const unsigned char pixel[4] = {colour.blue, colour.green, colour.red, alpha};
    StorePixel store{};
    std::memcpy(&store.pattern, pixel, sizeof pixel);

    // The top row is written pixel by pixel; every row below it is a block copy of that row.
    const int count = area.right - area.left;
    unsigned char* first = canvas.Pixel(area.left, area.top);
    ForEachPixelInRow(first, count, store);
    const size_t rowBytes = static_cast<size_t>(count) * 4;
    unsigned char* row = first;
    for (int y = area.top + 1; y < area.bottom; ++y) {
        row -= canvas.Stride();
        std::memcpy(row, first, rowBytes);
    }
}

void ULOTrueColorDCBase::DrawPixel(const ULOPoint& point, const CLR& colour) {
    if (DeviceConversion(*this).PixelIsBlock()) {
        // The logical pixel is a block of device pixels; alpha 0 like the colour bytes of a plain pixel
        // being opaque.
        const ULORect block = DeviceConversion::PixelRect(point);
        FillRect(&block, colour, 0);
        return;
    }
    const DrawingFrame frame(*this);
    const DeviceCanvas& canvas = frame.Canvas();
    if (canvas.IsEmpty()) {
        return;
    }
    const ULOPoint p = canvas.Clamp(frame.ToDevice(point));
    unsigned char* target = canvas.Pixel(p.x, p.y);
    target[0] = colour.blue;
    target[1] = colour.green;
    target[2] = colour.red;
}
