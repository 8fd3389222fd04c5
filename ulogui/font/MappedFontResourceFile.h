#pragma once
// The font resource file of the process: the whole file mapped read-only in one view by the platform.
#include "platform/FileMapping.h"
#include "ulogui/Font.h"

namespace details {

class MappedFontResourceFile : public FontResourceFile {
public:
    MappedFontResourceFile() = default;
    // Deliberately closes nothing: the process-wide file stays mapped until the process ends.
    ~MappedFontResourceFile() override;

protected:
    ulo::ErrorCode DoInit(const ULOPath& path) override;
    // Unmaps the view and closes the file. The view is dropped too, so that after a failed
    // re-initialisation fonts by ID find no file instead of reading an unmapped view.
    void DoClose() override;

private:
    ulogui::platform::ReadOnlyFileMapping mapping_;
};

}  // namespace details
