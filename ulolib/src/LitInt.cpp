#include "ulolib/LitInt.h"

int LitInt(FILE* file) {
    int32_t value = 0;
    LitInt(file, value);
    return value;
}

bool LitInt(FILE* file, int32_t& value) {
    unsigned char bytes[4] = {0, 0, 0, 0};
    const size_t got = file ? std::fread(bytes, 1, sizeof bytes, file) : 0;
    const uint32_t v =
        uint32_t(bytes[0]) | uint32_t(bytes[1]) << 8 | uint32_t(bytes[2]) << 16 | uint32_t(bytes[3]) << 24;
    value = static_cast<int32_t>(v);
    return got == sizeof bytes;
}
