#pragma once
// ULOPictureBits: the library's in-memory raster, laid out like a device-independent bitmap.
//
// Pixels are 1 (mask), 3 or 4 bytes; a 4-byte pixel is blue, green, red, alpha, where alpha is a
// transparency (0 opaque, 255 lets the background through). Rows are padded to a multiple of four bytes
// and stored bottom-up: pixel (x, y), y = 0 being the top row, starts at
//     (height - 1 - y) * lineWidth + x * bytesPerPixel
// from the first byte. Nothing checks coordinates against the bounds.
//
// Ownership: only the constructor from a size, Clone and Reset make a buffer own its block (freed with
// free() on destruction). Copies are shallow, non-owning views. Copy assignment, Clone, Reset and Read
// overwrite the block pointer without freeing a block the buffer owned before: whoever reuses an owning
// buffer keeps track of that memory.
#include <cstddef>

#include "ulogui/Color.h"
#include "ulogui/Export.h"
#include "ulogui/Geometry.h"
#include "ulogui/PlatformTypes.h"

class ULOStream;
class ULOPictureInfo;

// Pixel-format flags (the values are part of the stored formats).
constexpr int PICTBITS_ALPHA = 0x1;  // byte 3 of each 4-byte pixel is meaningful
constexpr int PICTBITS_MASK8 = 0x4;  // one byte per pixel, a bare coverage mask (wins over PICTBITS_RGB24)
constexpr int PICTBITS_RGB24 = 0x8;  // three bytes per pixel, no alpha byte

namespace ULOPictureUtil {
// Row stride in bytes: width * bits-per-pixel rounded up to whole 32-bit words, computed in 32-bit
// arithmetic (a width so large that the product overflows wraps as it would there).
ULODRAW_API int ComputeLineWidth(int width, int flags);
}  // namespace ULOPictureUtil

// How a picture is turned before use: a rotation in degrees, then mirroring.
struct ULODRAW_API ULOPictureTransform {
    float rotation;
    bool mirrorVertically;
    bool mirrorHorizontally;

    ULOPictureTransform() : rotation(0.0f), mirrorVertically(false), mirrorHorizontally(false) {}
    ULOPictureTransform(const ULOPictureTransform&) = default;
    ULOPictureTransform& operator=(const ULOPictureTransform&) = default;
    ULOPictureTransform(ULOPictureTransform&&) = default;
    ULOPictureTransform& operator=(ULOPictureTransform&&) = default;
    // Floating-point equality on the rotation, so a NaN rotation is never equal.
    bool operator==(const ULOPictureTransform& other) const {
        return rotation == other.rotation && mirrorVertically == other.mirrorVertically &&
               mirrorHorizontally == other.mirrorHorizontally;
    }
    bool operator!=(const ULOPictureTransform& other) const { return !(*this == other); }
};

class ULODRAW_API ULOPictureBits {
public:
    // Resize methods; any other value copies, like eResizeCopy.
    enum EResizeMethod : int { eResizeCopy = 0, eResizeNearest = 1, eResizeBox = 2 };
    // Crop anchors; values outside 0..8 behave as eCropTopLeft.
    enum ECropPosition : int {
        eCropTopLeft = 0,
        eCropTop = 1,
        eCropTopRight = 2,
        eCropLeft = 3,
        eCropCenter = 4,
        eCropRight = 5,
        eCropBottomLeft = 6,
        eCropBottom = 7,
        eCropBottomRight = 8
    };

    // Chunk identifier of the stream record written by Write.
    static constexpr int kStreamChunkID = 12035;

    ULOPictureBits();
    // Owns a new uninitialised block of ComputeLineWidth(size.cx, flags) * size.cy bytes.
    ULOPictureBits(ULOSize size, int flags);
    // Wraps memory owned elsewhere; the stride is taken as given.
    ULOPictureBits(unsigned char* bits, int width, int height, int lineWidth, int flags);
    // Shallow: the copy is a non-owning view of the same memory.
    ULOPictureBits(const ULOPictureBits& other);
    ULOPictureBits& operator=(const ULOPictureBits& other);

private:
    // Whether the raw bits may be read with logical coordinates (subclasses that hold magnified pixels
    // say no).
    virtual bool CanGetBits() const;

public:
    virtual ~ULOPictureBits();

