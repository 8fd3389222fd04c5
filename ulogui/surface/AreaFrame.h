#pragma once
// The frame of the area members that convert their arguments whenever the guard is down, without
// asking whether the surface is magnified (deliberately): FillAlphaRect, the gradations, DrawShadow
// and ScrollArea. On a surface that is not magnified, a thread magnifier other than 1.0 therefore
// scales their rectangles too. Apart from that they run as DrawingFrame does: the magnifier is read
// once, the guard goes up, the canvas is read inside it, and the guard comes down when the frame dies.
#include "base/MagnifyRounding.h"
#include "raster/RasterView.h"
#include "surface/DrawingFrame.h"
#include "ulogui/Geometry.h"
#include "ulogui/Magnify.h"
#include "ulogui/TrueColorDC.h"

namespace ulogui {
namespace surface {

class AreaFrame {
public:
    // Which surfaces have their guard raised: magnified ones only, as in every other member, or all of
    // them (the gradations, DrawShadow and ScrollArea set it unconditionally and restore it).
    enum class Guard { kWhenMagnified, kAlways };

    AreaFrame(ULOTrueColorDCBase& dc, Guard guard)
        : magnifier_(magnify::GetMagnifier()),
          convert_(!dc.GetWorkingOnScreenSize()),
          guard_(dc, guard == Guard::kAlways || dc.IsMagnified()),
          canvas_(DeviceView(dc)) {}

    float Magnifier() const { return magnifier_; }
    int ToDevice(int v) const { return convert_ ? base::ToDevice(v, magnifier_) : v; }
    ULORect ToDevice(const ULORect& r) const { return convert_ ? base::ToDevice(r, magnifier_) : r; }
    const raster::RasterView& Canvas() const { return canvas_; }

private:
    // Raises the guard through the surface's public setter and puts the old value back.
    class RaisedGuard {
    public:
        RaisedGuard(const ULOTrueColorDCBase& dc, bool active)
            : dc_(dc), saved_(dc.GetWorkingOnScreenSize()), active_(active) {
            if (active_) {
                dc_.SetWorkingOnScreenSize(true);
            }
        }
        ~RaisedGuard() {
            if (active_) {
                dc_.SetWorkingOnScreenSize(saved_);
            }
        }
        RaisedGuard(const RaisedGuard&) = delete;
        RaisedGuard& operator=(const RaisedGuard&) = delete;

    private:
        const ULOTrueColorDCBase& dc_;
        const bool saved_;
        const bool active_;
    };

    float magnifier_;
    bool convert_;  // decided before the guard goes up
    RaisedGuard guard_;
    raster::RasterView canvas_;
};

}  // namespace surface
}  // namespace ulogui
