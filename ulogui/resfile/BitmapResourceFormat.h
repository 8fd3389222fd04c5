#pragma once
// The bitmap resource file as it lies on disk, read through a C stream. Every offset and length is
// checked against the file's size before anything is read, so a damaged file can only make a picture
// fall back, never make the reader run off the end or allocate more than the file could hold.
//
// Layout (all integers 32-bit little-endian; docs/bitmap-resource-file.md has the full description):
//   0   header: "UloBitmapResource" and a NUL, two zero bytes, at 20 the number of index entries,
//       zeros up to 256. Readers use the entry count only when the header carries that text.
//   256 the index: entry id is the file offset of picture id's record, 0xFFFFFFFF when there is none.
//   record: partsCount, flags, sizeVersionFlags, 24 version offsets (slot k: version 2^k).
//   version: width, height, then partsCount images of height * ComputeLineWidth(width, flags) bytes.
#include <cstdint>
#include <cstdio>
#include <string>

namespace ulogui {
namespace resfile {

constexpr int64_t kIndexOffset = 256;
constexpr uint32_t kNoRecord = 0xFFFFFFFFu;
constexpr int kVersionSlots = 24;
constexpr int64_t kRecordSize = 12 + 4 * kVersionSlots;
constexpr int64_t kVersionHeaderSize = 8;
// The text at the start of files written by BuildBitmapResourceFile, NUL included.
constexpr char kMagic[] = "UloBitmapResource";
constexpr int64_t kEntryCountOffset = 20;

// An open resource file with its size and what its header says about the index.
class FileView {
public:
    // Measures the file; a stream whose size cannot be told is treated as empty.
    explicit FileView(FILE* file);

    int64_t Size() const { return size_; }
    // Whether the header states the number of index entries.
    bool HasEntryCount() const { return hasEntryCount_; }
    uint32_t EntryCount() const { return entryCount_; }
    // First byte after the index as far as it is known when looking up `id`: the stated end of the
    // index, or, without a header, the end of id's own entry.
    int64_t IndexEnd(int id) const;

    // Reads a 32-bit integer at `offset`; false (and value 0) when it does not lie wholly in the file.
    bool ReadInt(int64_t offset, int32_t& value) const;
    bool ReadUInt(int64_t offset, uint32_t& value) const;
    // Reads up to `count` bytes at `offset` into dst; returns how many were read (bytes past the end of
    // the file are not read).
    size_t ReadBytes(int64_t offset, unsigned char* dst, size_t count) const;

private:
    FILE* file_;
    int64_t size_ = 0;
    bool hasEntryCount_ = false;
    uint32_t entryCount_ = 0;
};

// The fixed part of a picture record.
struct StoredRecord {
    int64_t offset = 0;
    int32_t partsCount = 0;
    int32_t flags = 0;
    int32_t sizeVersionFlags = 0;
    uint32_t versionOffsets[kVersionSlots] = {};
};

// The header of one stored version, checked against the file.
struct StoredVersion {
    int64_t offset = 0;
    int32_t width = 0;
    int32_t height = 0;
    int32_t lineWidth = 0;
    int64_t imageSize = 0;  // height * lineWidth: the bytes of one part
    // File offset of part `part`, or -1 when that lies beyond what a file offset can be.
    int64_t PartOffset(uint64_t part) const;
};

enum class LookupResult {
    kFound,
    kNoRecord,   // negative ID, entry past the index or the file, or the entry 0xFFFFFFFF
    kMalformed,  // an entry whose record or one of its stored versions does not hold together
};

// Finds and checks the record of `id`, including the header of every stored version. On
// kMalformed, `why` (when given) says what is wrong.
LookupResult FindRecord(const FileView& view, int id, StoredRecord& record, std::string* why = nullptr);

// Reads and checks the header of the version in slot `slot` (0..23) of a record found by FindRecord
// for `id`; false, with `why` set when given, when the slot does not hold a usable version.
bool ReadVersion(const FileView& view, int id, const StoredRecord& record, int slot, StoredVersion& version,
                 std::string* why = nullptr);

}  // namespace resfile
}  // namespace ulogui
