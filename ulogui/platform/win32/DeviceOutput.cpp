// Showing pixels on a Windows device context: GetPixel and SetDIBitsToDevice themselves.
#include "platform/DeviceOutput.h"

#include <windows.h>

#include <cstring>

namespace ulogui {
namespace platform {

static_assert(sizeof(BitmapInfoHeader) == sizeof(BITMAPINFOHEADER), "BitmapInfoHeader is a BITMAPINFOHEADER");

CLR GetDevicePixel(HDC dc, int x, int y) {
    const COLORREF colour = dc != nullptr ? ::GetPixel(dc, x, y) : CLR_INVALID;
    if (colour == CLR_INVALID) {
        return CLR(255, 255, 255);
    }
    return CLR(GetRValue(colour), GetGValue(colour), GetBValue(colour));
}

// GDI reads a device context's pixels one GetPixel at a time; there is nothing to fetch ahead.
void ReadAheadOnDevice(HDC, const ULORect&) {}

int SetBitsToDevice(HDC dc, int destX, int destY, int width, int height, int srcX, int srcY, int startScan,
                    int scanLines, const void* bits, const BitmapInfoHeader& header, unsigned colorUse) {
    // Only the header is passed: an image that needs a colour table or colour masks after it is not
    // sent, rather than letting GDI read them from beyond the header.
    if (dc == nullptr || bits == nullptr || width < 0 || height < 0 || startScan < 0 || scanLines < 0 ||
        header.bitCount <= 8 || header.clrUsed != 0 || header.compression != BI_RGB) {
        return 0;
    }
    BITMAPINFO info{};
    std::memcpy(&info.bmiHeader, &header, sizeof info.bmiHeader);
    return ::SetDIBitsToDevice(dc, destX, destY, static_cast<DWORD>(width), static_cast<DWORD>(height), srcX,
                               srcY, static_cast<UINT>(startScan), static_cast<UINT>(scanLines), bits, &info,
                               colorUse);
}

}  // namespace platform
}  // namespace ulogui
