#include "picture/PictureReader.h"

#include <cstring>
#include <vector>

#include "raster/PixelBlock.h"
#include "resfile/BitmapResourceFormat.h"
#include "ulogui/GUIMath.h"

namespace ulogui {
namespace resfile {

ULOPictureInfo ReadPictureInfo(FILE* file, int id) {
    if (file == nullptr) {
        return ULOPictureInfo();
    }
    const FileView view(file);
    StoredRecord record;
    if (FindRecord(view, id, record) != LookupResult::kFound) {
        return ULOPictureInfo();
    }
    std::vector<ULOPictureSizeInfo> sizes;
    for (int slot = 0; slot < kVersionSlots; ++slot) {
        const int bit = 1 << slot;
        StoredVersion version;
        // FindRecord has checked every stored version already.
        if ((record.sizeVersionFlags & bit) != 0 && ReadVersion(view, id, record, slot, version)) {
            sizes.emplace_back(bit, version.width, version.height, version.lineWidth);
        }
    }
    return ULOPictureInfo(id, record.partsCount, record.flags, record.sizeVersionFlags, std::move(sizes));
}

DecodedBlock ReadPictureBlock(FILE* file, int id, unsigned int version, unsigned int part) {
    DecodedBlock out;
    try {
        if (file != nullptr) {
            const FileView view(file);
            StoredRecord record;
            StoredVersion stored;
            const int slot = ULOGUIMath::GetFirstLEOneBit(static_cast<int>(version));
            if (FindRecord(view, id, record) == LookupResult::kFound &&
                ReadVersion(view, id, record, slot, stored)) {
                // Checked against the file's size, so the block is never larger than the file. It starts
                // zeroed: a part that lies (partly) past the end of the file reads as zero bytes.
                const size_t size = static_cast<size_t>(stored.imageSize);
                PixelBlockPtr block(ulogui::raster::AllocatePixelBlock(size, true));
                const int64_t at = stored.PartOffset(part);
                if (at >= 0) {
                    view.ReadBytes(at, block.get(), size);
                }
                out.bits = std::move(block);
                out.partsCount = record.partsCount;
                out.flags = record.flags;
                out.width = stored.width;
                out.height = stored.height;
                out.lineWidth = stored.lineWidth;
                out.fromRecord = true;
                return out;
            }
        }
    } catch (...) {
        // Whatever went wrong (an allocation that could not be satisfied), the picture falls back.
    }
    // One white, fully transparent pixel. No block of the record's size is made for it, so nothing is
    // left unreleased.
    out.bits.reset(ulogui::raster::AllocatePixelBlock(4));
    std::memset(out.bits.get(), 255, 4);
    out.partsCount = 1;
    out.flags = 0;
    out.width = 1;
    out.height = 1;
    out.lineWidth = 4;
    out.fromRecord = false;
    return out;
}

}  // namespace resfile
}  // namespace ulogui
