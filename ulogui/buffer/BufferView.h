#pragma once
// The raster view of a pixel buffer, sized by its stored (device) geometry through the virtual getters
// with `magnified` true, so that a subclass's view of itself is the one its drawing code uses.
#include "raster/RasterView.h"
#include "ulogui/PictureBits.h"

namespace ulogui {
namespace buffer {

inline raster::RasterView ViewOf(ULOPictureBits& picture) {
    return raster::RasterView::BottomUp(picture.GetBits(), picture.GetWidth(true), picture.GetHeight(true),
                                        picture.GetLineWidth(true), picture.GetBytesPerPixel());
}
// Read-only users take the same view of a const buffer; they never write through it.
inline raster::RasterView ViewOf(const ULOPictureBits& picture) {
    return ViewOf(const_cast<ULOPictureBits&>(picture));
}

}  // namespace buffer
}  // namespace ulogui
