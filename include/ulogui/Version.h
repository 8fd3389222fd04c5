#pragma once
#include "ulogui/Export.h"

// The library's version as "major.minor.patch".
ULODRAW_API const char* ULODrawLibVersion();
