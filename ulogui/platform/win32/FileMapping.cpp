// Read-only file mappings on Windows: CreateFileW, CreateFileMappingW over the whole file,
// MapViewOfFile of all of it. A failing call is reported with GetLastError() and its name.
#include "platform/FileMapping.h"

#include <windows.h>

#include <cstdint>

namespace ulogui {
namespace platform {

namespace {

ulo::exception::SystemError LastError(const char* call) {
    return ulo::exception::SystemError(static_cast<long>(::GetLastError()), call);
}

HANDLE AsHandle(intptr_t value) {
    return reinterpret_cast<HANDLE>(value);
}

}  // namespace

std::optional<ulo::exception::SystemError> ReadOnlyFileMapping::Open(const ULOPath& path) {
    // A directory fails here with ERROR_ACCESS_DENIED: it is not opened as a file without
    // FILE_FLAG_BACKUP_SEMANTICS.
    const HANDLE file = ::CreateFileW(path.wstring().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return LastError("CreateFile");
    }
    file_ = reinterpret_cast<intptr_t>(file);
    // The whole file; an empty one fails with ERROR_FILE_INVALID.
    const HANDLE mapping = ::CreateFileMappingW(file, nullptr, PAGE_READONLY, 0, 0, nullptr);
    if (mapping == nullptr) {
        return LastError("CreateFileMapping");
    }
    mapping_ = reinterpret_cast<intptr_t>(mapping);
    LARGE_INTEGER size{};
    if (!::GetFileSizeEx(file, &size) || size.QuadPart <= 0 ||
        static_cast<uint64_t>(size.QuadPart) > SIZE_MAX) {
        return LastError("CreateFileMapping");
    }
    void* view = ::MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
    if (view == nullptr) {
        return LastError("MapViewOfFile");
    }
    size_ = static_cast<size_t>(size.QuadPart);
    view_ = view;
    return std::nullopt;
}

void ReadOnlyFileMapping::Close() {
    if (view_) {
        ::UnmapViewOfFile(view_);
        view_ = nullptr;
    }
    size_ = 0;
    if (mapping_ != -1) {
        ::CloseHandle(AsHandle(mapping_));
        mapping_ = -1;
    }
    if (file_ != -1) {
        ::CloseHandle(AsHandle(file_));
        file_ = -1;
    }
}

}  // namespace platform
}  // namespace ulogui
