#pragma once
// Holds a variable at a value for as long as it lives and then puts back the value it found, also when
// an exception passes through. Geometry code uses it to work in device pixels for the length of a call:
// a drawing surface raises its guard flag, a picture holds the thread's magnifier at 1.0, so that the
// operations they call do not convert their arguments a second time.
namespace ulogui {
namespace base {

template <typename T>
class ScopedOverride {
public:
    // Does nothing at all (neither now nor at the end) unless `active`.
    ScopedOverride(T& target, T value, bool active = true)
        : target_(target), saved_(target), active_(active) {
        if (active_) {
            target_ = value;
        }
    }
    ~ScopedOverride() {
        if (active_) {
            target_ = saved_;
        }
    }
    ScopedOverride(const ScopedOverride&) = delete;
    ScopedOverride& operator=(const ScopedOverride&) = delete;

private:
    T& target_;
    const T saved_;
    const bool active_;
};

}  // namespace base
}  // namespace ulogui
