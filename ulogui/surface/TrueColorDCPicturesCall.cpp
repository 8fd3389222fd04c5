// The choices of a picture drawing call: the routine for a source, the source as the call reads it
// (resampled when its magnification differs from the surface's), and the conversion of the call's
// rectangles.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

#include "base/MagnifyRounding.h"
#include "buffer/BufferView.h"
#include "buffer/SmoothScale.h"
#include "surface/PictureDrawing.h"
#include "ulogui/Palette.h"

namespace ulogui {
namespace surface {

namespace {

// Scaled pictures of up to this many pixels (128 x 128) are scaled on the drawing thread.
constexpr std::int64_t kScaleHereLimit = 128 * 128;

using pixelops::Functor;
using pixelops::Loop;
using pixelops::PictureTransfer;
using pixelops::Wrapper;

SourceReading ReadingOf(SourceReading::Kind kind, const CLR& colour, unsigned char alpha) {
    SourceReading reading;
    reading.kind = kind;
    reading.colour[0] = colour.blue;
    reading.colour[1] = colour.green;
    reading.colour[2] = colour.red;
    reading.alpha = alpha;
    return reading;
}

// Pixels as the transfer loops read them: 4-byte pixels in place, 3-byte pixels opaque, masks black
// with their byte as alpha.
SourceReading ReadingAsStored(int bytesPerPixel) {
    switch (bytesPerPixel) {
        case 3:
            return ReadingOf(SourceReading::Kind::kColours3, CLR(0, 0, 0), 0);
        case 1:
            return ReadingOf(SourceReading::Kind::kColourAlpha1, CLR(0, 0, 0), 0);
        default:
            return SourceReading();
    }
}

// The block a resampled source needs, in 64 bits: a size that a buffer cannot describe (a stride or a
// block beyond what 32-bit geometry can address) fails like an allocation.
void CheckResampleSize(int width, int height, int flags) {
    const std::int64_t rowBytes =
        (static_cast<std::int64_t>(width) * BytesPerPixelOf(flags) * 8 + 31) / 32 * 4;
    if (width <= 0 || height <= 0 || rowBytes > INT32_MAX ||
        rowBytes * height > static_cast<std::int64_t>(PTRDIFF_MAX / 2)) {
        throw std::bad_alloc();
    }
}

const ULOPictureBits& NoPicture() {
    static const ULOPictureBits none;
    return none;
}

}  // namespace

int BytesPerPixelOf(int flags) {
    return (flags & PICTBITS_MASK8) ? 1 : (flags & PICTBITS_RGB24) ? 3 : 4;
}

PictureRoutine SelectPictureRoutine(int sourceFlags, int bytesPerPixel, bool destinationAlpha, float opacity,
                                    int copyType) {
    if (bytesPerPixel != BytesPerPixelOf(sourceFlags)) {
        return PictureRoutine();
    }
    // Only a 4-byte pixel has an alpha byte to blend by.
    const int flags = bytesPerPixel == 4 ? sourceFlags : sourceFlags & ~PICTBITS_ALPHA;
    const PictureTransfer transfer =
        pixelops::SelectPictureTransfer(flags, destinationAlpha, opacity, copyType);
    PictureRoutine routine;
    switch (transfer.route) {
        case PictureTransfer::Route::kNothing:
            return routine;
        case PictureTransfer::Route::kMask:
            return SelectAlphaOnlyRoutine(sourceFlags, bytesPerPixel, destinationAlpha, CLR_LABEL_TEXT, 1.0f,
                                          false);
        case PictureTransfer::Route::kFullCopy:
        case PictureTransfer::Route::kLoop:
            routine.draws = true;
            routine.reading = ReadingAsStored(bytesPerPixel);
            routine.loop = transfer.loop;
            return routine;
    }
    return routine;
}

PictureRoutine SelectAlphaOnlyRoutine(int sourceFlags, int bytesPerPixel, bool destinationAlpha,
                                      const CLR& colour, float opacity, bool alphaIsCoverage) {
    PictureRoutine routine;
    if (bytesPerPixel != BytesPerPixelOf(sourceFlags)) {
        return routine;
    }
    const unsigned char flip = alphaIsCoverage ? 255 : 0;
    SourceReading::Kind kind = SourceReading::Kind::kSolid;
    if (bytesPerPixel == 1) {
        kind = SourceReading::Kind::kColourAlpha1;
    } else if (bytesPerPixel == 4 && (sourceFlags & PICTBITS_ALPHA)) {
        kind = SourceReading::Kind::kColourAlpha4;
    }
    routine.draws = true;
    routine.reading = ReadingOf(kind, colour, flip);
    routine.loop = pixelops::SelectLoop(Functor::kCopy, true, destinationAlpha, opacity);
    return routine;
}

PictureRoutine SelectCopyOnlyRoutine(int sourceFlags, int bytesPerPixel) {
    PictureRoutine routine;
    if (bytesPerPixel != BytesPerPixelOf(sourceFlags)) {
        return routine;
    }
    routine.draws = true;
    routine.reading = ReadingAsStored(bytesPerPixel);
    if (bytesPerPixel == 4 && !(sourceFlags & (PICTBITS_ALPHA | pixelops::kFullCopySourceFlag))) {
        // Byte 3 of a source without alpha means nothing: the copy is opaque.
        routine.reading = ReadingOf(SourceReading::Kind::kColours4, CLR(0, 0, 0), 0);
    }
    routine.loop = Loop(Functor::kFullCopy, Wrapper::kPlain, 1.0f);
    return routine;
}

raster::RasterView ReadableView(const ULOPictureBits& picture) {
    const ULOPictureBits raw = picture.GetRawPictureBits();
    const int bytes = raw.GetBytesPerPixel();
    if (raw.GetBits() == nullptr || bytes != BytesPerPixelOf(raw.GetFlags()) || raw.GetWidth(true) <= 0 ||
        raw.GetHeight(true) <= 0 ||
        raw.GetLineWidth(true) < static_cast<std::int64_t>(raw.GetWidth(true)) * bytes) {
        return raster::RasterView();
    }
    return buffer::ViewOf(raw);
}

SourcePixels::SourcePixels(const ULOPictureBits& source, bool surfaceMagnified, float magnifier)
    : view_(ReadableView(source)), flags_(source.GetFlags()) {
    if (view_.IsEmpty()) {
        return;
    }
    ULOSize size(view_.Width(), view_.Height());
    if (!source.IsMagnified() && surfaceMagnified && magnifier != 1.0f) {
        size = ULOSize(base::ToDevice(size.cx, magnifier), base::ToDevice(size.cy, magnifier));
    } else if (source.IsMagnified() && !surfaceMagnified) {
        size = source.GetSize(false);
    }
    if (size == ULOSize(view_.Width(), view_.Height())) {
        return;
    }
    if (size.cx <= 0 || size.cy <= 0) {
        view_ = raster::RasterView();  // scaled to nothing (a magnifier of 0, NaN or below 0)
        return;
    }
    CheckResampleSize(size.cx, size.cy, flags_);
    // EnlargeSmooth's scaling. A small picture is scaled at once on this thread (handing it to the
    // workers would cost more than the scaling), which also clears any margin the picture does not
    // reach when rounding changed the aspect; a larger one is cleared first, for the same reason.
    ULOPictureBits scaled(size, flags_);
    const ULORect whole(0, 0, size.cx, size.cy);
    const bool small = static_cast<std::int64_t>(size.cx) * size.cy <= kScaleHereLimit;
    if (!small) {
        std::memset(scaled.GetBits(), 0, static_cast<std::size_t>(scaled.GetLineWidth(true)) * size.cy);
    }
    buffer::ScaleSmooth(source.GetRawPictureBits(), scaled, &whole,
                        small ? buffer::ColumnThreads::kCallingThreadAtOnce : buffer::ColumnThreads::kBySize);
    resampled_.Swap(scaled);
    view_ = buffer::ViewOf(resampled_);
}

PictureCall::PictureCall(ULOTrueColorDCBase& dc, const ULOPictureBits& source)
    : frame_(dc),
      convert_(frame_.Conversion().IsActive() && frame_.Conversion().Magnifier() != 1.0f),
      // Nothing is read, let alone scaled, for a surface that cannot be drawn on.
      source_(frame_.Canvas().IsEmpty() ? NoPicture() : source, dc.IsMagnified(),
              frame_.Conversion().Magnifier()) {}

int PictureCall::ToDevice(int v) const {
    return convert_ ? base::ToDevice(v, frame_.Conversion().Magnifier()) : v;
}

ULORect PictureCall::ToDevice(const ULORect& r) const {
    return convert_ ? base::ToDevice(r, frame_.Conversion().Magnifier()) : r;
}

void PictureCall::Draw(const ULORect& dst, const ULORect& src, const ULORect& clip,
                       const PictureRoutine& routine) const {
    const raster::RasterView& canvas = Canvas();
    const raster::RasterView& source = Source();
    Draw(PlanCopy(dst, src, clip, canvas.Width(), canvas.Height(), source.Width(), source.Height()), routine);
}

void PictureCall::Draw(const TransferPlan& plan, const PictureRoutine& routine) const {
    if (!IsEmpty()) {
        TransferRows(Canvas(), plan, Source(), routine);
    }
}

void DrawPictureWith(ULOTrueColorDCBase& dc, const ULOPictureBits& source, const ULORect& dst,
                     const ULORect& src, const ULORect& clip, const PictureRoutine& routine) {
    if (!routine.draws || dst.IsEmpty() || src.IsEmpty() || clip.IsEmpty()) {
        return;
    }
    const PictureCall call(dc, source);
    if (call.IsEmpty()) {
        return;
    }
    call.Draw(call.ToDevice(dst), call.ToDevice(src), call.ToDevice(clip), routine);
}

}  // namespace surface
}  // namespace ulogui
