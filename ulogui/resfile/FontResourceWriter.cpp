#include "resfile/FontResourceWriter.h"

#include <cstring>

namespace ulogui {
namespace resfile {

namespace {

constexpr char kSignature[] = "UloFontResource";  // 16 bytes with its NUL
constexpr size_t kCountOffset = 16;

void PutU32(std::vector<uint8_t>& out, uint32_t v) {
    for (int i = 0; i < 4; ++i) {
        out.push_back(static_cast<uint8_t>(v >> (8 * i)));
    }
}

void PutU32At(std::vector<uint8_t>& out, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) {
        out[at + i] = static_cast<uint8_t>(v >> (8 * i));
    }
}

void PutString(std::vector<uint8_t>& out, const ULOString& s) {
    const std::u16string units = s.ToUtf16();
    PutU32(out, static_cast<uint32_t>(units.size()));
    for (char16_t u : units) {
        out.push_back(static_cast<uint8_t>(u & 0xFF));
        out.push_back(static_cast<uint8_t>(u >> 8));
    }
}

}  // namespace

std::vector<uint8_t> EncodeFontRecord(const FontRecord& record) {
    std::vector<uint8_t> out;
    PutString(out, record.primaryFace);
    PutU32(out, static_cast<uint32_t>(record.height));
    PutU32(out, static_cast<uint32_t>(record.weight));
    out.push_back(record.italic ? 1 : 0);
    out.push_back(record.underline ? 1 : 0);
    out.push_back(record.strikeOut ? 1 : 0);
    out.push_back(record.family);
    out.push_back(record.pitch);
    PutU32(out, static_cast<uint32_t>(record.alternativeFaces.size()));
    for (const ULOString& face : record.alternativeFaces) {
        PutString(out, face);
    }
    PutString(out, record.name);
    out.push_back(record.ignoreHeightExt ? 1 : 0);
    PutU32(out, static_cast<uint32_t>(record.heightExt));
    return out;
}

std::vector<uint8_t> BuildFontResourceFile(const std::vector<std::optional<FontRecord>>& records) {
    std::vector<uint8_t> out(kFontFileHeaderSize + 4 * records.size(), 0);
    std::memcpy(out.data(), kSignature, sizeof kSignature);
    PutU32At(out, kCountOffset, static_cast<uint32_t>(records.size()));
    for (size_t id = 0; id < records.size(); ++id) {
        uint32_t offset = kNoFontRecord;
        if (records[id]) {
            offset = static_cast<uint32_t>(out.size());
            const std::vector<uint8_t> bytes = EncodeFontRecord(*records[id]);
            out.insert(out.end(), bytes.begin(), bytes.end());
        }
        PutU32At(out, kFontFileHeaderSize + 4 * id, offset);
    }
    return out;
}

std::optional<uint32_t> FontTableSizeFromHeader(const uint8_t* file, size_t size) {
    if (!file || size < kFontFileHeaderSize || std::memcmp(file, kSignature, sizeof kSignature) != 0) {
        return std::nullopt;
    }
    const uint8_t* p = file + kCountOffset;
    const uint32_t count = static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
                           static_cast<uint32_t>(p[2]) << 16 | static_cast<uint32_t>(p[3]) << 24;
    if ((size - kFontFileHeaderSize) / 4 < count) {
        return std::nullopt;
    }
    return count;
}

}  // namespace resfile
}  // namespace ulogui
