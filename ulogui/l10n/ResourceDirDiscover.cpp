#include "ulogui/ResourceFileDiscover.h"
#include "ulolib/Directory.h"

namespace ulo {
namespace gui {

ResourceDirDiscover::ResourceDirDiscover(bool flag, HINSTANCE instance) : flag_(flag), instance_(instance) {}

ResourceDirDiscover::~ResourceDirDiscover() = default;

ULOPath ResourceDirDiscover::FindResourceDir(const ULOString& /*name*/) const {
    return Directory::create()->GetApplicationDirectory();
}

}  // namespace gui
}  // namespace ulo
