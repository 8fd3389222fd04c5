#pragma once
// Text output as the platform offers it: a memory context with a 32-bit top-down section selected
// into it, a background mode, two colours, and the draw-text call. Each member is one call of the
// Windows sequence, so that the Windows backend implements it with exactly that call and the
// drawing surface reads like the steps of its text output:
//
//     TextCanvas canvas(width, height);          // GetDC(NULL), CreateCompatibleDC, CreateDIBSection
//                                                //   (top-down, 32 bits), SelectObject(section)
//     fill canvas.Pixels() ...                   // the section's bits
//     font->SelectWindowsFont(canvas.Context(), italic, underline);
//     canvas.SetBackgroundMode(kTransparent);    // SetBkMode
//     canvas.SetTextColour(colour);              // SetTextColor (SetBackgroundColour: SetBkColor)
//     canvas.DrawText(text, length, rect, format);  // DrawTextW
//     read canvas.Pixels() ...
//     // ~TextCanvas: SelectObject(previous bitmap), DeleteObject(section), DeleteDC, ReleaseDC
//
// A canvas belongs to one thread at a time. The draw-text call uses the font selected into
// Context(); callers serialise font selection themselves (the surface holds csFontTextOut).
#include <memory>

#include "raster/RasterView.h"
#include "ulogui/Color.h"
#include "ulogui/Geometry.h"
#include "ulogui/PlatformTypes.h"

namespace ulogui {
namespace platform {

// Format bits of the draw-text call: the values of the Windows DT_* constants. The backends honour
// these; the others are passed on by the Windows backend and ignored by the others.
namespace drawtext {
constexpr unsigned kLeft = 0x0000;      // DT_LEFT
constexpr unsigned kCenter = 0x0001;    // DT_CENTER
constexpr unsigned kRight = 0x0002;     // DT_RIGHT
constexpr unsigned kNoPrefix = 0x0800;  // DT_NOPREFIX
}  // namespace drawtext

// SetBkMode's modes (TRANSPARENT, OPAQUE).
enum class BackgroundMode : int { kTransparent = 1, kOpaque = 2 };

class TextCanvas {
public:
    // A section of width x height pixels, cleared to 0. When it cannot be made (a side below 1,
    // more memory than the platform gives) the canvas has no pixels and draws nothing, as drawing
    // into a context without a section changes nothing the caller can see.
    TextCanvas(int width, int height);
    ~TextCanvas();
    TextCanvas(const TextCanvas&) = delete;
    TextCanvas& operator=(const TextCanvas&) = delete;

    // The section: 4 bytes a pixel (blue, green, red, alpha), rows top-down; empty when there is none.
    raster::RasterView Pixels() const;
    // The memory context, for selecting a font into it.
    HDC Context() const;

    void SetBackgroundMode(BackgroundMode mode);
    void SetBackgroundColour(const CLR& colour);
    void SetTextColour(const CLR& colour);

    // Draws length characters of text (a negative length: up to the terminating NUL) into rect of
    // the section with the selected font, as the platform's draw-text call does with format (the
    // drawtext bits). Returns the height of the text drawn, 0 when nothing could be drawn.
    int DrawText(const wchar_t* text, int length, const ULORect& rect, unsigned format);

private:
    struct State;  // the backend's
    std::unique_ptr<State> state_;
};

}  // namespace platform
}  // namespace ulogui
