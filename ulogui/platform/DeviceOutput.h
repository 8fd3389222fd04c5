#pragma once
// Showing pixels on a device context, as ULOPictureBits::SetToDevice needs it: the two device calls
// GetPixel and SetDIBitsToDevice, implemented by the backend for its kind of HDC.
#include "ulogui/Color.h"
#include "ulogui/Device.h"
#include "ulogui/PlatformTypes.h"

namespace ulogui {
namespace platform {

// The colour dc shows at (x, y); white where it shows none (outside it, or an invalid dc).
CLR GetDevicePixel(HDC dc, int x, int y);

// The device behind dc is about to be asked for the colours of `area` (a hint; a window on a display
// server reads the area in one go). Nothing happens for an invalid dc or where reads are cheap.
void ReadAheadOnDevice(HDC dc, const ULORect& area);

// SetDIBitsToDevice: copies the rectangle of width x height pixels whose lower-left corner is
// (srcX, srcY) in a bottom-up image so that its top-left pixel lands on (destX, destY); bits holds
// scanLines rows from row startScan. Returns the number of rows copied (0 on failure).
int SetBitsToDevice(HDC dc, int destX, int destY, int width, int height, int srcX, int srcY, int startScan,
                    int scanLines, const void* bits, const BitmapInfoHeader& header, unsigned colorUse);

}  // namespace platform
}  // namespace ulogui
