#pragma once
// The gallery's per-language texts, read from the language's string resource file (Main.urs): UTF-8
// lines "key = text"; blank lines and lines starting with # are skipped; "\n" in a text is a line
// break. Every key the sheets use must be present (see RequiredTextKeys), so drawing never misses one.
#include <map>
#include <string>

#include "ulolib/String.h"

namespace gallery {

class TextTable {
public:
    // Throws GalleryError naming the file (and line) when it cannot be read, a line is malformed, a
    // key repeats or a required key is missing.
    static TextTable Load(const std::string& path);

    // The text of key; the key itself for one the table lacks (Load rules that out for the keys used).
    ULOString Get(const char* key) const;

private:
    std::map<std::string, ULOString> texts_;
};

}  // namespace gallery
