// Feeds arbitrary bytes to the bitmap resource reader as a whole file and checks that every lookup
// either yields a consistent record and block or falls back, without reading outside the file or
// the block.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "picture/PictureReader.h"
#include "resfile/BitmapResourceFormat.h"
#include "ulogui/PictureBits.h"

namespace {

void Check(bool condition) {
    if (!condition) {
        std::abort();
    }
}

// Touches every byte so that the sanitizer sees a block that is too short.
unsigned Sum(const unsigned char* bits, size_t size) {
    unsigned sum = 0;
    for (size_t i = 0; i < size; ++i) {
        sum += bits[i];
    }
    return sum;
}

void CheckPicture(FILE* file, int64_t fileSize, int id) {
    const ULOPictureInfo info = ulogui::resfile::ReadPictureInfo(file, id);
    Check(info.GetID() == id || info.GetID() == -1);
    if (info.GetID() == id) {
        Check(info.GetPartsCount() >= 1);
        for (const ULOPictureSizeInfo& size : info.GetSizes()) {
            Check(size.GetWidth() >= 1 && size.GetHeight() >= 1);
            Check(static_cast<int64_t>(size.GetLineWidth()) * size.GetHeight() <= fileSize);
        }
    }
    const unsigned int parts[] = {0u, 1u, static_cast<unsigned int>(info.GetPartsCount()), 0xFFFFFFFFu};
    for (unsigned int version : {1u, 2u, 4u, 0u, 0x80000000u}) {
        for (unsigned int part : parts) {
            const ulogui::resfile::DecodedBlock block =
                ulogui::resfile::ReadPictureBlock(file, id, version, part);
            Check(block.bits != nullptr);
            Check(block.width >= 1 && block.height >= 1);
            Check(block.lineWidth == ULOPictureUtil::ComputeLineWidth(block.width, block.flags));
            const size_t size = static_cast<size_t>(block.lineWidth) * static_cast<size_t>(block.height);
            Check(block.fromRecord ? static_cast<int64_t>(size) <= fileSize : size == 4);
            volatile unsigned sink = Sum(block.bits.get(), size);
            (void)sink;
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // A stream over the bytes themselves; an empty input (which fmemopen refuses) as an empty file.
    FILE* file = size != 0 ? fmemopen(const_cast<uint8_t*>(data), size, "rb") : std::tmpfile();
    if (file == nullptr) {
        return 0;
    }
    // The IDs of the first index entries, and a few that no index reaches.
    for (int id : {0, 1, 2, 3, 4, 5, 6, 7, 63, -1, -2, 0x3FFFFFFF, 0x7FFFFFFF}) {
        CheckPicture(file, static_cast<int64_t>(size), id);
    }
    std::fclose(file);
    return 0;
}
