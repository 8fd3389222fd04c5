#pragma once
// ulo::CriticalSection: a recursive lock, as the Windows critical section is.
// ulo::SingleLock: holds one with an infinite wait for as long as it lives.
#include <mutex>

namespace ulo {

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
