#pragma once
// Font resource files for the tests: files written into a test's own folder, and a record as one
// line of text, so that a whole record is checked by one comparison with a readable difference.
#include <string>
#include <vector>

#include "resfile/FontRecord.h"
#include "ulolib/LittleEndian.h"
#include "ulolib/TempDir.h"

namespace testfonts {

inline std::string WriteFile(const TempDir& dir, const std::string& name, const std::vector<uint8_t>& bytes) {
    return dir.Write(name, std::string(bytes.begin(), bytes.end()));
}

// "face height weight flags family pitch [alternatives] 'name' ignoreHeightExt heightExt", the
// flags as i, u, s or '-': e.g. "Ab -12 400 i-s 32 2 [X,Y] 'Caption' 1 28".
inline std::wstring Describe(const ulogui::resfile::FontRecord& r) {
    std::wstring alternatives;
    for (const ULOString& face : r.alternativeFaces) {
        alternatives += (alternatives.empty() ? L"" : L",") + face;
    }
    return r.primaryFace + L" " + std::to_wstring(r.height) + L" " + std::to_wstring(r.weight) + L" " +
           (r.italic ? L"i" : L"-") + (r.underline ? L"u" : L"-") + (r.strikeOut ? L"s" : L"-") + L" " +
           std::to_wstring(r.family) + L" " + std::to_wstring(r.pitch) + L" [" + alternatives + L"] '" +
           r.name + L"' " + std::to_wstring(r.ignoreHeightExt) + L" " + std::to_wstring(r.heightExt);
}

}  // namespace testfonts
