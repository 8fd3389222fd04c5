#include "ulogui/Version.h"

const char* ULODrawLibVersion() {
    return "0.1.0";
}
