#pragma once
// ULOPath: a file-system path held as a wide string.
#include <cstdint>
#include <cstdio>
#include <string>

#include "ulolib/ErrorCode.h"
#include "ulolib/Export.h"
#include "ulolib/String.h"

class ULOLIB_API ULOPath {
public:
    // The platform's path separator: '/' on Linux, '\\' on Windows, where '/' separates components
    // as well (both are read as separators there; joins insert wSeparator).
    static const wchar_t wSeparator;
    static bool IsSeparator(wchar_t c);

    ULOPath() = default;
    ULOPath(const ULOString& path) : path_(path) {}
    ULOPath(const wchar_t* path) : path_(path) {}
    // From a UTF-8 file name (bytes that are no UTF-8 become U+FFFD).
    static ULOPath FromNative(const std::string& narrow);

    // Appends a component, inserting one separator where needed; an empty component changes nothing.
    ULOPath operator/(const ULOString& component) const;
    ULOPath& operator/=(const ULOString& component);

    bool empty() const { return path_.empty(); }
    // Both report false on any failure and, when given, store why in error (callers may ignore it):
    // a system error of the call "stat", so a missing path gives 0x80070002. On success error is
    // set to no error.
    bool exists(ulo::ErrorCode* error = nullptr) const;
    bool is_directory(ulo::ErrorCode* error = nullptr) const;
    bool is_regular_file(ulo::ErrorCode* error = nullptr) const;
    // The size of a file in bytes; 0 when it cannot be asked (error says why).
    uint64_t file_size(ulo::ErrorCode* error = nullptr) const;

    // The extension without its dot: what follows the last dot of filename() ("ura" for
    // "Main.ura", "bashrc" for ".bashrc"); empty when there is none and for "." and "..".
    ULOString extension() const;
    // The last component ("Main.ura"): what follows the last separator, empty after a trailing one.
    ULOString filename() const;
    // Everything before the last component, without a trailing separator ("/" for "/a", empty for
    // "a" and for "/").
    ULOPath parent_path() const;

    const ULOString& wstring() const { return path_; }
    // The narrow form: UTF-8, the form Linux file calls take. Windows file calls take the wide
    // form: use ULOOpenFile rather than fopen(native()).
    std::string native() const;

    bool operator==(const ULOPath& other) const { return path_ == other.path_; }
    bool operator!=(const ULOPath& other) const { return path_ != other.path_; }

private:
    ULOString path_;
};

// The C runtime's fopen for a path, with the file name in the form the platform takes (_wfopen on
// Windows, where a narrow name would go through the ANSI code page). Null on failure, with errno set.
ULOLIB_API std::FILE* ULOOpenFile(const ULOPath& path, const char* mode);
