#pragma once
// Writing a band of device pixels into the memory a put request sends: the window's rows top-down,
// each pixel blue, green, red and the window's fourth byte.
#include <cstdint>

#include "platform/DeviceCopy.h"

namespace ulogui {
namespace platform {
namespace x11 {

// Writes `rows` rows of `columns` pixels of `copy`, starting at its pixel (column, row), to `target`
// (rows of columns * 4 bytes), or-ing `opaqueBits` into every pixel (0: the bytes go as they are).
// `streaming` writes the target around this thread's caches, for memory that another process reads
// next (the server's shared segment): the stores need not first fetch lines the server last held.
void WriteBand(const DeviceCopy& copy, int column, int row, int columns, int rows, uint32_t opaqueBits,
               bool streaming, unsigned char* target);

}  // namespace x11
}  // namespace platform
}  // namespace ulogui
