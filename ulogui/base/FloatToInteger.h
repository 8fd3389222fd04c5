#pragma once
// Float-to-integer conversions with a defined answer for every input. A plain cast is undefined for NaN
// and for values outside the target type; these give the documented fallbacks instead.
#include <climits>
#include <cstdint>

namespace ulogui {
namespace base {

// Truncates toward zero to a 64-bit integer and keeps its low 8 bits, so 400 gives 144 and -1 gives 255.
// NaN and values beyond the 64-bit range give 0, the low byte of the x86 "integer indefinite" answer.
inline unsigned char TruncateToByte(float v) {
    if (!(v > -9.2233720e18f && v < 9.2233720e18f)) {
        return 0;
    }
    return static_cast<unsigned char>(static_cast<uint64_t>(static_cast<int64_t>(v)));
}

// Truncates toward zero, saturating at INT_MIN and INT_MAX; NaN gives 0.
inline int SaturatingTruncate(float v) {
    if (v != v) {
        return 0;
    }
    if (v >= 2147483648.0f) {
        return INT_MAX;
    }
    if (v < -2147483648.0f) {
        return INT_MIN;
    }
    return static_cast<int>(v);
}

}  // namespace base
}  // namespace ulogui
