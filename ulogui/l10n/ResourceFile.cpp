#include "l10n/ResourceExtensions.h"
#include "ulogui/ResourceFileDiscover.h"

namespace ulogui {
namespace l10n {
const wchar_t* const kResourceExtensions[kResourceFileCount] = {L"ura", L"urd", L"urm",
                                                                L"urs", L"urf", L"urb"};
}  // namespace l10n
}  // namespace ulogui

namespace ulo {
namespace gui {

ResourceFile::ResourceFile(const ULOPath& path, int lang)
    : lang_(lang), path_(path), type_(TypeFromPath(path)) {}

ResourceFile::resourceType_e ResourceFile::TypeFromPath(const ULOPath& path) {
    const ULOString name = path.filename();
    const size_t dot = name.rfind(L'.');
    if (dot == ULOString::npos) {
        return resourceUnknown;
    }
    const ULOString extension = name.substr(dot + 1);
    for (int type = 0; type < ulogui::l10n::kResourceFileCount; ++type) {
        if (extension == ulogui::l10n::kResourceExtensions[type]) {
            return static_cast<resourceType_e>(type);
        }
    }
    return resourceUnknown;
}

}  // namespace gui
}  // namespace ulo
