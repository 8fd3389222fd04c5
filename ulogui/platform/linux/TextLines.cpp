#include "platform/linux/TextLines.h"

namespace ulogui {
namespace platform {
namespace ft {

LineSpan NextLine(const wchar_t* text, size_t length, size_t begin) {
    LineSpan span;
    span.begin = begin;
    size_t i = begin;
    while (i < length && text[i] != L'\r' && text[i] != L'\n') {
        ++i;
    }
    span.end = i;
    if (i < length) {
        const wchar_t first = text[i++];
        // The other of the two characters after it completes the same line end.
        if (i < length && (text[i] == L'\r' || text[i] == L'\n') && text[i] != first) {
            ++i;
        }
    }
    span.next = i;
    return span;
}

void PrepareLine(const wchar_t* first, const wchar_t* last, bool prefixes, DrawnLine& out) {
    out.codes.clear();
    out.marked = -1;
    for (const wchar_t* p = first; p < last; ++p) {
        if (prefixes && *p == L'&' && p + 1 < last) {
            ++p;  // the "&" goes; the next character is drawn in its place
            if (*p != L'&' && out.marked < 0) {
                out.marked = static_cast<std::ptrdiff_t>(out.codes.size());
            }
        }
        out.codes.push_back(static_cast<uint32_t>(*p));
    }
}

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
