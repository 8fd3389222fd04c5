// ulo::CriticalSection on Windows: the kernel's critical section, which is recursive like the
// mutex of the other platforms.
#include "ulolib/CriticalSection.h"

#if defined(_WIN32)
#include <windows.h>

#include <new>

namespace ulo {

namespace {

CRITICAL_SECTION* Section(unsigned char* storage) {
    return reinterpret_cast<CRITICAL_SECTION*>(storage);
}

}  // namespace

CriticalSection::CriticalSection() {
    static_assert(sizeof(CRITICAL_SECTION) <= sizeof section_, "CriticalSection::section_ is too small");
    static_assert(alignof(CRITICAL_SECTION) <= 8, "CriticalSection::section_ is not aligned enough");
    ::InitializeCriticalSection(new (section_) CRITICAL_SECTION);
}

CriticalSection::~CriticalSection() {
    ::DeleteCriticalSection(Section(section_));
}

void CriticalSection::Lock() {
    ::EnterCriticalSection(Section(section_));
}

void CriticalSection::Unlock() {
    ::LeaveCriticalSection(Section(section_));
}

bool CriticalSection::TryLock() {
    return ::TryEnterCriticalSection(Section(section_)) != FALSE;
}

}  // namespace ulo
#endif
