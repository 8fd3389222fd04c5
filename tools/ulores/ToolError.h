#pragma once
// The one way the resource builder reports a failure: a message that names the file, the line or
// picture, and what is wrong. main prints it and exits non-zero.
#include <stdexcept>
#include <string>

namespace ulores {

class ToolError : public std::runtime_error {
public:
    explicit ToolError(const std::string& message) : std::runtime_error(message) {}
};

}  // namespace ulores
