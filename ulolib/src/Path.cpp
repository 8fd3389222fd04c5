#include "ulolib/Path.h"

#include <sys/stat.h>

#include <cerrno>

const wchar_t ULOPath::wSeparator = L'/';

namespace {

// stat of the path; on failure stores the error (when asked for) and returns false.
bool StatPath(const ULOPath& path, struct stat& info, ulo::ErrorCode* error, const char* function, int line) {
    if (::stat(path.native().c_str(), &info) == 0) {
        if (error) {
            *error = ulo::ErrorCode::noError();
        }
        return true;
    }
    const int err = errno;
    if (error) {
        *error = ulo::ErrorCode(
            ULO_AT(ulo::exception::SystemError::FromErrno(err, "stat"), function, "ulolib/Path", line));
    }
    return false;
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
    if (!path_.empty() && path_.back() != wSeparator && component.front() != wSeparator) {
        path_ += wSeparator;
    }
    path_ += component;
    return *this;
}

bool ULOPath::exists(ulo::ErrorCode* error) const {
    struct stat info;
    return StatPath(*this, info, error, "bool ULOPath::exists(ulo::ErrorCode*) const", __LINE__);
}

bool ULOPath::is_directory(ulo::ErrorCode* error) const {
    struct stat info;
    return StatPath(*this, info, error, "bool ULOPath::is_directory(ulo::ErrorCode*) const", __LINE__) &&
           S_ISDIR(info.st_mode);
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
    const size_t at = path_.rfind(wSeparator);
    return at == ULOString::npos ? path_ : ULOString(path_.substr(at + 1));
}

ULOPath ULOPath::parent_path() const {
    size_t at = path_.rfind(wSeparator);
    if (at == ULOString::npos) {
        return ULOPath();
    }
    // Repeated separators before the last component belong to neither part.
    while (at > 0 && path_[at - 1] == wSeparator) {
        --at;
    }
    if (at == 0) {
        // The root is its own separator; the parent of "/" itself is empty.
        return path_.size() > 1 ? ULOPath(ULOString(1, wSeparator)) : ULOPath();
    }
    return ULOPath(ULOString(path_.substr(0, at)));
}

std::string ULOPath::native() const {
    return path_.ToUtf8();
}
