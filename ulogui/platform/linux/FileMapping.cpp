// Read-only file mappings on POSIX systems: open, measure, mmap.
#include "platform/FileMapping.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

namespace ulogui {
namespace platform {

namespace {
constexpr long kErrorAccessDenied = 5;    // ERROR_ACCESS_DENIED
constexpr long kErrorFileInvalid = 1006;  // ERROR_FILE_INVALID: a mapping of an empty file
}  // namespace

std::optional<ulo::exception::SystemError> ReadOnlyFileMapping::Open(const ULOPath& path) {
    using ulo::exception::SystemError;
    // Non-blocking, so that a FIFO fails below instead of waiting for a writer.
    const int fd = ::open(path.native().c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (fd < 0) {
        return SystemError::FromErrno(errno, "CreateFile");
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0) {
        const int err = errno;
        ::close(fd);
        return SystemError::FromErrno(err, "CreateFile");
    }
    if (S_ISDIR(info.st_mode)) {
        // Windows does not open a directory as a file.
        ::close(fd);
        return SystemError(kErrorAccessDenied, "CreateFile");
    }
    file_ = fd;
    if (!S_ISREG(info.st_mode) || info.st_size <= 0) {
        return SystemError(kErrorFileInvalid, "CreateFileMapping");
    }
    if (static_cast<uintmax_t>(info.st_size) > SIZE_MAX) {
        return SystemError::FromErrno(ENOMEM, "CreateFileMapping");
    }
    size_ = static_cast<size_t>(info.st_size);
    void* view = ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, fd, 0);
    if (view == MAP_FAILED) {
        return SystemError::FromErrno(errno, "MapViewOfFile");
    }
    view_ = view;
    return std::nullopt;
}

void ReadOnlyFileMapping::Close() {
    if (view_) {
        ::munmap(view_, size_);
        view_ = nullptr;
    }
    size_ = 0;
    if (file_ >= 0) {
        ::close(static_cast<int>(file_));
        file_ = -1;
    }
}

}  // namespace platform
}  // namespace ulogui
