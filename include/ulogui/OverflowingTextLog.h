#pragma once
// The log of translated texts that do not fit their boxes, grouped by dialog. The host reports
// each such text; the library itself only colours them when drawing.
#include <cstdio>
#include <string>

#include "ulogui/Export.h"
#include "ulolib/String.h"

namespace ulo {

struct ULODRAW_API OverflowingTextDialogInfo {
    std::wstring dialogName;  // the dialog being shown or edited
    int count = 0;            // overflowing texts logged since the dialog started
    // Where the log goes; null logs nothing. Owned (opened and closed) by the host. The texts are
    // written as wide characters, converted by the C library with the current LC_CTYPE locale.
    FILE* logFile = nullptr;

    // Sets the dialog name and restarts the count, so the next text writes the name again.
    void StartEditDialog(const std::wstring& name);
    // Writes the dialog's header line before its first text, then the text on an indented line.
    // Counts the text even when no stream is set; the count stops at INT_MAX.
    void LogOverflowingText(const ULOString& text);
};

// The process-wide log record the host reports to.
ULODRAW_API extern OverflowingTextDialogInfo overflowDialogHelper_;

}  // namespace ulo
