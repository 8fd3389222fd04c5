#include "ulolib/Path.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/stat.h>
#endif

#include <cerrno>

#if defined(_WIN32)
const wchar_t ULOPath::wSeparator = L'\\';
#else
const wchar_t ULOPath::wSeparator = L'/';
#endif

bool ULOPath::IsSeparator(wchar_t c) {
#if defined(_WIN32)
    return c == L'\\' || c == L'/';
#else
    return c == L'/';
#endif
}

namespace {

// What stat says of a path.
struct Status {
    bool directory = false;
    bool regular = false;
    uint64_t size = 0;
};

// stat of the path; on failure stores the error (when asked for) and returns false.
bool StatPath(const ULOPath& path, Status& status, ulo::ErrorCode* error, const char* function, int line) {
#if defined(_WIN32)
    // The attributes call itself, not the C runtime's stat: its error number tells a missing file
    // (2) from a missing folder or a file used as one (3), which errno does not.
    WIN32_FILE_ATTRIBUTE_DATA info{};
    const bool ok =
        !path.empty() && ::GetFileAttributesExW(path.wstring().c_str(), GetFileExInfoStandard, &info);
    const long failure = ok ? 0 : (path.empty() ? ERROR_FILE_NOT_FOUND : static_cast<long>(::GetLastError()));
    if (ok) {
        status.directory = (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        status.regular = (info.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) == 0;
        status.size = (static_cast<uint64_t>(info.nFileSizeHigh) << 32) | info.nFileSizeLow;
    }
#else
    struct stat info {};
    const bool ok = ::stat(path.native().c_str(), &info) == 0;
    const int failure = errno;
    if (ok) {
        status.directory = S_ISDIR(info.st_mode);
        status.regular = S_ISREG(info.st_mode);
        status.size = info.st_size > 0 ? static_cast<uint64_t>(info.st_size) : 0;
    }
#endif
    if (ok) {
        if (error) {
            *error = ulo::ErrorCode::noError();
        }
        return true;
    }
    if (error) {
#if defined(_WIN32)
        ulo::exception::SystemError failed(failure, "stat");
#else
        ulo::exception::SystemError failed = ulo::exception::SystemError::FromErrno(failure, "stat");
#endif
        *error = ulo::ErrorCode(ULO_AT(failed, function, "ulolib/Path", line));
    }
    return false;
}

// The position of the last separator, or npos.
size_t LastSeparator(const ULOString& path) {
    for (size_t i = path.size(); i > 0; --i) {
        if (ULOPath::IsSeparator(path[i - 1])) {
            return i - 1;
        }
    }
    return ULOString::npos;
}

}  // namespace

ULOPath ULOPath::FromNative(const std::string& narrow) {
    return ULOPath(ULOString::FromUtf8(narrow));
}

ULOPath ULOPath::operator/(const ULOString& component) const {
    ULOPath joined(*this);
    joined /= component;
    return joined;
}

ULOPath& ULOPath::operator/=(const ULOString& component) {
    if (component.empty()) {
        return *this;
    }
    if (!path_.empty() && !IsSeparator(path_.back()) && !IsSeparator(component.front())) {
        path_ += wSeparator;
    }
    path_ += component;
    return *this;
}

bool ULOPath::exists(ulo::ErrorCode* error) const {
    Status status;
    return StatPath(*this, status, error, "bool ULOPath::exists(ulo::ErrorCode*) const", __LINE__);
}

bool ULOPath::is_directory(ulo::ErrorCode* error) const {
    Status status;
    return StatPath(*this, status, error, "bool ULOPath::is_directory(ulo::ErrorCode*) const", __LINE__) &&
           status.directory;
}

bool ULOPath::is_regular_file(ulo::ErrorCode* error) const {
    Status status;
    return StatPath(*this, status, error, "bool ULOPath::is_regular_file(ulo::ErrorCode*) const", __LINE__) &&
           status.regular;
}

uint64_t ULOPath::file_size(ulo::ErrorCode* error) const {
    Status status;
    return StatPath(*this, status, error, "uint64_t ULOPath::file_size(ulo::ErrorCode*) const", __LINE__)
               ? status.size
               : 0;
}

ULOString ULOPath::extension() const {
    const ULOString name = filename();
    if (name == L"." || name == L"..") {
        return ULOString();
    }
    const size_t dot = name.rfind(L'.');
    return dot == ULOString::npos ? ULOString() : ULOString(name.substr(dot + 1));
}

ULOString ULOPath::filename() const {
    const size_t at = LastSeparator(path_);
    return at == ULOString::npos ? path_ : ULOString(path_.substr(at + 1));
}

ULOPath ULOPath::parent_path() const {
    size_t at = LastSeparator(path_);
    if (at == ULOString::npos) {
        return ULOPath();
    }
    // Repeated separators before the last component belong to neither part.
    while (at > 0 && IsSeparator(path_[at - 1])) {
        --at;
    }
    if (at == 0) {
        // The root is its own separator; the parent of "/" itself is empty.
        return path_.size() > 1 ? ULOPath(ULOString(1, path_[0])) : ULOPath();
    }
    return ULOPath(ULOString(path_.substr(0, at)));
}

std::string ULOPath::native() const {
    return path_.ToUtf8();
}

std::FILE* ULOOpenFile(const ULOPath& path, const char* mode) {
    if (mode == nullptr) {
        errno = EINVAL;
        return nullptr;
    }
#if defined(_WIN32)
    const ULOString wideMode = ULOString::FromUtf8(mode);
    return ::_wfopen(path.wstring().c_str(), wideMode.c_str());
#else
    return std::fopen(path.native().c_str(), mode);
#endif
}
