#include "resfile/BitmapResourceFormat.h"

#include <sys/types.h>

#include <climits>
#include <cstring>

#include "ulogui/PictureBits.h"
#include "ulolib/LitInt.h"

namespace ulogui {
namespace resfile {

namespace {

bool Fail(std::string* why, const std::string& text) {
    if (why != nullptr) {
        *why = text;
    }
    return false;
}

// Bits per pixel of the stride rule, with the same precedence as ComputeLineWidth.
int64_t BitsPerPixel(int flags) {
    return (flags & PICTBITS_MASK8) ? 8 : (flags & PICTBITS_RGB24) ? 24 : 32;
}

}  // namespace

FileView::FileView(FILE* file) : file_(file) {
    if (file_ == nullptr || fseeko(file_, 0, SEEK_END) != 0) {
        return;
    }
    const off_t end = ftello(file_);
    size_ = end > 0 ? static_cast<int64_t>(end) : 0;
    char magic[sizeof(kMagic)] = {};
    if (ReadBytes(0, reinterpret_cast<unsigned char*>(magic), sizeof magic) == sizeof magic &&
        std::memcmp(magic, kMagic, sizeof magic) == 0) {
        hasEntryCount_ = ReadUInt(kEntryCountOffset, entryCount_);
    }
}

int64_t FileView::IndexEnd(int id) const {
    if (hasEntryCount_) {
        return kIndexOffset + 4 * static_cast<int64_t>(entryCount_);
    }
    return kIndexOffset + 4 * (static_cast<int64_t>(id) + 1);
}

bool FileView::ReadInt(int64_t offset, int32_t& value) const {
    value = 0;
    if (offset < 0 || offset > size_ - 4 || fseeko(file_, static_cast<off_t>(offset), SEEK_SET) != 0) {
        return false;
    }
    return LitInt(file_, value);
}

bool FileView::ReadUInt(int64_t offset, uint32_t& value) const {
    int32_t signedValue = 0;
    const bool ok = ReadInt(offset, signedValue);
    value = static_cast<uint32_t>(signedValue);
    return ok;
}

size_t FileView::ReadBytes(int64_t offset, unsigned char* dst, size_t count) const {
    if (offset < 0 || offset >= size_ || count == 0 ||
        fseeko(file_, static_cast<off_t>(offset), SEEK_SET) != 0) {
        return 0;
    }
    const uint64_t available = static_cast<uint64_t>(size_ - offset);
    const size_t wanted = count < available ? count : static_cast<size_t>(available);
    return std::fread(dst, 1, wanted, file_);
}

int64_t StoredVersion::PartOffset(uint64_t part) const {
    const int64_t dataStart = offset + kVersionHeaderSize;
    if (imageSize > 0 && part > static_cast<uint64_t>((INT64_MAX - dataStart) / imageSize)) {
        return -1;
    }
    return dataStart + static_cast<int64_t>(part) * imageSize;
}

LookupResult FindRecord(const FileView& view, int id, StoredRecord& record, std::string* why) {
    if (id < 0) {
        return LookupResult::kNoRecord;
    }
    if (view.HasEntryCount() && static_cast<uint32_t>(id) >= view.EntryCount()) {
        return LookupResult::kNoRecord;
    }
    uint32_t entry = kNoRecord;
    if (!view.ReadUInt(kIndexOffset + 4 * static_cast<int64_t>(id), entry) || entry == kNoRecord) {
        return LookupResult::kNoRecord;
    }
    const int64_t offset = entry;
    const int64_t indexEnd = view.IndexEnd(id);
    if (offset < indexEnd) {
        Fail(why, "record offset " + std::to_string(offset) +
                      " lies in the header or the index (which ends at " + std::to_string(indexEnd) + ")");
        return LookupResult::kMalformed;
    }
    if (offset > view.Size() - kRecordSize) {
        Fail(why, "record at " + std::to_string(offset) + " does not fit in the file (" +
                      std::to_string(view.Size()) + " bytes)");
        return LookupResult::kMalformed;
    }
    record.offset = offset;
    view.ReadInt(offset, record.partsCount);
    view.ReadInt(offset + 4, record.flags);
    view.ReadInt(offset + 8, record.sizeVersionFlags);
    for (int k = 0; k < kVersionSlots; ++k) {
        view.ReadUInt(offset + 12 + 4 * k, record.versionOffsets[k]);
    }
    if (record.partsCount < 1) {
        Fail(why, "parts count " + std::to_string(record.partsCount) + " is not positive");
        return LookupResult::kMalformed;
    }
    for (int k = 0; k < kVersionSlots; ++k) {
        StoredVersion version;
        if ((record.sizeVersionFlags & (1 << k)) != 0 && !ReadVersion(view, id, record, k, version, why)) {
            if (why != nullptr) {
                *why = "version " + std::to_string(1 << k) + ": " + *why;
            }
            return LookupResult::kMalformed;
        }
    }
    return LookupResult::kFound;
}

bool ReadVersion(const FileView& view, int id, const StoredRecord& record, int slot, StoredVersion& version,
                 std::string* why) {
    if (slot < 0 || slot >= kVersionSlots) {
        return Fail(why, "no version slot " + std::to_string(slot));
    }
    const int64_t offset = record.versionOffsets[slot];
    const int64_t indexEnd = view.IndexEnd(id);
    if (offset < indexEnd) {
        return Fail(why, "offset " + std::to_string(offset) +
                             " lies in the header or the index (which ends at " + std::to_string(indexEnd) +
                             ")");
    }
    if (offset + kVersionHeaderSize > record.offset && offset < record.offset + kRecordSize) {
        return Fail(why, "offset " + std::to_string(offset) + " lies inside the picture's own record");
    }
    if (offset > view.Size() - kVersionHeaderSize) {
        return Fail(why, "header at " + std::to_string(offset) + " does not fit in the file (" +
                             std::to_string(view.Size()) + " bytes)");
    }
    version.offset = offset;
    view.ReadInt(offset, version.width);
    view.ReadInt(offset + 4, version.height);
    if (version.width < 1 || version.height < 1) {
        return Fail(why, "size " + std::to_string(version.width) + " x " + std::to_string(version.height) +
                             " is not positive");
    }
    // A row that does not fit the stride rule's 32-bit arithmetic cannot be real.
    if (static_cast<int64_t>(version.width) * BitsPerPixel(record.flags) + 31 > INT32_MAX) {
        return Fail(why, "width " + std::to_string(version.width) + " is too large");
    }
    version.lineWidth = ULOPictureUtil::ComputeLineWidth(version.width, record.flags);
    version.imageSize = static_cast<int64_t>(version.height) * version.lineWidth;
    const int64_t available = view.Size() - offset - kVersionHeaderSize;
    if (version.imageSize > available / record.partsCount) {
        return Fail(why, std::to_string(record.partsCount) + " part(s) of " + std::to_string(version.width) +
                             " x " + std::to_string(version.height) + " need " +
                             std::to_string(version.imageSize) + " bytes each, but only " +
                             std::to_string(available) + " bytes follow the header");
    }
    return true;
}

}  // namespace resfile
}  // namespace ulogui
