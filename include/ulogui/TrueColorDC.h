#pragma once
// ULOTrueColorDCBase: the software true-colour drawing surface. It owns a 32-bit pixel buffer (blue,
// green, red, alpha; rows bottom-up) and draws into it with its own rasterisation.
//
// Every drawing member takes logical coordinates. On a magnified surface the buffer holds device pixels
// (the logical size times the calling thread's magnifier), so a drawing member converts its arguments
// once, then raises the surface's guard flag (workingOnScreenSize) for as long as it runs: while the
// guard is up, the size getters report device sizes and nested drawing calls take their arguments as
// device pixels. A surface that is not magnified never converts and never touches the guard.
//
// Drawing reports no errors: rectangles are clipped to the buffer, points are clamped onto its border,
// empty rectangles draw nothing.
#include <boost/shared_ptr.hpp>
#include <utility>

#include "ulogui/Color.h"
#include "ulogui/Export.h"
#include "ulogui/Geometry.h"
#include "ulogui/Picture.h"
#include "ulogui/PixelTransfer.h"
#include "ulolib/ArrayNoStl.h"
#include "ulolib/CriticalSection.h"

namespace ulogui {
namespace surface {
class DeviceScope;
}  // namespace surface
}  // namespace ulogui

class ULOFont;

class ULODRAW_API ULOTrueColorDCBase : public ULOPicture {
public:
    // How picture drawing renders each source pixel (values are fixed).
    using ECopyPictureType = ulogui::ECopyPictureType;
    static constexpr ECopyPictureType eCopyNormal = ulogui::eCopyNormal;
    static constexpr ECopyPictureType eCopyHighlight = ulogui::eCopyHighlight;
    static constexpr ECopyPictureType eCopyDisabled = ulogui::eCopyDisabled;
    static constexpr ECopyPictureType eCopyDarken = ulogui::eCopyDarken;

    // A surface of the rectangle's size, cleared to black with alpha 0 (opaque). With `magnified` the
    // rectangle is logical and the buffer gets its device size under the calling thread's magnifier.
    // A side below one pixel becomes one pixel. `alpha` marks the buffer as carrying alpha
    // (PICTBITS_ALPHA). A size whose buffer cannot be allocated, or whose row does not fit a 32-bit
    // stride, throws std::bad_alloc.
    ULOTrueColorDCBase(const ULORect& rect, bool alpha, bool magnified);
    // A view of the same pixels with the same flags and magnification; it never frees them.
    ULOTrueColorDCBase(const ULOTrueColorDCBase& other);
    // Copies pixels only: GetLineWidth(false) * GetHeight(false) bytes of this surface, read through
    // the virtual getters, so a magnified surface outside a drawing call copies only its logical share
    // of the bytes. Sizes are not compared; the count is cut to what both blocks hold. Geometry and
    // flags stay as they are.
    const ULOTrueColorDCBase& operator=(const ULOTrueColorDCBase& other);
    // A surface that did not allocate its buffer lets it go without freeing it.
    ~ULOTrueColorDCBase() override;

    // Held by text output while the platform rasterises glyphs; shared by all surfaces.
    static ulo::CriticalSection csFontTextOut;

private:
    // Whether the raw bits may be addressed with the caller's coordinates: inside the guard, or on a
    // surface that is not magnified.
    bool CanGetBits() const override;

public:
    // The stored (device) size when the guard is up, the magnifier is exactly 1.0, the surface is not
    // magnified or `magnified` is true; otherwise the logical size floor(stored / m + 0.5).
    int GetWidth(bool magnified) const override;
    int GetHeight(bool magnified) const override;
    ULOSize GetSize(bool magnified) const override;
    // The byte stride by the same rule: on a magnified surface outside the guard it is divided by the
    // magnifier like a length, which is what operator= relies on.
    int GetLineWidth(bool magnified) const override;

