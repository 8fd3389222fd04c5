// The stream record of a pixel buffer: one chunk holding the geometry, the format and the block as it
// lies in memory (bottom row first, padding included). The byte layout is described in
// docs/pixel-buffer.md.
#include <cstdint>
#include <limits>

#include "raster/PixelBlock.h"
#include "ulogui/PictureBits.h"
#include "ulolib/Stream.h"

using ulogui::raster::AllocatePixelBlock;
using ulogui::raster::PixelBlockSize;

namespace {

constexpr uint64_t kArrayCountBytes = 4;

// A record the buffer can hold safely: non-negative sizes, a known pixel size, rows long enough for
// their pixels, and a block that the rest of the chunk can actually deliver (which also keeps a forged
// size from allocating absurd amounts).
bool IsPlausibleRecord(int width, int height, int lineWidth, unsigned char bytesPerPixel,
                       uint64_t remaining) {
    if (width < 0 || height < 0 || lineWidth < 0) {
        return false;
    }
    if (bytesPerPixel != 1 && bytesPerPixel != 3 && bytesPerPixel != 4) {
        return false;
    }
    if (static_cast<int64_t>(lineWidth) < static_cast<int64_t>(width) * bytesPerPixel) {
        return false;
    }
    const uint64_t size = static_cast<uint64_t>(lineWidth) * static_cast<uint64_t>(height);
    if (size > static_cast<uint64_t>(std::numeric_limits<int32_t>::max())) {
        return false;
    }
    return remaining >= kArrayCountBytes && size <= remaining - kArrayCountBytes;
}

}  // namespace

bool ULOPictureBits::Write(ULOStream* stream) const {
    if (stream == nullptr) {
        return false;
    }
    // The array's element count is a 32-bit number; a block the record cannot describe is not written.
    const size_t size = PixelBlockSize(lineWidth, height);
    if (size > static_cast<size_t>(std::numeric_limits<int32_t>::max()) || (size != 0 && bits == nullptr)) {
        return false;
    }
    // An empty block is written from a stand-in byte: a null pointer is never handed on, even for 0 bytes.
    static const unsigned char kNoPixels = 0;
    const void* block = size != 0 ? static_cast<const void*>(bits) : &kNoPixels;
    ULOWriteChunk chunk(stream, static_cast<uint16_t>(kStreamChunkID));
    return chunk.IsOk() && stream->WriteSInt32(width) && stream->WriteSInt32(height) &&
           stream->WriteSInt32(lineWidth) && stream->WriteByte(bytesPerPixel) && stream->WriteSInt32(flags) &&
           stream->WriteArray(block, static_cast<int32_t>(size), 1) && chunk.Close();
}

bool ULOPictureBits::Read(ULOStream* stream) {
    if (stream == nullptr) {
        return false;
    }
    ULOReadChunk chunk(stream);
    if (!chunk.IsOk() || chunk.GetID() != kStreamChunkID) {
        return false;
    }
    const int oldWidth = width;
    const int oldHeight = height;
    const int oldLineWidth = lineWidth;
    const unsigned char oldBytesPerPixel = bytesPerPixel;
    const int oldFlags = flags;

    // A field that cannot be read ends the reading; the fields read before it stay in place.
    int32_t value = 0;
    if (!stream->ReadSInt32(value)) {
        return false;
    }
    width = value;
    if (!stream->ReadSInt32(value)) {
        return false;
    }
    height = value;
    if (!stream->ReadSInt32(value)) {
        return false;
    }
    lineWidth = value;
    uint8_t byteValue = 0;
    if (!stream->ReadByte(byteValue)) {
        return false;
    }
    bytesPerPixel = byteValue;  // as stored, not recomputed from the flags
    if (!stream->ReadSInt32(value)) {
        return false;
    }
    flags = value;

    if (!IsPlausibleRecord(width, height, lineWidth, bytesPerPixel, stream->GetRemaining())) {
        width = oldWidth;
        height = oldHeight;
        lineWidth = oldLineWidth;
        bytesPerPixel = oldBytesPerPixel;
        flags = oldFlags;
        return false;
    }

    // The block replaces the pointer without freeing what was there and without changing ownsBits. It
    // is cleared first, so a record whose array holds fewer bytes leaves zeros rather than garbage; the
    // array read's own result does not decide the outcome.
    const size_t size = PixelBlockSize(lineWidth, height);
    bits = AllocatePixelBlock(size, true);
    unsigned char noPixels = 0;
    stream->ReadArray(size != 0 ? bits : &noPixels, static_cast<int32_t>(size), 1);
    return true;
}
