#pragma once
// Reading catalogue records and stored pixel blocks from an open bitmap resource file. Neither
// reports errors: a picture that cannot be read is the undefined record, or one white, fully
// transparent pixel.
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "ulogui/PictureInfo.h"

namespace ulogui {
namespace resfile {

struct FreeDeleter {
    void operator()(unsigned char* p) const { std::free(p); }
};
// Pixel blocks come from the runtime heap, like every buffer's.
using PixelBlockPtr = std::unique_ptr<unsigned char, FreeDeleter>;

struct FileCloser {
    void operator()(FILE* f) const { std::fclose(f); }
};
using FilePtr = std::unique_ptr<FILE, FileCloser>;

// A new stream on the process's bitmap resource file; null when none can be opened.
FilePtr OpenBitmapResource();

// One part of one stored version. `bits` holds height * lineWidth bytes and is never null.
struct DecodedBlock {
    PixelBlockPtr bits;
    int partsCount = 1;
    int flags = 0;
    int width = 1;
    int height = 1;
    int lineWidth = 4;
    // False when the block is the one-pixel stand-in for a picture that could not be read.
    bool fromRecord = false;
};

// The catalogue record of `id`: its counts, flags and the size of every stored version, or the
// undefined record (id -1) when the file (which may be null) has no usable record for the ID.
ULOPictureInfo ReadPictureInfo(FILE* file, int id);

// Part `part` of the version whose bit is `version` (slot = index of its lowest set bit). A missing,
// negative or malformed ID, or a slot without a usable version, gives the white, fully transparent
// pixel (flags 0, one part). Bytes of a part that lie past the end of the file are zero.
DecodedBlock ReadPictureBlock(FILE* file, int id, unsigned int version, unsigned int part);

}  // namespace resfile
}  // namespace ulogui
