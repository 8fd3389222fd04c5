#include "OutputFile.h"

#include <sys/stat.h>
#include <unistd.h>
#if defined(_WIN32)
#include <windows.h>
#endif

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "ToolError.h"

namespace ulores {

namespace {

std::string Reason() {
    return std::strerror(errno);
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : path_(path) {
    const size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    temporary_ = folder + "." + name + ".tmp-XXXXXX";
    const int fd = mkstemp(&temporary_[0]);
    if (fd < 0) {
        throw ToolError(path + ": cannot create the output file: " + Reason());
    }
#if !defined(_WIN32)
    // mkstemp makes the file private; the output gets the permissions a new file normally has.
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(fd, 0666 & ~mask);
#endif
    file_ = fdopen(fd, "wb");
    if (file_ == nullptr) {
        close(fd);
        unlink(temporary_.c_str());
        throw ToolError(path + ": cannot create the output file: " + Reason());
    }
}

OutputFile::~OutputFile() {
    if (file_ != nullptr) {
        std::fclose(file_);
        unlink(temporary_.c_str());
    }
}

void OutputFile::Commit() {
    const bool written = std::fflush(file_) == 0 && !std::ferror(file_);
    const bool closed = std::fclose(file_) == 0;
    file_ = nullptr;
    if (!written || !closed) {
        const std::string why = Reason();
        unlink(temporary_.c_str());
        throw ToolError(path_ + ": cannot write the output file: " + why);
    }
#if defined(_WIN32)
    // Windows' rename does not replace an existing file; MoveFileEx does.
    const bool moved = ::MoveFileExA(temporary_.c_str(), path_.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
    const std::string why = moved ? std::string() : "error " + std::to_string(::GetLastError());
#else
    const bool moved = std::rename(temporary_.c_str(), path_.c_str()) == 0;
    const std::string why = moved ? std::string() : Reason();
#endif
    if (!moved) {
        unlink(temporary_.c_str());
        throw ToolError(path_ + ": cannot create the output file: " + why);
    }
}

}  // namespace ulores