    virtual CLR GetPixel(ULOPoint p) const;
    // Black for a mask buffer; otherwise bytes 0..2 of the pixel.
    virtual CLR GetPixel(int x, int y) const;
    virtual int GetWidth(bool magnified) const;
    virtual int GetHeight(bool magnified) const;
    virtual ULOSize GetSize(bool magnified) const;
    // (0, 0) and the virtual GetSize, so an override of GetSize moves it too.
    virtual ULORect GetRect(bool magnified) const;
    virtual int GetLineWidth(bool magnified) const;

    // Resampling (docs/resampling.md). Every operation below builds a new block, frees the old one when
    // the buffer owned it, and leaves the buffer owning the new block. Their order here is the slot
    // order subclasses rely on: keep it.

    // Stretches by repeating column splitX (growing) or drops the columns around it (shrinking); a
    // negative splitX means the middle.
    virtual void HEnlarge(int newWidth, int splitX);
    // Grows only, repeating memory row splitY (counted from the bottom); negative means the middle.
    virtual void VEnlarge(int newHeight, int splitY);
    // HEnlarge then VEnlarge towards the target's size, each only where the buffer is smaller.
    virtual void Enlarge(const ULORect& target, const ULOPoint& split);
    virtual void Crop(int newWidth, int newHeight, ECropPosition position);
    // Resize(r's width, r's height, r, eResizeCopy).
    virtual void Crop(ULORect rect);
    // Keeps the aspect ratio: the height becomes truncate((height + 0.9) * newWidth / width).
    virtual void ResizeToWidth(int newWidth, EResizeMethod method);
    virtual void ResizeToHeight(int newHeight, EResizeMethod method);
    // Nothing happens when the size is unchanged, whatever the method and source.
    virtual void Resize(int newWidth, int newHeight, const ULORect& source, EResizeMethod method);
    virtual void Resize(int newWidth, int newHeight, EResizeMethod method);
    // A new uninitialised block of the new size; the old pixels are dropped, not scaled.
    virtual void ResizeLazy(int newWidth, int newHeight);
    // Widens only, centring every row between transparent padding pixels.
    virtual void HResize(int newWidth);

    virtual bool IsMagnified() const;

    // The catalogue record of the picture; a plain buffer has the shared undefined record (id -1).
    virtual const ULOPictureInfo& GetInfo();

    // Rotation about the centre: square buffers turned by a multiple of 90 degrees take the exact path
    // (Rotate90); everything else is resampled, with what falls outside left white and transparent.
    // Both work in the block the buffer already has.
    void Rotate(float degrees);
    // 90, 180 or 270 degrees (within 1e-5) for square buffers; any other angle changes nothing.
    void Rotate90(float degrees);
    // Rotate when the rotation is positive, then Mirror.
    void ApplyTransformation(ULOPictureTransform transform);
    // Mixes other's bytes into this buffer's block byte by byte: amount <= 0 changes nothing, amount
    // >= 0.996 copies. Meant for buffers of the same stride and height.
    void BlendWithPicture(const ULOPictureBits* other, float amount);
    // Caps r's width (which & 1) and height (which & 2) at the picture's; left and top stay.
    void ClipRectToPictureSize(ULORect* r, int which) const;
    // Scales this buffer smoothly into target (area averaging when shrinking, bilinear when enlarging
    // both ways), keeping the aspect ratio. The output size is targetRect's size, or the target's own
    // when targetRect is null; output pixel (x, y) goes to target pixel (x, y). Large outputs are
    // computed on the tools library's worker threads.
    void EnlargeSmooth(ULOPictureBits& target, const ULORect* targetRect) const;

    // Deep copy: a new owned block with src's bytes, geometry and flags.
    void Clone(const ULOPictureBits& src);
    // Exchanges everything, ownership included.
    void Swap(ULOPictureBits& other);
    // A plain non-owning ULOPictureBits over the same pixels, never a subclass.
    ULOPictureBits GetRawPictureBits() const;

