#pragma once
// 32-bit little-endian values inside a file image, for tests that build or damage resource files.
#include <cstddef>
#include <cstdint>
#include <vector>

inline uint32_t GetU32(const std::vector<uint8_t>& bytes, size_t at) {
    return static_cast<uint32_t>(bytes[at]) | static_cast<uint32_t>(bytes[at + 1]) << 8 |
           static_cast<uint32_t>(bytes[at + 2]) << 16 | static_cast<uint32_t>(bytes[at + 3]) << 24;
}

inline void PutU32(std::vector<uint8_t>& bytes, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<uint8_t>(v >> (8 * i));
    }
}
