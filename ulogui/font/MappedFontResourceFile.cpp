#include "ulogui/font/MappedFontResourceFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <string>

#include "ulolib/Exception.h"

namespace details {

namespace {

constexpr char kDoInit[] =
    "class ulo::ErrorCode __cdecl details::MappedFontResourceFile::DoInit(const class ULOPath &)";
constexpr char kSource[] = "ulogui/font";
constexpr long kErrorAccessDenied = 5;    // ERROR_ACCESS_DENIED
constexpr long kErrorFileInvalid = 1006;  // ERROR_FILE_INVALID: a mapping of an empty file

ulo::ErrorCode Failure(const ulo::exception::SystemError& error, int line) {
    return ulo::ErrorCode(ULO_AT(error, kDoInit, kSource, line));
}

}  // namespace

MappedFontResourceFile::~MappedFontResourceFile() = default;

ulo::ErrorCode MappedFontResourceFile::DoInit(const ULOPath& path) {
    // Non-blocking, so that a FIFO fails below instead of waiting for a writer.
    const int fd = ::open(path.native().c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (fd < 0) {
        return Failure(ulo::exception::SystemError::FromErrno(errno, "CreateFile"), __LINE__);
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0) {
        const int err = errno;
        ::close(fd);
        return Failure(ulo::exception::SystemError::FromErrno(err, "CreateFile"), __LINE__);
    }
    if (S_ISDIR(info.st_mode)) {
        // Windows does not open a directory as a file.
        ::close(fd);
        return Failure(ulo::exception::SystemError(kErrorAccessDenied, "CreateFile"), __LINE__);
    }
    file_ = fd;
    if (!S_ISREG(info.st_mode) || info.st_size <= 0) {
        return Failure(ulo::exception::SystemError(kErrorFileInvalid, "CreateFileMapping"), __LINE__);
    }
    if (static_cast<uintmax_t>(info.st_size) > SIZE_MAX) {
        return Failure(ulo::exception::SystemError::FromErrno(ENOMEM, "CreateFileMapping"), __LINE__);
    }
    mapping_ = static_cast<size_t>(info.st_size);
    void* view = ::mmap(nullptr, mapping_, PROT_READ, MAP_PRIVATE, fd, 0);
    if (view == MAP_FAILED) {
        return Failure(ulo::exception::SystemError::FromErrno(errno, "MapViewOfFile"), __LINE__);
    }
    view_ = view;
    SetView(static_cast<const uint8_t*>(view_), mapping_);
    return ulo::ErrorCode::noError();
}

void MappedFontResourceFile::DoClose() {
    SetView(nullptr, 0);
    if (view_) {
        ::munmap(view_, mapping_);
        view_ = nullptr;
    }
    mapping_ = 0;
    if (file_ >= 0) {
        ::close(file_);
        file_ = -1;
    }
}

}  // namespace details
