// Texture fills: a picture repeated over a rectangle, each tile drawn by the transfer loop that
// picture drawing selects for it. docs/fills-and-scrolling.md gives the tiling origin and the scaling.
#include <cstdint>
#include <vector>

#include "base/MagnifyRounding.h"
#include "buffer/BufferView.h"
#include "pixelops/PixelTransferLoops.h"
#include "surface/DrawingFrame.h"
#include "ulogui/TrueColorDC.h"

using ulogui::raster::RasterView;

namespace {

// Larger scaled tiles are not made (a 4096 x 4096 picture): only a wild magnifier asks for them.
constexpr std::int64_t kMaxTilePixels = std::int64_t{1} << 24;

bool Overlap(const RasterView& a, const RasterView& b) {
    // As addresses: the blocks are usually unrelated objects, which pointer comparison does not order.
    const std::uintptr_t aStart = reinterpret_cast<std::uintptr_t>(a.Block());
    const std::uintptr_t bStart = reinterpret_cast<std::uintptr_t>(b.Block());
    return aStart < bStart + b.BlockSize() && bStart < aStart + a.BlockSize();
}

// The picture's pixels as this call tiles them: the picture itself when it suits, or a block of the
// call's own, made once: scaled when the picture's magnification differs from the surface's, widened
// to 4 bytes when the picture has 3, copied when the picture is (part of) the surface being drawn on.
// Masks and pictures without pixels give an empty view.
class Tile {
public:
    Tile(const ULOPicture& picture, bool surfaceMagnified, float m, const RasterView& canvas)
        : view_(ulogui::buffer::ViewOf(picture)), flags_(picture.GetFlags()) {
        const int bytesPerPixel = view_.BytesPerPixel();
        if (!view_.RowsHoldPixels() || (bytesPerPixel != 3 && bytesPerPixel != 4)) {
            view_ = RasterView();
            return;
        }
        if (picture.IsMagnified() != surfaceMagnified && m != 1.0f && !Scale(picture, surfaceMagnified, m)) {
            view_ = RasterView();
            return;
        }
        if (bytesPerPixel == 3 || Overlap(view_, canvas)) {
            Widen();
        }
    }

    const RasterView& View() const { return view_; }
    int Flags() const { return flags_; }

private:
    // To the device size of a logical picture, or to the logical size of a magnified one, by the
    // library's rounding, smoothly.
    bool Scale(const ULOPicture& picture, bool toDevice, float m) {
        const int w =
            toDevice ? ulogui::base::ToDevice(view_.Width(), m) : ulogui::base::ToLogical(view_.Width(), m);
        const int h =
            toDevice ? ulogui::base::ToDevice(view_.Height(), m) : ulogui::base::ToLogical(view_.Height(), m);
        if (w < 1 || h < 1 || static_cast<std::int64_t>(w) * h > kMaxTilePixels) {
            return false;
        }
        const int stride = ULOPictureUtil::ComputeLineWidth(w, flags_);
        // Cleared, so that what the scaler leaves alone (a margin where the aspect ratios differ) is
        // defined.
        scaled_.assign(static_cast<std::size_t>(stride) * h, 0);
        ULOPictureBitsHolder target(scaled_.data(), w, h, stride, flags_);
        picture.EnlargeSmooth(target, nullptr);
        view_ = RasterView::BottomUp(scaled_.data(), w, h, stride, view_.BytesPerPixel());
        return true;
    }

    // Into a block of 4-byte pixels of its own; 3-byte pixels get alpha 0 and lose the alpha flag.
    void Widen() {
        const int w = view_.Width();
        const int h = view_.Height();
        const int from = view_.BytesPerPixel();
        widened_.assign(static_cast<std::size_t>(w) * h * 4, 0);
        const RasterView to =
            RasterView::BottomUp(widened_.data(), w, h, static_cast<std::ptrdiff_t>(w) * 4, 4);
        for (int y = 0; y < h; ++y) {
            const unsigned char* s = view_.Row(y);
            unsigned char* d = to.Row(y);
            for (int x = 0; x < w; ++x, s += from, d += 4) {
                for (int i = 0; i < from; ++i) {
                    d[i] = s[i];
                }
            }
        }
        if (from == 3) {
            flags_ &= ~(PICTBITS_RGB24 | PICTBITS_ALPHA);
        }
        view_ = to;
    }

