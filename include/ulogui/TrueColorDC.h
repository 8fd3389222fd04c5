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
#include "ulogui/Color.h"
#include "ulogui/Export.h"
#include "ulogui/Geometry.h"
#include "ulogui/Picture.h"
#include "ulogui/PixelTransfer.h"
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
