#pragma once
// The text side of the platform's draw-text call (without single-line, word-break or tab
// expansion): where lines end, and what the mnemonic prefixes leave of a line.
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ulogui {
namespace platform {
namespace ft {

// The line that starts at `begin`: its characters are [begin, end), the next line starts at next.
// A CR or an LF ends a line; CR LF and LF CR are one line end, CR CR and LF LF two.
struct LineSpan {
    size_t begin = 0;
    size_t end = 0;
    size_t next = 0;
};
LineSpan NextLine(const wchar_t* text, size_t length, size_t begin);

// A line as it is drawn: its code points and the position among them of the character that the
// first "&" marks (-1 for none).
struct DrawnLine {
    std::vector<uint32_t> codes;
    std::ptrdiff_t marked = -1;
};
// With prefixes, an "&" is removed and marks the character after it, "&&" stands for one "&", and an
// "&" that ends the line is drawn. Only the first mark of a line is kept. Without prefixes the line
// is drawn as it stands. Each wchar_t is a code point; surrogate halves stay as they are (the face
// has no glyph for them).
void PrepareLine(const wchar_t* first, const wchar_t* last, bool prefixes, DrawnLine& out);

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
