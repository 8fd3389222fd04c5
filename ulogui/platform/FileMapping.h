#pragma once
// A whole file mapped read-only into memory, as the font resource file is kept for the life of the
// process. Each backend maps with its operating system's calls; failures carry the error number and
// the name of the Windows call that failed or that the failing step stands for ("CreateFile",
// "CreateFileMapping", "MapViewOfFile"), with Windows error numbers.
#include <cstddef>
#include <cstdint>
#include <optional>

#include "ulolib/Exception.h"
#include "ulolib/Path.h"

namespace ulogui {
namespace platform {

class ReadOnlyFileMapping {
public:
    ReadOnlyFileMapping() = default;
    // Deliberately releases nothing: a mapping that should go is closed with Close().
    ~ReadOnlyFileMapping() = default;
    ReadOnlyFileMapping(const ReadOnlyFileMapping&) = delete;
    ReadOnlyFileMapping& operator=(const ReadOnlyFileMapping&) = delete;

    // Opens and maps the whole of `path`. A directory, an empty file or anything that is not a regular
    // file fails. On failure nothing stays mapped, but the file may stay open until Close().
    std::optional<ulo::exception::SystemError> Open(const ULOPath& path);
    // Unmaps the view and closes the file; nothing when nothing is open.
    void Close();

    const uint8_t* Data() const { return static_cast<const uint8_t*>(view_); }
    size_t Size() const { return view_ ? size_ : 0; }

private:
    intptr_t file_ = -1;                      // the backend's file handle or descriptor, -1 when none
    [[maybe_unused]] intptr_t mapping_ = -1;  // the backend's mapping object, where it has one
    size_t size_ = 0;
    void* view_ = nullptr;
};

}  // namespace platform
}  // namespace ulogui