    // The size-changing operations take logical units outside the guard on a magnified surface and
    // device pixels otherwise; they run the pixel buffer's own operation on device pixels.
    void Crop(int newWidth, int newHeight, ECropPosition position) override;
    // Cropping is a copy-resize to the rectangle's own size with the rectangle as source.
    void Crop(ULORect rect) override;
    void ResizeToWidth(int newWidth, EResizeMethod method) override;
    void ResizeToHeight(int newHeight, EResizeMethod method) override;
    void Resize(int newWidth, int newHeight, const ULORect& source, EResizeMethod method) override;
    void Resize(int newWidth, int newHeight, EResizeMethod method) override;
    void ResizeLazy(int newWidth, int newHeight) override;
    void HResize(int newWidth) override;

    bool IsMagnified() const override;

    // Text output (TextOutW) is the next virtual operation of the class and comes after these.

    // Kept for the owner of the surface; no drawing member sets it.
    void SetUpdated(bool isUpdated) { updated = isUpdated; }
    bool GetUpdated() const { return updated; }
    // Whether text output underlines mnemonic characters.
    void SetEnableMnemonic(bool enable) { enableMnemonic = enable; }
    bool GetEnableMnemonic() const { return enableMnemonic; }
    // The guard flag. Drawing members raise and restore it themselves; a caller that raises it works in
    // device pixels until it lowers it again.
    void SetWorkingOnScreenSize(bool onScreenSize) const { workingOnScreenSize = onScreenSize; }
    bool GetWorkingOnScreenSize() const { return workingOnScreenSize; }

    // Fills `rect` (clipped to the surface) with the colour and writes `alpha` into every alpha byte.
    // A null or empty rectangle draws nothing.
    void FillRect(const ULORect* rect, const CLR& colour, unsigned char alpha);
    // Colours one pixel (colour bytes only), clamped onto the nearest border when it lies outside. On a
    // magnified surface outside the guard, with a magnifier other than 1.0, the logical pixel is its
    // whole device block: it is filled like FillRect of (x, y, x + 1, y + 1) with alpha 0, and clipped
    // like it.
    void DrawPixel(const ULOPoint& point, const CLR& colour);

    // ---- Pixels, lines, rectangle outlines, frames, arcs and curves (TrueColorDCLines*.cpp) ----
    //
    // Plain forms replace the colour bytes, Alpha forms mix the colour with the background by an
    // opacity (0..1, held to that range; NaN draws nothing), Relative forms add the colour's bytes to
    // the background as signed offsets, clamped. None of them writes the alpha byte, except
    // DrawLineOnAlpha. Dashes: dashOn pixels drawn, then dashOff skipped (dashOff below 1: as many as
    // drawn); dashOn 0 or below is solid. docs/lines-and-arcs.md has the rules in full.

    // Where the nominal radius of DrawArc lies in its ring (values are fixed; any other value acts as
    // the first).
    enum ERadiusThicknessRelation {
        eRadiusIsMiddle = 0,  // the ring runs from radius - thickness / 2 to radius + thickness / 2
        eRadiusIsInner = 1,   // the ring grows outward from the radius
        eRadiusIsOuter = 2,   // the ring grows inward from the radius
    };

    // One pixel, clamped onto the border when outside; on a magnified surface outside the guard the
    // logical pixel's whole device block, clipped.
    void DrawPixelAlpha(const ULOPoint& point, const CLR& colour, float opacity);
    void DrawPixelRelative(const ULOPoint& point, const CLR& colour);

