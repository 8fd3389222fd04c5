#pragma once
// The routines behind every picture member of the surface, kept apart from the members so that text
// output and other callers can draw a view onto a canvas with a chosen loop and clip:
//
//   - SourceReading: how the rows of a 1-, 3- or 4-byte source become the 4-byte pixels (blue, green,
//     red, alpha) that the transfer loops read;
//   - PictureRoutine: a reading and a stamped transfer loop, chosen once per call (the master's choice,
//     the alpha-only painting of masks, the plain copy);
//   - TransferRows: runs a routine over a planned area (surface/PicturePlan.h), rows in memory order;
//   - SourcePixels: a source as a call reads it, resampled when its magnification differs from the
//     surface's;
//   - PictureCall: the frame of one call with its conversion, its canvas and its source.
//
// docs/picture-drawing.md describes the arithmetic and the choices.
#include <cstdint>

#include "pixelops/PixelTransferLoops.h"
#include "raster/RasterView.h"
#include "surface/DrawingFrame.h"
#include "surface/PicturePlan.h"
#include "ulogui/Color.h"
#include "ulogui/Geometry.h"
#include "ulogui/PictureBits.h"
#include "ulogui/TrueColorDC.h"

namespace ulogui {
namespace surface {

// How source pixels are read as 4-byte pixels. Alpha is a transparency (0 opaque, 255 transparent).
struct SourceReading {
    enum class Kind : uint8_t {
        kInPlace,       // 4-byte pixels, read where they lie
        kColours4,      // the colour bytes of 4-byte pixels, with `alpha`
        kColours3,      // 3-byte pixels, with `alpha`
        kColourAlpha4,  // `colour`, with byte 3 of 4-byte pixels XOR `alpha` as alpha
        kColourAlpha1,  // `colour`, with the byte of 1-byte pixels XOR `alpha` as alpha
        kSolid,         // `colour` and `alpha` for every pixel
    };
    Kind kind = Kind::kInPlace;
    unsigned char colour[3] = {0, 0, 0};  // blue, green, red
    unsigned char alpha = 0;

    // The bytes of a source pixel this reading steps over.
    int SourceBytesPerPixel() const;
};

// The bytes per pixel that a buffer of these flags holds.
int BytesPerPixelOf(int flags);

// A reading and a loop, decided once per call. The default routine draws nothing.
struct PictureRoutine {
    bool draws = false;
    SourceReading reading;
    pixelops::Loop loop;
};

// The master's choice for a source with these flags and pixel size: flag 0x2 copies all four bytes
// (plain at opacity 1.0, mixed by the opacity otherwise), a mask is painted in CLR_LABEL_TEXT at opacity
// 1.0 as SelectAlphaOnlyRoutine paints it, anything else runs the copy type's functor under the wrapper
// of the source's alpha, the destination's alpha and the opacity. Nothing for a copy type outside 0..3,
// or for a source whose pixel size is not the one its flags give. Only 4-byte pixels carry alpha: a
// 3-byte source reads as opaque, a mask as black with its byte as alpha.
PictureRoutine SelectPictureRoutine(int sourceFlags, int bytesPerPixel, bool destinationAlpha, float opacity,
                                    int copyType);
// `colour` painted through the source's alpha (the mask byte, byte 3 of a 4-byte source with
// PICTBITS_ALPHA, opaque otherwise), read as coverage (255 the full colour) when `alphaIsCoverage`;
// mixed as a source with alpha under the opacity and the destination's alpha.
PictureRoutine SelectAlphaOnlyRoutine(int sourceFlags, int bytesPerPixel, bool destinationAlpha,
                                      const CLR& colour, float opacity, bool alphaIsCoverage);
// The pixels copied as they read, alpha included: byte 3 of 4-byte sources with PICTBITS_ALPHA or flag
// 0x2, 0 (opaque) for other 4-byte and for 3-byte sources, the byte of a mask with black colour.
PictureRoutine SelectCopyOnlyRoutine(int sourceFlags, int bytesPerPixel);

// Runs the routine's loop over plan's area of `canvas` (4-byte pixels), reading `source` through the
// routine's reading from the plan's source pixels on. The plan must lie inside both views (PlanAxis with
// their sizes gives such plans). Rows are walked in memory order. A source that shares memory with the
// canvas is read as it was before the call.
void TransferRows(const raster::RasterView& canvas, const TransferPlan& plan,
                  const raster::RasterView& source, const PictureRoutine& routine);

// A view of a buffer's stored pixels, or an empty view when the buffer cannot be read safely: no bits,
// no pixels, a pixel size that is not 1, 3 or 4 or not the one its flags give, rows shorter than their
// pixels.
raster::RasterView ReadableView(const ULOPictureBits& picture);

// A source as a drawing call reads it. A source that is not magnified, drawn on a magnified surface
// with a magnifier other than 1.0, is scaled with EnlargeSmooth to its size in device pixels; a
// magnified source drawn on a surface that is not magnified is scaled to its logical size (GetWidth
// and GetHeight with false). The scaled pixels live in a buffer of this object, freed with it.
class SourcePixels {
public:
    SourcePixels(const ULOPictureBits& source, bool surfaceMagnified, float magnifier);
    SourcePixels(const SourcePixels&) = delete;
    SourcePixels& operator=(const SourcePixels&) = delete;

    bool IsEmpty() const { return view_.IsEmpty(); }
    const raster::RasterView& View() const { return view_; }
    int Flags() const { return flags_; }
    bool IsResampled() const { return resampled_.GetBits() != nullptr; }

private:
    ULOPictureBits resampled_;
    raster::RasterView view_;
    int flags_ = 0;
};

// One picture drawing call on a surface: the frame (conversion decided, guard raised, canvas read), the
// conversion of the call's logical arguments - applied exactly when the frame converts and the
// magnifier is not 1.0 - and the source as the call reads it.
class PictureCall {
public:
    PictureCall(ULOTrueColorDCBase& dc, const ULOPictureBits& source);

    bool IsEmpty() const { return frame_.Canvas().IsEmpty() || source_.IsEmpty(); }
    const raster::RasterView& Canvas() const { return frame_.Canvas(); }
    const raster::RasterView& Source() const { return source_.View(); }
    const DrawingFrame& Frame() const { return frame_; }

    int ToDevice(int v) const;
    ULOPoint ToDevice(ULOPoint p) const { return ULOPoint(ToDevice(p.x), ToDevice(p.y)); }
    ULORect ToDevice(const ULORect& r) const;

    // The master's transfer of device rectangles: src unscaled at dst, within clip.
    void Draw(const ULORect& dst, const ULORect& src, const ULORect& clip,
              const PictureRoutine& routine) const;
    void Draw(const TransferPlan& plan, const PictureRoutine& routine) const;

private:
    DrawingFrame frame_;
    bool convert_;
    SourcePixels source_;
};

// The whole of a drawing call in one: returns at once for an empty rectangle or a routine that draws
// nothing, else converts the three logical rectangles and draws.
void DrawPictureWith(ULOTrueColorDCBase& dc, const ULOPictureBits& source, const ULORect& dst,
                     const ULORect& src, const ULORect& clip, const PictureRoutine& routine);

// Whether the surface's buffer carries alpha (PICTBITS_ALPHA).
inline bool CarriesAlpha(const ULOPictureBits& picture) {
    return (picture.GetFlags() & PICTBITS_ALPHA) != 0;
}

}  // namespace surface
}  // namespace ulogui
