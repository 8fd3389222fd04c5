// Windows: whether memory is writable, asked with VirtualQuery region by region. IsBadWritePtr
// answers the same question by writing to the memory under an exception handler, which trips
// guard pages (a thread's stack growth) and races with other threads; VirtualQuery only reads the
// process's address-space records. A range is writable when committed regions whose protection
// allows writing cover it without a gap; guard pages and no-access pages do not count.
#include <windows.h>

#include <cstdint>

#include "platform/WritableMemory.h"

namespace ulogui {
namespace platform {

namespace {

bool AllowsWriting(const MEMORY_BASIC_INFORMATION& region) {
    if (region.State != MEM_COMMIT || (region.Protect & (PAGE_GUARD | PAGE_NOACCESS)) != 0) {
        return false;
    }
    const DWORD writable = PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    return (region.Protect & writable) != 0;
}

}  // namespace

bool IsWritableRange(const void* p, size_t size) {
    if (size == 0) {
        return true;
    }
    const uintptr_t begin = reinterpret_cast<uintptr_t>(p);
    const uintptr_t end = begin + size;
    if (end < begin) {
        return false;
    }
    uintptr_t at = begin;
    while (at < end) {
        MEMORY_BASIC_INFORMATION region{};
        if (::VirtualQuery(reinterpret_cast<const void*>(at), &region, sizeof region) != sizeof region ||
            !AllowsWriting(region)) {
            return false;
        }
        const uintptr_t regionEnd = reinterpret_cast<uintptr_t>(region.BaseAddress) + region.RegionSize;
        if (regionEnd <= at) {
            return false;  // a record that does not move on would loop
        }
        at = regionEnd;
    }
    return true;
}

}  // namespace platform
}  // namespace ulogui
