#pragma once
// Writes font resource files (the format read by FontRecord.h), for the resource builder and
// for tests.
#include <cstdint>
#include <optional>
#include <vector>

#include "resfile/FontRecord.h"

namespace ulogui {
namespace resfile {

// The bytes of one record.
std::vector<uint8_t> EncodeFontRecord(const FontRecord& record);

// A whole file: records[i] is the record of font ID i (none: table entry 0xFFFFFFFF). The header
// holds the text "UloFontResource" and a NUL, then the table's entry count (u32 at offset 16),
// then zeros; records follow the table in ID order.
std::vector<uint8_t> BuildFontResourceFile(const std::vector<std::optional<FontRecord>>& records);

// The entry count a header written by BuildFontResourceFile states, or nothing when the header is
// not one of those (or lies about the size of the file).
std::optional<uint32_t> FontTableSizeFromHeader(const uint8_t* file, size_t size);

}  // namespace resfile
}  // namespace ulogui
