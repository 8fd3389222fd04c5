#include "resfile/FontRecord.h"

namespace ulogui {
namespace resfile {

namespace {

// A cursor over a byte range that refuses to read past its end.
class Reader {
public:
    Reader(const uint8_t* data, size_t size) : data_(data), size_(size) {}

    bool U8(uint8_t& v) {
        if (size_ - pos_ < 1) {
            return false;
        }
        v = data_[pos_++];
        return true;
    }
    bool U32(uint32_t& v) {
        if (size_ - pos_ < 4) {
            return false;
        }
        const uint8_t* p = data_ + pos_;
        v = static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
            static_cast<uint32_t>(p[2]) << 16 | static_cast<uint32_t>(p[3]) << 24;
        pos_ += 4;
        return true;
    }
    bool S32(int32_t& v) {
        uint32_t u = 0;
        if (!U32(u)) {
            return false;
        }
        v = static_cast<int32_t>(u);
        return true;
    }
    bool Flag(bool& v) {
        uint8_t b = 0;
        if (!U8(b)) {
            return false;
        }
        v = b != 0;
        return true;
    }
    // A u32 length followed by that many UTF-16LE code units.
    bool String(ULOString& v) {
        uint32_t units = 0;
        if (!U32(units) || (size_ - pos_) / 2 < units) {
            return false;
        }
        std::u16string text(units, u'\0');
        const uint8_t* p = data_ + pos_;
        for (uint32_t i = 0; i < units; ++i) {
            text[i] = static_cast<char16_t>(p[2 * i] | (p[2 * i + 1] << 8));
        }
        pos_ += 2 * static_cast<size_t>(units);
        v = ULOString::FromUtf16(text);
        return true;
    }

private:
    const uint8_t* data_;
    size_t size_;
    size_t pos_ = 0;
};

bool ReadEntry(const uint8_t* file, size_t size, uint32_t id, FontRecord& out) {
    const uint64_t entry = kFontFileHeaderSize + 4 * static_cast<uint64_t>(id);
    if (entry > size || size - entry < 4) {
        return false;
    }
    const uint8_t* p = file + entry;
    const uint32_t offset = static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
                            static_cast<uint32_t>(p[2]) << 16 | static_cast<uint32_t>(p[3]) << 24;
    if (offset == kNoFontRecord || offset >= size) {
        return false;
    }
    return ParseFontRecord(file + offset, size - offset, out);
}

}  // namespace

bool ParseFontRecord(const uint8_t* data, size_t size, FontRecord& out) {
    if (!data) {
        return false;
    }
    Reader in(data, size);
    out = FontRecord();
    int32_t alternatives = 0;
    if (!in.String(out.primaryFace) || !in.S32(out.height) || !in.S32(out.weight) || !in.Flag(out.italic) ||
        !in.Flag(out.underline) || !in.Flag(out.strikeOut) || !in.U8(out.family) || !in.U8(out.pitch) ||
        !in.S32(alternatives)) {
        return false;
    }
    // Each alternative takes at least its 4-byte length, so a wild count fails at the end of the
    // data instead of reserving memory for it.
    for (int32_t i = 0; i < alternatives; ++i) {
        ULOString face;
        if (!in.String(face)) {
            return false;
        }
        out.alternativeFaces.push_back(std::move(face));
    }
    return in.String(out.name) && in.Flag(out.ignoreHeightExt) && in.S32(out.heightExt);
}

bool ReadFontRecord(const uint8_t* file, size_t size, uint32_t id, FontRecord& out) {
    if (!file) {
        return false;
    }
    if (ReadEntry(file, size, id, out)) {
        return true;
    }
    return id != 0 && ReadEntry(file, size, 0, out);
}

}  // namespace resfile
}  // namespace ulogui
