#include "font/MappedFontResourceFile.h"

namespace details {

MappedFontResourceFile::~MappedFontResourceFile() = default;

ulo::ErrorCode MappedFontResourceFile::DoInit(const ULOPath& path) {
    if (auto failure = mapping_.Open(path)) {
        return ulo::ErrorCode(ULO_AT(
            *failure,
            "class ulo::ErrorCode __cdecl details::MappedFontResourceFile::DoInit(const class ULOPath &)",
            "ulogui/font", __LINE__));
    }
    SetView(mapping_.Data(), mapping_.Size());
    return ulo::ErrorCode::noError();
}

void MappedFontResourceFile::DoClose() {
    SetView(nullptr, 0);
    mapping_.Close();
}

}  // namespace details
