#include "ulolib/Exception.h"

#include <cerrno>
#include <cstring>
#include <iterator>

namespace ulo {
namespace exception {

namespace {

constexpr long kErrorGenFailure = 31;  // ERROR_GEN_FAILURE

struct ErrnoMapping {
    int err;
    long windowsError;
};

// errno values and the Windows error number a Windows program sees for the same failure (see
// docs/error-codes.md). Where several errno values share a Windows number, the first listed is the
// one whose text describes that number.
constexpr ErrnoMapping kErrnoMap[] = {
    {ENOENT, 2},          // ERROR_FILE_NOT_FOUND
    {ENOTDIR, 3},         // ERROR_PATH_NOT_FOUND
    {EMFILE, 4},          // ERROR_TOO_MANY_OPEN_FILES
    {ENFILE, 4},          //
    {EACCES, 5},          // ERROR_ACCESS_DENIED
    {EPERM, 5},           //
    {EISDIR, 5},          // opening a folder as a file is refused as access denied
    {EBADF, 6},           // ERROR_INVALID_HANDLE
    {ENOMEM, 8},          // ERROR_NOT_ENOUGH_MEMORY
    {E2BIG, 10},          // ERROR_BAD_ENVIRONMENT
    {ENOEXEC, 11},        // ERROR_BAD_FORMAT
    {EXDEV, 17},          // ERROR_NOT_SAME_DEVICE
    {EROFS, 19},          // ERROR_WRITE_PROTECT
    {ETXTBSY, 32},        // ERROR_SHARING_VIOLATION
    {EAGAIN, 33},         // ERROR_LOCK_VIOLATION
    {ENOLCK, 36},         // ERROR_SHARING_BUFFER_EXCEEDED
    {ENOTSUP, 50},        // ERROR_NOT_SUPPORTED
    {ENODEV, 55},         // ERROR_DEV_NOT_EXIST
    {ENXIO, 55},          //
    {EEXIST, 80},         // ERROR_FILE_EXISTS
    {EINVAL, 87},         // ERROR_INVALID_PARAMETER
    {EPIPE, 109},         // ERROR_BROKEN_PIPE
    {ENOSPC, 112},        // ERROR_DISK_FULL
    {ENOSYS, 120},        // ERROR_CALL_NOT_IMPLEMENTED
    {ERANGE, 122},        // ERROR_INSUFFICIENT_BUFFER
    {ECHILD, 128},        // ERROR_WAIT_NO_CHILDREN
    {ESPIPE, 132},        // ERROR_SEEK_ON_DEVICE
    {ENOTEMPTY, 145},     // ERROR_DIR_NOT_EMPTY
    {EBUSY, 170},         // ERROR_BUSY
    {ENAMETOOLONG, 206},  // ERROR_FILENAME_EXCED_RANGE
    {EFBIG, 223},         // ERROR_FILE_TOO_LARGE
    {EOVERFLOW, 534},     // ERROR_ARITHMETIC_OVERFLOW
    {EINTR, 995},         // ERROR_OPERATION_ABORTED
    {EFAULT, 998},        // ERROR_NOACCESS
    {EIO, 1117},          // ERROR_IO_DEVICE
    {EDEADLK, 1131},      // ERROR_POSSIBLE_DEADLOCK
    {EMLINK, 1142},       // ERROR_TOO_MANY_LINKS
    {ECANCELED, 1223},    // ERROR_CANCELLED
#if defined(EDQUOT)       // not a C runtime value on Windows
    {EDQUOT, 1295},       // ERROR_DISK_QUOTA_EXCEEDED
#endif
    {ETIMEDOUT, 1460},  // ERROR_TIMEOUT
    {ELOOP, 1921},      // ERROR_CANT_RESOLVE_FILENAME
    // Aliases of the values above on Linux, distinct on some other systems (Windows' C runtime).
    {EWOULDBLOCK, 33},
    {EDEADLOCK, 1131},
    {EOPNOTSUPP, 50},
};

// A readable description of a Windows error number, taken from the errno that maps to it.
std::string DescribeWindowsError(long windowsError) {
    for (const ErrnoMapping& m : kErrnoMap) {
        if (m.windowsError == windowsError) {
            return std::strerror(m.err);
        }
    }
    return windowsError == 0 ? "success" : "system error";
}

}  // namespace

Exception::~Exception() = default;

ULOString Exception::GetMessage() const {
    return ULOString::FromUtf8(what());
}

InternalError::~InternalError() = default;

ULOString InternalError::GetMessage() const {
    return ULOString::FromUtf8(code_);
}

SystemError::SystemError(long platformError, std::string call)
    : platformError_(platformError), call_(std::move(call)) {
    what_ = call_ + " failed: " + DescribeWindowsError(platformError_) + " (error " +
            std::to_string(platformError_) + ")";
}

SystemError::~SystemError() = default;

SystemError SystemError::FromErrno(int err, std::string call) {
    SystemError error(WindowsErrorFromErrno(err), std::move(call));
    // The errno's own text is more precise than the one of the Windows number it maps to.
    error.what_ = error.call_ + " failed: " + std::strerror(err) + " (error " +
                  std::to_string(error.platformError_) + ")";
    return error;
}

uint32_t SystemError::GetResultCode() const {
    return ResultFromPlatformError(platformError_);
}

ULOString SystemError::GetMessage() const {
    return ULOString::FromUtf8(what_);
}

uint32_t ResultFromPlatformError(long e) {
    if (e <= 0) {
        return static_cast<uint32_t>(e);
    }
    return 0x80070000u | (static_cast<uint32_t>(e) & 0xFFFFu);
}

long WindowsErrorFromErrno(int err) {
    if (err == 0) {
        return 0;
    }
    for (const ErrnoMapping& m : kErrnoMap) {
        if (m.err == err) {
            return m.windowsError;
        }
    }
    return kErrorGenFailure;
}

}  // namespace exception
}  // namespace ulo
