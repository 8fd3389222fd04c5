// The exception object behind the X11 device's errors.
#include "platform/linux/X11Failure.h"

#include "ulolib/Exception.h"

namespace ulogui {
namespace platform {
namespace x11 {

namespace {

class DisplayError : public ulo::exception::Exception {
public:
    DisplayError(long windowsError, std::string message)
        : windowsError_(windowsError), message_(std::move(message)) {}
    uint32_t GetResultCode() const override { return ulo::exception::ResultFromPlatformError(windowsError_); }
    ULOString GetMessage() const override { return ULOString::FromUtf8(message_); }
    const char* what() const noexcept override { return message_.c_str(); }

private:
    long windowsError_;
    std::string message_;
};

}  // namespace

ulo::ErrorCode Failure(long windowsError, const std::string& message, const char* function, int line) {
    DisplayError error(windowsError, message);
    ULO_AT(error, function, "ulogui/platform/linux", line);
    return ulo::ErrorCode(error);
}

}  // namespace x11
}  // namespace platform
}  // namespace ulogui