    // A line from `from` toward `to`, the end point not drawn: anti-aliased when diagonal, crisp (and
    // as thick as the magnifier) when horizontal or vertical. Each end is clamped onto the surface.
    void DrawLine(const ULOPoint& from, const ULOPoint& to, const CLR& colour, int dashOn = 0,
                  int dashOff = 0);
    void DrawLineRelative(const ULOPoint& from, const ULOPoint& to, const CLR& colour, int dashOn = 0,
                          int dashOff = 0);
    void DrawLineAlpha(const ULOPoint& from, const ULOPoint& to, const CLR& colour, float opacity,
                       int dashOn = 0, int dashOff = 0);
    // As DrawLineAlpha, for surfaces whose alpha byte matters: each pixel is composited onto the
    // background with its transparency, and the alpha byte becomes the combined transparency, so a line
    // drawn on a transparent surface is visible where it is drawn.
    void DrawLineOnAlpha(const ULOPoint& from, const ULOPoint& to, const CLR& colour, float opacity,
                         int dashOn = 0, int dashOff = 0);

    // `length` pixels right of (below) `start`, or left of (above) it when negative; one logical pixel
    // thick. A span that would run past the right (bottom) edge stops one pixel short of it.
    void DrawHorizontalLine(const ULOPoint& start, int length, const CLR& colour, int dashOn = 0,
                            int dashOff = 0);
    void DrawHorizontalLineRelative(const ULOPoint& start, int length, const CLR& colour, int dashOn = 0,
                                    int dashOff = 0);
    void DrawHorizontalLineAlpha(const ULOPoint& start, int length, const CLR& colour, float opacity,
                                 int dashOn = 0, int dashOff = 0);
    void DrawVerticalLine(const ULOPoint& start, int length, const CLR& colour, int dashOn = 0,
                          int dashOff = 0);
    void DrawVerticalLineRelative(const ULOPoint& start, int length, const CLR& colour, int dashOn = 0,
                                  int dashOff = 0);
    void DrawVerticalLineAlpha(const ULOPoint& start, int length, const CLR& colour, float opacity,
                               int dashOn = 0, int dashOff = 0);

    // The outline of `rect` (its right and bottom edges inside it), each edge dashed on its own. An
    // empty rectangle draws nothing.
    void DrawRect(const ULORect& rect, const CLR& colour, int dashOn = 0, int dashOff = 0);
    void DrawRectRelative(const ULORect& rect, const CLR& colour, int dashOn = 0, int dashOff = 0);
    void DrawRectAlpha(const ULORect& rect, const CLR& colour, float opacity, int dashOn = 0,
                       int dashOff = 0);
    // A bevel: white top and left edges and black bottom and right ones when raised, the other way
    // round when not.
    void Draw3DRect(const ULORect& rect, bool raised);
    // A sunken frame that darkens and lightens what lies beneath (relative colours only).
    void DrawRecessedFrame(const ULORect& rect);

    // A ring segment around `centre`: angles in radians, clockwise on screen from the +x axis, `sweep`
    // of either sign. `thickness` is placed by `relation`; `smooth` fades the ring's edges. When `clip`
    // is not empty only segments inside it are drawn; parts off the surface are never drawn.
    void DrawArc(CLR colour, ULORect clip, ULOPoint centre, float radius, float startAngle, float sweep,
                 float thickness, ERadiusThicknessRelation relation, bool smooth);

    // A chart curve through the first `count` samples: sample i at (i, values[i]) (TraceCurvefX) or
    // (values[i], i) (TraceCurvefY), in logical units, joined by anti-aliased lines at `opacity`.
    // `range`, when given, limits the samples to the indices [first, second). A NaN sample is a gap.
    void TraceCurvefX(int count, const ULOArray_NOSTL<double>& values, const CLR& colour, float opacity,
                      const std::pair<int, int>* range = nullptr);
    void TraceCurvefY(int count, const ULOArray_NOSTL<double>& values, const CLR& colour, float opacity,
                      const std::pair<int, int>* range = nullptr);
    // The area between the curve of TraceCurvefX and a baseline: sample i fills column origin.x + i
    // from values[i] to the baseline row origin.y, in `above` where the curve lies above the baseline
    // and `below` where it lies below, anti-aliased at the curve; then the baseline itself in
    // `baseline` across the columns of the samples drawn. All at `opacity`; `range` as for the curves.
    void FillBackGroundfX(int count, const ULOArray_NOSTL<double>& values, const ULOPoint& origin,
                          const CLR& above, const CLR& below, const CLR& baseline, float opacity = 1.0f,
                          const std::pair<int, int>* range = nullptr);

