#pragma once
// The band of text output: the surface's rows under the text, handed to the platform's section and
// taken back. Filling the section (the background the platform draws on) and putting it back are
// each one stamped row loop, the way of putting back chosen once per call.
#include "raster/RasterView.h"
#include "ulogui/Color.h"
#include "ulogui/Geometry.h"

namespace ulogui {
namespace surface {

// What the band is drawn over and how it is put back.
struct TextBandMode {
    bool alpha = false;         // the surface carries alpha
    bool darkText = false;      // alpha surfaces: the text is dark (grey < 127), drawn over white
    int grey = 0;               // ((blue + green + red) * 85) >> 8 of colour
    float opacity = 1.0f;       // as the caller gave it
    CLR colour = CLR(0, 0, 0);  // the text colour the alpha composite puts in

    // The backdrop of alpha surfaces and the composite's numbers for a text colour.
    static TextBandMode For(bool alpha, const CLR& colour, float opacity);
};

// The section before the platform draws: the surface's pixels of the band at `origin` (the band's
// top-left pixel on the surface), or on alpha surfaces white (dark text) or black, alpha 255. The band
// is the section's size and lies inside the surface.
void FillTextBand(const raster::RasterView& section, const raster::RasterView& surface, ULOPoint origin,
                  const TextBandMode& mode);

// Puts the drawn section back onto the surface at origin: rows copied (no alpha, opacity 0 or 1),
// the opacity mix of the colour bytes (no alpha), or the alpha composite of the touched pixels.
void PutTextBandBack(const raster::RasterView& section, const raster::RasterView& surface, ULOPoint origin,
                     const TextBandMode& mode);

}  // namespace surface
}  // namespace ulogui
