// ULOGetFontList: the installed TrueType faces, once each.
#include <string>
#include <unordered_set>

#include "platform/FontEngine.h"
#include "ulogui/Glyph.h"

void ULOGetFontList(std::vector<ULOString>* names) {
    if (!names) {
        return;
    }
    // The engine reports a face once per character set it supports; names already in the list
    // count as listed.
    std::unordered_set<std::wstring> listed(names->begin(), names->end());
    ulogui::platform::GetFontEngine()->EnumerateFaces(
        ulogui::platform::charset::kDefault, [&](const ulogui::platform::FaceInfo& face) {
            if (face.trueType && listed.insert(face.faceName).second) {
                names->push_back(face.faceName);
            }
            return true;
        });
}
