#include "font/MappedFontResourceFile.h"
#include "resfile/FontRecord.h"
#include "ulogui/Font.h"
#include "ulolib/Exception.h"

FontResourceFile::~FontResourceFile() = default;

ulo::ErrorCode FontResourceFile::Init(const ULOPath& path) {
    DoClose();
    // Why exists or is_directory failed does not matter here: either way there is no file.
    if (path.empty() || !path.exists() || path.is_directory()) {
        return ulo::ErrorCode(
            ULO_AT(ulo::exception::InternalError("URF_INIPTH"),
                   "class ulo::ErrorCode __cdecl FontResourceFile::Init(const class ULOPath &)",
                   "ulogui/font", __LINE__));
    }
    return DoInit(path);
}

bool FontResourceFile::ReadRecord(uint32_t id, ulogui::resfile::FontRecord& out) const {
    return view_ && ulogui::resfile::ReadFontRecord(view_, viewSize_, id, out);
}

FontResourceFile& FontResourceFile::Instance() {
    static details::MappedFontResourceFile instance;
    return instance;
}

ulo::ErrorCode ULOFont::SetFontResourceFile(const ULOPath& path) {
    return FontResourceFile::Instance().Init(path);
}
