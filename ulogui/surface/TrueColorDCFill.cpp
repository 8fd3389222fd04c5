// The reference drawing members of the surface: a filled rectangle and a single pixel.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "surface/DrawingFrame.h"
#include "ulogui/TrueColorDC.h"

using ulogui::surface::DeviceConversion;
using ulogui::surface::DrawingFrame;

namespace {

// Writes one fixed pixel (colour and alpha in memory order), singly or sixteen at a time. The run of
// sixteen has a fixed length, so the compiler makes it a few of the widest stores the target has, from
// one register.
class StorePixel {
public:
    static constexpr int kRunPixels = 16;

    explicit StorePixel(const unsigned char (&pixel)[4]) { std::memcpy(&pattern_, pixel, sizeof pattern_); }
    void operator()(unsigned char* p) const { std::memcpy(p, &pattern_, sizeof pattern_); }
    void Run(unsigned char* p) const {
        for (int i = 0; i < kRunPixels; ++i) {
            std::memcpy(p + i * 4, &pattern_, sizeof pattern_);
        }
    }

private:
    uint32_t pattern_ = 0;
};

// Applies `store` to `count` consecutive 4-byte pixels from `first`, whole runs first.
template <typename Store>
void StorePixels(unsigned char* first, std::ptrdiff_t count, const Store& store) {
    std::ptrdiff_t x = 0;
    for (; x + Store::kRunPixels <= count; x += Store::kRunPixels) {
        store.Run(first + x * 4);
    }
    for (; x < count; ++x) {
        store(first + x * 4);
    }
}

}  // namespace

void ULOTrueColorDCBase::FillRect(const ULORect* rect, const CLR& colour, unsigned char alpha) {
    if (rect == nullptr || rect->IsEmpty()) {
        return;
    }
    const DrawingFrame frame(*this);
    const ulogui::raster::RasterView& canvas = frame.Canvas();
    ULORect area = frame.ToDevice(*rect);
    if (!canvas.Clip(area)) {
        return;
    }
    const unsigned char pixel[4] = {colour.blue, colour.green, colour.red, alpha};
    const StorePixel store(pixel);

    // Every row is stored directly rather than copied from the first one: the same bytes, without
    // reading a row back for each row written.
    const int count = area.right - area.left;
    const int rows = area.bottom - area.top;
    if (count == canvas.Width() && -canvas.Stride() == static_cast<std::ptrdiff_t>(count) * 4) {
        // Whole rows of an unpadded bottom-up buffer lie end to end from the bottom one: one run instead of
        // one per row.
        StorePixels(canvas.Pixel(area.left, area.bottom - 1), static_cast<std::ptrdiff_t>(count) * rows,
                    store);
        return;
    }
    // Bottom row first, in the order the rows lie in memory.
    for (int y = area.bottom - 1; y >= area.top; --y) {
        StorePixels(canvas.Pixel(area.left, y), count, store);
    }
}

void ULOTrueColorDCBase::DrawPixel(const ULOPoint& point, const CLR& colour) {
    if (DeviceConversion(*this).PixelIsBlock()) {
        // The logical pixel is a block of device pixels, filled whole and made opaque (alpha 0).
        const ULORect block = DeviceConversion::PixelRect(point);
        FillRect(&block, colour, 0);
        return;
    }
    const DrawingFrame frame(*this);
    const ulogui::raster::RasterView& canvas = frame.Canvas();
    if (canvas.IsEmpty()) {
        return;
    }
    const ULOPoint p = canvas.Clamp(frame.ToDevice(point));
    unsigned char* target = canvas.Pixel(p.x, p.y);
    target[0] = colour.blue;
    target[1] = colour.green;
    target[2] = colour.red;
}
