#pragma once
// The installed outline faces as the font enumeration reports them: grouped into families by
// their Windows family name (name ID 1), with the character sets and pitch-and-family byte that
// the classic Windows font engine derives from the face's own tables.
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdint>
#include <string>
#include <vector>

#include "ulolib/String.h"

namespace ulogui {
namespace platform {
namespace ft {

struct FaceFile {
    std::string path;
    int index = 0;
    ULOString family;  // name ID 1, platform 3, language 0x409 (or the nearest there is)
    uint16_t weightClass = 400;
    bool italic = false;
    std::vector<uint8_t> charSets;
    uint8_t pitchAndFamily = 0;
};

struct FaceFamily {
    ULOString name;
    std::vector<size_t> members;  // indices into FaceCatalogue::Files()
    size_t representative = 0;    // the regular face, else bold, italic, bold italic
    std::vector<uint8_t> charSets;
    uint8_t pitchAndFamily = 0;

    bool Supports(uint8_t charSet) const;
};

class FaceCatalogue {
public:
    // Lists the scalable TrueType and CFF faces fontconfig knows in config (null: the current
    // configuration) and reads each face's tables with library.
    FaceCatalogue(FcConfig* config, FT_Library library);

    const std::vector<FaceFile>& Files() const { return files_; }
    // In enumeration order: the families fontconfig picks for "sans-serif", "monospace" and
    // "serif" first (in that order), then all others case-insensitively by name.
    const std::vector<FaceFamily>& Families() const { return families_; }
    // Family by name, ignoring case; null when there is none.
    const FaceFamily* FindFamily(const ULOString& name) const;
    // The family a file belongs to; null when the file is not in the catalogue.
    const FaceFamily* FindFamilyOfFile(const std::string& path, int index) const;

private:
    void ReadFaces(FcConfig* config, FT_Library library);
    void GroupFamilies();
    void OrderFamilies(FcConfig* config);

    std::vector<FaceFile> files_;
    std::vector<FaceFamily> families_;
};

// The Windows family name of a face: name ID 1 for platform 3 and language 0x409, else any
// platform-3 name ID 1, else FreeType's family name.
ULOString WindowsFamilyName(FT_Face face);

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