    std::vector<unsigned char> scaled_;
    std::vector<unsigned char> widened_;
    RasterView view_;
    int flags_;
};

std::int64_t Modulo(std::int64_t v, std::int64_t n) {
    const std::int64_t r = v % n;
    return r < 0 ? r + n : r;
}

// Runs `loop` over `area` of the canvas with the tile repeated from `origin`: canvas pixel (x, y)
// reads tile pixel ((x - origin.x) mod width, (y - origin.y) mod height). Rows bottom first; each row
// in runs that end at the tile's right edge.
void DrawTiles(const ulogui::pixelops::Loop& loop, const RasterView& canvas, const ULORect& area,
               const RasterView& tile, ULOPoint origin) {
    const int tileWidth = tile.Width();
    const int tileHeight = tile.Height();
    const int firstColumn =
        static_cast<int>(Modulo(static_cast<std::int64_t>(area.left) - origin.x, tileWidth));
    int tileRow = static_cast<int>(Modulo(static_cast<std::int64_t>(area.bottom) - 1 - origin.y, tileHeight));
    for (int y = area.bottom - 1; y >= area.top; --y) {
        unsigned char* dst = canvas.Pixel(area.left, y);
        int left = area.right - area.left;
        for (int column = firstColumn; left > 0; column = 0) {
            const int run = tileWidth - column < left ? tileWidth - column : left;
            loop.RunRow(dst, tile.Pixel(column, tileRow), run);
            dst += 4 * static_cast<std::ptrdiff_t>(run);
            left -= run;
        }
        tileRow = tileRow == 0 ? tileHeight - 1 : tileRow - 1;
    }
}

// Whether the catalogue holds picture `id` with at least one size version.
bool InCatalogue(int id) {
    const ULOPictureInfo& info = ULOPicture::GetInfoByID(id);
    return info.GetID() == id && info.GetPicSizeInfo(1).GetSizeVersion() >= 0;
}

}  // namespace

void ULOTrueColorDCBase::FillRectWithTexture(const ULOPicture& picture, const ULORect& rect) {
    FillRectWithTexture(picture, rect, rect.TopLeft(), 1.0f);
}

void ULOTrueColorDCBase::FillRectWithTexture(const ULOPicture& picture, const ULORect& rect,
                                             const ULOPoint& origin, float opacity) {
    if (rect.IsEmpty()) {
        return;
    }
    const ulogui::surface::DrawingFrame frame(*this);
    ULORect area = frame.ToDevice(rect);
    const ULOPoint start = frame.ToDevice(origin);
    if (!frame.Canvas().Clip(area)) {
        return;
    }
    const Tile tile(picture, IsMagnified(), frame.Conversion().Magnifier(), frame.Canvas());
    if (tile.View().IsEmpty()) {
        return;
    }
    const ulogui::pixelops::PictureTransfer transfer =
        ulogui::pixelops::SelectPictureTransfer(tile.Flags(), ComputeAlpha(), opacity, eCopyNormal);
    if (transfer.loop.IsEmpty()) {
        return;
    }
    DrawTiles(transfer.loop, frame.Canvas(), area, tile.View(), start);
}

void ULOTrueColorDCBase::FillRectWithTexture(int pictureId, const ULORect& rect) {
    FillRectWithTexture(pictureId, rect, rect.TopLeft());
}

void ULOTrueColorDCBase::FillRectWithTexture(int pictureId, const ULORect& rect, const ULOPoint& origin) {
    if (rect.IsEmpty() || !InCatalogue(pictureId)) {
        return;
    }
    // Made in the surface's magnification, so that it is not scaled again.
    const ULOPicture picture(pictureId, 0, IsMagnified());
    FillRectWithTexture(picture, rect, origin, 1.0f);
}

void ULOTrueColorDCBase::FillWithTexture(const ULOPicture& picture) {
    // Inside the guard the surface's rectangle is its device one, and the nested call takes it as such.
    const ulogui::surface::DeviceScope scope(*this);
    FillRectWithTexture(picture, GetRect(false));
}

void ULOTrueColorDCBase::FillWithTexture(int pictureId) {
    if (!InCatalogue(pictureId)) {
        return;
    }
    const ULOPicture picture(pictureId, 0, IsMagnified());
    FillWithTexture(picture);
}