    // ---- Fills, gradations, textures, shadows and scrolling (TrueColorDCFills*.cpp) ----
    // docs/fills-and-scrolling.md gives the arithmetic and the geometry of each member. Opacities are
    // held to 0..1 (outside acts as the nearer bound, NaN as 0). A null or empty rectangle draws nothing.

    // The alpha colour write over the rectangle: (c * a + dst * (255 - a)) / 255, a = trunc(opacity * 255).
    void FillRectAlpha(const ULORect* rect, const CLR& colour, float opacity);
    // The colour's bytes are signed offsets added to every pixel, clamped to 0..255.
    void FillRectRelative(const ULORect* rect, const CLR& colour);
    // The offsets scaled by the opacity first: clamp(trunc(s * opacity + dst), 0, 255) in float.
    void FillRectRelativeAlpha(const ULORect* rect, const CLR& colour, float opacity);
    // Colours only the pixels whose alpha byte (transparency) is at least `threshold`; alpha unchanged.
    void FillRectOnTransparentPart(const ULORect* rect, const CLR& colour, unsigned char threshold);
    // Writes `alpha` into byte 3 of every pixel, colour unchanged. Converts the rectangle whenever the
    // guard is down, on a surface that is not magnified too.
    void FillAlphaRect(const ULORect* rect, unsigned char alpha);

    // Two-colour ramps over `area` (clipped to the surface) with an alpha ramp, t running from 0 at
    // the gradient rectangle's left/top edge to 1 at its right/bottom edge. Both rectangles convert
    // whenever the guard is down, on a surface that is not magnified too. The horizontal one writes
    // colour and alpha; the vertical one blends the colour with the alpha write and keeps byte 3; the
    // diagonal one writes, along t = ((x - left) + (y - top)) / (width + height).
    void FillRectHorizontalGradation(const ULORect* gradient, const ULORect* area, const CLR& from,
                                     const CLR& to, float alphaFrom, float alphaTo);
    void FillRectVerticalGradation(const ULORect* gradient, const ULORect* area, const CLR& from,
                                   const CLR& to, float alphaFrom, float alphaTo);
    void FillRectTopLeftToBottomRightGradation(const ULORect* gradient, const ULORect* area, const CLR& from,
                                               const CLR& to, float alphaFrom, float alphaTo);

    // Tiles a picture over the rectangle, drawn as picture drawing draws it with eCopyNormal (its alpha
    // and the opacity respected). Tiles start at `origin` (a point on the surface), or at the
    // rectangle's top-left. A picture whose magnification differs from the surface's is scaled once per
    // call. The ID forms take the picture from the catalogue; an ID it does not hold draws nothing.
    void FillRectWithTexture(const ULOPicture& picture, const ULORect& rect);
    void FillRectWithTexture(const ULOPicture& picture, const ULORect& rect, const ULOPoint& origin,
                             float opacity);
    void FillRectWithTexture(int pictureId, const ULORect& rect);
    void FillRectWithTexture(int pictureId, const ULORect& rect, const ULOPoint& origin);
    // The same over the whole surface, tiles starting at its top-left pixel.
    void FillWithTexture(const ULOPicture& picture);
    void FillWithTexture(int pictureId);

    // Darkens two bands of width `size` (device pixels) beside `rect`, one to its right and one below
    // it, fading from a factor of 1 - strength next to the rectangle to nothing at distance `size`;
    // multiplies the colour bytes, alpha unchanged. `clip` (may be null) bounds the bands; what falls
    // outside the surface is skipped.
    void DrawShadow(const ULORect* rect, const ULORect* clip, int size, float strength);

