#pragma once
// The font resource file on POSIX systems: opened, measured and mapped read-only in one view.
// The three steps report failures under the names of the Windows calls they stand for
// ("CreateFile", "CreateFileMapping", "MapViewOfFile"), with Windows error numbers.
#include <cstddef>

#include "ulogui/Font.h"

namespace details {

class MappedFontResourceFile : public FontResourceFile {
public:
    MappedFontResourceFile() = default;
    // Deliberately closes nothing: the process-wide file stays mapped until the process ends.
    ~MappedFontResourceFile() override;

protected:
    ulo::ErrorCode DoInit(const ULOPath& path) override;
    // Unmaps the view and closes the file. The fields are reset too, so that after a failed
    // re-initialisation fonts by ID find no file instead of reading an unmapped view.
    void DoClose() override;

private:
    int file_ = -1;       // the file handle
    size_t mapping_ = 0;  // the file mapping: the size of the whole-file view, 0 when none
    void* view_ = nullptr;
};

}  // namespace details
