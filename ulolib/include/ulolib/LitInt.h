#pragma once
// Reads a 32-bit little-endian integer from a C stream.
#include <cstdint>
#include <cstdio>

#include "ulolib/Export.h"

// Bytes that could not be read count as zero, so a short read never leaves garbage.
ULOLIB_API int LitInt(FILE* file);
// The same, reporting whether all four bytes were read.
ULOLIB_API bool LitInt(FILE* file, int32_t& value);
