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

    // ---- Picture drawing (TrueColorDCPictures*.cpp) ----

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
