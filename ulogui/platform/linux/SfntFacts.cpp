#include "platform/linux/SfntFacts.h"

#include <algorithm>

#include "platform/FontEngine.h"

namespace ulogui {
namespace platform {
namespace ft {

namespace {

struct CodePageCharSet {
    int bit;
    uint8_t charSet;
    const char* language;
};

// The code pages of ulCodePageRange1 that have a character set of their own.
constexpr CodePageCharSet kCodePages[] = {
    {0, charset::kAnsi, "en"},       {1, charset::kEastEurope, "pl"},      {2, charset::kRussian, "ru"},
    {3, charset::kGreek, "el"},      {4, charset::kTurkish, "tr"},         {5, charset::kHebrew, "he"},
    {6, charset::kArabic, "ar"},     {7, charset::kBaltic, "lt"},          {8, charset::kVietnamese, "vi"},
    {16, charset::kThai, "th"},      {17, charset::kShiftJis, "ja"},       {18, charset::kGb2312, "zh-cn"},
    {19, charset::kHangul, "ko"},    {20, charset::kChineseBig5, "zh-tw"}, {21, charset::kJohab, nullptr},
    {31, charset::kSymbol, nullptr},
};

uint32_t Clamp(int64_t ppem) {
    return static_cast<uint32_t>(std::clamp<int64_t>(ppem, 1, kMaxPixelsPerEm));
}

uint16_t ReadU16(const uint8_t* p) {
    return static_cast<uint16_t>((p[0] << 8) | p[1]);
}

}  // namespace

std::vector<uint8_t> CharSetsFromCodePages(uint32_t codePageRange1) {
    std::vector<uint8_t> sets;
    for (const CodePageCharSet& cp : kCodePages) {
        if (codePageRange1 & (1u << cp.bit)) {
            sets.push_back(cp.charSet);
        }
    }
    return sets;
}

int CodePageBitOfCharSet(uint8_t charSet) {
    for (const CodePageCharSet& cp : kCodePages) {
        if (cp.charSet == charSet) {
            return cp.bit;
        }
    }
    return -1;
}

const char* LanguageOfCharSet(uint8_t charSet) {
    for (const CodePageCharSet& cp : kCodePages) {
        if (cp.charSet == charSet) {
            return cp.language;
        }
    }
    return nullptr;
}

uint8_t PitchAndFamilyOfFace(bool fixedPitch, uint8_t panoseFamilyType, uint8_t panoseSerifStyle,
                             int16_t familyClass) {
    const uint8_t pitchBits = fixedPitch ? pitch::kFixed : pitch::kVariable;
    enum : uint8_t {
        kPanAny = 0,
        kPanNoFit = 1,
        kPanText = 2,
        kPanScript = 3,
        kPanDecorative = 4,
        kPanPictorial = 5
    };
    switch (panoseFamilyType) {
        case kPanScript:
            return pitchBits | family::kScript;
        case kPanDecorative:
        case kPanPictorial:
            return pitchBits | family::kDecorative;
        case kPanAny:
        case kPanNoFit:
        case kPanText:
            break;
        default:
            return pitchBits | family::kDontCare;
    }
    // Text faces: constant stroke width makes a fixed-pitch face "modern" whatever its serifs.
    if (fixedPitch) {
        return pitchBits | family::kModern;
    }
    if (panoseSerifStyle >= 2 && panoseSerifStyle <= 10) {  // cove .. triangle
        return pitchBits | family::kRoman;
    }
    if (panoseSerifStyle >= 11 && panoseSerifStyle <= 15) {  // normal sans .. rounded
        return pitchBits | family::kSwiss;
    }
    // PANOSE gives no serif style: the IBM class (high byte of sFamilyClass) decides.
    switch ((familyClass >> 8) & 0xFF) {
        case 1:  // old-style serifs
        case 2:  // transitional serifs
        case 3:  // modern serifs
        case 4:  // clarendon serifs
        case 5:  // slab serifs
        case 7:  // freeform serifs
            return pitchBits | family::kRoman;
        case 8:  // sans serif
            return pitchBits | family::kSwiss;
        case 9:   // ornamentals
        case 12:  // symbolic
            return pitchBits | family::kDecorative;
        case 10:  // scripts
            return pitchBits | family::kScript;
        default:
            return pitchBits | family::kDontCare;
    }
}

int32_t ScaleRounded(int64_t units, uint32_t pixelsPerEm, uint32_t unitsPerEm) {
    if (unitsPerEm == 0) {
        return 0;
    }
    const int64_t scaled = units * static_cast<int64_t>(pixelsPerEm);
    const int64_t half = unitsPerEm / 2;
    const int64_t rounded = scaled >= 0 ? (scaled + half) / unitsPerEm : -((-scaled + half) / unitsPerEm);
    return static_cast<int32_t>(rounded);
}

uint32_t PixelsPerEmForHeight(int32_t height, const VerticalDesign& design) {
    if (height == 0) {
        return 16;
    }
    if (height < 0) {
        return Clamp(-static_cast<int64_t>(height));
    }
    const uint64_t cell = static_cast<uint64_t>(design.winAscent) + design.winDescent;
    if (cell == 0 || design.unitsPerEm == 0) {
        return Clamp(height);
    }
    const int64_t nearest = (static_cast<int64_t>(height) * design.unitsPerEm * 2 + cell) / (cell * 2);
    if (nearest > kMaxPixelsPerEm) {
        return kMaxPixelsPerEm;
    }
    const uint32_t ppem = Clamp(nearest);
    // The whole cell scaled once, not ascent and descent rounded apart: the reported cell may then
    // be one pixel taller than asked, which never lowers the size.
    const bool tooTall = ScaleRounded(static_cast<int64_t>(cell), ppem, design.unitsPerEm) > height;
    return tooTall && ppem > 1 ? ppem - 1 : ppem;
}

VdmxGroup ParseVdmxTable(const uint8_t* table, size_t size) {
    VdmxGroup group;
    constexpr size_t kHeader = 6;
    constexpr size_t kRatio = 4;
    if (!table || size < kHeader) {
        return group;
    }
    const size_t ratios = ReadU16(table + 4);
    const size_t offsets = kHeader + ratios * kRatio;  // the group offsets follow the ratio ranges
    for (size_t i = 0; i < ratios && offsets + 2 * i + 2 <= size; ++i) {
        const uint8_t* ratio = table + kHeader + i * kRatio;
        const uint8_t charSet = ratio[0];
        const uint8_t x = ratio[1];
        const uint8_t yStart = ratio[2];
        const uint8_t yEnd = ratio[3];
        const bool catchAll = x == 0 && yStart == 0 && yEnd == 0;
        if (charSet == 0 || !(catchAll || (x == 1 && yStart <= 1 && yEnd >= 1))) {
            continue;
        }
        const size_t at = ReadU16(table + offsets + 2 * i);
        if (at > size || size - at < 4) {
            return group;
        }
        const size_t declared = ReadU16(table + at);
        group.firstSize = table[at + 2];
        group.lastSize = table[at + 3];
        const size_t count = std::min(declared, (size - at - 4) / 6);
        group.records.reserve(count);
        for (const uint8_t* p = table + at + 4; group.records.size() < count; p += 6) {
            group.records.push_back(
                {ReadU16(p), static_cast<int16_t>(ReadU16(p + 2)), static_cast<int16_t>(ReadU16(p + 4))});
        }
        return group;
    }
    return group;
}

namespace {

// The record of a VDMX group that sizes a requested height, or null (see SizeForHeight).
const VdmxRecord* FindVdmxRecord(const VdmxGroup& group, int32_t height) {
    const std::vector<VdmxRecord>& records = group.records;
    if (height > 0) {
        for (size_t i = 0; i < records.size(); ++i) {
            const int32_t cell = static_cast<int32_t>(records[i].yMax) - records[i].yMin;
            if (cell == height) {
                return &records[i];
            }
            if (cell > height) {
                return i == 0 ? nullptr : &records[i - 1];
            }
        }
        return nullptr;
    }
    if (height < 0 && -static_cast<int64_t>(height) >= group.firstSize &&
        -static_cast<int64_t>(height) <= group.lastSize) {
        for (const VdmxRecord& record : records) {
            if (record.pixelsPerEm > -static_cast<int64_t>(height)) {
                return nullptr;  // sorted by size: the size is not listed
            }
            if (record.pixelsPerEm == -static_cast<int64_t>(height)) {
                return &record;
            }
        }
    }
    return nullptr;
}

}  // namespace

FontSize SizeForHeight(int32_t height, const VerticalDesign& design, const VdmxGroup& vdmx) {
    FontSize size;
    const VdmxRecord* record = FindVdmxRecord(vdmx, height);
    if (record && record->pixelsPerEm != 0) {
        size.pixelsPerEm = std::min<uint32_t>(record->pixelsPerEm, kMaxPixelsPerEm);
        size.ascent = record->yMax;
        size.descent = -static_cast<int32_t>(record->yMin);
        size.internalLeading = size.ascent + size.descent - static_cast<int32_t>(size.pixelsPerEm);
        return size;
    }
    size.pixelsPerEm = PixelsPerEmForHeight(height, design);
    const uint32_t upem = design.unitsPerEm;
    size.ascent = ScaleRounded(design.winAscent, size.pixelsPerEm, upem);
    size.descent = ScaleRounded(design.winDescent, size.pixelsPerEm, upem);
    size.internalLeading = ScaleRounded(static_cast<int64_t>(design.winAscent) + design.winDescent - upem,
                                        size.pixelsPerEm, upem);
    return size;
}

std::vector<GlyphKerning> ParseKernTable(const uint8_t* table, size_t size) {
    std::vector<GlyphKerning> pairs;
    if (!table || size < 4 || ReadU16(table) != 0) {
        return pairs;
    }
    const unsigned subtables = ReadU16(table + 2);
    size_t pos = 4;
    for (unsigned t = 0; t < subtables && size - pos >= 6; ++t) {
        const size_t start = pos;
        const uint16_t length = ReadU16(table + start + 2);
        const uint16_t coverage = ReadU16(table + start + 4);
        const unsigned format = coverage >> 8;
        const bool horizontal = (coverage & 0x1) != 0;
        const bool crossStream = (coverage & 0x4) != 0;
        if (format != 0) {
            if (length < 6) {
                break;  // a subtable of unknown size cannot be skipped
            }
            pos = start + std::min<size_t>(length, size - start);
            continue;
        }
        if (size - start < 14) {
            break;
        }
        const size_t declared = ReadU16(table + start + 6);
        const size_t available = (size - start - 14) / 6;
        const size_t count = std::min(declared, available);
        if (horizontal && !crossStream) {
            const uint8_t* p = table + start + 14;
            for (size_t i = 0; i < count; ++i, p += 6) {
                pairs.push_back({ReadU16(p), ReadU16(p + 2), static_cast<int16_t>(ReadU16(p + 4))});
            }
        }
        // The 16-bit length overflows for big subtables; the pair count gives the true size.
        pos = start + 14 + count * 6;
    }
    return pairs;
}

int32_t ScaleKerning(int32_t value, uint32_t pixelsPerEm, uint32_t unitsPerEm) {
    if (unitsPerEm == 0) {
        return 0;
    }
    int64_t amount = static_cast<int64_t>(value) * pixelsPerEm;
    const int64_t bias = unitsPerEm / 2 + static_cast<int64_t>(pixelsPerEm);
    amount += amount < 0 ? -bias : bias;
    return static_cast<int32_t>(amount / static_cast<int64_t>(unitsPerEm));
}

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
