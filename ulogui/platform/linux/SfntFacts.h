#pragma once
// How the classic Windows font engine reads a TrueType/OpenType face, as pure functions over the
// values of the face's tables, so that they can be tested without any font file.
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ulogui {
namespace platform {
namespace ft {

// Character sets a face supports, from the OS/2 code-page bits (ulCodePageRange1), in bit order.
std::vector<uint8_t> CharSetsFromCodePages(uint32_t codePageRange1);
// The code-page bit that stands for a character set, or -1 for a set without one.
int CodePageBitOfCharSet(uint8_t charSet);
// The fontconfig language tag that stands for a character set (for faces without code-page
// bits), or null.
const char* LanguageOfCharSet(uint8_t charSet);

// The pitch-and-family byte a font description reports for a face: pitch 1 (fixed) or 2
// (variable) from the face's spacing; family from the PANOSE family kind and serif style, and where
// PANOSE says nothing about serifs, from the IBM class in sFamilyClass.
uint8_t PitchAndFamilyOfFace(bool fixedPitch, uint8_t panoseFamilyType, uint8_t panoseSerifStyle,
                             int16_t familyClass);

// Vertical design values of a face (font units): the OS/2 usWinAscent and usWinDescent, or the
// horizontal header's ascender and (negated) descender where both of those are 0.
struct VerticalDesign {
    uint32_t unitsPerEm = 0;
    uint32_t winAscent = 0;
    uint32_t winDescent = 0;
};
// Pixels per em for a requested height by the design alone: positive is a cell height (ascent +
// descent), negative a character height (the em), zero a default. For a cell height h with
// U = winAscent + winDescent: round(h × unitsPerEm / U), one less only when the cell at that size,
// rounded once, round(U × ppem / unitsPerEm), exceeds h. The result is at least 1 and at most
// kMaxPixelsPerEm.
constexpr uint32_t kMaxPixelsPerEm = 16384;
uint32_t PixelsPerEmForHeight(int32_t height, const VerticalDesign& design);
// Font units scaled to pixels, rounded to nearest (halves away from zero).
int32_t ScaleRounded(int64_t units, uint32_t pixelsPerEm, uint32_t unitsPerEm);

// One entry of a 'VDMX' group: the hinted extent of a size, in pixels.
struct VdmxRecord {
    uint16_t pixelsPerEm = 0;
    int16_t yMax = 0;
    int16_t yMin = 0;
};
// The group of a 'VDMX' table that serves a square-pixel display, as the classic engine picks it:
// the first ratio range whose character-set byte is not 0 and that is either the catch-all range
// (0, 0, 0) or holds 1:1. Empty when the table has none. Never reads outside the buffer: records
// past the end of the table are cut.
struct VdmxGroup {
    uint8_t firstSize = 0;  // the group's startsz and endsz: the character heights it lists
    uint8_t lastSize = 0;
    std::vector<VdmxRecord> records;
};
VdmxGroup ParseVdmxTable(const uint8_t* table, size_t size);

// The size of a font: pixels per em and the vertical metrics that go with it, in pixels.
struct FontSize {
    uint32_t pixelsPerEm = 0;
    int32_t ascent = 0;
    int32_t descent = 0;
    int32_t internalLeading = 0;
};
// The size for a requested height. The VDMX group is consulted first: a cell height takes the
// record whose yMax - yMin equals it, else the record before the first that exceeds it; a
// character height takes the record of exactly that size, if the group covers it. A record gives
// ascent yMax, descent -yMin and internal leading ascent + descent - ppem. Without a record the
// size is PixelsPerEmForHeight, and ascent, descent and internal leading (winAscent + winDescent -
// unitsPerEm) are scaled and rounded each on its own, so the cell may come out one pixel taller
// than a requested cell height.
FontSize SizeForHeight(int32_t height, const VerticalDesign& design, const VdmxGroup& vdmx);

// One pair of a format-0 'kern' subtable, in glyph indices and font units.
struct GlyphKerning {
    uint16_t left = 0;
    uint16_t right = 0;
    int16_t value = 0;
};
// Reads the horizontal format-0 subtables of a Microsoft-style 'kern' table (version 0). Other
// versions, formats and cross-stream subtables give no pairs. Never reads outside the buffer: a
// subtable that claims more pairs than the table holds is cut at the end of the table.
std::vector<GlyphKerning> ParseKernTable(const uint8_t* table, size_t size);
// A kerning value in font units scaled to pixels as the classic engine scales it (away from zero,
// then truncated).
int32_t ScaleKerning(int32_t value, uint32_t pixelsPerEm, uint32_t unitsPerEm);

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
