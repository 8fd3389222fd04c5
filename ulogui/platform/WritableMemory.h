#pragma once
// Whether memory can be written, asked of the operating system rather than found out by writing.
#include <cstddef>

namespace ulogui {
namespace platform {

// True when every byte of [p, p + size) lies in memory the process may write. An empty range is
// writable; a range that wraps around the address space is not. When the operating system cannot be
// asked, the answer is false.
bool IsWritableRange(const void* p, size_t size);

}  // namespace platform
}  // namespace ulogui
