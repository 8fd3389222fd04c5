#pragma once
// Errors of the X11 device: a Windows error number for the result code, as every platform error of
// the library carries, and a sentence that says what went wrong with the display.
#include <string>

#include "ulolib/ErrorCode.h"

namespace ulogui {
namespace platform {
namespace x11 {

// Windows error numbers the device reports (docs/error-codes.md).
constexpr long kNoDisplay = 55;        // ERROR_DEV_NOT_EXIST: no display, or the connection was lost
constexpr long kNotAWindow = 6;        // ERROR_INVALID_HANDLE
constexpr long kUnsupported = 50;      // ERROR_NOT_SUPPORTED: a window the device cannot draw on
constexpr long kInvalidArgument = 87;  // ERROR_INVALID_PARAMETER
constexpr long kOutOfMemory = 8;       // ERROR_NOT_ENOUGH_MEMORY
constexpr long kServerError = 31;      // ERROR_GEN_FAILURE: another error the server reported

// An error whose message is `message` and whose result code is 0x80070000 | windowsError, located at
// `line` of `function` (a string literal) in the X11 backend.
ulo::ErrorCode Failure(long windowsError, const std::string& message, const char* function, int line);

}  // namespace x11
}  // namespace platform
}  // namespace ulogui