    // Every pixel (x, y) of the area takes the value of (x + offset.cx, y + offset.cy) when that lies in
    // the area too; the others keep theirs. A positive offset moves the contents up and to the left.
    // The first form scrolls the whole surface.
    void ScrollArea(const ULOSize& offset);
    void ScrollArea(const ULOSize& offset, const ULORect& area);

    // ---- Picture drawing (TrueColorDCPictures*.cpp) ----
    // docs/picture-drawing.md gives the rectangles of every member, the clipping and the arithmetic.
    // Rectangles and points are logical, like every drawing member's; the source may be any pixel buffer
    // or picture of 1, 3 or 4 bytes per pixel. A source that is not magnified is scaled smoothly to
    // device pixels for a magnified surface (and a magnified source to logical pixels for a surface that
    // is not) before it is drawn. A copy type outside 0..3 draws nothing; an opacity outside 0..1 acts as
    // the nearer bound, a NaN as 0. Nothing is drawn for a source without pixels.

    // The master: the part `src` of the source is drawn unscaled with its top-left pixel at dst's
    // top-left, where dst, src (moved onto dst), the picture (moved the same way), clip and the surface
    // overlap. Flag 0x2 of the source copies all four bytes of its pixels, a mask (PICTBITS_MASK8) is
    // painted in CLR_LABEL_TEXT at opacity 1.0; otherwise the copy type's transfer runs under the
    // blending of the source's alpha, the surface's alpha and the opacity.
    void DrawPicture(const ULOPictureBits& source, const ULORect& dst, const ULORect& src,
                     const ULORect& clip, ECopyPictureType type, float opacity);
    // At `point`, the part src of the source, within clip / within the rectangle it is drawn on.
    void DrawPicture(const ULOPictureBits& source, const ULOPoint& point, const ULORect& src,
                     const ULORect& clip, ECopyPictureType type, float opacity);
    void DrawPicture(const ULOPictureBits& source, const ULOPoint& point, const ULORect& src,
                     ECopyPictureType type, float opacity);
    // The whole source (its logical size) at `point`.
    void DrawPicture(const ULOPictureBits& source, const ULOPoint& point, ECopyPictureType type,
                     float opacity);
    // The part src at dst's top-left, within dst.
    void DrawPicture(const ULOPictureBits& source, const ULORect& dst, const ULORect& src,
                     ECopyPictureType type, float opacity);
    // dst filled from the source pixel `srcOrigin` on, within clip / within dst.
    void DrawPicture(const ULOPictureBits& source, const ULORect& dst, const ULOPoint& srcOrigin,
                     const ULORect& clip, ECopyPictureType type, float opacity);
    void DrawPicture(const ULOPictureBits& source, const ULORect& dst, const ULOPoint& srcOrigin,
                     ECopyPictureType type, float opacity);
    // The whole source at dst's top-left, within dst.
    void DrawPicture(const ULOPictureBits& source, const ULORect& dst, ECopyPictureType type, float opacity);
    // The whole source at the surface's top-left.
    void DrawPicture(const ULOPictureBits& source, ECopyPictureType type, float opacity);

    // The source anchored at rect's top-left and drawn within rect, opacity 1.0 / `opacity`. With
    // `skip`, its first skip->x columns and skip->y rows are left out (not drawn, not shifted). A null
    // source or rectangle draws nothing.
    void CopyPicture(const ULOPictureBits* source, const ULORect* rect, ECopyPictureType type,
                     ULOPoint* skip = nullptr);
    void CopyPictureAlpha(const ULOPictureBits* source, const ULORect* rect, float opacity,
                          ECopyPictureType type, ULOPoint* skip = nullptr);