    unsigned char* GetBits() { return GetBitsImpl(); }
    const unsigned char* GetBits() const { return GetBitsImpl(); }
    unsigned char* GetBits(int x, int y) { return GetBitsImpl(x, y); }
    const unsigned char* GetBits(int x, int y) const { return GetBitsImpl(x, y); }
    unsigned char GetBytesPerPixel() const { return bytesPerPixel; }
    int GetFlags() const { return flags; }

    // Whether the block (lineWidth * height bytes) is not writable memory. A zero-sized block is never
    // bad; a null block of non-zero size always is.
    bool IsBadBitsPtr() const;

    // Mask buffer: black and the mask byte. Otherwise bytes 0..2, and byte 3 as alpha only when
    // PICTBITS_ALPHA is set (0 otherwise).
    CLR GetPixelAndAlpha(int x, int y, unsigned char& alpha) const;
    // Mask buffer: the byte becomes alpha. Otherwise bytes 0..2 take the colour and, except in a 24-bit
    // buffer, byte 3 takes alpha, whether or not PICTBITS_ALPHA is set.
    void SetPixelAndAlpha(int x, int y, const CLR& colour, unsigned char alpha);
    // SetPixelAndAlpha on every pixel; row padding is left alone.
    void Fill(const CLR& colour, unsigned char alpha);
    // With PICTBITS_ALPHA only: complements byte 3 of width * height 4-byte pixels taken as one
    // unpadded run from the first byte (which a 32-bit buffer is).
    void InvertAlpha();
    // Horizontally swaps columns c and width - 1 - c in every row (an odd middle column stays);
    // vertically swaps whole memory rows, padding included.
    void Mirror(bool horizontally, bool vertically);

    // The stream record: chunk 12035 holding width, height, lineWidth, bytesPerPixel, flags and the
    // block as it lies. Read refuses any other chunk without touching the buffer; it replaces the block
    // pointer with a fresh allocation but leaves the ownership flag as it was.
    bool Read(ULOStream* stream);
    bool Write(ULOStream* stream) const;

    // Puts the part `rect` of the buffer onto the device at (x + rect.left, y + rect.top). With
    // PICTBITS_ALPHA the pixels are first composed over what the device shows, changing this buffer.
    void SetToDevice(HDC dc, const ULORect* rect, int x, int y);

protected:
    // Takes the values as given and owns `newBits` from now on.
    void Reset(unsigned char* newBits, int newWidth, int newHeight, int newLineWidth, int newFlags);
    void InitBytesPerPixels();

    unsigned char* GetBitsImpl() const { return bits; }
    // The address of pixel (x, y) by the bottom-up rule; not checked against the bounds.
    unsigned char* GetBitsImpl(int x, int y) const;

    int width;
    int height;
    int lineWidth;
    unsigned char* bits;
    bool ownsBits;
    unsigned char bytesPerPixel;
    int flags;

private:
    // Installs a block built by a resampling operation: frees the old block if it was owned, then
    // takes the new one (owned) with the given geometry and the current flags.
    void AdoptBlock_(unsigned char* newBits, int newWidth, int newHeight, int newLineWidth);
};

// A buffer that wraps bits owned elsewhere; it behaves exactly like ULOPictureBits.
class ULODRAW_API ULOPictureBitsHolder : public ULOPictureBits {
public:
    ULOPictureBitsHolder() = default;
    ULOPictureBitsHolder(unsigned char* bits, int width, int height, int lineWidth, int flags)
        : ULOPictureBits(bits, width, height, lineWidth, flags) {}
    ULOPictureBitsHolder(const ULOPictureBitsHolder& other) : ULOPictureBits(other) {}
    // A move is a shallow copy too: the source stays as it is.
    ULOPictureBitsHolder(ULOPictureBitsHolder&& other) : ULOPictureBits(other) {}
    ULOPictureBitsHolder& operator=(const ULOPictureBitsHolder& other) {
        ULOPictureBits::operator=(other);
        return *this;
    }
    ULOPictureBitsHolder& operator=(ULOPictureBitsHolder&& other) {
        ULOPictureBits::operator=(other);
        return *this;
    }
    ~ULOPictureBitsHolder() override;
};
