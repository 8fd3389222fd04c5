#pragma once
// ulo::CriticalSection: a recursive lock: a Windows critical section on Windows, a recursive mutex
// elsewhere.
// ulo::SingleLock: holds one with an infinite wait for as long as it lives.
#if !defined(_WIN32)
#include <mutex>
#endif

#include "ulolib/Export.h"

namespace ulo {

#if defined(_WIN32)
class ULOLIB_API CriticalSection {
public:
    CriticalSection();  // InitializeCriticalSection
    ~CriticalSection();
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void Lock();     // EnterCriticalSection
    void Unlock();   // LeaveCriticalSection
    bool TryLock();  // TryEnterCriticalSection

private:
    // The CRITICAL_SECTION itself (40 bytes on 64-bit Windows), kept in place so that this header
    // needs no Windows header; CriticalSection.cpp checks that it fits.
    alignas(8) unsigned char section_[40];
};
#else
class CriticalSection {
public:
    CriticalSection() = default;
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void Lock() { mutex_.lock(); }
    void Unlock() { mutex_.unlock(); }
    bool TryLock() { return mutex_.try_lock(); }

private:
    std::recursive_mutex mutex_;
};
#endif

class SingleLock {
public:
    explicit SingleLock(CriticalSection* cs, bool lockNow = true) : cs_(cs) {
        if (lockNow) {
            Lock();
        }
    }
    explicit SingleLock(CriticalSection& cs) : SingleLock(&cs, true) {}
    ~SingleLock() { Unlock(); }
    SingleLock(const SingleLock&) = delete;
    SingleLock& operator=(const SingleLock&) = delete;

    void Lock() {
        if (cs_ && !locked_) {
            cs_->Lock();
            locked_ = true;
        }
    }
    void Unlock() {
        if (cs_ && locked_) {
            cs_->Unlock();
            locked_ = false;
        }
    }
    bool IsLocked() const { return locked_; }

private:
    CriticalSection* cs_;
    bool locked_ = false;
};

}  // namespace ulo
