// The process-wide cache of decoded picture versions behind ULOPicture::ReadPictureVersion. It holds
// one entry per picture ID with the parts of one version, and never evicts: decoded blocks stay until
// the process ends (or until the same ID is asked for in another version, which replaces them).
#include <memory>
#include <unordered_map>
#include <vector>

#include "picture/PictureReader.h"
#include "ulogui/Picture.h"

namespace {

using ulogui::resfile::DecodedBlock;

struct CachedPart {
    unsigned int part = 0;
    std::shared_ptr<unsigned char> bits;
    // The geometry of this block as it was read, which is what callers copy by: a part that could not
    // be read is a one-pixel block, whatever the record says.
    int flags = 0;
    int width = 0;
    int height = 0;
    int lineWidth = 0;
};

struct CacheEntry {
    int stamp = 0;  // the decode counter at the entry's last use; recorded only, nothing evicts by it
    int id = 0;
    int partsCount = 1;
    int flags = 0;
    int sizeVersionFlags = 1;
    unsigned int version = 0;
    ULOPictureSizeInfo size = ULOPictureSizeInfo::UndefPicSizeInfo();
    std::vector<CachedPart> parts;
};

struct DecodeCache {
    std::vector<CacheEntry> entries;
    std::unordered_map<int, size_t> byID;
    // A block decoded while the resource file could not be opened is not cached, so that the picture
    // is read once the host provides the file; it is kept here until the next such decode.
    CachedPart uncached;
};

DecodeCache& Cache() {
    static DecodeCache cache;
    return cache;
}

// Decodes a part; `cacheable` tells whether the resource file could be opened at all.
CachedPart DecodePart(int id, unsigned int version, unsigned int part, bool& cacheable) {
    const ulogui::resfile::FilePtr file = ulogui::resfile::OpenBitmapResource();
    cacheable = static_cast<bool>(file);
    DecodedBlock block = ulogui::resfile::ReadPictureBlock(file.get(), id, version, part);
    CachedPart out;
    out.part = part;
    out.bits = std::shared_ptr<unsigned char>(block.bits.release(), ulogui::resfile::FreeDeleter());
    out.flags = block.flags;
    out.width = block.width;
    out.height = block.height;
    out.lineWidth = block.lineWidth;
    return out;
}

void RefreshNumbers(CacheEntry& entry, int id, unsigned int version) {
    const ULOPictureInfo& record = ULOPicture::GetInfoByID(id);
    entry.id = id;
    entry.partsCount = record.GetPartsCount();
    entry.flags = record.GetFlags();
    entry.sizeVersionFlags = record.GetSizeVersionFlags();
    entry.version = version;
    entry.size = record.GetPicSizeInfo(static_cast<int>(version));
}

}  // namespace

void ULOPicture::ReadPictureVersion(int id, unsigned int version, unsigned int part, unsigned char*& bits,
                                    int& flags, int& sizeVersionFlags, int& width, int& height,
                                    int& lineWidth, int& stamp) {
    ulo::SingleLock lock(ccResource);
    DecodeCache& cache = Cache();
    const CachedPart* result = nullptr;
    int recordSizeVersionFlags = 1;
    bool cacheable = true;

    const auto found = cache.byID.find(id);
    if (found == cache.byID.end()) {
        CacheEntry entry;
        RefreshNumbers(entry, id, version);
        CachedPart decoded = DecodePart(id, version, part, cacheable);
        recordSizeVersionFlags = entry.sizeVersionFlags;
        if (cacheable) {
            entry.stamp = stamp;
            entry.parts.push_back(std::move(decoded));
            cache.byID.emplace(id, cache.entries.size());
            cache.entries.push_back(std::move(entry));
            result = &cache.entries.back().parts.back();
        } else {
            cache.uncached = std::move(decoded);
            result = &cache.uncached;
        }
    } else {
        CacheEntry& entry = cache.entries[found->second];
        recordSizeVersionFlags = entry.sizeVersionFlags;
        if (entry.version != version) {
            CachedPart decoded = DecodePart(id, version, part, cacheable);
            if (cacheable) {
                RefreshNumbers(entry, id, version);
                recordSizeVersionFlags = entry.sizeVersionFlags;
                entry.parts.clear();
                entry.parts.push_back(std::move(decoded));
                result = &entry.parts.back();
            } else {
                cache.uncached = std::move(decoded);
                result = &cache.uncached;
            }
        } else {
            for (const CachedPart& cached : entry.parts) {
                if (cached.part == part) {
                    result = &cached;
                    break;
                }
            }
            if (result == nullptr) {
                CachedPart decoded = DecodePart(id, version, part, cacheable);
                if (cacheable) {
                    entry.parts.push_back(std::move(decoded));
                    result = &entry.parts.back();
                } else {
                    cache.uncached = std::move(decoded);
                    result = &cache.uncached;
                }
            }
        }
        if (cacheable) {
            entry.stamp = stamp;
        }
    }

    bits = result->bits.get();
    flags = result->flags;
    sizeVersionFlags = recordSizeVersionFlags;
    width = result->width;
    height = result->height;
    lineWidth = result->lineWidth;
}
