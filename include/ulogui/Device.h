#pragma once
// Devices that pixel buffers are shown on (ULOPictureBits::SetToDevice takes an HDC). On Windows an
// HDC is a real device context. Elsewhere an HDC points to a Device: something that offers exactly
// what showing a buffer needs, the colour it currently shows at a point and copying a bottom-up
// 32-bit rectangle onto it (the parameters of the Windows call SetDIBitsToDevice). MemoryDevice is
// a framebuffer in memory with a device handle, the same on every platform. Devices whose reads are
// costly (a window on a display server) may fetch an area at once when told that its pixels are about
// to be read.
#include <cstdint>

#include "ulogui/Color.h"
#include "ulogui/Export.h"
#include "ulogui/Geometry.h"
#include "ulogui/PlatformTypes.h"

namespace ulogui {
namespace platform {

// Describes the pixels handed to CopyBits; field for field a Windows BITMAPINFOHEADER (40 bytes).
struct BitmapInfoHeader {
    uint32_t size = 40;
    int32_t width = 0;
    int32_t height = 0;  // positive: rows bottom-up
    uint16_t planes = 1;
    uint16_t bitCount = 32;
    uint32_t compression = 0;  // kCompressionRGB
    uint32_t sizeImage = 0;
    int32_t xPelsPerMeter = 0;
    int32_t yPelsPerMeter = 0;
    uint32_t clrUsed = 0;
    uint32_t clrImportant = 0;
};
static_assert(sizeof(BitmapInfoHeader) == 40, "BitmapInfoHeader must match the 40-byte bitmap header");

constexpr uint32_t kCompressionRGB = 0;  // uncompressed pixels
constexpr unsigned kColorUseRGB = 0;     // pixels are colours, not palette indices

#if !defined(_WIN32)
class ULODRAW_API Device {
public:
    virtual ~Device();

    // The colour the device shows at (x, y).
    virtual CLR GetPixel(int x, int y) const = 0;

    // GetPixel is about to be asked for points of `area`. A device may read the area in one go and
    // answer from that copy until its next CopyBits or ReadAhead; by default nothing happens.
    virtual void ReadAhead(const ULORect& area);

    // Copies the rectangle of `width` x `height` pixels whose lower-left corner is (srcX, srcY) in the
    // image (rows counted from the bottom, as in a bottom-up bitmap) so that its top-left pixel lands on
    // (destX, destY). `bits` holds `scanLines` rows of the image starting with row `startScan` (counted
    // from the bottom); only those rows can be copied. Returns the number of device rows that received
    // pixels.
    virtual int CopyBits(int destX, int destY, int width, int height, int srcX, int srcY, int startScan,
                         int scanLines, const void* bits, const BitmapInfoHeader& header,
                         unsigned colorUse) = 0;
};
#endif

// A framebuffer in memory, for hosts that render off screen and for tests. Its pixels are kept
// top-down: row 0 is the top row, each row GetStride() bytes of 4-byte pixels blue, green, red, 0.
// GetHDC() is its device handle: on Windows a memory device context with the framebuffer selected
// into it as a 32-bit top-down DIB section, elsewhere the framebuffer's Device.
class ULODRAW_API MemoryDevice {
public:
    // A non-positive side gives an empty framebuffer (whose handle is still valid).
    MemoryDevice(int width, int height, const CLR& background = CLR(0, 0, 0));
    ~MemoryDevice();
    MemoryDevice(const MemoryDevice&) = delete;
    MemoryDevice& operator=(const MemoryDevice&) = delete;

    HDC GetHDC() const;
    int GetWidth() const;
    int GetHeight() const;
    int GetStride() const { return GetWidth() * 4; }
    const unsigned char* GetData() const;

    // Outside the framebuffer: white, the colour that an invalid-colour answer (all bits set) carries.
    CLR GetPixel(int x, int y) const;
    // Ignored outside the framebuffer.
    void SetPixel(int x, int y, const CLR& colour);
    void Fill(const CLR& colour);

    // SetDIBitsToDevice onto this framebuffer: see Device::CopyBits. Uncompressed bottom-up 32-bit
    // images are copied, clipped to the framebuffer; their fourth byte is not kept (a device shows
    // colours, not transparency). Other images (top-down, compressed, not 32-bit, not RGB) copy
    // nothing and return 0.
    int CopyBits(int destX, int destY, int width, int height, int srcX, int srcY, int startScan,
                 int scanLines, const void* bits, const BitmapInfoHeader& header, unsigned colorUse);

private:
    struct Framebuffer;  // the platform's
    Framebuffer* framebuffer_;
};

}  // namespace platform
}  // namespace ulogui
