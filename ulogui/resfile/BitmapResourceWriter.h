#pragma once
// Writes bitmap resource files (the layout of BitmapResourceFormat.h), for the resource builder
// and for tests.
#include <cstdint>
#include <map>
#include <vector>

namespace ulogui {
namespace resfile {

// One stored size version: partsCount images one after another, each `height` bottom-up rows of
// ComputeLineWidth(width, flags) bytes, exactly as a pixel buffer holds them.
struct VersionImage {
    int32_t width = 0;
    int32_t height = 0;
    std::vector<unsigned char> pixels;
};

struct PictureRecord {
    int32_t id = 0;
    int32_t flags = 0;
    int32_t partsCount = 1;
    // Keyed by slot k (0..23), which stores version 2^k.
    std::map<int, VersionImage> versions;
};

// The bytes of a whole file. The index has one entry per ID up to the largest; records follow it in
// ID order, each followed by its versions. Slots without a version hold offset 0. Throws
// std::invalid_argument, naming the picture, when a record does not hold together (negative or
// repeated ID, parts count below 1, a size below 1, a slot outside 0..23, pixel bytes that do not
// match the size) and std::length_error when the file would outgrow 32-bit offsets.
std::vector<unsigned char> BuildBitmapResourceFile(const std::vector<PictureRecord>& pictures);

}  // namespace resfile
}  // namespace ulogui
