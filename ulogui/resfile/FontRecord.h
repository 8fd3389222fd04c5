#pragma once
// Font records of the font resource file and their lookup by font ID, over a file image in memory.
// Every offset and length is checked against the image before it is read.
//
// File: a 256-byte header (not read here), then at offset 256 a table of little-endian 32-bit
// record offsets indexed by font ID (0xFFFFFFFF: no record), then the records anywhere after.
// Record: u32 n, n UTF-16LE units (primary face), s32 height, s32 weight, u8 italic, u8 underline,
// u8 strike-out, u8 family bits, u8 pitch bits, s32 k, k times (u32 m, m units) alternative faces,
// u32 p, p units (own name), u8 ignoreHeightExt, s32 heightExt. No padding anywhere.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ulolib/String.h"

namespace ulogui {
namespace resfile {

struct FontRecord {
    ULOString primaryFace;
    int32_t height = 0;
    int32_t weight = 0;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    uint8_t family = 0;
    uint8_t pitch = 0;
    std::vector<ULOString> alternativeFaces;
    ULOString name;
    bool ignoreHeightExt = false;
    int32_t heightExt = 0;
};

constexpr size_t kFontFileHeaderSize = 256;
constexpr uint32_t kNoFontRecord = 0xFFFFFFFFu;

// Parses the record at data[0..size); false when it does not fit (out is then unspecified).
bool ParseFontRecord(const uint8_t* data, size_t size, FontRecord& out);

// The record of font ID id in a whole file image. An ID whose table entry is 0xFFFFFFFF, lies past
// the end of the image, or points to a record that does not fit gets the record of font ID 0;
// false when that one cannot be read either.
bool ReadFontRecord(const uint8_t* file, size_t size, uint32_t id, FontRecord& out);

}  // namespace resfile
}  // namespace ulogui
