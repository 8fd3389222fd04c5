#pragma once
// Holds the calling thread's magnifier at 1.0 for as long as it lives, so that operations which take
// logical units take device pixels unchanged.
#include "ulogui/Magnify.h"

namespace ulogui {
namespace picture {

class MagnifierHold {
public:
    MagnifierHold() : magnifier_(magnify::GetMagnifier()), saved_(magnifier_) { magnifier_ = 1.0f; }
    ~MagnifierHold() { magnifier_ = saved_; }
    MagnifierHold(const MagnifierHold&) = delete;
    MagnifierHold& operator=(const MagnifierHold&) = delete;

private:
    float& magnifier_;
    float saved_;
};

}  // namespace picture
}  // namespace ulogui
