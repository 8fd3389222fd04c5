#pragma once
// The error of a language whose resource files are not all found.
#include "ulolib/Exception.h"

namespace ulogui {
namespace l10n {

class ResourceFilesMissing : public ulo::exception::InternalError {
public:
    ResourceFilesMissing() : InternalError("URD_NOFILE") {}
    // The text the host shows before it stops.
    ULOString GetMessage() const override {
        return L"Unable to find one or more resource files\nin the specified directory.\n\n"
               L"Please re-install the application.";
    }
};

}  // namespace l10n
}  // namespace ulogui
