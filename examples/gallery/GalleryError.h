#pragma once
// The one kind of error the gallery reports: a single line naming the file or value at fault.
#include <stdexcept>
#include <string>

namespace gallery {

class GalleryError : public std::runtime_error {
public:
    explicit GalleryError(const std::string& line) : std::runtime_error(line) {}
};

}  // namespace gallery
