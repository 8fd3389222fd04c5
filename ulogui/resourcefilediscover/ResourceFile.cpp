#include "ulogui/ResourceFileDiscover.h"
#include "ulogui/resourcefilediscover/ResourceExtensions.h"

namespace ulo {
namespace gui {

namespace details {
const wchar_t* const kResourceExtensions[kResourceFileCount] = {L"ura", L"urd", L"urm",
                                                                L"urs", L"urf", L"urb"};
}  // namespace details

ResourceFile::ResourceFile(const ULOPath& path, int lang)
    : lang_(lang), path_(path), type_(TypeFromPath(path)) {}

ResourceFile::resourceType_e ResourceFile::TypeFromPath(const ULOPath& path) {
    const ULOString name = path.filename();
    const size_t dot = name.rfind(L'.');
    if (dot == ULOString::npos) {
        return resourceUnknown;
    }
    const ULOString extension = name.substr(dot + 1);
    for (int type = 0; type < details::kResourceFileCount; ++type) {
        if (extension == details::kResourceExtensions[type]) {
            return static_cast<resourceType_e>(type);
        }
    }
    return resourceUnknown;
}

}  // namespace gui
}  // namespace ulo