    // The source drawn into dst, wider or narrower than the source, by repeating single source columns
    // (rows) at the stretch points, so that what lies between the points keeps its size. `points` are
    // source columns (rows) counted from srcOrigin, in increasing order; a single point -1 means the
    // middle column (row) and is replaced by it in the caller's array. A destination narrower (shorter)
    // than the source drops the source columns (rows) centred on the first point. Every piece is drawn as
    // the master draws the source with eCopyNormal. The shorter forms draw from the source's top-left
    // pixel and within dst, and take a single point as an array of one.
    void DrawHEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, const ULOPoint& srcOrigin,
                              const ULORect& clip, int* points, int count, float opacity);
    void DrawHEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, const ULOPoint& srcOrigin,
                              const ULORect& clip, int point, float opacity);
    void DrawHEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, const ULOPoint& srcOrigin,
                              int* points, int count, float opacity);
    void DrawHEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, const ULOPoint& srcOrigin,
                              int point, float opacity);
    void DrawHEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, int* points, int count,
                              float opacity);
    void DrawHEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, int point, float opacity);
    void DrawVEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, const ULOPoint& srcOrigin,
                              const ULORect& clip, int* points, int count, float opacity);
    void DrawVEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, const ULOPoint& srcOrigin,
                              const ULORect& clip, int point, float opacity);
    void DrawVEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, const ULOPoint& srcOrigin,
                              int* points, int count, float opacity);
    void DrawVEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, const ULOPoint& srcOrigin,
                              int point, float opacity);
    void DrawVEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, int* points, int count,
                              float opacity);
    void DrawVEnlargedPicture(const ULOPictureBits& source, const ULORect& dst, int point, float opacity);

    // One column of the source (skip->x, or 0) repeated across the whole width of rect, its rows from
    // skip->y (or 0) on, unscaled, from rect's top; vertically, one row (skip->y) repeated down rect's
    // height, its columns from skip->x on. Drawn as the master draws the source, within rect.
    void ExtrudePictureHorizontally(const ULOPictureBits* source, const ULORect* rect, ECopyPictureType type,
                                    ULOPoint* skip = nullptr);
    void ExtrudePictureVertically(const ULOPictureBits* source, const ULORect* rect, ECopyPictureType type,
                                  ULOPoint* skip = nullptr);
    void ExtrudePictureHorizontallyAlpha(const ULOPictureBits* source, const ULORect* rect, float opacity,
                                         ECopyPictureType type, ULOPoint* skip = nullptr);
    void ExtrudePictureVerticallyAlpha(const ULOPictureBits* source, const ULORect* rect, float opacity,
                                       ECopyPictureType type, ULOPoint* skip = nullptr);

    // `colour` painted through the alpha of the source: its transparency (255 lets the background
    // through) decides how much of the colour each pixel gets, the source's colours are ignored. Alpha
    // is the mask byte, byte 3 of a 4-byte source with PICTBITS_ALPHA, and opaque for other sources.
    // Anchored at rect's top-left within rect, skipping skip->x columns and skip->y rows like
    // CopyPicture. With `alphaIsCoverage` the alpha is read the other way round (255 the full colour),
    // as glyph masks are stored.
    void CopyAlphaOnlyColors(const ULOPictureBits* source, const ULORect* rect, const CLR& colour,
                             const ULOPoint* skip, float opacity, bool alphaIsCoverage);
    // `colour` painted through the mask's alpha (as CopyAlphaOnlyColors) with the mask's top-left at
    // `point`, within clip.
    void DrawMask(const ULOPicture& mask, const CLR& colour, const ULOPoint& point, const ULORect& clip,
                  float opacity);
    // The picture on a ground of `colour`, both cut out by the mask: where the mask is opaque the picture
    // shows over the colour, where it is transparent the surface stays. The picture's and the mask's
    // top-left pixels are at `point`; within clip.
    void DrawMaskedPicture(const ULOPicture& picture, const ULOPicture& mask, const CLR& colour,
                           const ULOPoint& point, const ULORect& clip);
    // The pixels replaced by the source's, alpha included, with the master's rectangles: no copy type,
    // no opacity, no blending. Byte 3 comes from sources with PICTBITS_ALPHA or flag 0x2; other sources
    // write 0 (opaque); a mask writes black with its byte as alpha.
    void CopyOnlyPicture(const ULOPictureBits& source, const ULORect& dst, const ULORect& src,
                         const ULORect& clip);
    // This surface drawn onto `target` by the target's master at opacity 1.0: the part sourceRect of this
    // surface (logical here) into targetRect (logical there), within targetRect. A null targetRect is the
    // target's whole rectangle, a null sourceRect the part of targetRect's size at this surface's
    // top-left. A null target draws nothing.
    void BlitToTrueColor(ULOTrueColorDCBase* target, const ULORect* targetRect, const ULORect* sourceRect,
                         ECopyPictureType type) const;

    // ---- Text output (TrueColorDCText*.cpp) ----
    // The text members share their last arguments:
    //   flags: 0x2 centred, 0x4 right-aligned (wins over 0x2), 0x8 an opaque box in `colour` with the
    //     glyphs in `backColour`, 0x20 italic, 0x100 or 0x80 underlined; other bits are ignored;
    //   colour: the text colour; opacity: 0 or 1 draw the text fully, values between blend it in;
    //   tabStartX: the logical x that tab stops are measured from; backColour: see flag 0x8.
    // A null font, rectangle or text draws nothing and returns 0.

    // One line of text on the bottom rows of `rect` (logical), one font height at most, rasterised by
    // the platform under csFontTextOut and composited into the surface. Returns the width drawn in
    // device pixels: min(the clipped rectangle's width, the text's width rounded up); 0 when nothing
    // is drawn (empty text, a rectangle narrower than 2, or none of it on the surface).
    virtual int TextOutW(const boost::shared_ptr<ULOFont>& font, const ULORect* rect, const wchar_t* text,
                         int flags, const CLR& colour, float opacity, int tabStartX, const CLR& backColour);
    // The text wrapped into `rect`, a line a font height, each line drawn by TextOutW; a rectangle less
    // than two font heights tall gets TextOutW alone. Returns the sum of the lines' results. A line of
    // 5,000 characters or more ends the process.
    int MultiLineTextOut(const boost::shared_ptr<ULOFont>& font, const ULORect* rect, const wchar_t* text,
                         int flags, const CLR& colour, float opacity, int tabStartX, const CLR& backColour);
    // TextOutW into a temporary surface of rect's size that is put back onto rect within `clip`.
    int TextOutClipped(const boost::shared_ptr<ULOFont>& font, const ULORect* rect, const ULORect* clip,
                       const wchar_t* text, int flags, const CLR& colour, float opacity, int tabStartX,
                       const CLR& backColour);

protected:
    // For subclasses that supply their own buffer. The surface starts empty and unmagnified, and
    // ownBuffer false: the subclass sets it to true when the base may free the buffer it installs.
    ULOTrueColorDCBase();

    // True when the surface allocated its buffer itself. When false, the destructor drops the buffer
    // without freeing it.
    bool ownBuffer = false;
    // The guard flag: true while the surface works in device pixels. Set through a const member.
    mutable bool workingOnScreenSize = false;
    bool updated = false;
    bool enableMnemonic = false;

private:
    // Whether the buffer carries alpha (PICTBITS_ALPHA).
    bool ComputeAlpha() const;

    // Device size or logical size of a stored value, by the rule of GetWidth.
    int LogicalOrStored_(int stored, bool magnified) const;
    // After a buffer operation installed a block of its own, that block is the surface's to free.
    void AdoptNewBlock_(const unsigned char* previousBits);

    // Raises and restores the guard around every drawing member.
    friend class ulogui::surface::DeviceScope;
    // Lets the unit tests reach the private queries.
    friend struct ULOTrueColorDCBaseTestAccess;
};
